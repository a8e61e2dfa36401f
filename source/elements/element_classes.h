// SPDX-License-Identifier: MIT
/// The element classes: the base with what each kind adds to it.
#pragma once

#include "elements/element_components.h"
#include "elements/path_data.h"

namespace orvan::svg
{

/// A class that adds nothing of its own but its kind.
template <SVGImportElementKind kind>
class PlainElement : public ElementBase
{
public:
	static constexpr SVGImportElementKind kKind = kind;

	PlainElement() noexcept : ElementBase(kind)
	{
	}
};

using BaseElement = PlainElement<SVGImportElementKind::unknown>;
using DefsElement = PlainElement<SVGImportElementKind::defs>;
using SymbolElement = PlainElement<SVGImportElementKind::symbol>;
using GroupElement = PlainElement<SVGImportElementKind::group>;
using RectElement = PlainElement<SVGImportElementKind::rect>;
using CircleElement = PlainElement<SVGImportElementKind::circle>;
using LineElement = PlainElement<SVGImportElementKind::line>;
using MaskElement = PlainElement<SVGImportElementKind::mask>;
using ClipPathElement = PlainElement<SVGImportElementKind::clipPath>;
using StopElement = PlainElement<SVGImportElementKind::stop>;

class SVGElement : public PlainElement<SVGImportElementKind::svg>
{
public:
	Result<void> SetViewport(const SVGViewport& viewport) noexcept;
	SVGViewport GetViewport() const noexcept;
};

class UseElement : public PlainElement<SVGImportElementKind::use>
{
public:
	Result<void> CopyStateTo(UseElement& copy) const noexcept;

	Result<void> SetLink(const String& link) noexcept;
	String GetLink() const noexcept;
	bool IsLinkDirty() const noexcept;
	Result<void> SetShadowRoot(const SVGElementRef& element) noexcept;

	// Editing; see `SVGUseEditInterface`.
	SVGElementRef GetShadowRoot() const noexcept;
	Result<SVGElementRef> ResolveLink() noexcept;

	/// Changes the link and keeps what it stands for, as an edit of the document.
	Result<void> RenameLink(Document& document, const String& link) noexcept;

private:
	/// What the element stands for.
	struct Target
	{
		String link;
		WeakRef shadowRoot; ///< Weak, so that uses that lead in circles keep nobody alive.
	};

	Result<void> ChangeTarget(Target target) noexcept;

	Target _target;
};

/// The methods of the stop's own interface. `GetOpacity` is not that of the element.
class Stop
{
public:
	using Interface = SVGStopElementInterface;

	explicit Stop(ElementBase& element) noexcept : _element(element)
	{
	}

	Float GetOffset() const noexcept;
	Color GetColor() const noexcept;
	Float GetOpacity() const noexcept;

private:
	ElementBase& _element;
};

class LinearGradientElement : public PlainElement<SVGImportElementKind::linearGradient>
{
public:
	Result<SVGLinearGradient> GetLinearGradient() const noexcept;
};

class RadialGradientElement : public PlainElement<SVGImportElementKind::radialGradient>
{
public:
	Result<SVGRadialGradient> GetRadialGradient() const noexcept;
};

class PathElement : public PlainElement<SVGImportElementKind::path>
{
public:
	Result<void> CopyStateTo(PathElement& copy) const noexcept;

	Result<BaseArray<SVGPathCommand>> GetPath() const noexcept;

	Result<void> MoveTo(const Vector2d& point) noexcept
	{
		return Append(SVGPathCommandType::move, point);
	}

	Result<void> LineTo(const Vector2d& point) noexcept
	{
		return Append(SVGPathCommandType::line, point);
	}

	Result<void> CubicBezierTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept
	{
		return Append(SVGPathCommandType::cubic, control1, control2, point);
	}

	Result<void> CloseSubpath() noexcept
	{
		return Append(SVGPathCommandType::close);
	}

	/// Differs for paths that differ.
	std::uint64_t HashOfPath() const noexcept
	{
		return _path.GetHash();
	}

	Result<void> PathExit() noexcept
	{
		_path.Compact();
		return {};
	}

	/// The commands of an element that is being loaded, which is not tracked.
	PathData& LoadedPath() noexcept
	{
		return _path;
	}

	// Editing; see `SVGPathEditInterface`.
	Result<void> Clear() noexcept
	{
		return ReplacePath(PathData());
	}

	Result<void> SetPath(const BaseArray<SVGPathCommand>& commands) noexcept;
	SVGPathView GetPathView() const noexcept
	{
		return _path.GetView();
	}

	Result<void> CopyPath(const PathElement& source) noexcept;
	Result<String> GetPathData() const noexcept;
	Result<void> SetPathData(const String& data) noexcept;

	/// Puts other commands in place. Fails on tracked elements only.
	Result<void> ReplacePath(PathData path) noexcept
	{
		if (IsTracked()) [[unlikely]]
			return ChangeTracked(_path, std::move(path), SVGImportAttribute::d);
		_path = std::move(path);
		return {};
	}

private:
	template <typename... Points>
	Result<void> Append(SVGPathCommandType type, const Points&... points) noexcept
	{
		if (IsTracked()) [[unlikely]]
			ORVAN_TRY(RecordPath());
		ORVAN_TRY(_path.Append(type, points...));
		if (IsTracked()) [[unlikely]]
			TellOfPath();
		return {};
	}

	Result<void> RecordPath() noexcept;
	void TellOfPath() noexcept;

	PathData _path;
};

class TextElement : public PlainElement<SVGImportElementKind::text>
{
public:
	Result<void> CopyStateTo(TextElement& copy) const noexcept;

	/// The text takes the place of what stands below.
	Result<void> SetText(const String& text) noexcept
	{
		if (IsTracked()) [[unlikely]]
			return SetTextTracked(text);
		RemoveAllChildren();
		_text = text;
		return {};
	}

	String GetText() const noexcept;
	ORVAN_SVG_TEXT_PROPERTIES(ORVAN_PROPERTY_METHODS)

private:
	Result<void> SetTextTracked(const String& text) noexcept;

	String _text;
};

} // namespace orvan::svg
