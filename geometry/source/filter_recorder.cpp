// SPDX-License-Identifier: MIT
#include "filter_recorder.h"

#include "drawing/filters.h"
#include "drawing/references.h"
#include "drawing/walk.h"
#include "svg_complete.h"
#include "svg_source.h"
#include "svg_writer.h"

namespace orvan::geometry
{
namespace
{

using namespace drawing;
using Key = SVGImportAttribute;
using Kind = SVGImportElementKind;

/// What attributes of primitives measure, in fractions of the box where "primitiveUnits" says so.
enum class Measure : std::uint8_t
{
	horizontal,
	vertical,
	depth,
	pair, ///< Horizontally and vertically.
};

struct MeasuredAttribute
{
	Kind kind;
	Key key;
	Measure measure;
	double absent; ///< What counts where nothing is said.
};

constexpr MeasuredAttribute kMeasured[] = {
	{Kind::feGaussianBlur, Key::stdDeviation, Measure::pair, 0.0},
	{Kind::feDropShadow, Key::stdDeviation, Measure::pair, 2.0},
	{Kind::feDropShadow, Key::dx, Measure::horizontal, 2.0},
	{Kind::feDropShadow, Key::dy, Measure::vertical, 2.0},
	{Kind::feOffset, Key::dx, Measure::horizontal, 0.0},
	{Kind::feOffset, Key::dy, Measure::vertical, 0.0},
	{Kind::feMorphology, Key::radius, Measure::pair, 0.0},
	{Kind::feDisplacementMap, Key::scale, Measure::horizontal, 0.0},
	{Kind::fePointLight, Key::z, Measure::depth, 0.0},
	{Kind::feSpotLight, Key::z, Measure::depth, 0.0},
	{Kind::feSpotLight, Key::pointsAtZ, Measure::depth, 0.0},
};

bool IsMeasured(Kind kind, Key key) noexcept
{
	for (const MeasuredAttribute& attribute : kMeasured)
	{
		if (attribute.kind == kind && attribute.key == key)
			return true;
	}
	return false;
}

/// What filters consist of is said by attributes of their own, and by a few that others have as well.
bool IsOfFilters(Kind kind, Key key) noexcept
{
	if (key >= Key::in && key <= Key::limitingConeAngle)
		return true;
	return key == Key::dx || key == Key::dy || (key == Key::offset && kind != Kind::stop) ||
		   key == Key::preserveAspectRatio;
}

std::string_view GetName(Key key) noexcept
{
	return kSVGAttributeNames[static_cast<std::size_t>(key)];
}

class FilterRecorder
{
public:
	FilterRecorder(Scene& scene, const Frame& user, ContentRecorder& contents) noexcept
		: _scene(scene), _user(user), _contents(contents), _source(scene.document)
	{
	}

	Result<RecordedFilter::Step> Record(const FilterStage& stage) noexcept
	{
		_writer = SvgWriter();
		_pictures.Reset();
		const bool isElement = stage.function->type == SVGFilterFunctionType::reference;
		ORVAN_TRY(isElement ? AddElement(stage) : AddFunction(*stage.function));
		if (!_writer.isGood)
			return OutOfMemoryError();
		return RecordedFilter::Step{std::move(_writer.text), isElement, std::move(_pictures)};
	}

private:
	/// A function with lengths and colours that depend on nothing.
	Result<void> AddFunction(const SVGFilterFunction& function) noexcept
	{
		SVGFilterFunction plain = function;
		plain.x = {_user.Resolve(function.x, Axis::horizontal), SVGLengthUnit::px};
		plain.y = {_user.Resolve(function.y, Axis::vertical), SVGLengthUnit::px};
		plain.deviation = {_user.Resolve(function.deviation, Axis::other), SVGLengthUnit::px};
		if (function.color.type == SVGPaintType::currentColor)
		{
			plain.color.type = SVGPaintType::color;
			plain.color.color = _user.place.style.color;
			plain.color.alpha = _user.place.style.colorAlpha;
		}
		BaseArray<SVGFilterFunction> all;
		ORVAN_TRY(all.Append(std::move(plain)));
		const Data value = ORVAN_TRY(Data::Create(std::move(all)));
		_writer.Add(ORVAN_TRY(_source->FormatValue(Kind::group, Key::filter, value)).View());
		return {};
	}

	Result<void> AddElement(const FilterStage& stage) noexcept
	{
		// An empty region leaves nothing.
		const Rectangle region = stage.region.IsEmpty() ? Rectangle{0.0, 0.0, 0.0, 0.0} : stage.region;
		_writer.AddAttribute("filterUnits", "userSpaceOnUse").AddArea(region).Add(">\n");
		const Borrowed<HierarchyObjectInterface> hierarchy(stage.filter);
		for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
		{
			if (Borrowed<SVGFilterPrimitiveInterface>(child) && _scene.limits.Pay(kElementWork))
				ORVAN_TRY(AddPrimitive(stage, child.GetObject()));
		}
		_writer.Add("</filter>\n");
		return {};
	}

