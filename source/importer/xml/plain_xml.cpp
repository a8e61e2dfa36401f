// SPDX-License-Identifier: MIT
#include "plain_xml.h"

#include "importer/attributes/attribute_names.h"
#include "importer/tags.h"
#include "importer/xml/plain_prefixes.h"
#include "importer/xml/plain_scan.h"

#include <cstring>

namespace orvan::svg
{
namespace plain
{
namespace
{

constexpr ShortNameIndex kShortTags(kTags);
constexpr ShortNameIndex kShortAttributes(kPlainAttributeNames);

static_assert(kPlainAttributeNames[0].number == SVGImportAttribute{1},
			  "attributes stand in the order of their numbers");

constexpr NameWords kXmlPrefix = NameWords::Of("xml");
constexpr NameWords kXmlnsPrefix = NameWords::Of("xmlns");

/// Reads one text. What a function returns is the place behind what it has read, or null when that is not plain.
class Reader
{
public:
	Reader(std::string_view text, ElementTape& tape) noexcept : _tape(tape), _text(text)
	{
	}

	bool Run()
	{
		const char* at = _text.data() + (_text.starts_with("\xef\xbb\xbf") ? 3 : 0);
		at = SkipMisc(at);
		if (at == nullptr || *at != '<')
			return false;
		at = ReadRoot(at + 1);
		if (at == nullptr || _tape.First()->Kind() != SVGImportElementKind::svg)
			return false;
		at = SkipMisc(at);
		return at == _text.data() + _text.size();
	}

private:
	/// An element that has begun.
	struct Open
	{
		const char* name;
		std::size_t size;
		std::size_t outerPrefixes;
	};

	/// An attribute with a prefix, which may be declared behind it.
	struct Prefixed
	{
		NameWords prefix;
		TapeEntry* entry; ///< Null when the namespace does not matter: the name is known as it is written, or in none.
	};

	/// Moves over what may stand around the root, up to an element or the end.
	static const char* SkipMisc(const char* at) noexcept
	{
		for (;;)
		{
			at = SkipBlanks(at);
			if (*at == '\0' || (*at == '<' && at[1] != '!' && at[1] != '?'))
				return at;
			if (*at != '<')
				return nullptr;
			at = SkipMarkup(at + 1);
			if (at == nullptr)
				return nullptr;
		}
	}

	/// Moves over a comment or the like, from its "!" or "?".
	static const char* SkipMarkup(const char* at) noexcept
	{
		const std::string_view start(at, 8); // There are zeros behind the text.
		if (*at == '?')
			return SkipPast(at + 1, "?>");
		if (start.starts_with("!--"))
			return SkipPast(at + 3, "-->");
		if (start.starts_with("![CDATA["))
			return SkipPast(at + 8, "]]>");
		const char* const end = strchrnul(at, '>');
		const bool hasDeclarations = std::memchr(at, '[', static_cast<std::size_t>(end - at)) != nullptr;
		return *end == '\0' || hasDeclarations ? nullptr : end + 1;
	}

	/// Reads the root and all below it, from behind its "<".
	const char* ReadRoot(const char* at)
	{
		do
		{
			at = ReadStartTag(at);
			if (at == nullptr)
				return nullptr;
			if (_depth != 0)
				at = ReadContent(at);
		} while (at != nullptr && _depth != 0);
		return at;
	}

	/// Reads up to the name of a start tag, or the end of the root.
	const char* ReadContent(const char* at)
	{
		while (_depth != 0)
		{
			const char* const content = at;
			at = Find<'<'>(at);
			if (at == nullptr)
				return nullptr;
			if (_characters != nullptr) [[unlikely]]
				NoteCharacters(content, at);
			at++;
			if (*at == '/')
				at = ReadEndTag(at + 1);
			else if (*at == '!' || *at == '?')
				at = SkipMarkup(at);
			else
				break;
			if (at == nullptr)
				return nullptr;
		}
		return at;
	}

	/// A text element has the characters that come first in it.
	void NoteCharacters(const char* from, const char* markup) noexcept
	{
		constexpr std::string_view kStart = "<![CDATA[";
		if (SkipBlanks(from) < markup)
			SetCharacters(TapeMark::text, from, markup);
		else if (std::string_view(markup, kStart.size()) == kStart)
		{
			from = markup + kStart.size();
			if (const char* const end = SkipPast(from, "]]>"))
				SetCharacters(TapeMark::rawText, from, end - 3);
		}
		else if (markup[1] != '!' && markup[1] != '?')
			_characters = nullptr;
	}

	void SetCharacters(TapeMark mark, const char* from, const char* to) noexcept
	{
		*_characters = TapeEntry(mark, std::string_view(from, to));
		_characters = nullptr;
	}

	const char* ReadEndTag(const char* at)
	{
		const Open& open = _open[static_cast<std::size_t>(--_depth)];
		if (!AreSame(open.name, at, open.size))
			return nullptr;
		at += open.size;
		if (*at != '>') [[unlikely]]
		{
			at = SkipBlanks(at);
			if (*at != '>')
				return nullptr;
		}
		_prefixes.ReturnTo(open.outerPrefixes);
		_tape.Append(TapeEntry(TapeMark::end));
		return at + 1;
	}

