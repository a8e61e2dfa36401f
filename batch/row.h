// SPDX-License-Identifier: MIT
/// What there is to say about an input, as an object in a line of JSON.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace orvan::batch
{

/// A text as JSON has it. Bytes that are no UTF-8 become lone low surrogates (`\udc80` to `\udcff`), which is how
/// Python keeps names of files that are not.
std::string ToJson(std::string_view text);

/// Members of an object, which stand in it by their names.
class Row
{
public:
	void Set(const char* name, std::int64_t number)
	{
		_members[name] = std::to_string(number);
	}

	void Set(const char* name, std::string_view text)
	{
		_members[name] = ToJson(text);
	}

	/// Sets a member to what is JSON already.
	void SetJson(const char* name, std::string json)
	{
		_members[name] = std::move(json);
	}

	/// True when "outcome" is "done".
	bool IsDone() const
	{
		const auto found = _members.find("outcome");
		return found != _members.end() && found->second == "\"done\"";
	}

	/// The object, with the end of the line.
	std::string ToLine() const;

private:
	std::map<std::string_view, std::string> _members;
};

} // namespace orvan::batch
