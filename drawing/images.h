// SPDX-License-Identifier: MIT
/// Images as a walk sees them: what they are made of, whoever draws them knows.
#pragma once

#include "geometry.h"
#include "svg_elements.h"

namespace orvan::drawing
{

/// What an image says about its size, in its pixels or in user units. 0 stands for "nothing"; nothing else is below.
struct ImageSize
{
	double width = 0.0;
	double height = 0.0;
	double ratio = 0.0; ///< Width for a height of 1.

	/// The size of a box for the image of which one side, both or none are given, as CSS has it.
	Vector2d Complete(double givenWidth, double givenHeight) const noexcept;
};

/// An image that has been loaded.
class Image
{
public:
	virtual ~Image() = default;

	virtual ImageSize GetSize() const noexcept = 0;
};

/// Finds the images that links name, and keeps them.
class ImageSource
{
public:
	virtual ~ImageSource() = default;

	/// The image of a link, good until the end of the drawing; null, and reported, when there is none. Fails for want
	/// of memory only.
	virtual Result<const Image*> Find(const String& link) noexcept = 0;
};

/// An image in its place.
struct PlacedImage
{
	const Image& image;
	Rectangle viewport; ///< What the image is fitted into, in the element's coordinates.
	SVGPreserveAspectRatio rule;
};

} // namespace orvan::drawing