	/// Reads a tag from its name on.
	const char* ReadStartTag(const char* at)
	{
		const char* const name = at;
		at = FindTagNameEnd(at);
		if (at == nullptr)
			return nullptr;
		const auto size = static_cast<std::size_t>(at - name);
		const std::uint8_t row = kShortTags.Find(name, size);
		NameParts parts;
		auto kind = SVGImportElementKind::unknown;
		if (row != 0) [[likely]]
			kind = kTags[row - 1u].kind;
		else
		{
			parts = PartName({name, size});
			if (!parts.isPlain)
				return nullptr;
			kind = KindOfTag({name, size});
		}
		TapeEntry& element = _tape.Append(TapeEntry(TapeMark::element, {name, size}, static_cast<std::uint8_t>(kind)));
		_prefixedCount = 0;
		const std::size_t outerPrefixes = _prefixes.GetCount();
		at = ReadAttributes(at);
		if (at == nullptr)
			return nullptr;
		if (parts.prefixSize != 0 && !ResolveElement(element, parts.prefixSize))
			return nullptr;
		if (_prefixedCount != 0 && !ResolveAttributes())
			return nullptr;
		if (_depth == kMaxDepth)
			return nullptr;
		_characters = nullptr;
		if (element.Kind() == SVGImportElementKind::text)
			_characters = &_tape.Append(TapeEntry(TapeMark::text));
		if (*at == '>')
		{
			_open[static_cast<std::size_t>(_depth++)] = {name, size, outerPrefixes};
			return at + 1;
		}
		if (at[1] != '>')
			return nullptr;
		_characters = nullptr;
		_prefixes.ReturnTo(outerPrefixes);
		_tape.Append(TapeEntry(TapeMark::end));
		return at + 2;
	}

	/// Reads attributes up to the ">" or "/" behind them.
	const char* ReadAttributes(const char* at)
	{
		for (;;)
		{
			if (*at == ' ')
				at++;
			if (!IsLetter(*at))
			{
				if (!EndsTag(*at))
					at = SkipBlanks(at);
				if (EndsTag(*at))
					return at;
			}
			const char* const name = at;
			at = FindEqualsSign(at);
			if (at == nullptr)
				return nullptr;
			const auto size = static_cast<std::size_t>(at - name);
			const char quote = at[1];
			const char* const value = at + 2;
			if (quote == '"') [[likely]]
				at = Find<'"'>(value);
			else if (quote == '\'')
				at = Find<'\''>(value);
			else
				return nullptr;
			if (at == nullptr)
				return nullptr;
			const std::string_view text(value, at++);
			if (const std::uint8_t number = kShortAttributes.Find(name, size); number != 0)
				_tape.Append(TapeEntry(TapeMark::attribute, text, number));
			else if (!NoteOther({name, size}, text))
				return nullptr;
		}
	}

	/// Takes an attribute whose name is no short one that is known.
	bool NoteOther(std::string_view name, std::string_view value)
	{
		const NameParts parts = PartName(name);
		if (!parts.isPlain)
			return false;
		const auto append = [&](SVGImportAttribute number)
		{
			return number == SVGImportAttribute::unknown
					   ? nullptr
					   : &_tape.Append(TapeEntry(TapeMark::attribute, value, static_cast<std::uint8_t>(number)));
		};
		if (parts.prefixSize == 0)
		{
			append(FindAttribute(name));
			return true;
		}
		const NameWords prefix = NameWords::Read(name.data(), parts.prefixSize);
		const std::string_view local = name.substr(parts.prefixSize + 1);
		if (prefix == kXmlPrefix)
			return true;
		if (prefix == kXmlnsPrefix)
			return local.size() <= NameWords::kLongest &&
				   _prefixes.Declare(NameWords::Read(local.data(), local.size()), value);
		if (_prefixedCount == _prefixed.size())
			return false;
		// The one name that is known with its prefix is so without it, too.
		TapeEntry* const entry = append(FindAttribute(local));
		const bool isByName = entry != nullptr && FindAttribute(name) != SVGImportAttribute::unknown;
		_prefixed[_prefixedCount++] = {prefix, isByName ? nullptr : entry};
		return true;
	}

	bool ResolveElement(TapeEntry& element, std::size_t prefixSize) const noexcept
	{
		const std::string_view name = element.Text();
		const Prefixes::Space space = _prefixes.Find(NameWords::Read(name.data(), prefixSize));
		if (space == Prefixes::Space::svg)
			element.SetNumber(static_cast<std::uint8_t>(KindOfTag(name.substr(prefixSize + 1))));
		return space != Prefixes::Space::undeclared;
	}

	/// Attributes whose namespace says that they are others count as unknown.
	bool ResolveAttributes() noexcept
	{
		for (std::size_t i = 0; i < _prefixedCount; i++)
		{
			const Prefixed& attribute = _prefixed[i];
			const Prefixes::Space space = _prefixes.Find(attribute.prefix);
			if (space == Prefixes::Space::undeclared)
				return false;
			if (attribute.entry == nullptr || space == Prefixes::Space::svg)
				continue;
			if (space != Prefixes::Space::xlink || attribute.entry->Attribute() != SVGImportAttribute::href)
				attribute.entry->SetNumber(0);
		}
		return true;
	}

	ElementTape& _tape;
	std::string_view _text;
	Prefixes _prefixes;
	TapeEntry* _characters = nullptr; ///< Of a text element in which nothing has come yet.
	std::size_t _prefixedCount = 0;
	int _depth = 0;
	std::array<Prefixed, 32> _prefixed; ///< Of the tag at hand.
	std::array<Open, kMaxDepth> _open;
};

} // namespace
} // namespace plain

bool ReadPlainXml(std::string_view text, ElementTape& tape)
{
	return plain::Reader(text, tape).Run();
}

} // namespace orvan::svg
