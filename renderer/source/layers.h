// SPDX-License-Identifier: MIT
/// Layers: room for them, and their owners.
#pragma once

#include "canvas.h"

namespace orvan::cairo
{

/// Room for a layer of this many pixels, if the picture may have it.
class LayerScope
{
public:
	LayerScope(drawing::Limits& limits, double pixels) noexcept
		: _limits(limits), _pixels(pixels), _isOpen(limits.OpenLayer(pixels))
	{
	}

	LayerScope(const LayerScope&) = delete;

	~LayerScope()
	{
		if (_isOpen)
			_limits.CloseLayer(_pixels);
	}

	bool IsOpen() const noexcept
	{
		return _isOpen;
	}

private:
	drawing::Limits& _limits;
	double _pixels;
	bool _isOpen;
};

} // namespace orvan::cairo
