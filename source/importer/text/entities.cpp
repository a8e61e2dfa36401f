// SPDX-License-Identifier: MIT
#include "importer/text/entities.h"

#include "importer/text/encoding.h"
#include "importer/xml/xml_guard.h"
#include "orvan/hash_map.h"
#include "orvan/string.h"

#include <algorithm>

namespace orvan::svg
{
namespace
{

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kEntityDeclaration = "<!ENTITY";

/// Where a declaration ends that begins at `at`: behind the ">" that stands in no value; npos when it is none. Values
/// stand behind blanks.
std::size_t FindEndOfDeclaration(std::string_view text, std::size_t at) noexcept
{
	while ((at = text.find_first_of("\"'>", at)) != text.npos && text[at] != '>')
	{
		const std::size_t end = text.find(text[at], at + 1);
		if (end == text.npos || kBlanks.find(text[at - 1]) == text.npos)
			return text.npos;
		at = end + 1;
	}
	return at == text.npos ? at : at + 1;
}

/// What ends that which stands in a subset in front of `rest`; empty for declarations.
std::string_view EndMarkOf(std::string_view rest) noexcept
{
	return rest.starts_with("<!--") ? "-->" : rest.starts_with("<?") ? "?>" : rest.starts_with('%') ? ";" : "";
}

/// Where the bracket stands that ends a subset. Those in declarations, comments and processing instructions do not.
/// npos when something stands there that does not belong there: behind a quotation mark too many, the rest of the file
/// would seem to.
std::size_t FindEndOfSubset(std::string_view text, std::size_t at) noexcept
{
	while ((at = text.find_first_not_of(kBlanks, at)) != text.npos && text[at] != ']')
	{
		const std::string_view rest = text.substr(at);
		const std::string_view mark = EndMarkOf(rest);
		if (mark.empty())
			at = rest.starts_with("<!") ? FindEndOfDeclaration(text, at) : rest.npos;
		else if ((at = text.find(mark, at)) != text.npos)
			at += mark.size();
		if (at == text.npos)
			break;
	}
	return at;
}

/// An internal subset, with its brackets; empty when there is none.
std::string_view FindSubset(std::string_view text) noexcept
{
	// Comments and processing instructions may come first, and may hold anything.
	for (std::size_t at = 0; (at = text.find('<', at)) != text.npos;)
	{
		const std::string_view rest = text.substr(at);
		std::string_view end;
		if (rest.starts_with("<!--"))
			end = "-->";
		else if (rest.starts_with("<?"))
			end = "?>";
		else if (!rest.starts_with("<!DOCTYPE"))
			return {};
		else
		{
			const std::size_t open = rest.find_first_of("[>");
			const std::size_t last =
				open == rest.npos || rest[open] == '>' ? rest.npos : FindEndOfSubset(rest, open + 1);
			return last == rest.npos ? std::string_view() : rest.substr(open, last + 1 - open);
		}
		at = text.find(end, at);
		if (at == text.npos)
			return {};
	}
	return {};
}

/// Reads the declarations of an internal subset.
class SubsetReader
{
public:
	explicit SubsetReader(std::string_view subset) noexcept : _rest(subset)
	{
	}

	/// The next general entity with a value of its own; false behind the last.
	bool Next(std::string_view& name, std::string_view& value) noexcept
	{
		while (true)
		{
			const std::size_t at = _rest.find('<');
			if (at == _rest.npos)
				return false;
			_rest.remove_prefix(at);
			if (_rest.starts_with("<!--"))
				SkipPast("-->");
			else if (_rest.starts_with("<?"))
				SkipPast("?>");
			else
			{
				std::string_view declaration = _rest.substr(0, FindEndOfDeclaration(_rest, 0));
				_rest.remove_prefix(declaration.size());
				if (ReadEntity(declaration, name, value))
					return true;
			}
		}
	}

private:
	void SkipPast(std::string_view mark) noexcept
	{
		const std::size_t at = _rest.find(mark);
		_rest.remove_prefix(at == _rest.npos ? _rest.size() : at + mark.size());
	}

	/// Takes a word from the front of a declaration.
	static std::string_view Word(std::string_view& declaration) noexcept
	{
		declaration.remove_prefix(std::min(declaration.find_first_not_of(kBlanks), declaration.size()));
		const std::string_view word = declaration.substr(0, declaration.find_first_of(" \t\r\n\"'>"));
		declaration.remove_prefix(word.size());
		return word;
	}

	static bool ReadEntity(std::string_view declaration, std::string_view& name, std::string_view& value) noexcept
	{
		if (!declaration.starts_with(kEntityDeclaration))
			return false;
		declaration.remove_prefix(kEntityDeclaration.size());
		name = Word(declaration);
		const std::string_view keyword = name == "%" ? name : Word(declaration);
		const bool isInternal =
			!name.empty() && keyword.empty() && (declaration.starts_with('"') || declaration.starts_with('\''));
		if (isInternal)
			value = declaration.substr(1, declaration.find(declaration[0], 1) - 1);
		return isInternal;
	}

