// SPDX-License-Identifier: MIT
/// What the program says: results to standard output, diagnostics to standard error; and what goes wrong with that.
#pragma once

#include "orvan/result.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvan::program
{

/// A command cannot be done; the text says why. Ends the program with status 1.
class Failure : public std::runtime_error
{
public:
	using std::runtime_error::runtime_error;
};

/// The command line asks for something that makes no sense. Ends the program with status 2.
class UsageFailure : public Failure
{
public:
	using Failure::Failure;
};

/// Whoever read the results has gone (`| head`). Ends the program, with status 0.
struct ClosedPipe
{
};

/// Writes results, buffered. Throws `ClosedPipe` when nobody reads any more, `Failure` for other trouble.
void Print(std::string_view text);

/// Hands buffered results over now. Throws like `Print`.
void FlushOutput();

/// Writes a line to standard error, after the results that were printed before it. Trouble with those shows at the next
/// `Print` or `FlushOutput`, so that this can be called where exceptions must not pass.
void PrintError(std::string_view line);

/// Everything that standard input has. Throws `Failure` when it cannot be read.
std::string ReadInput();

/// True when standard output is a terminal whose user has nothing against colours (NO_COLOR).
bool OutputTakesColor();

/// True when standard error is a terminal.
bool ErrorIsTerminal();

/// A text from a file, or the name of one, fit for one line on a terminal: control characters become spaces, and what
/// is longer than `limit` bytes ends in "…", never inside of a character.
std::string OneLine(std::string_view text, std::size_t limit = 400);

/// The same without a limit, for names, which are good for nothing when they are cut.
inline std::string WholeLine(std::string_view text)
{
	return OneLine(text, text.size());
}

/// The value of a result; an error becomes a `Failure`.
template <typename T>
T Unwrap(Result<T>&& result)
{
	if (!result.IsOk())
		throw Failure(std::string(result.GetError().GetMessage().View()));
	return std::move(result).GetValue();
}

inline void Unwrap(Result<void>&& result)
{
	if (!result.IsOk())
		throw Failure(std::string(result.GetError().GetMessage().View()));
}

} // namespace orvan::program
