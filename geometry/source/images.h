// SPDX-License-Identifier: MIT
/// Images where nobody looks at them.
#pragma once

#include "drawing/images.h"

namespace orvan::geometry
{

/// Takes every link for an image and loads none: images lie where their elements say.
class UnseenImages final : public drawing::ImageSource
{
public:
	Result<const drawing::Image*> Find(const String&) noexcept override
	{
		return &_image;
	}

private:
	class UnseenImage final : public drawing::Image
	{
	public:
		drawing::ImageSize GetSize() const noexcept override
		{
			return {};
		}
	};

	UnseenImage _image;
};

} // namespace orvan::geometry