	std::string_view _rest;
};

/// Puts a text together in which references are replaced.
class Expander
{
public:
	Expander(std::string_view text, PositionMap& positions) noexcept : _text(text), _positions(positions)
	{
	}

	Result<BaseArray<char>> Run()
	{
		const std::string_view subset = FindSubset(_text);
		ORVAN_TRY(ReadDeclarations(subset));
		ORVAN_TRY(_result.Reserve(_text.size() + _text.size() / 8));
		const auto start = static_cast<std::size_t>(subset.data() + subset.size() - _text.data());
		ORVAN_TRY(Copy(0, start));
		HideBrackets(subset);
		ORVAN_TRY(ExpandMarkup(start));
		return std::move(_result);
	}

private:
	enum class Context
	{
		content,
		attribute,
	};

	struct Entity
	{
		std::string_view value;
		bool isOpen = false; ///< Its value is being put in.
	};

	/// The XML parser takes the brackets in values for those of the subset. It wants nothing else of what stands there.
	void HideBrackets(std::string_view subset) noexcept
	{
		for (std::size_t at = 1; at + 1 < subset.size(); at++)
		{
			if (subset[at] == '[' || subset[at] == ']')
				_result[static_cast<std::size_t>(subset.data() + at - _text.data())] = ' ';
		}
	}

	Result<void> ReadDeclarations(std::string_view subset)
	{
		SubsetReader reader(subset);
		for (std::string_view name, value; reader.Next(name, value);)
		{
			if (_entities.GetCount() == kMaxEntities)
				throw XmlError("more than 4096 entities are declared", name.data());
			// The first declaration of a name holds.
			if (ORVAN_TRY(_numbers.Insert(ORVAN_TRY(String::Create(name)), _entities.GetCount())))
				ORVAN_TRY(_entities.Append({ORVAN_TRY(ReplaceCharacters(value))}));
		}
		return {};
	}

	/// References to characters are replaced where a value is declared, those to entities where it is used: "&#38;#60;"
	/// declares "&#60;", which is "<" in a text.
	Result<std::string_view> ReplaceCharacters(std::string_view value)
	{
		if (value.find("&#") == value.npos)
			return value;
		BaseArray<char> text;
		ORVAN_TRY(text.Reserve(value.size()));
		while (!value.empty())
		{
			const std::size_t before = std::min(value.find("&#"), value.size());
			ORVAN_TRY(text.AppendAll(value.data(), before));
			value.remove_prefix(before);
			if (value.empty())
				break;
			// What is no reference throws.
			const std::string_view reference = value.substr(0, std::min(value.find(';'), value.size() - 1) + 1);
			char character[4];
			const char* const end = DecodeReferences(reference, character, XmlReferences::legal);
			ORVAN_TRY(text.AppendAll(character, static_cast<std::size_t>(end - character)));
			value.remove_prefix(reference.size());
		}
		const std::string_view view(text.begin(), text.GetCount());
		ORVAN_TRY(_replaced.Append(std::move(text)));
		return view;
	}

	Result<void> Copy(std::size_t from, std::size_t to) noexcept
	{
		const std::size_t count = _result.GetCount();
		ORVAN_TRY(_result.ResizeUninitialized(count + (to - from)));
		std::copy_n(_text.data() + from, to - from, _result.begin() + count);
		return {};
	}

	/// Walks the markup behind the document type, so that comments, CDATA sections and processing instructions stay as
	/// they are.
	Result<void> ExpandMarkup(std::size_t at)
	{
		while (at < _text.size())
		{
			const std::size_t markup = std::min(_text.find('<', at), _text.size());
			ORVAN_TRY(ExpandRange(at, markup, Context::content));
			at = markup;
			const std::string_view rest = _text.substr(at);
			std::string_view end;
			if (rest.starts_with("<!--"))
				end = "-->";
			else if (rest.starts_with("<![CDATA["))
				end = "]]>";
			else if (rest.starts_with("<?"))
				end = "?>";
			else if (rest.starts_with("<!"))
				end = ">"; // As the XML parser skips what it does not know.
			else
			{
				at = ORVAN_TRY(ExpandTag(at));
				continue;
			}
			const std::size_t close = _text.find(end, at);
			const std::size_t next = close == _text.npos ? _text.size() : close + end.size();
			ORVAN_TRY(Copy(at, next));
			at = next;
		}
		return {};
	}

