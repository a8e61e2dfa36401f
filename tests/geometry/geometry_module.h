// SPDX-License-Identifier: MIT
/// Questions about pictures that are made of texts.
#pragma once

#include "support/svg_module.h"
#include "svg_geometry.h"
#include "svg_import.h"

#include <cmath>
#include <cstdio>

namespace orvan
{

/// A document of 100 by 100, and what answers for it.
class AskedPicture
{
public:
	explicit AskedPicture(const std::string& elements, const std::string& rootAttributes = "width='100' height='100'")
		: _document(Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass))),
		  geometry(Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass)))
	{
		SVGImportOptions options;
		options.isTolerant = options.isComplete = true;
		Must(Cast<SVGDocumentImportInterface>(_document)->SetImportOptions(options));
		const std::string text =
			"<svg xmlns='http://www.w3.org/2000/svg' " + rootAttributes + ">" + elements + "</svg>";
		const TextFile file(text);
		Must(_document->Init(file.GetUrl()));
		Must(geometry->SetDocument(_document, {}));
	}

	SVGElementRef operator[](std::string_view id) const
	{
		return Must(_document->GetElementById(Text(id)));
	}

	/// "x y width height" with three digits behind the point at most, or "empty".
	std::string BoxOf(std::string_view id, SVGBoxKind kind = SVGBoxKind::fill,
					  SVGCoordinates coordinates = SVGCoordinates::view) const
	{
		return Describe(Must(geometry->GetBox((*this)[id], kind, coordinates)));
	}

	static std::string Describe(const SVGBox& box)
	{
		return box.isEmpty ? "empty"
						   : Round(box.x) + ' ' + Round(box.y) + ' ' + Round(box.width) + ' ' + Round(box.height);
	}

	/// The ids of what is at a point, the topmost first, uses in front of what they show: "u>r q".
	std::string At(double x, double y, const SVGHitOptions& options = {.findsAll = true}) const
	{
		return Describe(Must(geometry->FindAt({x, y}, options)));
	}

	static std::string Describe(const SVGHits& found)
	{
		std::string ids;
		for (const SVGHit& hit : found.hits)
		{
			ids += ids.empty() ? "" : " ";
			for (std::int32_t use = 0; use < hit.useCount; use++)
				ids += found.uses[static_cast<std::size_t>(hit.firstUse + use)]->GetId().CString() + std::string(">");
			ids += hit.element->GetId().CString();
		}
		return ids;
	}

	static std::string Round(double number)
	{
		char text[64];
		std::snprintf(text, sizeof(text), "%.12g", std::round(number * 1000.0) / 1000.0 + 0.0);
		return text;
	}

private:
	SVGDocumentRef _document;

public:
	const SVGDocumentRef& GetDocument() const
	{
		return _document;
	}

	SVGGeometryRef geometry;
};

class GeometryTest : public SvgModuleTest
{
protected:
	static void SetUpTestSuite()
	{
		SvgModuleTest::SetUpTestSuite();
		_geometry = Must(Module::Load(ORVAN_GEOMETRY_MODULE));
	}

	static void TearDownTestSuite()
	{
		EXPECT_EQ("no error", MessageOf(Module::Unload(_geometry)));
		SvgModuleTest::TearDownTestSuite();
	}

private:
	static inline Module* _geometry = nullptr;
};

} // namespace orvan
