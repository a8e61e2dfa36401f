// SPDX-License-Identifier: MIT
/// The white space of a text.
#pragma once

#include "elements/complete_classes.h"

#include <string_view>

namespace orvan::svg::complete
{

/// Makes the text runs of one text element, whose white space is treated across all elements within: blanks at the
/// start and at the end go, several in a row become one, and line breaks count as blanks. Where white space is
/// preserved, every character stays, but line breaks and tabs become blanks.
class TextRuns
{
public:
	/// Appends a run with these characters to an element, and returns it; none when nothing is left of them.
	Result<SVGElementRef> Append(HierarchyObject& parent, std::string_view characters, bool preservesSpace);

	/// Characters of another text stand here, which are not known: blanks before and behind them stay.
	void Interrupt() noexcept
	{
		_endsWithBlank = false;
	}

	/// The end of the text: takes a blank at its end away.
	Result<void> Finish() noexcept;

private:
	bool _endsWithBlank = true;          ///< A further blank is dropped; so it is at the start.
	Ref<HierarchyObjectInterface> _last; ///< The run whose last blank goes if nothing follows.
};

} // namespace orvan::svg::complete
