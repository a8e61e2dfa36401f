// SPDX-License-Identifier: MIT
#include "paint_servers.h"

#include "drawing/references.h"
#include "gradients.h"

namespace orvan::cairo
{

using namespace drawing;

Result<bool> SetSource(const Canvas& canvas, const SVGPaint& paint, double opacity, const PaintPlace& at) noexcept
{
	if (paint.type == SVGPaintType::none || !(opacity > 0.0))
		return false;
	if (paint.type == SVGPaintType::color)
	{
		SetColor(canvas.drawing, paint.color, opacity);
		return true;
	}
	const SVGElementRef found = ORVAN_TRY(FindElement(canvas.job.scene.document, paint.reference));
	return SetGradient(canvas, found.GetObject(), opacity, at);
}

} // namespace orvan::cairo
