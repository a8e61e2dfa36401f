// SPDX-License-Identifier: MIT
#include "output.h"

#include "console.h"

namespace orvan::program
{

void ConsoleOutput::Print(std::string_view text)
{
	program::Print(text);
}

void ConsoleOutput::PrintError(std::string_view line)
{
	program::PrintError(line);
}

void KeptOutput::Print(std::string_view text)
{
	if (_pieces.empty() || _pieces.back().hasLine)
		_pieces.emplace_back();
	_pieces.back().results += text;
}

void KeptOutput::PrintError(std::string_view line)
{
	if (_pieces.empty() || _pieces.back().hasLine)
		_pieces.emplace_back();
	_pieces.back().line = line;
	_pieces.back().hasLine = true;
}

void KeptOutput::HandOver(Output& output) const
{
	for (const Piece& piece : _pieces)
	{
		output.Print(piece.results);
		if (piece.hasLine)
			output.PrintError(piece.line);
	}
}

} // namespace orvan::program
