// SPDX-License-Identifier: MIT
#include "lighting.h"

#include "pixel.h"

#include <cmath>

namespace orvan::filters
{
namespace
{

Point3 Normalize(const Point3& v) noexcept
{
	const float length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
	return length > 0.0F ? Point3{v.x / length, v.y / length, v.z / length} : Point3{0.0F, 0.0F, 1.0F};
}

float Dot(const Point3& a, const Point3& b) noexcept
{
	return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The normal of the surface at a pixel. Where a neighbour is missing, at the edges, the standard's tables leave its
/// column or row out and weigh the others accordingly: the two weights that remain make up for the third.
class Normals
{
public:
	Normals(const Raster& input, const Box& edges, const Surface& surface) noexcept
		: _input(input), _edges(edges), _surface(surface)
	{
	}

	Point3 At(int x, int y) const noexcept
	{
		const Range columns = GetRange(x, _edges.left, _edges.right);
		const Range rows = GetRange(y, _edges.top, _edges.bottom);
		const float slopeX = GetSlope(columns, rows, y, [&](int along, int across) { return Height(along, across); });
		const float slopeY = GetSlope(rows, columns, x, [&](int along, int across) { return Height(across, along); });
		return Normalize({-_surface.heightX * slopeX, -_surface.heightY * slopeY, 1.0F});
	}

private:
	/// Which neighbours there are.
	struct Range
	{
		int first;
		int last;
	};

	static Range GetRange(int at, int first, int end) noexcept
	{
		return {std::max(at - 1, first), std::min(at + 1, end - 1)};
	}

	float Height(int x, int y) const noexcept
	{
		return static_cast<float>(_input.At(x, y) >> 24) / 255.0F;
	}

	template <typename GetHeight>
	static float GetSlope(const Range& along, const Range& across, int crossing, GetHeight height) noexcept
	{
		const int distance = along.last - along.first;
		if (distance <= 0)
			return 0.0F;
		float sum = 0.0F;
		float weights = 0.0F;
		for (int other = across.first; other <= across.last; other++)
		{
			const float weight = other == crossing ? 2.0F : 1.0F;
			sum += weight * (height(along.last, other) - height(along.first, other));
			weights += weight;
		}
		return 2.0F * sum / (weights * static_cast<float>(distance));
	}

	const Raster& _input;
	const Box& _edges;
	const Surface& _surface;
};

/// How much of a spot light falls in a direction.
float GetSpotShare(const Light& light, const Point3& axis, const Point3& toLight) noexcept
{
	const float cosine = -Dot(toLight, axis);
	if (cosine <= 0.0F || cosine < light.coneCosine)
		return 0.0F;
	// Across the edge of the cone the light fades over a small angle, so that the edge is soft.
	constexpr float kSoftEdge = 0.016F;
	const float edge = light.coneCosine < -1.0F ? 1.0F : std::min(1.0F, (cosine - light.coneCosine) / kSoftEdge);
	return std::pow(cosine, light.exponent) * edge;
}

} // namespace

Raster Illuminate(const Raster& input, const Box& edges, const Surface& surface, const Light& light, const Box& area,
				  const Alarm& alarm) noexcept
{
	Raster result(area);
	const Normals normals(input, edges, surface);
	const Channels color = Split(light.color);
	const Point3 axis = Normalize(
		{light.target.x - light.position.x, light.target.y - light.position.y, light.target.z - light.position.z});
	for (int y = area.top; y < area.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = area.left; x < area.right; x++)
		{
			Point3 toLight = light.direction;
			if (light.kind != LightKind::distant)
			{
				const float z = surface.height * static_cast<float>(input.At(x, y) >> 24) / 255.0F;
				toLight = Normalize({light.position.x - static_cast<float>(x), light.position.y - static_cast<float>(y),
									 light.position.z - z});
			}
			const float share = light.kind == LightKind::spot ? GetSpotShare(light, axis, toLight) : 1.0F;
			const Point3 normal = normals.At(x, y);
			float strength = surface.constant * share;
			if (surface.isSpecular)
			{
				const Point3 half = Normalize({toLight.x, toLight.y, toLight.z + 1.0F});
				const float cosine = Dot(normal, half);
				strength *= cosine > 0.0F ? std::pow(cosine, surface.exponent) : 0.0F;
			}
			else
				strength *= std::max(Dot(normal, toLight), 0.0F);
			const auto shine = [&](int channel)
			{
				return ToByte(static_cast<float>(channel) * strength);
			};
			const Channels lit{shine(color.blue), shine(color.green), shine(color.red), 255};
			const int alpha = surface.isSpecular ? std::max({lit.blue, lit.green, lit.red}) : 255;
			row[x - area.left] = Join({lit.blue, lit.green, lit.red, alpha});
		}
	}
	return result;
}

} // namespace orvan::filters
