// SPDX-License-Identifier: MIT
/// Where what is found out about a file goes.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvan::program
{

/// Takes results, and what else there is to say. Used by one thread at a time.
class Output
{
public:
	virtual ~Output() = default;

	/// Takes a piece of the results. May throw `ClosedPipe` or `Failure`.
	virtual void Print(std::string_view text) = 0;

	/// Takes a line that is no result, without its end.
	virtual void PrintError(std::string_view line) = 0;
};

/// Standard output and standard error, at once.
class ConsoleOutput : public Output
{
public:
	void Print(std::string_view text) override;
	void PrintError(std::string_view line) override;
};

/// Keeps what it takes until its turn comes.
class KeptOutput : public Output
{
public:
	void Print(std::string_view text) override;
	void PrintError(std::string_view line) override;

	/// Hands everything over, in the order in which it came.
	void HandOver(Output& output) const;

private:
	/// Results, as many as come in a row, and the line that was said after them.
	struct Piece
	{
		std::string results;
		std::string line;
		bool hasLine = false;
	};

	std::vector<Piece> _pieces;
};

} // namespace orvan::program
