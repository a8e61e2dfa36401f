// SPDX-License-Identifier: MIT
/// How a command reads files.
#pragma once

#include "command_line.h"
#include "svg_import.h"

namespace orvan::program
{

/// The options that say how files are read.
class ImportArguments
{
public:
	/// What a command does when nothing was said.
	enum class Default
	{
		plain,   ///< The plain import; `--complete` and `--tolerant` ask for more.
		asDrawn, ///< Complete and tolerant, for commands that make pictures; `--plain` asks for less.
	};

	void AddTo(Command& command, Default usual);

	/// What the options mean together. Throws `UsageFailure` when they make no sense, `Failure` when the style sheet
	/// cannot be read.
	SVGImportOptions GetOptions() const;

private:
	Default _usual = Default::plain;
	bool _isComplete = false;
	bool _isTolerant = false;
	bool _isPlain = false;
	std::string _styleSheet;
};

} // namespace orvan::program
