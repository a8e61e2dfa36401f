// SPDX-License-Identifier: MIT
#include "text_layout.h"

#include "text_orientation.h"

#include <numbers>

namespace orvan::drawing
{
namespace
{

/// The outlines of more clusters together would take much memory.
constexpr std::size_t kMaxFragment = 512;

Matrix2d Rotation(double angle) noexcept
{
	const double cosine = std::cos(angle);
	const double sine = std::sin(angle);
	return {{0.0, 0.0}, {cosine, sine}, {-sine, cosine}};
}

Matrix2d RotationAround(double angle, const Vector2d& center) noexcept
{
	return Translation(center.x, center.y) * Rotation(angle) * Translation(-center.x, -center.y);
}

/// The middle of a font's letters, on which vertical lines run, above the baseline.
double GetCenter(const TextSpan& span) noexcept
{
	const FontMetrics& metrics = span.font->metrics;
	return (metrics.ascent + metrics.descent) / 2.0 * span.size;
}

constexpr TextLineKind kLineKinds[] = {TextLineKind::underline, TextLineKind::overline, TextLineKind::lineThrough};

/// The line that an element asks for along letters of a span, but for its ends. As in browsers it is a tenth of the
/// font's size thick: one below letters keeps away from the baseline by half of its thickness, one above them stands on
/// their heights, and one through them a third of their height above the baseline. Where letters may stand upright, a
/// line below them keeps away from their middle by half of the font's size.
TextLine MakeLine(const TextSpan& span, TextLineKind kind, bool hasUprightLetters, const Frame& decorating) noexcept
{
	using Key = SVGImportAttribute;
	constexpr double kThickness = 0.1;
	const FontMetrics& metrics = span.font->metrics;
	const double ascent = metrics.ascent * span.size;
	TextLine line;
	line.kind = kind;
	line.style = decorating.GetKeyword(Key::textDecorationStyle, SVGTextDecorationStyle::solid);
	line.thickness = span.size * kThickness;
	if (const auto* given =
			decorating.attributes.Find<SVGLength>(static_cast<std::int32_t>(Key::textDecorationThickness)))
		line.thickness = given->unit == SVGLengthUnit::percent ? given->value * decorating.place.style.fontSize
															   : decorating.Resolve(*given, Axis::other);
	const double offset = decorating.place.style.underlineOffset;
	switch (kind)
	{
	case TextLineKind::underline:
		line.center = hasUprightLetters       ? (span.size + line.thickness) / 2.0 - GetCenter(span)
					  : std::isfinite(offset) ? offset + line.thickness / 2.0
											  : line.thickness;
		break;
	case TextLineKind::overline:
		line.center = -ascent - line.thickness / 2.0;
		break;
	case TextLineKind::lineThrough:
		line.center = -ascent / 3.0;
		break;
	}
	return line;
}

/// What a cluster takes up in its own coordinates.
Rectangle CellOf(const TextSpan& span, const TextCluster& cluster) noexcept
{
	const FontMetrics& metrics = span.font->metrics;
	const double ascent = metrics.ascent * span.size;
	const double descent = metrics.descent * span.size;
	if (cluster.isUpright)
	{
		const double half = (ascent - descent) / 2.0;
		return {-half, std::min(0.0, cluster.advance), half, std::max(0.0, cluster.advance)};
	}
	return {std::min(0.0, cluster.advance), -ascent, std::max(0.0, cluster.advance), -descent};
}

/// True when a line along `a` of this length goes straight on along `b`.
bool GoesOn(const Matrix2d& a, const Matrix2d& b, const Vector2d& end) noexcept
{
	constexpr double kTolerance = 1e-6;
	const Vector2d gap = b.offset - a.Apply(end);
	const double size = std::hypot(end.x, end.y) + 1.0;
	return a.axis1 == b.axis1 && a.axis2 == b.axis2 && std::abs(gap.x) + std::abs(gap.y) < kTolerance * size;
}

} // namespace

Result<TextLayout> TextLayout::Create(Scene& scene, const Frame& frame) noexcept
{
	TextLayout layout;
	layout._fonts = &scene.fonts;
	layout._content = ORVAN_TRY(TextContent::Collect(scene, frame));
	layout._text = ORVAN_TRY(ShapeText(scene.fonts, layout._content));
	const BaseArray<TextPosition> positions = ORVAN_TRY(PlaceText(layout._content, layout._text));
	ORVAN_TRY(layout._places.Reserve(positions.GetCount()));
	for (std::size_t i = 0; i < positions.GetCount(); i++)
	{
		ORVAN_TRY(layout._places.Append(layout.MakePlace(i, positions[i])));
		if (!positions[i].isHidden && IsInvertible(layout._places[i]))
			layout.Measure(i);
	}
	ORVAN_TRY(layout.AddFragments(positions));
	ORVAN_TRY(layout.MeasureLines());
	return layout;
}

Matrix2d TextLayout::MakePlace(std::size_t cluster, const TextPosition& position) const noexcept
{
	const TextSpan& span = SpanOf(cluster);
	Matrix2d place = Translation(position.point.x, position.point.y);
	if (position.turn != 0.0)
		place = place * Rotation(position.turn);
	if (!_content.IsVertical())
	{
		// On a path a cluster turns around its middle on the path, else around its start beside the line, and letters
		// that are turned are then stretched along the line.
		const bool isOnPath = position.pivot != 0.0;
		const Vector2d pivot{position.pivot, isOnPath ? 0.0 : -span.shift};
		const Matrix2d turned = RotationAround(position.rotation, pivot) * Translation(0.0, -span.shift);
		const Matrix2d stretched = Scaling(position.stretch, 1.0);
		return isOnPath ? place * turned * stretched : place * stretched * turned;
	}
	// Browsers turn letters in lines that run down or up around a point at the left edge of the line.
	const FontMetrics& metrics = span.font->metrics;
	const double ascent = metrics.ascent * span.size;
	const double descent = -metrics.descent * span.size;
	const bool isOnPath = position.pivot != 0.0;
	if (_text.clusters[cluster].isUpright)
	{
		const Vector2d pivot = isOnPath ? Vector2d{0.0, position.pivot} : Vector2d{-(ascent + descent) / 2.0, ascent};
		return place * Translation(span.shift + GetCenter(span), 0.0) * RotationAround(position.rotation, pivot) *
			   Scaling(1.0, position.stretch);
	}
	constexpr double kQuarter = std::numbers::pi / 2.0;
	const bool runsUp = _content.RunsUpwards();
	const Vector2d edge = runsUp ? Vector2d{_text.clusters[cluster].advance * position.stretch - ascent, -ascent}
								 : Vector2d{ascent, descent};
	return place * Translation(runsUp ? -span.shift : span.shift, 0.0) * Rotation(runsUp ? -kQuarter : kQuarter) *
		   RotationAround(position.rotation, isOnPath ? Vector2d{position.pivot, 0.0} : edge) *
		   Scaling(position.stretch, 1.0);
}

/// Takes the cell and the ink of a cluster into the boxes.
void TextLayout::Measure(std::size_t cluster) noexcept
{
	const TextCluster& measured = _text.clusters[cluster];
	const TextSpan& span = SpanOf(cluster);
	const Rectangle cell = CellOf(span, measured);
	const Matrix2d& place = _places[cluster];
	_bounds.Include(Transform(place, cell));
	Rectangle ink = cell.Grow(span.size / 8.0);
	const double scale = measured.size / measured.face->unit;
	for (std::size_t i = 0; i < measured.glyphCount; i++)
	{
		const TextGlyph& glyph = _text.glyphs[measured.firstGlyph + i];
		hb_glyph_extents_t extents{};
		if (hb_font_get_glyph_extents(measured.face->shaper, glyph.id, &extents) == 0)
			continue;
		const double left = glyph.offset.x + extents.x_bearing * scale;
		const double top = glyph.offset.y - extents.y_bearing * scale;
		// Room for letters that are leant over and made bolder.
		const double height = -extents.height * scale;
		const double margin = (std::abs(height) + std::abs(top)) * std::abs(measured.face->slant) +
							  measured.size * measured.face->emboldening;
		ink.Include(Rectangle{left, top, left + extents.width * scale, top + height}.Grow(margin));
	}
	_reach.Include(Transform(place, ink));
}

Result<void> TextLayout::AddFragments(const BaseArray<TextPosition>& positions) noexcept
{
	for (std::size_t i = 0; i < positions.GetCount(); i++)
	{
		if (positions[i].isHidden || !IsInvertible(_places[i]))
			continue;
		const TextSpan& span = SpanOf(i);
		TextFragment* const last = _fragments.IsEmpty() ? nullptr : _fragments.end() - 1;
		if (last != nullptr && last->end == i && last->frame == span.frame && i - last->first < kMaxFragment)
			last->end = i + 1;
		else
			ORVAN_TRY(_fragments.Append({span.frame, span.opacity, i, i + 1}));
	}
	return {};
}

/// Takes lines into the reach, which may lie beside the letters.
Result<void> TextLayout::MeasureLines() noexcept
{
	for (const TextFragment& fragment : _fragments)
	{
		for (const TextLineKind kind : kLineKinds)
		{
			for (int i = 0; const Frame* const frame = FindDecorating(fragment, kind, i); i++)
				_reach.Include(ORVAN_TRY(GetLines(fragment, kind, *frame)).GetBounds());
		}
	}
	return {};
}

Rectangle TextLayout::GetCell(std::size_t cluster) const noexcept
{
	return CellOf(SpanOf(cluster), _text.clusters[cluster]);
}

Result<Outline> TextLayout::GetOutline(const TextFragment& fragment) const noexcept
{
	Outline outline;
	for (std::size_t i = fragment.first; i < fragment.end; i++)
	{
		const TextCluster& cluster = _text.clusters[i];
		const Matrix2d scaling = Scaling(cluster.size, cluster.size);
		for (std::size_t glyph = cluster.firstGlyph; glyph < cluster.firstGlyph + cluster.glyphCount; glyph++)
		{
			const auto& [id, offset] = _text.glyphs[glyph];
			ORVAN_TRY(
				_fonts->AddOutline(*cluster.face, id, _places[i] * Translation(offset.x, offset.y) * scaling, outline));
		}
	}
	return outline;
}

Result<Outline> TextLayout::GetLines(const TextFragment& fragment, TextLineKind kind,
									 const Frame& decorating) const noexcept
{
	Outline outline;
	for (std::size_t i = fragment.first; i < fragment.end;)
	{
		const TextSpan& span = SpanOf(i);
		TextLine line =
			MakeLine(span, kind, HasUprightLetters(_content.GetWritingMode(), span.frame->place.style), decorating);
		const bool isUpright = _text.clusters[i].isUpright;
		const auto getEnd = [&](double length)
		{
			return isUpright ? Vector2d{0.0, length} : Vector2d{length, 0.0};
		};
		const std::size_t first = i;
		double length = _text.clusters[i].advance;
		for (i++; i < fragment.end && _text.clusters[i].isUpright == isUpright; i++)
		{
			if (!GoesOn(_places[first], _places[i], getEnd(length)))
				break;
			length += _text.clusters[i].advance;
		}
		line.start = std::min(0.0, length);
		line.end = std::max(0.0, length);
		line.center += isUpright ? GetCenter(span) : 0.0;
		// Along upright letters the line runs down, and what is below letters in a row is left of them.
		constexpr Matrix2d kDownwards{{0.0, 0.0}, {0.0, 1.0}, {-1.0, 0.0}};
		ORVAN_TRY(AddTextLine(line, isUpright ? _places[first] * kDownwards : _places[first], outline));
	}
	return outline;
}

const Frame* TextLayout::FindPicture(const TextFragment& fragment, const Frame& around) noexcept
{
	const Frame* found = nullptr;
	for (const Frame* frame = fragment.frame; frame != nullptr && frame != &around; frame = frame->outer)
		found = frame->effects.NeedsPicture() || frame->effects.opacity != 1.0 ? frame : found;
	return found;
}

const Frame* TextLayout::FindDecorating(const TextFragment& fragment, TextLineKind kind, int index) noexcept
{
	for (const Frame* frame = fragment.frame; frame != nullptr; frame = frame->outer)
	{
		const auto lines = frame->GetOr(SVGImportAttribute::textDecoration, std::int32_t{0});
		if ((lines & static_cast<std::int32_t>(kind)) != 0 && index-- == 0)
			return frame;
	}
	return nullptr;
}

} // namespace orvan::drawing
