// SPDX-License-Identifier: MIT
#include "text_positions.h"

#include "path_walker.h"

#include <numbers>
#include <utility>

namespace orvan::drawing
{
namespace
{

constexpr double kDegree = std::numbers::pi / 180.0;

/// What clusters take up along their line.
struct Extent1d
{
	double start = std::numeric_limits<double>::infinity();
	double end = -std::numeric_limits<double>::infinity();

	void Add(double at, double advance) noexcept
	{
		start = std::min({start, at, at + advance});
		end = std::max({end, at, at + advance});
	}

	bool IsEmpty() const noexcept
	{
		return !(start <= end);
	}
};

/// The steps of the layout, in their order.
class Positioner
{
public:
	Positioner(const TextContent& content, const ShapedText& text) noexcept
		: _content(content), _characters(content.GetCharacters()), _spans(content.GetSpans()), _clusters(text.clusters),
		  _isVertical(content.IsVertical())
	{
	}

	Result<BaseArray<TextPosition>> Place() noexcept
	{
		ORVAN_TRY(_positions.Resize(_clusters.GetCount()));
		ORVAN_TRY(_clusterOf.Resize(_characters.GetCount()));
		for (std::size_t i = 0; i < _clusters.GetCount(); i++)
			_clusterOf[_clusters[i].first] = static_cast<int>(i) + 1;
		LayOutLine();
		Shift();
		ORVAN_TRY(AdjustLengths());
		ORVAN_TRY(PlaceChunks());
		for (std::size_t i = 0; _content.RunsUpwards() && i < _clusters.GetCount(); i++)
		{
			if (PathOf(_clusters[i].first) < 0)
				_positions[i].point.y = -_positions[i].point.y;
		}
		return std::move(_positions);
	}

private:
	double& Along(Vector2d& point) const noexcept
	{
		return _isVertical ? point.y : point.x;
	}

	double GetAdvance(std::size_t cluster) const noexcept
	{
		return _clusters[cluster].advance * _positions[cluster].stretch;
	}

	/// The cluster that starts with a character; null for characters inside of one.
	TextPosition* PositionOf(std::size_t character) noexcept
	{
		const int number = _clusterOf[character];
		return number != 0 ? &_positions[static_cast<std::size_t>(number) - 1] : nullptr;
	}

	/// The clusters of some characters: the first, and the one behind the last.
	std::pair<std::size_t, std::size_t> FindClusters(std::size_t first, std::size_t end) const noexcept
	{
		std::size_t from = _clusters.GetCount();
		std::size_t to = 0;
		for (std::size_t i = first; i < end; i++)
		{
			if (_clusterOf[i] == 0)
				continue;
			from = std::min(from, static_cast<std::size_t>(_clusterOf[i]) - 1);
			to = std::max(to, static_cast<std::size_t>(_clusterOf[i]));
		}
		return {from, to};
	}

	int PathOf(std::size_t character) const noexcept
	{
		return _spans[static_cast<std::size_t>(_characters[character].span)].path;
	}

	/// One cluster after the other, as if nothing was said.
	void LayOutLine() noexcept
	{
		double pen = 0.0;
		for (std::size_t i = 0; i < _clusters.GetCount(); i++)
		{
			TextPosition& position = _positions[i];
			Along(position.point) = pen;
			pen += _clusters[i].advance;
			const double rotation = _characters[_clusters[i].first].rotation;
			position.rotation = std::isfinite(rotation) ? rotation * kDegree : 0.0;
		}
	}

	/// The shifts: each holds for all characters that follow.
	void Shift() noexcept
	{
		Vector2d shift;
		for (std::size_t i = 0; i < _characters.GetCount(); i++)
		{
			shift = shift + Vector2d{_characters[i].dx, _characters[i].dy};
			if (TextPosition* const position = PositionOf(i))
				position->point = position->point + shift;
		}
	}

	// The lengths that are asked for ----------------------------------------------------------------------------------

