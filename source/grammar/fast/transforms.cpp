// SPDX-License-Identifier: MIT
#include "fast/text_cursor.h"
#include "grammar.h"
#include "shared/transform_context.h"
#include "svgpp/library.h"

#include <array>
#include <span>

namespace orvan::grammar
{
namespace
{
constexpr std::size_t kMostArguments = 6;

/// Reads "(" numbers ")" with blanks where they please; the number of numbers, or zero.
std::size_t TakeArguments(TextCursor& cursor, std::array<double, kMostArguments>& arguments)
{
	cursor.TakeSpaces();
	if (!cursor.Take('('))
		return 0;
	cursor.TakeSpaces();
	for (std::size_t count = 0; count != arguments.size();)
	{
		if (!cursor.TakeNumber(true, arguments[count]))
			return 0;
		++count;
		const bool isSeparated = cursor.TakeSpaces();
		if (cursor.Take(')'))
			return count;
		if (cursor.Take(','))
			cursor.TakeSpaces();
		else if (!isSeparated)
			return 0;
	}
	return 0;
}

/// Reads one transform and hands it to the library's adapter, which does all the arithmetic.
bool TakeTransform(TextCursor& cursor, TransformAdapter& adapter)
{
	std::array<double, kMostArguments> n;
	if (cursor.Take("translate"))
	{
		const std::size_t count = TakeArguments(cursor, n);
		if (count == 2)
			adapter.transform_translate(n[0], n[1]);
		else if (count == 1)
			adapter.transform_translate(n[0]);
		return count == 1 || count == 2;
	}
	if (cursor.Take("matrix"))
	{
		if (TakeArguments(cursor, n) != 6)
			return false;
		adapter.transform_matrix({{n[0], n[1], n[2], n[3], n[4], n[5]}});
		return true;
	}
	if (cursor.Take("rotate"))
	{
		const std::size_t count = TakeArguments(cursor, n);
		if (count == 3)
			adapter.transform_rotate(n[0], n[1], n[2]);
		else if (count == 1)
			adapter.transform_rotate(n[0]);
		return count == 1 || count == 3;
	}
	if (cursor.Take("scale"))
	{
		const std::size_t count = TakeArguments(cursor, n);
		if (count == 2)
			adapter.transform_scale(n[0], n[1]);
		else if (count == 1)
			adapter.transform_scale(n[0]);
		return count == 1 || count == 2;
	}
	// A skew is rare enough for the library.
	return false;
}
} // namespace

Parsed ParseTransform(std::string_view text, Matrix& matrix)
{
	TextCursor cursor(text);
	TransformContext context;
	TransformAdapter adapter(context);
	cursor.TakeSpaces();
	while (!cursor.IsAtEnd())
	{
		if (!TakeTransform(cursor, adapter))
			return library::ParseTransform(text, matrix);
		cursor.TakeSpaces();
		// A comma must be followed by a transform; only the library knows what else it may be followed by.
		if (cursor.Take(','))
		{
			cursor.TakeSpaces();
			if (cursor.IsAtEnd())
				return library::ParseTransform(text, matrix);
		}
	}
	return DeliverMatrix(adapter, matrix);
}
} // namespace orvan::grammar
