// SPDX-License-Identifier: MIT
#include "text_content.h"

#include "conditions.h"
#include "references.h"
#include "shapes.h"
#include "svg_complete.h"
#include "text_baselines.h"
#include "text_capitals.h"
#include "text_characters.h"
#include "text_orientation.h"

#include <new>
#include <utility>

namespace orvan::drawing
{
namespace
{

using Key = SVGImportAttribute;

/// Positions beyond this, which are far outside of every picture, would add up to what is no number.
constexpr double kFarthest = 1e15;

/// What a curve of a path takes that text runs along, its straight pieces included.
constexpr double kBytesPerCommand = 512.0;

} // namespace

/// Walks a text and writes down what it finds.
class TextCollector
{
public:
	TextCollector(Scene& scene, TextContent& content) noexcept : _scene(scene), _content(content)
	{
	}

	Result<void> Collect(const Frame& text) noexcept
	{
		_content._writingMode = text.place.style.writingMode;
		const Borrowed<HierarchyObjectInterface> hierarchy(text.element);
		bool hasParts = false;
		for (auto child = hierarchy->GetFirstChild(); child && !hasParts; child = child->GetNextSibling())
			hasParts = IsPart(TypeOf(child.GetObject()));
		if (hasParts)
			return Enter(text, -1, -1);
		const int span = ORVAN_TRY(AddSpan(text, -1, -1));
		ORVAN_TRY(AppendLists(text, -1));
		const BaseArray<char> characters =
			ORVAN_TRY(CollapseSpace(Borrowed<SVGTextElementInterface>(text.element)->GetText().View()));
		ORVAN_TRY(Append({characters.begin(), characters.GetCount()}, span));
		_content._spans[0].end = GetCount();
		return {};
	}

private:
	/// What an element says about the positions of its characters.
	struct Lists
	{
		const Frame* frame;
		int path;
		std::uint32_t first;
		const BaseArray<SVGLength>* dx;
		const BaseArray<SVGLength>* dy;
		const BaseArray<SVGLength>* x;
		const BaseArray<SVGLength>* y;
		const SVGLength* firstX; ///< Where there is no list.
		const SVGLength* firstY;
		const BaseArray<Float>* rotations;
	};

	std::uint32_t GetCount() const noexcept
	{
		return static_cast<std::uint32_t>(_content._characters.GetCount());
	}

	static SVGImportElementKind TypeOf(ObjectBase* object) noexcept
	{
		const Borrowed<SVGElementInterface> element(object);
		return element ? element->GetElementType() : SVGImportElementKind::unknown;
	}

	static bool IsPart(SVGImportElementKind kind) noexcept
	{
		return kind == SVGImportElementKind::textRun || kind == SVGImportElementKind::tspan ||
			   kind == SVGImportElementKind::textPath || kind == SVGImportElementKind::anchor;
	}

	/// The kind of what may be part of a text; unknown for all else, and for what is not displayed.
	SVGImportElementKind KindOf(ObjectBase* object) const noexcept
	{
		const SVGImportElementKind kind = TypeOf(object);
		if (kind == SVGImportElementKind::textRun)
			return kind;
		const Borrowed<SVGElementInterface> element(object);
		const bool isShown = IsPart(kind) && element->GetDisplay() != SVGDisplay::none &&
							 PassesConditions(element->GetAttributeDictionary(), _scene.language);
		return isShown ? kind : SVGImportElementKind::unknown;
	}