	/// The innermost spans come first: they count as one piece in those around them.
	Result<void> AdjustLengths() noexcept
	{
		bool isAsked = false;
		for (const TextSpan& span : _spans)
			isAsked = isAsked || span.textLength >= 0.0;
		if (!isAsked)
			return {};
		ORVAN_TRY(_adjusted.Resize(_clusters.GetCount()));
		for (std::size_t i = _spans.GetCount(); i-- > 0;)
		{
			if (_spans[i].textLength >= 0.0)
				AdjustLength(_spans[i], static_cast<int>(i) + 1);
		}
		return {};
	}

	void AdjustLength(const TextSpan& span, int number) noexcept
	{
		const auto isWithin = [&](std::size_t cluster)
		{
			return _clusters[cluster].first >= span.first && _clusters[cluster].first < span.end;
		};
		const auto [from, to] = FindClusters(span.first, span.end);
		Extent1d extent;
		int gaps = -1;
		int lastPiece = 0;
		for (std::size_t i = from; i < to; i++)
		{
			if (!isWithin(i))
				continue;
			extent.Add(Along(_positions[i].point), GetAdvance(i));
			gaps += _adjusted[i] == 0 || _adjusted[i] != lastPiece ? 1 : 0;
			lastPiece = _adjusted[i];
		}
		const double length = extent.end - extent.start;
		const bool isStretched = span.stretchesGlyphs;
		if (extent.IsEmpty() || (isStretched ? !(length > 0.0) : gaps < 1))
			return;
		// What follows keeps the distance that the characters have among themselves.
		const double missing = span.textLength - length;
		const double behind = isStretched ? missing : missing + missing / gaps;
		double shift = 0.0;
		bool isFirst = true;
		lastPiece = 0;
		for (std::size_t i = to; i < _clusters.GetCount(); i++)
			Along(_positions[i].point) += behind;
		for (std::size_t i = from; i < to; i++)
		{
			double& along = Along(_positions[i].point);
			if (!isWithin(i))
			{
				along += shift;
				continue;
			}
			if (isStretched)
			{
				along = extent.start + (along - extent.start) * (span.textLength / length);
				_positions[i].stretch *= span.textLength / length;
			}
			else
			{
				const bool isNewPiece = _adjusted[i] == 0 || _adjusted[i] != lastPiece;
				shift += !isFirst && isNewPiece ? missing / gaps : 0.0;
				along += shift;
			}
			isFirst = false;
			lastPiece = _adjusted[i];
			_adjusted[i] = number;
		}
	}

	// Positions, anchors and paths ------------------------------------------------------------------------------------

	/// Chunk by chunk: what a chunk starts with may be where the path before it ends.
	Result<void> PlaceChunks() noexcept
	{
		for (const TextPath& path : _content.GetPaths())
			ORVAN_TRY(_walkers.Append(ORVAN_TRY(PathWalker::Create(path.outline))));
		Vector2d shift;
		Vector2d pathEnd;
		bool isBehindPath = false;
		for (std::size_t first = 0; first < _characters.GetCount();)
		{
			std::size_t end = first + 1;
			while (end < _characters.GetCount() && !_characters[end].startsChunk && PathOf(end) == PathOf(first))
				end++;
			const int path = PathOf(first);
			const bool startsPath = path >= 0 && (first == 0 || PathOf(first - 1) != path);
			TextCharacter start = _characters[first];
			if (startsPath)
			{
				start.x = _isVertical || std::isnan(start.x) ? 0.0 : start.x;
				start.y = !_isVertical || std::isnan(start.y) ? 0.0 : start.y;
			}
			else if (isBehindPath && path < 0)
			{
				start.x = std::isnan(start.x) ? pathEnd.x : start.x;
				start.y = std::isnan(start.y) ? pathEnd.y : start.y;
			}
			Move(start, first, end, shift);
			if (_characters[first].startsChunk)
				Anchor(first, end);
			isBehindPath = path >= 0;
			if (path >= 0)
				pathEnd = PlaceOnPath(static_cast<std::size_t>(path), first, end);
			first = end;
		}
		return {};
	}

	/// Moves characters to where the first of them is said to stand.
	void Move(const TextCharacter& start, std::size_t first, std::size_t end, Vector2d& shift) noexcept
	{
		if (const TextPosition* const position = FindFirst(first, end))
		{
			if (!std::isnan(start.x))
				shift.x = start.x + start.dx - position->point.x;
			if (!std::isnan(start.y))
				shift.y = start.y + start.dy - position->point.y;
		}
		for (std::size_t i = first; i < end; i++)
		{
			if (TextPosition* const position = PositionOf(i))
				position->point = position->point + shift;
		}
	}

