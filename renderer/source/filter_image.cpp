// SPDX-License-Identifier: MIT
/// feImage: an element of the document, or an image, as a picture that goes into a filter.
#include "drawing/references.h"
#include "drawing/walk.h"
#include "filter_operation.h"
#include "filter_surface.h"
#include "image_painter.h"
#include "painter.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using filters::Alarm;
using filters::Box;
using filters::Raster;
using Key = SVGImportAttribute;

/// Draws something with the coordinates of the filtered element.
class Drawn : public FilterOperation
{
public:
	explicit Drawn(const FilterPrimitive& primitive) noexcept
		: _canvas(primitive.canvas), _user(primitive.user), _stage(primitive.stage), _space(primitive.space),
		  _subregion(primitive.subregion), _colorSpace(primitive.colorSpace)
	{
	}

	Result<Raster> Apply(std::span<const FilterInput>, const Box& area, const Alarm&) const noexcept override
	{
		const auto draw = [&](const Canvas& canvas) noexcept
		{
			// The filter stands between the element and what is drawn here, so that references in circles are noticed.
			const Frame filter(_stage.filter.GetObject(), _user.place, &_user, canvas.job.scene.limits);
			return filter.canDraw ? Draw(canvas, filter) : Result<void>();
		};
		Raster raster = ORVAN_TRY(DrawRaster(_canvas.job, _space, area, draw));
		filters::Convert(raster, filters::ColorSpace::sRGB, _colorSpace);
		return raster;
	}

protected:
	virtual Result<void> Draw(const Canvas& canvas, const Frame& filter) const noexcept = 0;

	const Frame& GetUser() const noexcept
	{
		return _user;
	}

	const Rectangle& GetSubregion() const noexcept
	{
		return _subregion;
	}

private:
	const Canvas& _canvas;
	const Frame& _user;
	const FilterStage& _stage;
	const FilterSpace& _space;
	Rectangle _subregion;
	filters::ColorSpace _colorSpace;
};

/// An element of the document. Its origin is the corner of the subregion, as browsers have it.
class DrawnElement final : public Drawn
{
public:
	DrawnElement(const FilterPrimitive& primitive, SVGElementRef target) noexcept
		: Drawn(primitive), _target(std::move(target))
	{
	}

protected:
	Result<void> Draw(const Canvas& canvas, const Frame& filter) const noexcept override
	{
		Scene& scene = canvas.job.scene;
		Place place = ORVAN_TRY(GetContentPlace(scene, _target.GetObject(), GetUser()));
		const Rectangle& subregion = GetSubregion();
		place.transform = place.transform * Translation(subregion.left, subregion.top) *
						  GetPictureScale(_target, place.viewport, subregion);
		Painter painter(canvas);
		return Walk(scene, painter).DrawElement(_target.GetObject(), place, &filter);
	}

private:
	SVGElementRef _target;
};

/// An image, fitted into the subregion.
class DrawnImage final : public Drawn
{
public:
	DrawnImage(const FilterPrimitive& primitive, const Image& image, const Style& style) noexcept
		: Drawn(primitive), _image(image), _style(style)
	{
		const auto* rule =
			primitive.attributes.Find<SVGPreserveAspectRatio>(static_cast<std::int32_t>(Key::preserveAspectRatio));
		if (rule != nullptr)
			_rule = *rule;
	}

protected:
	Result<void> Draw(const Canvas& canvas, const Frame& filter) const noexcept override
	{
		Frame frame(filter.element, GetUser().place, &GetUser(), canvas.job.scene.limits);
		frame.place.transform = GetUser().place.transform;
		frame.place.style = _style;
		return PaintImage(canvas, frame, {_image, GetSubregion(), _rule});
	}

private:
	const Image& _image;
	Style _style;
	SVGPreserveAspectRatio _rule;
};

} // namespace

Result<MadeOperation> MakeImageOperation(const FilterPrimitive& primitive) noexcept
{
	const Borrowed<SVGLinkInterface> link(primitive.element);
	if (!link || primitive.subregion.IsEmpty())
		return MadeOperation();
	const String target = link->GetLink();
	if (target.IsEmpty())
		return MadeOperation();
	SVGElementRef element = ORVAN_TRY(FindElement(primitive.canvas.job.scene.document, target));
	if (element)
		return MakeNew<DrawnElement>(primitive, std::move(element));
	ImageSource* const images = primitive.canvas.job.scene.images;
	const Image* const image = images != nullptr ? ORVAN_TRY(images->Find(target)) : nullptr;
	if (image == nullptr)
		return MadeOperation();
	return MakeNew<DrawnImage>(primitive, *image, primitive.style);
}

} // namespace orvan::cairo