	Result<void> Enter(const Frame& frame, int parent, int path) noexcept
	{
		const int span = ORVAN_TRY(AddSpan(frame, parent, path));
		ORVAN_TRY(AppendLists(frame, path));
		if (const auto* link = frame.attributes.Find<String>(static_cast<std::int32_t>(Key::link));
			link != nullptr && IsTextReference(frame.element))
			ORVAN_TRY(AppendReferenced(*link, span));
		const Borrowed<HierarchyObjectInterface> hierarchy(frame.element);
		for (auto child = hierarchy->GetFirstChild(); child && !_isFull; child = child->GetNextSibling())
		{
			const SVGImportElementKind kind = KindOf(child.GetObject());
			if (kind == SVGImportElementKind::textRun)
				ORVAN_TRY(AppendRun(Borrowed<SVGTextRunInterface>(child)->GetText(), frame, span));
			else if (kind != SVGImportElementKind::unknown)
				ORVAN_TRY(EnterPart(child.GetObject(), kind, frame, span, path));
			else
				_hasSkipped = _hasSkipped || IsPart(TypeOf(child.GetObject()));
		}
		ORVAN_TRY(_lists.Resize(_lists.GetCount() - 1));
		_content._spans[static_cast<std::size_t>(span)].end = GetCount();
		return {};
	}

	/// Appends a run's characters. The tree does not know what is displayed: behind a part that is not, a blank may
	/// come to stand at the start or beside another one, where there is none.
	Result<void> AppendRun(const String& text, const Frame& frame, int span) noexcept
	{
		std::string_view characters = text.View();
		const bool isBehindBlank = GetCount() == 0 || _content._characters[GetCount() - 1].code == ' ';
		if (_hasSkipped && isBehindBlank && characters.starts_with(' ') && !PreservesSpace(frame))
			characters.remove_prefix(1);
		_hasSkipped = _hasSkipped && characters.empty();
		return Append(characters, span);
	}

	static bool PreservesSpace(const Frame& frame) noexcept
	{
		for (const Frame* at = &frame; at != nullptr; at = at->outer)
		{
			if (at->attributes.Has(static_cast<std::int32_t>(Key::whiteSpace)))
			{
				const auto value = at->GetKeyword(Key::whiteSpace, SVGWhiteSpace::normal);
				return value != SVGWhiteSpace::normal && value != SVGWhiteSpace::nowrap &&
					   value != SVGWhiteSpace::preLine;
			}
		}
		return false;
	}

	/// True for a text, and for a link that stands in one.
	static bool IsInTextItself(const Frame& frame) noexcept
	{
		const Frame* at = &frame;
		while (Borrowed<SVGElementInterface>(at->element)->GetElementType() == SVGImportElementKind::anchor &&
			   at->outer != nullptr)
			at = at->outer;
		return Borrowed<SVGElementInterface>(at->element)->GetElementType() == SVGImportElementKind::text;
	}

	/// True for what has characters of another text: "tref" is a tspan with a link.
	static bool IsTextReference(ObjectBase* element) noexcept
	{
		return Borrowed<SVGElementInterface>(element)->GetElementType() == SVGImportElementKind::tspan;
	}

	/// Appends all characters of the element that a reference names, as those of one span.
	Result<void> AppendReferenced(const String& link, int span) noexcept
	{
		const SVGElementRef found = ORVAN_TRY(FindElement(_scene, link));
		const Borrowed<HierarchyObjectInterface> hierarchy(found);
		return hierarchy ? AppendRunsBelow(hierarchy, span, 0) : Result<void>();
	}

	Result<void> AppendRunsBelow(const Borrowed<HierarchyObjectInterface>& parent, int span, int depth) noexcept
	{
		for (auto child = parent->GetFirstChild(); child && !_isFull && depth < kMaxDepth;
			 child = child->GetNextSibling())
		{
			if (const Borrowed<SVGTextRunInterface> run(child); run)
				ORVAN_TRY(Append(run->GetText().View(), span));
			else if (const Borrowed<HierarchyObjectInterface> below(child); below)
				ORVAN_TRY(AppendRunsBelow(below, span, depth + 1));
		}
		return {};
	}

