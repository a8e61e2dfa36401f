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
	LayerScope(drawing::Limits& limits, double pixels, double bytesPerPixel = 4.0) noexcept
		: _limits(limits), _bytes(pixels * bytesPerPixel), _isOpen(limits.OpenLayer(pixels, _bytes))
	{
	}

	LayerScope(const LayerScope&) = delete;

	~LayerScope()
	{
		if (_isOpen)
			_limits.CloseLayer(_bytes);
	}

	bool IsOpen() const noexcept
	{
		return _isOpen;
	}

private:
	drawing::Limits& _limits;
	double _bytes;
	bool _isOpen;
};

} // namespace orvan::cairo
