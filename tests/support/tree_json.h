// SPDX-License-Identifier: MIT
/// A document as the program prints it, without its URL, so that two of them can be compared.
#pragma once

#include "../../program/tree_json.h"

#include <string>

namespace orvan
{

inline std::string JsonOf(const SVGDocumentRef& document)
{
	class : public program::Output
	{
	public:
		std::string text;

		void Print(std::string_view piece) override
		{
			text += piece;
		}
		void PrintError(std::string_view) override
		{
		}
	} output;
	program::JsonWriter json(output);
	program::PrintTreeAsJson(json, document, false);
	return output.text.substr(output.text.find("\"placeholder\""));
}

} // namespace orvan
