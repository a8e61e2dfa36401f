// SPDX-License-Identifier: MIT
/// What the module publishes, against lists that are written down here once more.
#include "support/svg_module.h"

#include <map>
#include <sstream>

namespace orvan
{
namespace
{

std::vector<std::string> Words(const std::string& text)
{
	std::istringstream stream(text);
	return {std::istream_iterator<std::string>(stream), {}};
}

/// Interfaces: the last part of the id, the name without "orvan." and "Interface", and the methods in slot order.
struct InterfaceRow
{
	const char* id;
	const char* name;
	const char* methods;
};

constexpr InterfaceRow kInterfaces[] = {
	{"svgdocument", "SVGDocument", "Init Reset GetUrl GetRootElement GetElementById GetElementsByIdWithPrefix"},
	{"svgcontext", "SVGContext", "DrawSVG DrawUse DrawGroup DrawPath DrawRectangle DrawLine DrawCircle DrawText"},
	{"svgelement", "SVGElement",
	 "SetId GetId SetElementType GetElementType GetAttributeDictionary SetAttribute HasAttribute SetLocalTransform "
	 "GetLocalTransform GetWorldTransform SetVisibility GetVisibility SetDisplay GetDisplay SetOpacity GetOpacity "
	 "SetFill GetFill SetFillRule GetFillRule SetFillOpacity GetFillOpacity SetStroke GetStroke SetStrokeOpacity "
	 "GetStrokeOpacity SetStrokeWidth GetStrokeWidth SetStrokeLineCap GetStrokeLineCap SetStrokeLineJoin "
	 "GetStrokeLineJoin SetStrokeMiterLimit GetStrokeMiterLimit SetStrokeDashArray GetStrokeDashArray "
	 "SetStrokeDashOffset GetStrokeDashOffset MarkTransformDirty IsTransformDirty SetTranslation SetRotation "
	 "SetRotationPivot SetScale GetTranslation GetRotation GetScale AddTranslation AddRotation AddScale SetMask "
	 "GetMask "
	 "SetClipPath GetClipPath"},
	{"svgfittoviewbox", "SVGFitToViewbox", "SetViewbox GetViewbox GetPreserveAspectRatio"},
	{"svgradius", "SVGRadius", "SetRadiusX GetRadiusX SetRadiusY GetRadiusY SetRadius GetRadius"},
	{"svgposition", "SVGPosition", "SetX GetX SetY GetY SetPosition GetPosition"},
	{"svgsize", "SVGSize", "SetWidth GetWidth SetHeight GetHeight SetSize GetSize"},
	{"svgsvgelement", "SVGSVGElement", "SetViewport GetViewport"},
	{"svguseelement", "SVGUseElement", "SetLink GetLink IsLinkDirty SetShadowRoot"},
	{"svgdefselement", "SVGDefsElement", ""},
	{"svgsymbolelement", "SVGSymbolElement", ""},
	{"svggroupelement", "SVGGroupElement", ""},
	{"svglineargradientelement", "SVGLinearGradientElement", "GetLinearGradient"},
	{"svgradialgradientelement", "SVGRadialGradientElement", "GetRadialGradient"},
	{"svgstopelement", "SVGStopElement", "GetOffset GetColor GetOpacity"},
	{"svgpathelement", "SVGPathElement", "GetPath MoveTo LineTo CubicBezierTo CloseSubpath PathExit"},
	{"svgrectelement", "SVGRectElement", ""},
	{"svgcircleelement", "SVGCircleElement", ""},
	{"svglineelement", "SVGLineElement", "SetX1 SetX2 SetY1 SetY2 GetX1 GetX2 GetY1 GetY2 SetPt1 SetPt2 GetPt1 GetPt2"},
	{"svgtextelement", "SVGTextElement",
	 "SetText GetText SetFontSize GetFontSize SetFont GetFont SetFontStyle GetFontStyle SetFontWeight GetFontWeight"},
	{"svgmaskelement", "SVGMaskElement", ""},
	{"svgclippathelement", "SVGClipPathElement", ""},
	{"vectoricon", "VectorIcon",
	 "SetLayerEnabled ToggleLayer GetLayer SetState GetState SetLiveReloadEnabled GlobalSetLiveReloadEnabled "
	 "GlobalGetLiveReloadEnabled"},
	// Published later, in this order.
	{"svgdocumentimport", "SVGDocumentImport", "SetImportOptions GetImportOptions InitFromMemory GetImportReport"},
	{"svglink", "SVGLink", "SetLink GetLink"},
	{"svgpatternelement", "SVGPatternElement",
	 "SetPatternUnits GetPatternUnits SetPatternContentUnits GetPatternContentUnits SetPatternTransform "
	 "GetPatternTransform"},
	{"svgmarkerelement", "SVGMarkerElement",
	 "SetRefX GetRefX SetRefY GetRefY SetMarkerWidth GetMarkerWidth SetMarkerHeight GetMarkerHeight SetMarkerUnits "
	 "GetMarkerUnits SetOrient GetOrient"},
	{"svgimageelement", "SVGImageElement", "SetPreserveAspectRatio GetPreserveAspectRatio"},
	{"svgswitchelement", "SVGSwitchElement", ""},
	{"svganchorelement", "SVGAnchorElement", "SetTarget GetTarget"},
	{"svgtextcontent", "SVGTextContent",
	 "GetCharacters SetXList GetXList SetYList GetYList SetDxList GetDxList SetDyList GetDyList SetRotations "
	 "GetRotations"},
	{"svgtextpathelement", "SVGTextPathElement", "SetStartOffset GetStartOffset"},
	{"svgtextrun", "SVGTextRun", "SetText GetText"},
	{"svgfilterelement", "SVGFilterElement", "SetFilterUnits GetFilterUnits SetPrimitiveUnits GetPrimitiveUnits"},
	{"svgfilterprimitive", "SVGFilterPrimitive", "SetInput GetInput SetSecondInput GetSecondInput SetResult GetResult"},
	{"svgfilterpart", "SVGFilterPart", ""},
	{"svgdescription", "SVGDescription", "SetText GetText"},
	{"svgforeignobjectelement", "SVGForeignObjectElement", ""},
	{"svgelementedit", "SVGElementEdit",
	 "GetDocument GetChildCount GetChildAt GetIndex Remove InsertChildBefore ReplaceWith RemoveAttribute "
	 "GetAttributeNumbers CopyAttribute CopyAttributes"},
	{"svgpathedit", "SVGPathEdit", "Clear SetPath GetPathView GetPathData SetPathData"},
	{"svguseedit", "SVGUseEdit", "GetShadowRoot ResolveLink"},
	{"svgdocumentedit", "SVGDocumentEdit",
	 "AddObserver RemoveObserver BeginTransaction CommitTransaction RollbackTransaction IsInTransaction Undo Redo "
	 "GetUndoCount GetRedoCount SetUndoLimit ClearHistory RenameId SetRootElement"},
	{"vectoricontheme", "VectorIconTheme",
	 "SetCurrentColor ClearCurrentColor SetStyleSheet GetStyleSheet GetLoadCount GetStateLayers SetStateLayer "
	 "GetStateLayer"},
	{"svgdocumentsource", "SVGDocumentSource",
	 "Save SaveToMemory HasSource GetTag GetAttributeNames GetRawAttribute GetAttributeText SetAttributeText "
	 "RemoveAttributeText FormatValue ParseValue Select Repair GetSourceText GetKindName FindKind GetEnumerators"},
};

constexpr const char* kReferenceTypes =
	"VectorIcon SVGClipPathElement SVGMaskElement SVGTextElement SVGLineElement SVGCircleElement SVGRectElement "
	"SVGPathElement SVGStopElement SVGRadialGradientElement SVGLinearGradientElement SVGGroupElement SVGSymbolElement "
	"SVGDefsElement SVGUseElement SVGSVGElement SVGElement SVGSize SVGPosition SVGRadius SVGFitToViewbox SVGContext "
	"SVGDocument "
	// Published later, in this order.
	"SVGDocumentImport SVGLink SVGPatternElement SVGMarkerElement SVGImageElement SVGSwitchElement SVGAnchorElement "
	"SVGTextContent SVGTextPathElement SVGTextRun SVGFilterElement SVGFilterPrimitive SVGFilterPart SVGDescription "
	"SVGForeignObjectElement SVGElementEdit SVGPathEdit SVGUseEdit SVGDocumentEdit VectorIconTheme "
	"SVGDocumentSource";

constexpr const char* kClasses =
	"svgdocument svgcontext svgelement svgsvgelement svguseelement svgdefselement svgsymbolelement svggroupelement "
	"svglineargradientelement svgradialgradientelement svgstopelement svgpathelement svgrectelement svgcircleelement "
	"svglineelement svgtextelement svgmaskelement svgclippathelement vectoricon "
	// Published later, in this order.
	"svgpatternelement svgmarkerelement svgimageelement svgswitchelement svganchorelement svgtspanelement "
	"svgtextpathelement svgfilterelement svgfeblendelement svgfecolormatrixelement svgfecomponenttransferelement "
	"svgfecompositeelement svgfeconvolvematrixelement svgfediffuselightingelement svgfedisplacementmapelement "
	"svgfedropshadowelement svgfefloodelement svgfegaussianblurelement svgfeimageelement svgfemergeelement "
	"svgfemorphologyelement svgfeoffsetelement svgfespecularlightingelement svgfetileelement svgfeturbulenceelement "
	"svgfedistantlightelement svgfepointlightelement svgfespotlightelement svgfefuncrelement svgfefuncgelement "
	"svgfefuncbelement svgfefuncaelement svgfemergenodeelement svgtitleelement svgdescelement svgstyleelement "
	"svgmetadataelement svgforeignobjectelement svgtextrunelement";

constexpr const char* kDataTypes = "SVGPaint SVGLength SVGLength2d SVGPathCommand SVGGradientStop SVGLinearGradient "
								   "SVGRadialGradient SVGViewbox SVGViewport SVGPreserveAspectRatio SVGOrient "
								   "SVGBaselineShift SVGFilterFunction SVGClipShape";

class Registration : public SvgModuleTest
{
protected:
	using Kind = RegistrationEntry::Kind;

