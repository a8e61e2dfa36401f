// SPDX-License-Identifier: MIT
#include "limits.h"

#include "orvan/diagnostics.h"

namespace orvan::drawing
{

void Limits::Omit(Omission omission) noexcept
{
	const auto bit = static_cast<std::uint32_t>(omission);
	if ((_omissions & bit) != 0)
		return;
	_omissions |= bit;
	switch (omission)
	{
	case Omission::cycle:
		WarningOutput("References that lead in a circle are left out.");
		break;
	case Omission::depth:
		WarningOutput("Elements more than @ levels deep are left out.", kMaxDepth);
		break;
	case Omission::work:
		WarningOutput("Elements drawn by reference and in layers cost more than a picture may; the rest is left out.");
		break;
	case Omission::layers:
		WarningOutput("Elements that need more memory for layers than a picture may use are left out.");
		break;
	case Omission::text:
		WarningOutput("Texts are drawn up to @ bytes; the rest is left out.", kMaxTextBytes);
		break;
	case Omission::fontSize:
		WarningOutput("Texts larger than @ pixels are left out.", kMaxFontSize);
		break;
	case Omission::dashes:
		WarningOutput("Lines with too many dashes are drawn solid.");
		break;
	}
}

} // namespace orvan::drawing
