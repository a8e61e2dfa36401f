// SPDX-License-Identifier: MIT
/// Finding and opening the modules that the program works with.
#pragma once

#include <string>

namespace orvan::program
{

/// The modules in one folder. Opening one must not overlap other use of the host, so commands open what they need
/// before they start threads. What is open stays open to the end of the process.
class Modules
{
public:
	/// Where `folder` is empty, the modules stand beside the program's own folder: where they are installed, which is
	/// "../lib/ARCHITECTURE/orvan" on Debian, or in "../lib/orvan".
	explicit Modules(const std::string& folder);

	/// Opens the SVG module. Throws `Failure` when it is missing or cannot be opened.
	void LoadSVGModule();

	/// Opens one more module by the name of its file. Throws `Failure` when it is missing or cannot be opened.
	void LoadModule(const char* name);

	/// Opens every other module ("*.so") by name. Done only for commands that use
	/// one: a renderer brings forty libraries along, whose loading takes longer than most files. A module that cannot
	/// be opened is reported on standard error and left out.
	void LoadOtherModules();

private:
	std::string _folder;
};

} // namespace orvan::program