	Result<void> AddPrimitive(const FilterStage& stage, ObjectBase* element) noexcept
	{
		const Borrowed<SVGElementInterface> primitive(element);
		const DataDictionary attributes = primitive->GetAttributeDictionary();
		Style style = stage.place.style;
		style.Apply(attributes, stage.place.viewport);
		const String tag = ORVAN_TRY(_source->GetKindName(primitive->GetElementType()));
		_writer.Add("<").Add(tag.View());
		AddRegion(stage, attributes);
		if (style.colorInterpolationFilters != SVGColorInterpolation::linearRGB)
			_writer.AddAttribute("color-interpolation-filters", "sRGB");
		AddColors(attributes, style);
		ORVAN_TRY(AddValues(stage, primitive->GetElementType(), attributes));
		if (const Borrowed<SVGLinkInterface> link(element); link)
			ORVAN_TRY(AddLink(stage, attributes, style, link->GetLink()));
		bool isEmpty = true;
		const Borrowed<HierarchyObjectInterface> hierarchy(element);
		for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
		{
			if (!Borrowed<SVGFilterPartInterface>(child) || !_scene.limits.Pay(kElementWork))
				continue;
			_writer.Add(isEmpty ? ">" : "");
			isEmpty = false;
			ORVAN_TRY(AddPart(stage, child.GetObject()));
		}
		if (isEmpty)
			_writer.Add("/>\n");
		else
			_writer.Add("</").Add(tag.View()).Add(">\n");
		return {};
	}

	Result<void> AddPart(const FilterStage& stage, ObjectBase* element) noexcept
	{
		const Borrowed<SVGElementInterface> part(element);
		const DataDictionary attributes = part->GetAttributeDictionary();
		const Kind kind = part->GetElementType();
		_writer.Add("<").Add(ORVAN_TRY(_source->GetKindName(kind)).View());
		if (kind == Kind::fePointLight || kind == Kind::feSpotLight)
			AddPlace(stage, attributes, Key::x, Key::y);
		if (kind == Kind::feSpotLight)
			AddPlace(stage, attributes, Key::pointsAtX, Key::pointsAtY);
		ORVAN_TRY(AddValues(stage, kind, attributes));
		_writer.Add("/>");
		return {};
	}

	/// The sides that are said of a primitive's region; the others follow from what goes into it.
	void AddRegion(const FilterStage& stage, const DataDictionary& attributes) noexcept
	{
		const auto add = [&](Key key, Axis axis, double start, double size)
		{
			if (const auto* length = attributes.Find<SVGLength>(static_cast<std::int32_t>(key)))
				_writer.AddAttribute(GetName(key),
									 ResolveSide(*length, axis, stage.primitiveUnits, stage.place, start, size));
		};
		add(Key::x, Axis::horizontal, stage.box.left, stage.box.GetWidth());
		add(Key::y, Axis::vertical, stage.box.top, stage.box.GetHeight());
		add(Key::width, Axis::horizontal, 0.0, stage.box.GetWidth());
		add(Key::height, Axis::vertical, 0.0, stage.box.GetHeight());
	}

	/// The result is the colour's opacity.
	double AddColor(Key key, const DataDictionary& attributes, const Style& style) noexcept
	{
		const auto* paint = attributes.Find<SVGPaint>(static_cast<std::int32_t>(key));
		if (paint == nullptr)
			return 1.0;
		const bool isCurrent = paint->type == SVGPaintType::currentColor;
		_writer.AddColor(GetName(key), isCurrent ? style.color : paint->color);
		return ClampToUnit(isCurrent ? style.colorAlpha : paint->alpha);
	}

	/// Light has no opacity.
	void AddColors(const DataDictionary& attributes, const Style& style) noexcept
	{
		const double said = attributes.GetOr(static_cast<std::int32_t>(Key::floodOpacity), 1.0);
		const double opacity = AddColor(Key::floodColor, attributes, style) * ClampToUnit(said);
		if (opacity != 1.0)
			_writer.AddAttribute(GetName(Key::floodOpacity), opacity);
		AddColor(Key::lightingColor, attributes, style);
	}

	static bool IsInBox(const FilterStage& stage) noexcept
	{
		return stage.primitiveUnits == SVGUnits::objectBoundingBox;
	}

	/// Where a light is, or what it points at; the same keys stand for lengths and numbers.
	void AddPlace(const FilterStage& stage, const DataDictionary& attributes, Key x, Key y) noexcept
	{
		const auto get = [&](Key key)
		{
			const auto number = static_cast<std::int32_t>(key);
			const auto* length = attributes.Find<SVGLength>(number);
			return length != nullptr ? length->value : attributes.GetOr(number, 0.0);
		};
		const Vector2d said{get(x), get(y)};
		const Vector2d place = IsInBox(stage) ? BoxTransform(stage.box).Apply(said) : said;
		_writer.AddAttribute(GetName(x), place.x).AddAttribute(GetName(y), place.y);
	}

