// SPDX-License-Identifier: MIT
#include "gradient_writer.h"

namespace orvan::geometry
{

Result<std::int64_t> GradientWriter::Write(const RecordedGradient& gradient, const Matrix2d& toResult,
										   SvgWriter& writer, std::int64_t& count) noexcept
{
	constexpr std::string_view kSpreads[] = {"", "reflect", "repeat"};
	const drawing::GradientGeometry& at = gradient.geometry;
	const std::string_view tag = gradient.isRadial ? "radialGradient" : "linearGradient";
	SvgWriter body;
	body.AddAttribute("gradientUnits", "userSpaceOnUse");
	if (gradient.isRadial)
	{
		body.AddAttribute("cx", at.to.x).AddAttribute("cy", at.to.y).AddAttribute("r", at.toRadius);
		if (at.from != at.to)
			body.AddAttribute("fx", at.from.x).AddAttribute("fy", at.from.y);
		if (at.fromRadius != 0.0)
			body.AddAttribute("fr", at.fromRadius);
	}
	else
	{
		body.AddAttribute("x1", at.from.x).AddAttribute("y1", at.from.y);
		body.AddAttribute("x2", at.to.x).AddAttribute("y2", at.to.y);
	}
	if (gradient.spread == SVGSpreadMethod::reflect || gradient.spread == SVGSpreadMethod::repeat)
		body.AddAttribute("spreadMethod", kSpreads[static_cast<std::size_t>(gradient.spread)]);
	body.AddMatrix("gradientTransform", toResult * gradient.toNode).Add(">");
	for (const drawing::Stop& stop : gradient.stops)
	{
		body.Add("<stop").AddAttribute("offset", stop.offset).AddColor("stop-color", stop.color);
		if (stop.alpha != 1.0)
			body.AddAttribute("stop-opacity", stop.alpha);
		body.Add("/>");
	}
	body.Add("</").Add(tag).Add(">\n");
	const std::string_view text(body.text.begin(), body.text.GetCount());
	for (const Known& known : _known)
	{
		if (known.id != 0 && std::string_view(known.body.begin(), known.body.GetCount()) == text)
			return known.id;
	}
	const std::int64_t id = ++count;
	writer.Add("<").Add(tag).AddId("p", id).Add(text);
	writer.isGood = writer.isGood && body.isGood;
	_known[static_cast<std::size_t>(id) % std::size(_known)] = {std::move(body.text), id};
	return id;
}

} // namespace orvan::geometry