	/// Returns where the tag ends.
	Result<std::size_t> ExpandTag(std::size_t at)
	{
		const std::size_t nameEnd = std::min(_text.find_first_of(" \t\r\n/>", at), _text.size());
		ORVAN_TRY(Copy(at, nameEnd));
		at = nameEnd;
		while (at < _text.size())
		{
			const std::size_t stop = std::min(_text.find_first_of("\"'>", at), _text.size());
			const std::size_t next = std::min(stop + 1, _text.size());
			ORVAN_TRY(Copy(at, next));
			at = next;
			if (stop == _text.size() || _text[stop] == '>')
				break;
			// For the XML parser, quotation marks elsewhere are parts of names.
			const std::size_t before = _text.find_last_not_of(kBlanks, stop - 1);
			if (before < nameEnd || _text[before] != '=')
				continue;
			const std::size_t quote = std::min(_text.find(_text[stop], at), _text.size());
			ORVAN_TRY(ExpandRange(at, quote, Context::attribute));
			ORVAN_TRY(Copy(quote, std::min(quote + 1, _text.size())));
			at = std::min(quote + 1, _text.size());
		}
		return at;
	}

	Result<void> ExpandRange(std::size_t from, std::size_t to, Context context)
	{
		while (from < to)
		{
			const std::size_t ampersand = std::min(_text.find('&', from), to);
			ORVAN_TRY(Copy(from, ampersand));
			from = ampersand;
			if (from == to)
				break;
			const std::string_view name = NameAt(_text.substr(0, to), from);
			Entity* const entity = Find(name);
			if (entity == nullptr)
			{
				ORVAN_TRY(Copy(from, from + 1));
				from++;
				continue;
			}
			const std::size_t start = _result.GetCount();
			_reference = _text.data() + from;
			_left = kMaxEntitySize;
			ORVAN_TRY(Put(*entity, context));
			_growth += _result.GetCount() - start;
			if (_growth > kMaxEntityGrowth * std::max(_text.size(), kMaxEntitySize))
				throw XmlError("the entities come to more than ten times the file", _reference);
			const std::size_t end = from + name.size() + 2;
			ORVAN_TRY(_positions.Note(start, _result.GetCount(), from, end));
			from = end;
		}
		return {};
	}

	/// The name in the reference at `at`, where a "&" stands; empty when there is none.
	static std::string_view NameAt(std::string_view text, std::size_t at) noexcept
	{
		constexpr std::size_t kLongestName = 256;
		const std::string_view name = text.substr(at + 1, kLongestName);
		const std::size_t end = name.find(';');
		return end == name.npos ? std::string_view() : name.substr(0, end);
	}

	Entity* Find(std::string_view name) noexcept
	{
		const std::size_t* const number = name.empty() ? nullptr : _numbers.Find(name);
		return number != nullptr ? &_entities[*number] : nullptr;
	}

	/// Puts in what an entity stands for; the depth is that of declared entities within each other.
	Result<void> Put(Entity& entity, Context context)
	{
		if (entity.isOpen)
			throw XmlError("an entity contains itself", _reference);
		entity.isOpen = true;
		TakeRoom(1); // Entities that come to nothing take time, too.
		if (++_depth > kMaxDepthOfEntities)
			throw XmlError("entities are nested more than 64 deep", _reference);
		const std::string_view value = entity.value;
		for (std::size_t at = 0; at < value.size();)
		{
			const char c = value[at];
			if (c == '&')
			{
				const std::string_view name = NameAt(value, at);
				if (Entity* const inner = Find(name))
				{
					ORVAN_TRY(Put(*inner, context));
					at += name.size() + 2;
					continue;
				}
			}
			ORVAN_TRY(PutCharacter(c, context));
			at++;
		}
		_depth--;
		entity.isOpen = false;
		return {};
	}

	Result<void> PutCharacter(char c, Context context)
	{
		std::string_view text(&c, 1);
		if (context == Context::attribute)
			text = c == '"' ? "&quot;" : c == '\'' ? "&apos;" : c == '<' ? "&lt;" : text;
		TakeRoom(text.size());
		for (const char put : text)
			ORVAN_TRY(_result.Append(put));
		return {};
	}

	void TakeRoom(std::size_t size)
	{
		if (size > _left)
			throw XmlError("an entity comes to more than 64 KiB", _reference);
		_left -= size;
	}

	static constexpr int kMaxDepthOfEntities = 64;

	std::string_view _text;
	PositionMap& _positions;
	BaseArray<char> _result;
	BaseArray<BaseArray<char>> _replaced; ///< Values that had references to characters.
	BaseArray<Entity> _entities;
	StringMap<std::size_t> _numbers;  ///< Places among the entities, by name.
	const char* _reference = nullptr; ///< The reference that is being replaced.
	std::size_t _left = 0;            ///< What it may still come to.
	std::size_t _growth = 0;          ///< What all references have come to.
	int _depth = 0;
};

} // namespace

bool DeclaresEntities(std::string_view text) noexcept
{
	// Nearly all files are done after a look at their first bytes.
	return FindSubset(text).find(kEntityDeclaration) != std::string_view::npos;
}

bool NeedsReplacement(std::string_view text) noexcept
{
	const std::string_view subset = FindSubset(text);
	return subset.find(kEntityDeclaration) != subset.npos || subset.find_first_of("[]", 1) + 1 < subset.size();
}

Result<BaseArray<char>> ReplaceEntities(std::string_view text, PositionMap& positions)
{
	return Expander(text, positions).Run();
}

} // namespace orvan::svg