	Result<void> EnterPart(ObjectBase* element, SVGImportElementKind kind, const Frame& outer, int parent,
						   int path) noexcept
	{
		std::unique_ptr<Frame> made(new (std::nothrow) Frame(element, outer.place, &outer, _scene.limits));
		if (made == nullptr)
			return OutOfMemoryError();
		Frame& frame = *made;
		// Parts of a text have no transform of their own.
		frame.place.transform = outer.place.transform;
		ORVAN_TRY(_content._frames.Append(std::move(made)));
		if (frame.depth > kMaxDepth || _scene.limits.IsOver())
			return {};
		if (kind != SVGImportElementKind::textPath)
			return Enter(frame, parent, path);
		// A path does not run along another one, nor does it stand in a part of a text.
		if (path >= 0 || !IsInTextItself(outer))
			return {};
		const int own = ORVAN_TRY(AddPath(frame));
		if (own < 0)
			return {};
		const std::size_t span = _content._spans.GetCount();
		const std::uint32_t first = GetCount();
		ORVAN_TRY(Enter(frame, parent, own));
		_content._spans[span].isPathStart = true;
		if (first < GetCount())
			_content._characters[first].startsChunk = true;
		return {};
	}

	/// The path that a textPath has or names; -1 when there is none.
	Result<int> AddPath(const Frame& frame) noexcept
	{
		TextPath path;
		double counted = 0.0;
		if (const auto* given = frame.attributes.Find<BaseArray<SVGPathCommand>>(static_cast<std::int32_t>(Key::path)))
		{
			if (!PayForPath(given->GetCount()))
				return -1;
			BaseArray<SVGPathCommand> commands;
			ORVAN_TRY(commands.CopyFrom(*given));
			path.outline = Outline(std::move(commands));
		}
		else
		{
			const String link = Borrowed<SVGLinkInterface>(frame.element)->GetLink();
			const SVGElementRef found = ORVAN_TRY(FindElement(_scene, link));
			const ShapeKind kind = GetShapeKind(found.GetObject());
			if (kind == ShapeKind::none)
				return -1;
			const Frame pathFrame(found.GetObject(), frame.place, &frame, _scene.limits);
			const Outline outline = ORVAN_TRY(GetOutline(kind, found.GetObject(), pathFrame));
			if (!PayForPath(outline.GetCommands().GetCount()))
				return -1;
			ORVAN_TRY(path.outline.Append(outline, found->GetLocalTransform()));
			counted = pathFrame.GetOr(Key::pathLength, 0.0);
		}
		path.isReversed = frame.GetKeyword(Key::side, SVGTextPathSide::left) == SVGTextPathSide::right;
		if (const auto* offset = frame.attributes.Find<SVGLength>(static_cast<std::int32_t>(Key::startOffset)))
		{
			path.startOffset = offset->unit == SVGLengthUnit::percent ? offset->value * path.outline.GetLength()
																	  : frame.Resolve(*offset, Axis::other);
			// A path may count its length otherwise.
			if (offset->unit != SVGLengthUnit::percent && counted > 0.0)
				path.startOffset *= path.outline.GetLength() / counted;
		}
		ORVAN_TRY(_content._paths.Append(std::move(path)));
		return static_cast<int>(_content._paths.GetCount()) - 1;
	}

	bool PayForPath(std::size_t commands) noexcept
	{
		const auto count = static_cast<double>(commands);
		return _scene.limits.Pay(count * kCommandWork) && _scene.limits.Hold(count * kBytesPerCommand);
	}

	/// True for an element that names the line that its characters are aligned by.
	static bool SaysBaseline(const Frame& frame) noexcept
	{
		switch (frame.GetKeyword(Key::dominantBaseline, SVGBaseline::automatic))
		{
		case SVGBaseline::automatic:
		case SVGBaseline::noChange:
		case SVGBaseline::resetSize:
			return false;
		default:
			return true;
		}
	}

