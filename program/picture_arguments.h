// SPDX-License-Identifier: MIT
/// Where pictures go, and what they are like.
#pragma once

#include "command_line.h"
#include "svg_render_target.h"

namespace orvan::program
{

/// The options of a command that makes a picture of each of its files.
class PictureArguments
{
public:
	enum class Need
	{
		optional, ///< Without `-o` there are no pictures, and nothing to say about them.
		required,
	};

	void AddTo(Command& command, Need need);

	bool IsGiven() const
	{
		return !_output.empty();
	}

	/// True when pictures go where other results would.
	bool WritesToOutput() const
	{
		return _output == "-";
	}

	/// Settles what the options mean together, for these files, and makes the folder that they name. Throws
	/// `UsageFailure` for what makes no sense, `Failure` when there can be no such folder.
	void Prepare(const std::vector<std::string>& files);

	/// Where the picture of a file goes; "-" for standard output.
	std::string GetPath(const std::string& file) const;

	const SVGRenderOptions& GetOptions() const
	{
		return _options;
	}

private:
	std::string _output;
	std::string _format;
	std::string _background = "none";
	std::string _currentColor;
	std::string _elementId;
	double _dotsPerInch = 0.0; ///< Zero when not given.
	SVGRenderOptions _options;
};

} // namespace orvan::program
