// SPDX-License-Identifier: MIT
#include "text_bidi.h"

namespace orvan::drawing
{
namespace
{

constexpr char32_t kLeftEmbedding = 0x202a;
constexpr char32_t kRightEmbedding = 0x202b;
constexpr char32_t kPopEmbedding = 0x202c;
constexpr char32_t kLeftOverride = 0x202d;
constexpr char32_t kRightOverride = 0x202e;
constexpr char32_t kLeftIsolate = 0x2066;
constexpr char32_t kRightIsolate = 0x2067;
constexpr char32_t kFirstStrongIsolate = 0x2068;
constexpr char32_t kPopIsolate = 0x2069;

/// The marks around a span, by its "unicode-bidi".
struct Marks
{
	char32_t open[2] = {};
	char32_t close[2] = {};
	int depth = 0; ///< How many spans have marks, from the outermost to this one.
};

Marks GetMarks(const TextSpan& span) noexcept
{
	const bool isRight = span.frame->place.style.direction == SVGDirection::rightToLeft;
	const char32_t isolate = isRight ? kRightIsolate : kLeftIsolate;
	const char32_t override = isRight ? kRightOverride : kLeftOverride;
	switch (span.frame->GetKeyword(SVGImportAttribute::unicodeBidi, SVGUnicodeBidi::normal))
	{
	case SVGUnicodeBidi::normal:
		break;
	case SVGUnicodeBidi::embed:
		return {{isRight ? kRightEmbedding : kLeftEmbedding}, {kPopEmbedding}, 0};
	case SVGUnicodeBidi::isolate:
		return {{isolate}, {kPopIsolate}, 0};
	case SVGUnicodeBidi::bidiOverride:
		return {{override}, {kPopEmbedding}, 0};
	case SVGUnicodeBidi::isolateOverride:
		return {{isolate, override}, {kPopEmbedding, kPopIsolate}, 0};
	case SVGUnicodeBidi::plaintext:
		return {{kFirstStrongIsolate}, {kPopIsolate}, 0};
	}
	return {};
}

/// Writes the characters with their marks.
class BidiWriter
{
public:
	BidiWriter(const TextContent& content, BidiText& text) noexcept : _content(content), _text(text)
	{
	}

	Result<void> Write() noexcept
	{
		const BaseArray<TextCharacter>& characters = _content.GetCharacters();
		ORVAN_TRY(_text.places.Reserve(characters.GetCount()));
		ORVAN_TRY(_text.bytes.Reserve(characters.GetCount() + 1));
		const bool hasMarks = ORVAN_TRY(FindMarks());
		if (hasMarks)
			ORVAN_TRY(OpenChunk());
		for (std::size_t i = 0; i < characters.GetCount(); i++)
		{
			const TextCharacter& character = characters[i];
			if (hasMarks && character.startsChunk && i != 0)
			{
				ORVAN_TRY(LeaveTo(-1));
				ORVAN_TRY(Append(kPopIsolate));
				ORVAN_TRY(OpenChunk());
			}
			if (hasMarks && character.span != _span)
				ORVAN_TRY(MoveTo(character.span));
			ORVAN_TRY(_text.places.Append(static_cast<std::uint32_t>(_text.bytes.GetCount())));
			ORVAN_TRY(Append(character.code));
		}
		return {};
	}

private:
	/// Finds the marks of all spans. True when there is anything but characters from left to right.
	Result<bool> FindMarks() noexcept
	{
		constexpr char32_t kFirstFromTheRight = 0x590;
		// Marks are repeated in each chunk, and the algorithm itself knows a largest depth.
		constexpr int kDeepest = 16;
		bool hasAny = _text.isRightToLeft;
		for (const TextSpan& span : _content.GetSpans())
		{
			Marks marks = GetMarks(span);
			marks.depth = span.parent >= 0 ? _marks[static_cast<std::size_t>(span.parent)].depth : 0;
			if (marks.open[0] != 0 && ++marks.depth > kDeepest)
				marks = {{}, {}, marks.depth};
			hasAny = hasAny || marks.open[0] != 0;
			ORVAN_TRY(_marks.Append(marks));
		}
		if (hasAny)
			return true;
		const auto& characters = _content.GetCharacters();
		return std::any_of(characters.begin(), characters.end(),
						   [](const TextCharacter& character) { return character.code >= kFirstFromTheRight; });
	}

	/// What has a position of its own is ordered by itself.
	Result<void> OpenChunk() noexcept
	{
		return Append(_text.isRightToLeft ? kRightIsolate : kLeftIsolate);
	}

	int ParentOf(int span) const noexcept
	{
		return _content.GetSpans()[static_cast<std::size_t>(span)].parent;
	}

	bool IsWithin(int span, int outer) const noexcept
	{
		while (span > outer)
			span = ParentOf(span);
		return span == outer;
	}

	Result<void> LeaveTo(int outer) noexcept
	{
		for (; _span != outer; _span = ParentOf(_span))
			ORVAN_TRY(AppendAll(_marks[static_cast<std::size_t>(_span)].close));
		return {};
	}

	Result<void> MoveTo(int span) noexcept
	{
		int common = _span;
		while (common >= 0 && !IsWithin(span, common))
			common = ParentOf(common);
		ORVAN_TRY(LeaveTo(common));
		BaseArray<int> path;
		for (int at = span; at != common; at = ParentOf(at))
			ORVAN_TRY(path.Append(at));
		for (std::size_t i = path.GetCount(); i-- > 0;)
			ORVAN_TRY(AppendAll(_marks[static_cast<std::size_t>(path[i])].open));
		_span = span;
		return {};
	}

	Result<void> AppendAll(const char32_t (&marks)[2]) noexcept
	{
		for (const char32_t mark : marks)
			ORVAN_TRY(Append(mark));
		return {};
	}

	Result<void> Append(char32_t code) noexcept
	{
		if (code == 0)
			return {};
		char bytes[6];
		const int count = g_unichar_to_utf8(static_cast<gunichar>(code), bytes);
		return _text.bytes.AppendAll(bytes, static_cast<std::size_t>(count));
	}

	const TextContent& _content;
	BidiText& _text;
	BaseArray<Marks> _marks; ///< By span.
	int _span = -1;          ///< The span that is open, with those around it.
};

} // namespace

Result<BidiText> BidiText::Create(const TextContent& content) noexcept
{
	BidiText text;
	text.isRightToLeft = content.GetSpans()[0].frame->place.style.direction == SVGDirection::rightToLeft;
	ORVAN_TRY(BidiWriter(content, text).Write());
	return text;
}

} // namespace orvan::drawing