	Result<int> AddSpan(const Frame& frame, int parent, int path) noexcept
	{
		const Style& style = frame.place.style;
		TextSpan span;
		span.frame = &frame;
		span.parent = parent;
		span.path = path;
		span.first = GetCount();
		if (style.fontSize > 0.0 && std::isfinite(style.fontSize))
		{
			span.font = ORVAN_TRY(_scene.fonts.Find(style));
			span.size = style.fontSize;
			if (style.fontSizeAdjust >= 0.0 && span.font != nullptr)
				span.size *= style.fontSizeAdjust / span.font->metrics.xHeight;
		}
		if (span.size * GetStretch(frame.place.transform) > kMaxFontSize)
		{
			_scene.limits.Omit(Omission::fontSize);
			span.font = nullptr;
		}
		if (const auto* length = frame.attributes.Find<SVGLength>(static_cast<std::int32_t>(Key::textLength)))
		{
			const double value = frame.Resolve(*length, _content.IsVertical() ? Axis::vertical : Axis::horizontal);
			span.textLength = value > 0.0 && std::isfinite(value) ? value : -1.0;
		}
		span.stretchesGlyphs =
			frame.GetKeyword(Key::lengthAdjust, SVGLengthAdjust::spacing) != SVGLengthAdjust::spacing;
		// What the spans around it say is added up; the baseline that is aligned is each one's own.
		double moved = 0.0;
		if (parent >= 0)
		{
			moved = GetBaselineShift(frame, span.font, span.size);
			const TextSpan& outer = _content._spans[static_cast<std::size_t>(parent)];
			moved += _moved[static_cast<std::size_t>(parent)];
			span.opacity = outer.opacity * frame.effects.opacity;
		}
		ORVAN_TRY(_moved.Append(moved));
		// A part of a text that has no line of its own takes that of what is around it.
		SVGBaseline dominant = style.dominantBaseline;
		if (parent >= 0 && !SaysBaseline(frame))
			dominant = _dominant[static_cast<std::size_t>(parent)];
		ORVAN_TRY(_dominant.Append(dominant));
		const auto alignment = frame.GetKeyword(Key::alignmentBaseline, SVGBaseline::automatic);
		const bool isAligned = alignment != SVGBaseline::automatic && alignment != SVGBaseline::baseline;
		// Letters that are all turned stand on their baseline, others beside it in the middle.
		const bool isUpright = HasUprightLetters(_content._writingMode, style);
		const double baseline =
			span.font != nullptr ? GetBaseline(isAligned ? alignment : dominant, span.font->metrics, isUpright) : 0.0;
		span.shift = moved - baseline * span.size;
		ORVAN_TRY(_content._spans.Append(span));
		return static_cast<int>(_content._spans.GetCount()) - 1;
	}