	Result<void> AddValues(const FilterStage& stage, Kind kind, const DataDictionary& attributes) noexcept
	{
		AddMeasured(stage, kind, attributes);
		for (const DataDictionary::Entry& entry : attributes)
		{
			const Key key = static_cast<Key>(entry.key);
			const bool isPlace = key == Key::pointsAtX || key == Key::pointsAtY;
			if (!IsOfFilters(kind, key) || isPlace || IsMeasured(kind, key))
				continue;
			const Data value = ORVAN_TRY(attributes.GetData(entry.key));
			const Result<String> text = _source->FormatValue(kind, key, value);
			if (text.IsOk())
				_writer.AddEscaped(GetName(key), text.GetValue().View());
			else if (text.GetError().GetClass() == ErrorClass::outOfMemory)
				return text.GetError();
		}
		return {};
	}

	/// The lengths of a primitive. From fractions of a box also what is not said becomes a length.
	void AddMeasured(const FilterStage& stage, Kind kind, const DataDictionary& attributes) noexcept
	{
		const bool isInBox = IsInBox(stage);
		const double width = isInBox ? stage.box.GetWidth() : 1.0;
		const double height = isInBox ? stage.box.GetHeight() : 1.0;
		const double sizes[] = {width, height, isInBox ? std::hypot(width, height) / std::sqrt(2.0) : 1.0};
		for (const MeasuredAttribute& attribute : kMeasured)
		{
			const auto key = static_cast<std::int32_t>(attribute.key);
			if (attribute.kind != kind || !(isInBox || attributes.Has(key)))
				continue;
			if (attribute.measure != Measure::pair)
			{
				const double value = attributes.GetOr(key, attribute.absent);
				_writer.AddAttribute(GetName(attribute.key),
									 value * sizes[static_cast<std::size_t>(attribute.measure)]);
				continue;
			}
			Vector2d pair{attribute.absent, attribute.absent};
			const auto* numbers = attributes.Find<BaseArray<Float>>(key);
			if (numbers != nullptr && numbers->GetCount() == 2)
				pair = {(*numbers)[0], (*numbers)[1]};
			_writer.Add(" ").Add(GetName(attribute.key)).Add("=\"");
			_writer.AddPoint({pair.x * width, pair.y * height}).Add("\"");
		}
	}

	/// An image stays where it is; an element becomes plain paths.
	Result<void> AddLink(const FilterStage& stage, const DataDictionary& attributes, const Style& style,
						 const String& link) noexcept
	{
		const SVGElementRef target = link.IsEmpty() ? SVGElementRef() : ORVAN_TRY(FindElement(_scene, link));
		if (!target)
		{
			if (!link.IsEmpty())
				_writer.AddImageRendering(style.imageRendering).AddEscaped("href", link.View());
			return {};
		}
		// The filter stands between the element and what goes into it, so that references in circles are noticed.
		const Frame filter(stage.filter.GetObject(), _user.place, &_user, _scene.limits);
		if (!filter.canDraw)
			return {};
		Place place = ORVAN_TRY(GetContentPlace(_scene, target.GetObject(), _user));
		const Rectangle region = ResolveRegion(attributes, stage.primitiveUnits, stage.place, stage.box, stage.region);
		place.transform = GetPictureScale(target, place.viewport, region);
		const std::int32_t content = ORVAN_TRY(_contents.RecordElement(target.GetObject(), place, filter));
		_writer.Add(" href=\"#");
		ORVAN_TRY(_pictures.Append({_writer.text.GetCount(), content}));
		_writer.Add("\"");
		return {};
	}

	Scene& _scene;
	const Frame& _user;
	ContentRecorder& _contents;
	const Borrowed<SVGDocumentSourceInterface> _source;
	SvgWriter _writer;
	BaseArray<RecordedFilter::Picture> _pictures;
};

} // namespace

Result<bool> HasFilters(Scene& scene, const Frame& frame) noexcept
{
	if (!Borrowed<SVGDocumentSourceInterface>(scene.document))
		return false;
	for (const SVGFilterFunction& function : *frame.effects.filter)
	{
		if (function.type != SVGFilterFunctionType::reference ||
			ORVAN_TRY(FindEffect<SVGFilterElementInterface>(scene, &function.reference, frame)))
			return true;
	}
	return false;
}

Result<RecordedFilter> RecordFilter(Scene& scene, const Frame& frame, Extent& extent,
									ContentRecorder& contents) noexcept
{
	RecordedFilter filter;
	FilterRecorder recorder(scene, frame, contents);
	for (const FilterStage& stage : ORVAN_TRY(GetFilterStages(scene, frame, extent)))
		ORVAN_TRY(filter.steps.Append(ORVAN_TRY(recorder.Record(stage))));
	return filter;
}

} // namespace orvan::geometry
