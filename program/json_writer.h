// SPDX-License-Identifier: MIT
/// Writing JSON piece by piece, so that a large tree needs no second one in memory.
#pragma once

#include "output.h"

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvan::program
{

/// Prints JSON in UTF-8. Numbers have the shortest form that reads back as the same double; numbers
/// that JSON cannot express are null. Bytes that are no UTF-8 become U+FFFD.
class JsonWriter
{
public:
	enum class Layout
	{
		lines,  ///< Starts a line where `NewLine` asks for one.
		oneLine ///< Everything stands in one line, for readers that take one value a line.
	};

	explicit JsonWriter(Output& output, Layout layout = Layout::lines) : _output(output), _layout(layout)
	{
	}

	void BeginObject();
	void EndObject();
	void BeginArray();
	void EndArray();

	/// The name of the next value. Names are plain words of the program's own, or are escaped like texts.
	void Key(std::string_view name);

	void Null();
	void Value(double number);
	void Value(std::integral auto number)
	{
		Token(std::to_string(number));
	}
	void Value(bool truth);
	void Value(std::string_view text);
	void Value(const char* text)
	{
		Value(std::string_view(text));
	}

	template <typename T>
	void Member(std::string_view name, const T& value)
	{
		Key(name);
		Value(value);
	}

	/// Starts a line before the next value or bracket, indented by `depth` spaces.
	void NewLine(int depth);

	/// Ends the last line.
	void Finish();

private:
	void Token(std::string_view text);
	void Separate();

	Output& _output;
	const Layout _layout;
	bool _needsComma = false;
	int _indentation = -1;
};

} // namespace orvan::program