	static std::vector<const RegistrationEntry*> Entries(Kind kind)
	{
		std::vector<const RegistrationEntry*> entries;
		for (const RegistrationEntry* entry = module->GetFirstRegistration(); entry != nullptr;
			 entry = entry->GetNext())
		{
			EXPECT_TRUE(module->IsRegistered(*entry)) << entry->GetName();
			if (entry->GetKind() == kind)
				entries.push_back(entry);
		}
		return entries;
	}

	static std::vector<std::string> Names(Kind kind)
	{
		std::vector<std::string> names;
		for (const RegistrationEntry* entry : Entries(kind))
			names.emplace_back(entry->GetName());
		return names;
	}

	static std::vector<std::string> Prefixed(const std::string& prefix, const char* words,
											 const std::string& suffix = "")
	{
		std::vector<std::string> names;
		for (const std::string& word : Words(words))
			names.push_back(prefix + word + suffix);
		return names;
	}
};

TEST_F(Registration, NamesItsUnitsInTheirOrder)
{
	EXPECT_EQ(
		Words("interface_registration register svg_base_impl svg_elements_impl svg_importer_svgpp vector_icon_impl"),
		Names(Kind::unit));
}

TEST_F(Registration, PublishesTheInterfacesWithTheirSlots)
{
	const auto entries = Entries(Kind::interface);
	ASSERT_EQ(std::size(kInterfaces), entries.size());
	for (std::size_t i = 0; i < entries.size(); i++)
	{
		const auto& declaration = entries[i]->GetDeclaration<InterfaceDeclaration>();
		EXPECT_EQ(std::string("net.orvan.image.interface.") + kInterfaces[i].id, declaration.id);
		EXPECT_EQ("orvan." + std::string(kInterfaces[i].name) + "Interface", declaration.name);
		EXPECT_EQ(std::string("net.orvan.core.interface.object"), declaration.baseId);
		EXPECT_EQ(Words(kInterfaces[i].methods),
				  std::vector<std::string>(declaration.methodNames, declaration.methodNames + declaration.slotCount));
	}
}

TEST_F(Registration, PublishesReferenceTypesInTheirOwnOrder)
{
	EXPECT_EQ(Prefixed("orvan::", kReferenceTypes, "Ref"), Names(Kind::referenceType));
}

TEST_F(Registration, NamesItselfOnceWithItsFrameworks)
{
	EXPECT_EQ(Words("net.orvan.svg"), Names(Kind::module));
	EXPECT_EQ("net.orvan.svg", module->GetId());
	EXPECT_EQ(Words("net.orvan.svg.framework net.orvan.core.framework net.orvan.misc.framework"),
			  Names(Kind::framework));
	const auto& framework = Entries(Kind::framework)[0]->GetDeclaration<FrameworkDeclaration>();
	EXPECT_EQ(FrameworkDeclaration::Role::defined, framework.role);
	EXPECT_EQ(Words("svg_types svg_elements svg_base vector_icon svg_import svg_complete svg_edit vector_icon_theme "
					"svg_source"),
			  std::vector<std::string>(framework.headers, framework.headers + framework.headerCount));
	for (const std::size_t i : {1u, 2u})
		EXPECT_EQ(FrameworkDeclaration::Role::used,
				  Entries(Kind::framework)[i]->GetDeclaration<FrameworkDeclaration>().role);
}

TEST_F(Registration, ComesInItsOrder)
{
	// The first entry of each kind, in the order of the list.
	std::vector<Kind> kinds;
	for (const RegistrationEntry* entry = module->GetFirstRegistration(); entry != nullptr; entry = entry->GetNext())
	{
		if (std::find(kinds.begin(), kinds.end(), entry->GetKind()) == kinds.end())
			kinds.push_back(entry->GetKind());
	}
	EXPECT_EQ((std::vector{Kind::unit, Kind::interface, Kind::referenceType, Kind::module, Kind::framework,
						   Kind::classImplementation, Kind::use, Kind::dataType}),
			  kinds);
}

TEST_F(Registration, PublishesClassesAndDataTypes)
{
	EXPECT_EQ(Prefixed("net.orvan.image.class.", kClasses), Names(Kind::classImplementation));
	EXPECT_EQ(Prefixed("net.orvan.datatype.", kDataTypes), Names(Kind::dataType));
	for (const RegistrationEntry* entry : Entries(Kind::dataType))
	{
		const auto& declaration = entry->GetDeclaration<DataTypeDeclaration>();
		EXPECT_EQ("orvan::" + std::string(declaration.id).substr(19), declaration.name);
	}
}

TEST_F(Registration, SaysWhichHeadersItsUnitsUse)
{
	std::map<std::string, int> usesByUnit;
	for (const RegistrationEntry* entry : Entries(Kind::use))
	{
		const auto& use = entry->GetDeclaration<UseDeclaration>();
		usesByUnit[use.unit]++;
		if (use.declaration == std::string_view("SVGContextInterface"))
		{
			EXPECT_STREQ("svg_base", use.header);
		}
	}
	for (const std::string unit : {"svg_base_impl", "svg_elements_impl", "svg_importer_svgpp", "vector_icon_impl"})
		EXPECT_GT(usesByUnit[unit], 0) << unit;
}

TEST_F(Registration, MakesObjectsOfEveryClassButTheContext)
{
	for (const std::string& name : Words(kClasses))
	{
		const std::string id = "net.orvan.image.class." + name;
		const auto object = CreateObject<ObjectInterface>(id.c_str());
		EXPECT_EQ(name != "svgcontext", object.IsOk()) << id;
		if (object.IsOk())
		{
			EXPECT_EQ(id, object.GetValue()->GetClassId());
		}
		else
		{
			EXPECT_EQ(ErrorClass::notFound, object.GetError().GetClass());
		}
	}
	EXPECT_FALSE(CreateObject<ObjectInterface>("net.orvan.image.class.SVGDocument").IsOk()) << "ids respect case";
}

TEST_F(Registration, LetsReferencesStandInDictionaries)
{
	SVGElementRef element = Make("svgrectelement");
	const WeakRef observer = Must(WeakRef::To(element.GetObject()));
	DataDictionary dictionary;
	Must(dictionary.Set(1, element));
	element = nullptr;
	EXPECT_TRUE(observer.Lock()) << "the value is a strong reference";
	EXPECT_EQ(SVGImportElementKind::rect, (*dictionary.Find<SVGElementRef>(1))->GetElementType());
	dictionary = {};
	EXPECT_FALSE(observer.Lock());
}

} // namespace
} // namespace orvan