	const TextPosition* FindFirst(std::size_t first, std::size_t end) noexcept
	{
		for (std::size_t i = first; i < end; i++)
		{
			if (const TextPosition* const position = PositionOf(i))
				return position;
		}
		return nullptr;
	}

	/// What a chunk takes up: its pieces, each as long as its characters together. Letters that are drawn back over
	/// each other take up nothing.
	Extent1d MeasureChunk(std::size_t first, std::size_t end) noexcept
	{
		constexpr double kTolerance = 1e-6;
		auto [from, to] = FindClusters(first, end);
		Extent1d extent;
		while (from < to)
		{
			const double start = Along(_positions[from].point);
			double length = 0.0;
			do
				length += GetAdvance(from++);
			while (from < to && std::abs(Along(_positions[from].point) - start - length) <= kTolerance);
			extent.Add(start, std::max(length, 0.0));
		}
		return extent;
	}

	void Anchor(std::size_t first, std::size_t end) noexcept
	{
		const TextPosition* const start = FindFirst(first, end);
		if (start == nullptr)
			return;
		const Extent1d extent = MeasureChunk(first, end);
		const Style& style = _spans[static_cast<std::size_t>(_characters[first].span)].frame->place.style;
		const bool isReversed = style.direction == SVGDirection::rightToLeft;
		const double anchor = _isVertical ? start->point.y : start->point.x;
		double shift = 0.0;
		if (style.textAnchor == SVGTextAnchor::middle)
			shift = anchor - (extent.start + extent.end) / 2.0;
		else if ((style.textAnchor == SVGTextAnchor::start) != isReversed)
			shift = anchor - extent.start;
		else
			shift = anchor - extent.end;
		for (std::size_t i = first; i < end; i++)
		{
			if (TextPosition* const position = PositionOf(i))
				Along(position->point) += shift;
		}
	}

	/// Bends a part of a line along a path, and returns the path's end.
	Vector2d PlaceOnPath(std::size_t path, std::size_t first, std::size_t end) noexcept
	{
		const PathWalker& walker = _walkers[path];
		const double startOffset = _content.GetPaths()[path].startOffset;
		const bool isReversed = _content.GetPaths()[path].isReversed;
		for (std::size_t i = first; i < end; i++)
		{
			TextPosition* const position = PositionOf(i);
			if (position == nullptr)
				continue;
			const double half = GetAdvance(static_cast<std::size_t>(position - _positions.begin())) / 2.0;
			const double middle = Along(position->point) + half + startOffset;
			position->isHidden = !(middle >= 0.0 && middle <= walker.GetLength()) || walker.GetLength() == 0.0;
			PathPoint place = walker.GetPoint(isReversed ? walker.GetLength() - middle : middle);
			if (isReversed)
				place.angle += std::numbers::pi;
			const double cosine = std::cos(place.angle);
			const double sine = std::sin(place.angle);
			const double aside = _isVertical ? -position->point.x : position->point.y;
			position->point = {place.point.x - half * cosine - aside * sine,
							   place.point.y - half * sine + aside * cosine};
			position->pivot = half;
			position->turn = place.angle - (_isVertical ? std::numbers::pi / 2.0 : 0.0);
		}
		return walker.GetPoint(isReversed ? 0.0 : walker.GetLength()).point;
	}

	const TextContent& _content;
	const BaseArray<TextCharacter>& _characters;
	const BaseArray<TextSpan>& _spans;
	const BaseArray<TextCluster>& _clusters;
	const bool _isVertical;
	BaseArray<TextPosition> _positions;
	BaseArray<int> _clusterOf;      ///< By character: one more than the cluster that starts there, or 0.
	BaseArray<PathWalker> _walkers; ///< By path.
	BaseArray<int> _adjusted;       ///< By cluster: the span whose length was last adjusted.
};

} // namespace

Result<BaseArray<TextPosition>> PlaceText(const TextContent& content, const ShapedText& text) noexcept
{
	return Positioner(content, text).Place();
}

} // namespace orvan::drawing
