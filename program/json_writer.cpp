// SPDX-License-Identifier: MIT
#include "json_writer.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

namespace orvan::program
{
namespace
{
/// The library knows which characters need escaping and what is no UTF-8.
std::string Quote(std::string_view text)
{
	return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}
} // namespace

void JsonWriter::Separate()
{
	if (std::exchange(_needsComma, true))
		_output.Print(_indentation >= 0 ? "," : ", ");
	if (_indentation >= 0)
		_output.Print('\n' + std::string(static_cast<std::size_t>(std::exchange(_indentation, -1)), ' '));
}

void JsonWriter::Token(std::string_view text)
{
	Separate();
	_output.Print(text);
}

void JsonWriter::BeginObject()
{
	Token("{");
	_needsComma = false;
}

void JsonWriter::EndObject()
{
	// No comma stands before a closing bracket, but one will before whatever follows it.
	_needsComma = false;
	Token("}");
}

void JsonWriter::BeginArray()
{
	Token("[");
	_needsComma = false;
}

void JsonWriter::EndArray()
{
	_needsComma = false;
	Token("]");
}

void JsonWriter::Key(std::string_view name)
{
	Token(Quote(name));
	_output.Print(": ");
	_needsComma = false;
}

void JsonWriter::Null()
{
	Token("null");
}

void JsonWriter::Value(double number)
{
	constexpr double kLargestPlainInteger = 1e15;
	if (!std::isfinite(number))
		return Null();
	// Whole numbers are not written as powers of ten, however short those are; and only with a fraction do all readers
	// keep the sign of zero.
	if (number == std::trunc(number) && std::abs(number) < kLargestPlainInteger)
		return Token(number == 0 && std::signbit(number) ? "-0.0" : std::to_string(static_cast<std::int64_t>(number)));
	// The library's own numbers are not always the shortest that read back the same; these are.
	char text[32];
	Token({text, std::to_chars(text, text + sizeof(text), number).ptr});
}

void JsonWriter::Value(bool truth)
{
	Token(truth ? "true" : "false");
}

void JsonWriter::Value(std::string_view text)
{
	Token(Quote(text));
}

void JsonWriter::NewLine(int depth)
{
	if (_layout == Layout::lines)
		_indentation = depth;
}

void JsonWriter::Finish()
{
	_output.Print("\n");
}

} // namespace orvan::program
