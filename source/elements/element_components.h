// SPDX-License-Identifier: MIT
/// The component interfaces: views of an element's attributes, made for the duration of one call.
///
/// A component holds no state. It reads and writes the dictionary entries that the importer fills, so that a value is
/// the same whichever way it is reached. `Interface` names the one that it answers for.
#pragma once

#include "elements/element_base.h"

namespace orvan::svg
{

/// Reading and writing of a pair of lengths, which most components come down to.
template <SVGImportAttribute first, SVGImportAttribute second>
class LengthPair
{
public:
	explicit LengthPair(ElementBase& element) noexcept : _element(element)
	{
	}

protected:
	Result<void> SetFirst(const SVGLength& value) noexcept
	{
		return _element.StoreWhole(first, value);
	}

	Result<void> SetSecond(const SVGLength& value) noexcept
	{
		return _element.StoreWhole(second, value);
	}

	/// Sets both or, when memory runs out, none.
	Result<void> SetBoth(const SVGLength2d& value) noexcept
	{
		return _element.StoreAll<SVGLength>({{first, value.x}, {second, value.y}});
	}

	SVGLength GetFirst() const noexcept
	{
		return _element.GetOr(first, SVGLength());
	}

	SVGLength GetSecond() const noexcept
	{
		return _element.GetOr(second, SVGLength());
	}

	SVGLength2d GetBoth() const noexcept
	{
		return {GetFirst(), GetSecond()};
	}

	ElementBase& _element;
};

// clang-format off

template <SVGImportAttribute first, SVGImportAttribute second>
class PositionAt : public LengthPair<first, second>
{
public:
	using Interface = SVGPositionInterface;

	using LengthPair<first, second>::LengthPair;

	Result<void> SetX(const SVGLength& x) noexcept { return this->SetFirst(x); }
	SVGLength GetX() const noexcept { return this->GetFirst(); }
	Result<void> SetY(const SVGLength& y) noexcept { return this->SetSecond(y); }
	SVGLength GetY() const noexcept { return this->GetSecond(); }
	Result<void> SetPosition(const SVGLength2d& position) noexcept { return this->SetBoth(position); }
	SVGLength2d GetPosition() const noexcept { return this->GetBoth(); }
};

using Position = PositionAt<SVGImportAttribute::x, SVGImportAttribute::y>;
using CenterPosition = PositionAt<SVGImportAttribute::cx, SVGImportAttribute::cy>;

class Size : public LengthPair<SVGImportAttribute::width, SVGImportAttribute::height>
{
public:
	using Interface = SVGSizeInterface;

	using LengthPair::LengthPair;

	Result<void> SetWidth(const SVGLength& width) noexcept { return SetFirst(width); }
	SVGLength GetWidth() const noexcept { return GetFirst(); }
	Result<void> SetHeight(const SVGLength& height) noexcept { return SetSecond(height); }
	SVGLength GetHeight() const noexcept { return GetSecond(); }
	Result<void> SetSize(const SVGLength2d& size) noexcept { return SetBoth(size); }
	SVGLength2d GetSize() const noexcept { return GetBoth(); }
};

/// The ends of a line.
class LineEnds
{
public:
	using Interface = SVGLineElementInterface;

	explicit LineEnds(ElementBase& element) noexcept : _first(element), _second(element) {}

	Result<void> SetX1(const SVGLength& x) noexcept { return _first.SetX(x); }
	Result<void> SetX2(const SVGLength& x) noexcept { return _second.SetX(x); }
	Result<void> SetY1(const SVGLength& y) noexcept { return _first.SetY(y); }
	Result<void> SetY2(const SVGLength& y) noexcept { return _second.SetY(y); }
	SVGLength GetX1() const noexcept { return _first.GetX(); }
	SVGLength GetX2() const noexcept { return _second.GetX(); }
	SVGLength GetY1() const noexcept { return _first.GetY(); }
	SVGLength GetY2() const noexcept { return _second.GetY(); }
	Result<void> SetPt1(const SVGLength2d& point) noexcept { return _first.SetPosition(point); }
	Result<void> SetPt2(const SVGLength2d& point) noexcept { return _second.SetPosition(point); }
	SVGLength2d GetPt1() const noexcept { return _first.GetPosition(); }
	SVGLength2d GetPt2() const noexcept { return _second.GetPosition(); }

private:
	PositionAt<SVGImportAttribute::x1, SVGImportAttribute::y1> _first;
	PositionAt<SVGImportAttribute::x2, SVGImportAttribute::y2> _second;
};

// clang-format on

/// Radii. An absent one follows another attribute: `insteadOfX` and `insteadOfY` say which.
template <SVGImportAttribute insteadOfX, SVGImportAttribute insteadOfY>
class RadiusOr : public LengthPair<SVGImportAttribute::rx, SVGImportAttribute::ry>
{
public:
	using Interface = SVGRadiusInterface;

	using LengthPair::LengthPair;

	Result<void> SetRadiusX(const SVGLength& radius) noexcept
	{
		return SetFirst(radius);
	}

	SVGLength GetRadiusX() const noexcept
	{
		return _element.GetOr(SVGImportAttribute::rx, _element.GetOr(insteadOfX, SVGLength()));
	}

	Result<void> SetRadiusY(const SVGLength& radius) noexcept
	{
		return SetSecond(radius);
	}

	SVGLength GetRadiusY() const noexcept
	{
		return _element.GetOr(SVGImportAttribute::ry, _element.GetOr(insteadOfY, SVGLength()));
	}

	Result<void> SetRadius(const SVGLength& radius) noexcept
	{
		return _element.Store(SVGImportAttribute::r, radius);
	}

	SVGLength GetRadius() const noexcept
	{
		return _element.GetOr(SVGImportAttribute::r, SVGLength());
	}
};

/// Radii of a circle follow "r".
using CircleRadius = RadiusOr<SVGImportAttribute::r, SVGImportAttribute::r>;

/// Those of a rectangle follow each other. It has no radius of its own, so that setting one sets both.
class RectRadius : public RadiusOr<SVGImportAttribute::ry, SVGImportAttribute::rx>
{
public:
	using RadiusOr::RadiusOr;

	Result<void> SetRadius(const SVGLength& radius) noexcept
	{
		return _element.StoreAll<SVGLength>(
			{{SVGImportAttribute::r, radius}, {SVGImportAttribute::rx, radius}, {SVGImportAttribute::ry, radius}});
	}
};

class FitToViewbox
{
public:
	using Interface = SVGFitToViewboxInterface;

	explicit FitToViewbox(ElementBase& element) noexcept : _element(element)
	{
	}

	Result<void> SetViewbox(const SVGViewbox& viewbox) noexcept
	{
		return _element.Store(SVGImportAttribute::viewBox, viewbox);
	}

	SVGViewbox GetViewbox() const noexcept
	{
		return _element.GetOr(SVGImportAttribute::viewBox, SVGViewbox());
	}

	SVGPreserveAspectRatio GetPreserveAspectRatio() const noexcept
	{
		return _element.GetOr(SVGImportAttribute::preserveAspectRatio, SVGPreserveAspectRatio());
	}

private:
	ElementBase& _element;
};

} // namespace orvan::svg
