// SPDX-License-Identifier: MIT
#include "console.h"

#include <algorithm>
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

std::string ReadInput()
{
	std::string bytes;
	while (true)
	{
		constexpr std::size_t kPiece = 1 << 16;
		const std::size_t size = bytes.size();
		bytes.resize(size + kPiece);
		const ssize_t count = read(STDIN_FILENO, bytes.data() + size, kPiece);
		bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
		if (count < 0 && errno != EINTR)
			throw Failure(std::string("Standard input cannot be read: ") + std::strerror(errno));
		if (count == 0)
			return bytes;
	}
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
	// A file must be able neither to break the line nor to send commands to the terminal, for which there are control
	// characters of two bytes, too: 0xC2 and one below 0xA0.
	unsigned char last = 0;
	for (char& c : line)
	{
		const auto byte = static_cast<unsigned char>(c);
		if (byte < 0x20 || byte == 0x7f || (last == 0xc2 && byte < 0xa0))
			c = ' ';
		last = byte;
	}
	if (end < text.size())
		line += "…";
	return line;
}

} // namespace orvan::program
