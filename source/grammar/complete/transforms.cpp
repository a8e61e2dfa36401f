// SPDX-License-Identifier: MIT
#include "complete/transforms.h"

#include "complete/value_cursor.h"
#include "shared/transform_context.h"

#include <array>

namespace orvan::grammar::complete
{
namespace
{
constexpr std::size_t kMostArguments = 6;
using Arguments = std::array<double, kMostArguments>;

/// Reads "(" numbers ")" with blanks where they please, and commas where they part two numbers; the number of numbers,
/// or zero.
std::size_t TakeArguments(ValueCursor& cursor, Arguments& arguments) noexcept
{
	cursor.SkipSpaces();
	if (!cursor.TakeMark('('))
		return 0;
	for (std::size_t count = 0; count != arguments.size() && cursor.TakeNumber(arguments[count]);)
	{
		++count;
		cursor.SkipSpaces();
		if (cursor.Take(')'))
			return count;
		cursor.TakeMark(',');
	}
	return 0;
}

/// One function of the list: its name, the counts of arguments that it takes (one bit each), and the adapter's part,
/// which does all the arithmetic as for the plain import.
struct FunctionRow
{
	std::string_view name;
	unsigned counts;
	void (*apply)(TransformAdapter&, const Arguments&, std::size_t count);
};

constexpr FunctionRow kFunctions[]{
	{"translate", 1U << 1 | 1U << 2,
	 [](TransformAdapter& adapter, const Arguments& n, std::size_t count)
	 {
		 count == 2 ? adapter.transform_translate(n[0], n[1]) : adapter.transform_translate(n[0]);
	 }},
	{"matrix", 1U << 6,
	 [](TransformAdapter& adapter, const Arguments& n, std::size_t)
	 {
		 adapter.transform_matrix({{n[0], n[1], n[2], n[3], n[4], n[5]}});
	 }},
	{"rotate", 1U << 1 | 1U << 3,
	 [](TransformAdapter& adapter, const Arguments& n, std::size_t count)
	 {
		 count == 3 ? adapter.transform_rotate(n[0], n[1], n[2]) : adapter.transform_rotate(n[0]);
	 }},
	{"scale", 1U << 1 | 1U << 2,
	 [](TransformAdapter& adapter, const Arguments& n, std::size_t count)
	 {
		 count == 2 ? adapter.transform_scale(n[0], n[1]) : adapter.transform_scale(n[0]);
	 }},
	{"skewx", 1U << 1,
	 [](TransformAdapter& adapter, const Arguments& n, std::size_t)
	 {
		 adapter.transform_skew_x(n[0]);
	 }},
	{"skewy", 1U << 1,
	 [](TransformAdapter& adapter, const Arguments& n, std::size_t)
	 {
		 adapter.transform_skew_y(n[0]);
	 }},
};

bool TakeTransform(ValueCursor& cursor, TransformAdapter& adapter)
{
	const std::string_view word = cursor.PeekWord();
	for (const FunctionRow& row : kFunctions)
	{
		if (!EqualsIgnoreCase(word, row.name))
			continue;
		cursor.MoveTo(word.data() + word.size());
		Arguments arguments;
		const std::size_t count = TakeArguments(cursor, arguments);
		if ((row.counts & 1U << count) == 0)
			return false;
		row.apply(adapter, arguments, count);
		return true;
	}
	return false;
}
} // namespace

Parsed ParseTransformAttribute(std::string_view text, Matrix& matrix) noexcept
{
	ValueCursor cursor(text, Source::attribute, Comments::refused);
	TransformContext context;
	TransformAdapter adapter(context);
	if (cursor.TakeWord("none"))
		return cursor.IsAtEnd() ? DeliverMatrix(adapter, matrix) : Parsed::refused;
	bool needsAnother = false;
	while (needsAnother || !cursor.IsAtEnd())
	{
		if (!TakeTransform(cursor, adapter))
			return Parsed::refused;
		cursor.SkipSpaces();
		needsAnother = cursor.TakeMark(',');
	}
	return DeliverMatrix(adapter, matrix);
}
} // namespace orvan::grammar::complete
