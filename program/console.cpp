// SPDX-License-Identifier: MIT
#include "console.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace orvan::program
{
namespace
{
int g_writeError = 0; ///< Why results could not be written; kept, because the stream forgets.

void ThrowOnWriteError()
{
	if (g_writeError == EPIPE)
		throw ClosedPipe();
	if (g_writeError != 0)
		throw Failure(std::string("The results could not be written: ") + std::strerror(g_writeError));
}
} // namespace

void Print(std::string_view text)
{
	if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
		g_writeError = errno;
	ThrowOnWriteError();
}

void FlushOutput()
{
	if (std::fflush(stdout) != 0)
		g_writeError = errno;
	ThrowOnWriteError();
}

void PrintError(std::string_view line)
{
	// Flushed first, so that both streams stay in order where they end up in one place.
	if (std::fflush(stdout) != 0)
		g_writeError = errno;
	const std::string text = std::string(line) + '\n';
	std::fwrite(text.data(), 1, text.size(), stderr);
}

bool OutputTakesColor()
{
	// NO_COLOR counts when it is set to anything but the empty text: no-color.org.
	const char* const refusal = std::getenv("NO_COLOR");
	const char* const terminal = std::getenv("TERM");
	return isatty(STDOUT_FILENO) != 0 && (refusal == nullptr || *refusal == '\0') &&
		   (terminal == nullptr || std::strcmp(terminal, "dumb") != 0);
}

bool ErrorIsTerminal()
{
	return isatty(STDERR_FILENO) != 0;
}

std::string OneLine(std::string_view text, std::size_t limit)
{
	std::size_t end = text.size();
	if (end > limit)
	{
		// Bytes that continue a character go together with its first one.
		end = limit;
		while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
			end--;
	}
	std::string line(text.substr(0, end));
	// A file must be able neither to break the line nor to send commands to the terminal.
	for (char& c : line)
	{
		if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
			c = ' ';
	}
	if (end < text.size())
		line += "…";
	return line;
}

} // namespace orvan::program
