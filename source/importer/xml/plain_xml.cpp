// SPDX-License-Identifier: MIT
#include "plain_xml.h"

#include "importer/attributes/attribute_names.h"
#include "importer/tags.h"
#include "importer/xml/text_block.h"
#include "importer/xml/xml_guard.h"
#include "importer/xml/xml_names.h"

#include <bit>
#include <cstring>

namespace orvan::svg
{
namespace
{

constexpr ShortNameIndex kShortTags(kTags);
constexpr ShortNameIndex kShortAttributes(kPlainAttributeNames);

static_assert(kPlainAttributeNames[0].number == SVGImportAttribute{1},
			  "attributes stand in the order of their numbers");

constexpr NameWords kXmlPrefix = NameWords::Of("xml");
constexpr NameWords kXmlnsPrefix = NameWords::Of("xmlns");

/// Longer names are left to the library, and prefixes that are no short names.
constexpr std::size_t kLongestPlainName = 48;
static_assert(kLongestPlainName + TextBlock::kSize <= kTextPadding);

std::size_t FirstOf(std::uint32_t bits) noexcept
{
	return static_cast<unsigned>(std::countr_zero(bits));
}

const char* SkipBlanks(const char* at) noexcept
{
	for (;; at += TextBlock::kSize)
	{
		const std::uint32_t others = TextBlock(at).WhereBlank().Bits() ^ 0xffff;
		if (others != 0)
			return at + FirstOf(others);
	}
}

/// The first of the places that `find` finds in a name's next blocks; null when there is none as far as names reach.
template <typename FindPlaces>
const char* FindInName(const char* at, FindPlaces find) noexcept
{
	for (const char* const end = at + kLongestPlainName; at < end; at += TextBlock::kSize)
	{
		if (const std::uint32_t found = find(TextBlock(at)).Bits(); found != 0) [[likely]]
			return at + FirstOf(found);
	}
	return nullptr;
}

/// What cannot be part of an element's name, or is no ASCII, ends it, and is looked at afterwards.
const char* FindTagNameEnd(const char* at) noexcept
{
	return FindInName(at, [](const TextBlock& block)
					  { return block.WhereBelow('!') | block.Where('/') | block.Where('>'); });
}

const char* FindEqualsSign(const char* at) noexcept
{
	return FindInName(at, [](const TextBlock& block) { return block.Where('='); });
}

/// The next `c`; null when there is none.
template <char c>
const char* Find(const char* at) noexcept
{
	if (const std::uint32_t found = TextBlock(at).Where(c).Bits(); found != 0)
		return at + FirstOf(found);
	// What is not short is long, most of the time.
	at = strchrnul(at + TextBlock::kSize, c);
	return *at == c ? at : nullptr;
}

bool IsLetter(char c) noexcept
{
	return static_cast<unsigned char>((c | 0x20) - 'a') < 26;
}

/// Whether no attribute begins here.
bool EndsTag(char c) noexcept
{
	return c == '>' || c == '/';
}

/// The place behind the next `mark`, which ends with ">"; null when there is none.
const char* SkipPast(const char* at, std::string_view mark) noexcept
{
	const char* end = at;
	do
	{
		end = strchrnul(end, '>');
		if (*end++ == '\0')
			return nullptr;
	} while (!std::string_view(at, end).ends_with(mark));
	return end;
}

/// Where the prefix of a name ends.
struct NameParts
{
	std::size_t prefixSize = 0;
	bool isPlain = false;
};

/// Whether two names are the same; sixteen characters are readable at both.
bool AreSame(const char* one, const char* other, std::size_t size) noexcept
{
	if (size >= TextBlock::kSize) [[unlikely]]
		return std::memcmp(one, other, size) == 0;
	const std::uint32_t others = ~TextBlock(one).WhereAs(TextBlock(other)).Bits();
	return (others & ((std::uint32_t{1} << size) - 1)) == 0;
}

/// Looks at a name that may be any. The library takes more; but then it stops at other characters in an element's name
/// than in an attribute's.
NameParts PartName(std::string_view name) noexcept
{
	NameParts parts;
	if (name.empty() || name.size() > kLongestPlainName)
		return parts;
	for (std::size_t from = 0; from < name.size(); from += TextBlock::kSize)
	{
		const TextBlock block(name.data() + from);
		const std::size_t count = std::min(name.size() - from, TextBlock::kSize);
		const std::uint32_t inside = (std::uint32_t{1} << count) - 1;
		const auto odd = block.WhereBelow('-') | block.Where('/') | block.WhereBetween('<', '?');
		if ((odd.Bits() & inside) != 0)
			return parts;
		if (const std::uint32_t colons = block.Where(':').Bits() & inside; colons != 0)
		{
			// A colon parts a name once, and not at one of its ends.
			const std::size_t colon = from + FirstOf(colons);
			if (colon > NameWords::kLongest || parts.prefixSize != 0 || (colons & (colons - 1)) != 0 || colon == 0 ||
				colon + 1 == name.size())
				return parts;
			parts.prefixSize = colon;
		}
	}
	parts.isPlain = true;
	return parts;
}

/// The prefixes that are declared where the reader is.
class Prefixes
{
public:
	enum class Space
	{
		undeclared,
		svg,
		xlink,
		other
	};

	/// False when there are more than plain texts have.
	bool Declare(const NameWords& prefix, std::string_view space) noexcept
	{
		if (_count == _declared.size() || _declarations == kMaxNamespacePrefixes)
			return false;
		_declarations++;
		_declared[_count++] = {prefix, space == kSvgNamespace     ? Space::svg
									   : space == kXlinkNamespace ? Space::xlink
																  : Space::other};
		return true;
	}

	/// The last declaration of a prefix holds.
	Space Find(const NameWords& prefix) const noexcept
	{
		for (std::size_t i = _count; i-- != 0;)
		{
			if (_declared[i].prefix == prefix)
				return _declared[i].space;
		}
		return Space::undeclared;
	}

	std::size_t GetCount() const noexcept
	{
		return _count;
	}

	/// Forgets all but the first ones.
	void ReturnTo(std::size_t count) noexcept
	{
		_count = count;
	}

private:
	struct Declared
	{
		NameWords prefix;
		Space space;
	};

	std::array<Declared, 32> _declared;
	std::size_t _count = 0;
	int _declarations = 0; ///< Of all up to here.
};

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

bool ReadPlainXml(std::string_view text, ElementTape& tape)
{
	return Reader(text, tape).Run();
}

} // namespace orvan::svg
