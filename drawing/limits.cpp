// SPDX-License-Identifier: MIT
#include "limits.h"

#include "orvan/diagnostics.h"

#include <algorithm>

namespace orvan::drawing
{

Limits::Limits(double pixels, double seconds, double bytes) noexcept
	: _seconds(seconds), _work(std::max(kLeastWork, pixels * kLayersOfWork)), _bytes(bytes)
{
}

double Limits::GetSecondsLeft() const noexcept
{
	return _seconds - std::chrono::duration<double>(Clock::now() - _start).count();
}

bool Limits::IsOver() noexcept
{
	if (!_isOver && GetSecondsLeft() <= 0.0)
	{
		_isOver = true;
		Omit(Omission::deadline);
	}
	return _isOver;
}

bool Limits::CanTake(double seconds) noexcept
{
	if (GetSecondsLeft() > seconds)
		return true;
	Omit(Omission::outlines);
	return false;
}

bool Limits::OpenLayer(double pixels, double bytes) noexcept
{
	const bool isPaid = Spend(kElementWork + pixels * 2.0);
	if (!isPaid || bytes > _bytes)
	{
		Omit(isPaid ? Omission::layers : Omission::work);
		return false;
	}
	_bytes -= bytes;
	_layerCount++;
	return true;
}

void Limits::CloseLayer(double bytes) noexcept
{
	_bytes += bytes;
	_layerCount--;
}

bool Limits::Hold(double bytes) noexcept
{
	if (bytes > _bytes)
	{
		Omit(Omission::layers);
		return false;
	}
	_bytes -= bytes;
	return true;
}

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
	case Omission::deadline:
		WarningOutput("Drawing takes longer than a picture may; the rest is left out.");
		break;
	case Omission::images:
		WarningOutput("Images that cannot be read, or are larger than a picture may have them, are left out.");
		break;
	case Omission::outlines:
		WarningOutput("Outlines that would take longer to draw than a picture may are left out.");
		break;
	}
}

} // namespace orvan::drawing