	Result<void> AppendLists(const Frame& frame, int path) noexcept
	{
		const auto find = [&]<typename T>(Key key, const T*& found)
		{
			found = frame.attributes.Find<T>(static_cast<std::int32_t>(key));
		};
		Lists lists{&frame, path, GetCount(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
		find(Key::dx, lists.dx);
		find(Key::dy, lists.dy);
		find(Key::xList, lists.x);
		find(Key::yList, lists.y);
		if (lists.x == nullptr)
			find(Key::x, lists.firstX);
		if (lists.y == nullptr)
			find(Key::y, lists.firstY);
		find(Key::rotate, lists.rotations);
		return _lists.Append(lists);
	}

	/// Appends characters with what the elements around them say, the innermost last.
	Result<void> Append(std::string_view text, int span) noexcept
	{
		if (text.empty())
			return {};
		// Bytes that are no characters would be reported on the console by the font library.
		char* const repaired = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
		Result<void> done;
		for (const char* at = repaired; *at != '\0' && done.IsOk(); at = g_utf8_next_char(at))
		{
			_bytes += static_cast<std::size_t>(g_utf8_next_char(at) - at);
			if (_bytes > kMaxTextBytes)
			{
				_scene.limits.Omit(Omission::text);
				_isFull = true;
				break;
			}
			done = AppendTransformed(static_cast<char32_t>(g_utf8_get_char(at)), span);
		}
		g_free(repaired);
		return done;
	}

	/// Appends a character as "text-transform" wants it, two for a sharp s.
	Result<void> AppendTransformed(char32_t code, int span) noexcept
	{
		const char32_t previous = std::exchange(_previous, code);
		const Style& style = _content._spans[static_cast<std::size_t>(span)].frame->place.style;
		switch (style.textTransform)
		{
		case SVGTextTransform::none:
			break;
		case SVGTextTransform::capitalize:
			// Letters behind an apostrophe go on with their word.
			if (g_unichar_isalnum(previous) == 0 && previous != '\'' && previous != U'\u2019')
				return Append(static_cast<char32_t>(g_unichar_totitle(code)), span);
			break;
		case SVGTextTransform::uppercase:
			// The one letter in use that two capitals stand for.
			if (code == U'\u00df')
				ORVAN_TRY(Append('S', span));
			return Append(code == U'\u00df' ? U'S' : static_cast<char32_t>(g_unichar_toupper(code)), span);
		case SVGTextTransform::lowercase:
			return Append(static_cast<char32_t>(g_unichar_tolower(code)), span);
		}
		return Append(code, span);
	}

	Result<void> Append(char32_t code, int span) noexcept
	{
		const TextSpan& owner = _content._spans[static_cast<std::size_t>(span)];
		TextCharacter character;
		character.code = code;
		character.span = span;
		const std::uint32_t index = GetCount();
		for (const Lists& lists : _lists)
			Place(character, lists, index - lists.first);
		if (index == 0)
			character.startsChunk = true;
		else if (JoinsWithPrevious(code, _content._characters[index - 1].code))
			character.startsChunk = false;
		const SVGFontVariant variant = owner.frame->place.style.fontVariant;
		if (owner.font != nullptr && !HasCapitals(*owner.font, variant))
		{
			const auto capital = static_cast<char32_t>(g_unichar_toupper(code));
			character.isSmallCapital = IsSmall(variant, capital != code);
			character.code = character.isSmallCapital ? capital : code;
		}
		return _content._characters.Append(character);
	}

	void Place(TextCharacter& character, const Lists& lists, std::size_t index) const noexcept
	{
		const auto read = [&](const BaseArray<SVGLength>* list, const SVGLength* first, Axis axis, double& value)
		{
			const SVGLength* found = first != nullptr && index == 0                ? first
									 : list != nullptr && index < list->GetCount() ? &(*list)[index]
																				   : nullptr;
			if (found == nullptr)
				return false;
			value = lists.frame->Resolve(*found, axis);
			value = std::isfinite(value) ? std::clamp(value, -kFarthest, kFarthest) : 0.0;
			return true;
		};
		const bool isVertical = _content.IsVertical();
		const bool hasX = read(lists.x, lists.firstX, Axis::horizontal, character.x);
		const bool hasY = read(lists.y, lists.firstY, Axis::vertical, character.y);
		read(lists.dx, nullptr, Axis::horizontal, character.dx);
		const bool hasDy = read(lists.dy, nullptr, Axis::vertical, character.dy);
		if (_content.RunsUpwards() && lists.path < 0)
		{
			character.y = hasY ? -character.y : character.y;
			character.dy = hasDy ? -character.dy : character.dy;
		}
		// On a path only the position along it counts.
		if (lists.path >= 0 && hasX && isVertical)
			character.x = kUnsaid;
		if (lists.path >= 0 && hasY && !isVertical)
			character.y = kUnsaid;
		const bool startsChunk = lists.path < 0 ? hasX || hasY : isVertical ? hasY : hasX;
		character.startsChunk = character.startsChunk || startsChunk;
		if (lists.rotations == nullptr || lists.rotations->IsEmpty())
			return;
		const std::size_t last = lists.rotations->GetCount() - 1;
		character.rotation = (*lists.rotations)[std::min(index, last)];
	}

	Scene& _scene;
	TextContent& _content;
	BaseArray<Lists> _lists;          ///< Of the elements that are open.
	BaseArray<SVGBaseline> _dominant; ///< The line that each span is aligned by.
	BaseArray<double> _moved;         ///< How far each span is moved upwards, those around it included.
	std::size_t _bytes = 0;
	char32_t _previous = ' '; ///< The last character that was appended, as the file has it.
	bool _isFull = false;
	bool _hasSkipped = false; ///< Since the last run that was appended.
};

Result<TextContent> TextContent::Collect(Scene& scene, const Frame& frame) noexcept
{
	TextContent content;
	TextCollector collector(scene, content);
	ORVAN_TRY(collector.Collect(frame));
	return content;
}

} // namespace orvan::drawing
