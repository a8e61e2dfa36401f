// SPDX-License-Identifier: MIT
/// From what the grammar reads of path data to a path element.
#pragma once

#include "elements/element_classes.h"
#include "grammar.h"
#include "importer/text/text_release.h"

#include <span>
#include <utility>

namespace orvan::svg
{

/// Hands the segments of a path to a path element, which fails for want of memory only.
class PathElementSink : public grammar::PathSink
{
public:
	/// For an element that is being loaded; `text` is what is to be told of its growth.
	explicit PathElementSink(PathElement& path, TextRelease* text = nullptr) noexcept
		: _path(path.LoadedPath()), _text(text)
	{
	}

	/// For commands that stand in no element yet.
	explicit PathElementSink(PathData& path) noexcept : _path(path)
	{
	}

	void MoveTo(double x, double y) override
	{
		Note(_path.Append(SVGPathCommandType::move, Vector2d{x, y}));
	}

	void LineTo(double x, double y) override
	{
		Note(_path.Append(SVGPathCommandType::line, Vector2d{x, y}));
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		Note(_path.Append(SVGPathCommandType::cubic, Vector2d{x1, y1}, Vector2d{x2, y2}, Vector2d{x, y}));
	}

	void Close() override
	{
		Note(_path.Append(SVGPathCommandType::close));
	}

	void AddSegments(std::span<const grammar::PathSegment> segments) override
	{
		Result<void> hasRoom = _path.Reserve(segments.size());
		if (hasRoom.IsOk())
		{
			PathData::Writer writer(_path);
			for (const auto& [coordinates, kind] : segments)
				writer.Append(static_cast<std::size_t>(kind), coordinates);
		}
		Note(std::move(hasRoom));
	}

	void Reach(const char* place) override
	{
		if (_text != nullptr)
			_text->NoteGrowth(_path.CountBytes() - std::exchange(_noted, _path.CountBytes()), place);
	}

	/// The end of the attribute, where it is in the text that goes.
	Result<void> Exit(const char* place = nullptr) noexcept
	{
		Reach(place);
		_path.Compact();
		return std::move(_result);
	}

private:
	using Kind = grammar::PathSegment::Kind;
	static_assert(static_cast<int>(Kind::move) == static_cast<int>(SVGPathCommandType::move));
	static_assert(static_cast<int>(Kind::line) == static_cast<int>(SVGPathCommandType::line));
	static_assert(static_cast<int>(Kind::cubic) == static_cast<int>(SVGPathCommandType::cubic));
	static_assert(static_cast<int>(Kind::close) == static_cast<int>(SVGPathCommandType::close));

	void Note(Result<void> result) noexcept
	{
		if (!result.IsOk()) [[unlikely]]
			_result = std::move(result);
	}

	PathData& _path;
	TextRelease* _text = nullptr;
	std::size_t _noted = 0; ///< How many bytes `_text` knows of.
	Result<void> _result;
};

} // namespace orvan::svg
