// SPDX-License-Identifier: MIT
#include "simple_declarations.h"

#include <array>

namespace orvan::css
{
namespace
{
/// What a character may be part of.
enum Part : std::uint8_t
{
	kBlank = 1,
	kName = 2,
	kValue = 4,  ///< Anywhere in a value.
	kInUrl = 8,  ///< Inside url().
	kLetter = 16 ///< In the name of a function.
};

constexpr std::array<std::uint8_t, 256> MakeParts()
{
	std::array<std::uint8_t, 256> parts{};
	const auto add = [&](std::string_view characters, int more)
	{
		for (const char character : characters)
			parts[static_cast<unsigned char>(character)] |= static_cast<std::uint8_t>(more);
	};
	add(" \t\r\n\f", kBlank | kValue);
	add("abcdefghijklmnopqrstuvwxyz", kName | kValue | kInUrl | kLetter);
	add("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", kValue | kInUrl | kLetter);
	add("-", kName | kValue | kInUrl | kLetter);
	add("#.", kValue | kInUrl);
	add(",+%", kValue);
	return parts;
}

constexpr std::array<std::uint8_t, 256> kParts = MakeParts();

class SimpleReader
{
public:
	explicit SimpleReader(std::string_view text) noexcept
		: _begin(text.data()), _at(text.data()), _end(text.data() + text.size())
	{
	}

	/// Moves to the next declaration; false at the end.
	bool HasMore() noexcept
	{
		while (_at != _end && (Is(kBlank) || *_at == ';'))
			_at++;
		return _at != _end;
	}

	/// Reads one declaration; false when it is not simple.
	bool Read(Declaration& declaration) noexcept
	{
		const char* const name = _at;
		Skip(kName);
		declaration.name = {name, static_cast<std::size_t>(_at - name)};
		declaration.offset = OffsetOf(name);
		// A hyphen begins a name only before a letter.
		if (declaration.name.empty() || (*name == '-' && (declaration.name.size() == 1 || name[1] == '-')))
			return false;
		Skip(kBlank);
		if (_at == _end || *_at != ':')
			return false;
		_at++;
		Skip(kBlank);
		const char* const value = _at;
		for (Skip(kValue); _at != _end && *_at == '('; Skip(kValue))
		{
			if (!SkipFunction(value))
				return false;
		}
		if (_at != _end && *_at != ';')
			return false;
		const char* end = _at;
		while (end != value && (kParts[static_cast<unsigned char>(end[-1])] & kBlank) != 0)
			end--;
		declaration.value = {value, static_cast<std::size_t>(end - value)};
		declaration.valueOffset = OffsetOf(value);
		return end != value;
	}

private:
	bool Is(Part part) const noexcept
	{
		return (kParts[static_cast<unsigned char>(*_at)] & part) != 0;
	}

	void Skip(Part part) noexcept
	{
		while (_at != _end && Is(part))
			_at++;
	}

	/// At the bracket of a function: moves behind the other one.
	bool SkipFunction(const char* value) noexcept
	{
		const char* name = _at;
		while (name != value && (kParts[static_cast<unsigned char>(name[-1])] & kLetter) != 0)
			name--;
		const std::string_view function(name, static_cast<std::size_t>(_at - name));
		// A "#" would make a hash of the name.
		if (name != value && (kParts[static_cast<unsigned char>(name[-1])] & kBlank) == 0)
			return false;
		const bool isUrl = function == "url";
		if (!isUrl && function != "rgb" && function != "rgba")
			return false;
		_at++;
		Skip(isUrl ? kInUrl : kValue);
		if (_at == _end || *_at != ')')
			return false;
		_at++;
		return true;
	}

	std::uint32_t OffsetOf(const char* where) const noexcept
	{
		return static_cast<std::uint32_t>(where - _begin);
	}

	const char* const _begin;
	const char* _at;
	const char* const _end;
};
} // namespace

bool ReadSimpleDeclarations(std::string_view text, std::uint32_t source, std::pmr::vector<Declaration>& declarations)
{
	const std::size_t before = declarations.size();
	SimpleReader reader(text);
	while (reader.HasMore())
	{
		Declaration& declaration = declarations.emplace_back();
		declaration.source = source;
		if (!reader.Read(declaration))
		{
			declarations.resize(before);
			return false;
		}
	}
	return true;
}
} // namespace orvan::css
