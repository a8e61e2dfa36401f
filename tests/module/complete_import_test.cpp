// SPDX-License-Identifier: MIT
/// What a client asks of an import and learns from it, and what the complete import makes. The values that single
/// attributes come to are in the corpus.
#include "support/svg_module.h"
#include "svg_complete.h"
#include "svg_import.h"

#include <thread>
#include <zlib.h>

namespace orvan
{
namespace
{

using Outcome = SVGImportOutcome;

/// Sheets, entities, texts and elements of all sorts.
constexpr std::string_view kRich = R"(<?xml version='1.0'?>
<!DOCTYPE svg [<!ENTITY red 'fill:#f00'><!ENTITY nick 'a&lt;b'>]>
<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>
<style>.hot > rect:first-child { &red;; stroke: currentColor !important } @media print { rect { fill: blue } }</style>
<title id='title'>A &nick;</title>
<pattern id='pattern' patternTransform='scale(2)'><image id='image' href='p.png'/></pattern>
<marker id='marker' orient='auto'/>
<filter id='filter'><feBlend id='blend' in2='SourceAlpha'/><feMerge><feMergeNode/></feMerge></filter>
<linearGradient id='linear' xlink:href='#other'/>
<g class='hot'><rect id='rect' style='filter: blur(2px) url(#filter)'/></g>
<switch id='switch'><a id='anchor' href='x'><foreignObject id='foreign'/></a></switch>
<text id='text' x='1 2'>one <tspan id='tspan' dx='3'>two</tspan><textPath id='textpath' href='#p'> three</textPath></text>
</svg>)";

class CompleteImport : public SvgModuleTest
{
protected:
	struct Loaded
	{
		SVGDocumentRef document = MakeDocument();
		SVGDocumentImportRef import = Cast<SVGDocumentImportInterface>(document);
		SVGImportReport report;

		SVGElementRef operator[](std::string_view id) const
		{
			return Find(document, id);
		}
	};

	static SVGImportOptions Options(bool isTolerant = true, bool isComplete = true)
	{
		SVGImportOptions options;
		options.isTolerant = isTolerant;
		options.isComplete = isComplete;
		return options;
	}

	static Result<void> InitFrom(const SVGDocumentImportRef& import, std::string_view bytes, const Url& base = Url())
	{
		return import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), base);
	}

	static Loaded LoadWith(std::string_view bytes, const SVGImportOptions& options = Options())
	{
		const CollectedFindings ignored;
		Loaded loaded;
		Must(loaded.import->SetImportOptions(options));
		Must(InitFrom(loaded.import, bytes));
		loaded.report = Must(loaded.import->GetImportReport());
		return loaded;
	}

	/// "line:column tag#id attribute", one for each finding.
	static std::string Places(const SVGImportReport& report)
	{
		std::string places;
		for (const SVGImportFinding& finding : report.findings)
			places += std::to_string(finding.line) + ':' + std::to_string(finding.column) + ' ' +
					  finding.elementTag.CString() + '#' + finding.elementId.CString() + ' ' +
					  finding.attribute.CString() + '\n';
		return places;
	}

	/// The message for which a text is refused, tolerant or not.
	static std::string Refusal(std::string_view bytes)
	{
		const SVGImportReport report = LoadWith(bytes).report;
		EXPECT_EQ(Outcome::refused, report.outcome) << bytes.substr(0, 200);
		return report.findings.IsEmpty() ? "nothing" : report.findings[0].message.CString();
	}

	/// A document type with these declarations around a rect with this attribute.
	static std::string WithEntities(const std::string& declarations, const std::string& attribute)
	{
		return "<!DOCTYPE svg [" + declarations + "]>\n<svg><rect id='r' " + attribute + "/></svg>";
	}

	static std::string ClassOf(const SVGElementRef& element)
	{
		return element->GetAttributeDictionary()
			.GetOr<String>(static_cast<std::int32_t>(Attribute::classList), {})
			.CString();
	}

	static std::string Repeat(std::string_view text, int count)
	{
		std::string repeated;
		for (int i = 0; i < count; i++)
			repeated += text;
		return repeated;
	}

	static std::string Gzip(const std::string& text)
	{
		z_stream stream{};
		EXPECT_EQ(Z_OK, deflateInit2(&stream, 9, Z_DEFLATED, 16 + MAX_WBITS, 9, Z_DEFAULT_STRATEGY));
		std::string packed(deflateBound(&stream, text.size()), '\0');
		std::string input = text;
		stream.next_in = reinterpret_cast<Bytef*>(input.data());
		stream.avail_in = static_cast<uInt>(input.size());
		stream.next_out = reinterpret_cast<Bytef*>(packed.data());
		stream.avail_out = static_cast<uInt>(packed.size());
		EXPECT_EQ(Z_STREAM_END, deflate(&stream, Z_FINISH));
		packed.resize(stream.total_out);
		deflateEnd(&stream);
		return packed;
	}

	/// The classes of a tree and its characters: "svg(text('one ' tspan('two')))".
	static std::string Shape(const SVGElementRef& element)
	{
		if (const auto run = Cast<SVGTextRunInterface>(element))
			return '\'' + std::string(run->GetText().View()) + '\'';
		std::string shape = element->GetClassId();
		shape = shape.substr(std::string("net.orvan.image.class.svg").size());
		shape.resize(shape.size() - std::string("element").size());
		std::string children;
		for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child;
			 child = child->GetNextSibling())
			children += (children.empty() ? "" : " ") + Shape(Cast<SVGElementInterface>(child));
		return children.empty() ? shape : shape + '(' + children + ')';
	}
};

TEST_F(CompleteImport, IsTolerantAndCompleteIndependently)
{
	static constexpr std::string_view kText =
		"<svg><rect id='r' fill='nonsense' style='stroke:#0f08;opacity:.5'/></svg>";
	const auto load = [](bool isTolerant, bool isComplete)
	{
		return LoadWith(kText, Options(isTolerant, isComplete));
	};
	for (const bool isComplete : {false, true})
	{
		const Loaded refused = load(false, isComplete);
		EXPECT_EQ(Outcome::refused, refused.report.outcome);
		EXPECT_EQ(1, refused.report.findingCount);
		EXPECT_EQ(SVGFindingLevel::critical, refused.report.findings[0].level);
		EXPECT_EQ("svg(rect)", Outline(refused.document->GetRootElement()));
		const Loaded loaded = load(true, isComplete);
		EXPECT_EQ(Outcome::loadedWithFindings, loaded.report.outcome);
		EXPECT_EQ(SVGFindingLevel::warning, loaded.report.findings[0].level);
		EXPECT_EQ("fill", loaded.report.findings[0].attribute.View());
		// Only the complete import knows a colour with an alpha.
		EXPECT_EQ(isComplete ? 1 : 2, loaded.report.findingCount);
		EXPECT_FALSE(loaded["r"]->HasAttribute(Attribute::fill));
		EXPECT_EQ(isComplete, loaded["r"]->HasAttribute(Attribute::stroke));
		EXPECT_EQ(0.5, loaded["r"]->GetOpacity());
	}
	EXPECT_EQ(Outcome::loaded, LoadWith("<svg/>", Options(false, false)).report.outcome);
	EXPECT_EQ(Outcome::noSvgElement, LoadWith("<g/>").report.outcome);
	// Neither helps against text that is no XML.
	EXPECT_NE("nothing", Refusal("<svg><g></svg>"));
}

TEST_F(CompleteImport, TellsWhereItFoundWhat)
{
	constexpr std::string_view kText = "<!DOCTYPE svg [<!ENTITY long 'fill-rule'>]>\n"
									   "<svg>\n"
									   " <g id='g' class='&long;&long;'><rect id='r' fill='nonsense'/></g>\n"
									   " <path id='p' d='M0 0L1 1X'/>\n"
									   " <style>rect { &long;: odd }\n"
									   "  path { opacity: a }</style>\n"
									   " <circle r='1' style='fill: red; stroke-width: -1'/>\n"
									   "</svg>";
	const SVGImportReport report = LoadWith(kText).report;
	EXPECT_EQ("3:52 rect#r fill\n"
			  "5:24 rect#r fill-rule\n"
			  "4:26 path#p d\n"
			  "6:19 path#p opacity\n"
			  "7:48 circle# stroke-width\n",
			  Places(report));
	// The same places in the text of another encoding, whose columns are those of UTF-8.
	std::string wide = "\xff\xfe";
	for (const char c : kText)
		wide += {c, '\0'};
	EXPECT_EQ(Places(report), Places(LoadWith(wide).report));
	EXPECT_EQ("2:18 g#g fill\n", Places(LoadWith("<svg>\n <g id='g' fill='1'/></svg>", Options(false, true)).report));
	EXPECT_EQ("2:18 g#g fill\n", Places(LoadWith("<svg>\n <g id='g' fill='1'/></svg>", Options(false, false)).report));
}

TEST_F(CompleteImport, KeepsAHundredFindingsAndCountsTheOthers)
{
	Loaded loaded = LoadWith("<svg>" + Repeat("<g fill='1'/>", 150) + "</svg>");
	EXPECT_EQ(150, loaded.report.findingCount);
	EXPECT_EQ(100u, loaded.report.findings.GetCount());
	SVGImportReport copy;
	Must(copy.CopyFrom(loaded.report));
	EXPECT_EQ(Places(loaded.report), Places(copy));
	EXPECT_EQ(150, copy.findingCount);
	EXPECT_GT(FailEachAllocation([&] { return loaded.import->GetImportReport(); }), 0);
	loaded.document->Reset();
	const SVGImportReport empty = Must(loaded.import->GetImportReport());
	EXPECT_EQ(Outcome::empty, empty.outcome);
	EXPECT_EQ(0, empty.findingCount + static_cast<std::int64_t>(empty.findings.GetCount()));
}

TEST_F(CompleteImport, KeepsItsOptionsAndAsksThemAtEachLoad)
{
	for (const char* name : {"svgdocument", "vectoricon"})
	{
		const auto import = Make<SVGDocumentImportInterface>(name);
		const auto document = Cast<SVGDocumentInterface>(import);
		EXPECT_FALSE(import->GetImportOptions().isTolerant || import->GetImportOptions().isComplete);
		SVGImportOptions options = Options();
		options.styleSheet = Text("g { opacity: 0.25 }");
		Must(import->SetImportOptions(options));
		document->Reset();
		EXPECT_EQ(options.styleSheet, import->GetImportOptions().styleSheet);
		const TextFile file("<svg><style>g { opacity: 0.5; display: none }</style><g id='g' fill='1'/></svg>");
		for (int round = 0; round < 2; round++)
		{
			Must(document->Init(file.GetUrl()));
			EXPECT_EQ(0.25, Find(document, "g")->GetOpacity());
			EXPECT_EQ(1, Must(import->GetImportReport()).findingCount);
		}
		Must(import->SetImportOptions(SVGImportOptions()));
		EXPECT_EQ(0.25, Find(document, "g")->GetOpacity()) << "what is loaded stays";
		const CollectedFindings refusal;
		Must(document->Init(file.GetUrl()));
		EXPECT_EQ(Outcome::refused, Must(import->GetImportReport()).outcome);
		EXPECT_EQ(1u, refusal.lines.size());
	}
}

TEST_F(CompleteImport, LoadsFromMemory)
{
	for (const char* name : {"svgdocument", "vectoricon"})
	{
		const auto import = Make<SVGDocumentImportInterface>(name);
		const auto document = Cast<SVGDocumentInterface>(import);
		const Url base = Must(Url::FromPath("/pictures/a.svg"));
		std::string bytes = "<svg id='first'/>";
		Must(InitFrom(import, bytes, base));
		bytes.assign(bytes.size(), '?');
		EXPECT_EQ("first", document->GetRootElement()->GetId());
		EXPECT_EQ(base.GetText(), document->GetUrl().GetText());
		Must(InitFrom(import, "<svg id='second'/>", document->GetUrl()));
		EXPECT_EQ(base.GetText(), document->GetUrl().GetText());
		EXPECT_EQ("second", document->GetRootElement()->GetId());
		for (const auto& [pointer, count] : {std::pair(bytes.data(), -1), std::pair<char*, int>(nullptr, 1)})
		{
			const Result<void> result = import->InitFromMemory(pointer, count, base);
			ASSERT_FALSE(result.IsOk());
			EXPECT_EQ(ErrorClass::illegalArgument, result.GetError().GetClass());
			EXPECT_EQ("second", document->GetRootElement()->GetId()) << "nothing has changed";
		}
		const CollectedFindings findings;
		Must(import->InitFromMemory(nullptr, 0, Url()));
		EXPECT_EQ(Outcome::noSvgElement, Must(import->GetImportReport()).outcome);
		EXPECT_TRUE(document->GetUrl().IsEmpty());
	}
}

TEST_F(CompleteImport, MakesElementsOfAllKinds)
{
	const Loaded loaded = LoadWith(kRich);
	EXPECT_EQ("", Places(loaded.report));
	EXPECT_EQ("svg(style title pattern(image) marker filter(feblend femerge(femergenode)) lineargradient group(rect) "
			  "switch(anchor(foreignobject)) text('one ' tspan('two') textpath(' three')))",
			  Shape(loaded.document->GetRootElement()));
	EXPECT_EQ("one two three", Cast<SVGTextElementInterface>(loaded["text"])->GetText());
	EXPECT_EQ("one two three", Must(Cast<SVGTextContentInterface>(loaded["text"])->GetCharacters()));
	EXPECT_EQ("A a<b", Cast<SVGDescriptionInterface>(loaded["title"])->GetText());
	EXPECT_EQ("other", Cast<SVGLinkInterface>(loaded["linear"])->GetLink());
	EXPECT_EQ("x", Cast<SVGLinkInterface>(loaded["anchor"])->GetLink());
	EXPECT_EQ(SVGPaintType::currentColor, loaded["rect"]->GetStroke().type);
	EXPECT_EQ(1.0, loaded["rect"]->GetFill().color.red);
	EXPECT_EQ(2u, Must(Cast<SVGTextContentInterface>(loaded["text"])->GetXList()).GetCount());
	// All elements share the element interface, and copies have what their sources have.
	for (const char* id :
		 {"pattern", "image", "marker", "filter", "blend", "switch", "anchor", "foreign", "tspan", "textpath", "title"})
	{
		const SVGElementRef element = loaded[id];
		Must(element->SetDisplay(SVGDisplay::none));
		Must(element->SetOpacity(0.5));
		const SVGElementRef copy = Must(CloneObject(element));
		EXPECT_EQ(SVGDisplay::none, copy->GetDisplay()) << id;
		EXPECT_EQ(0.5, copy->GetOpacity()) << id;
		EXPECT_EQ(element->GetElementType(), copy->GetElementType()) << id;
		EXPECT_EQ(element->GetAttributeDictionary().GetCount(), copy->GetAttributeDictionary().GetCount()) << id;
	}
	EXPECT_EQ("A a<b", Must(CloneObject(Cast<SVGDescriptionInterface>(loaded["title"])))->GetText());
}

/// Sets a property away from its initial value, and looks where it went. `kind` is the element's, "marker" for example.
template <typename Interface, typename Given, typename Got>
void ExpectKept(const std::string& kind, Result<void> (Interface::*set)(Given) const, Got (Interface::*get)() const,
				const Got& initial, const Got& value, SVGImportAttribute key)
{
	const auto element =
		Must(CreateObject<SVGElementInterface>(("net.orvan.image.class.svg" + kind + "element").c_str()));
	const auto object = Cast<Interface>(element);
	SCOPED_TRACE(kind + " " + std::to_string(static_cast<int>(key)));
	EXPECT_TRUE(initial == (object.operator->()->*get)());
	EXPECT_FALSE(element->HasAttribute(key));
	Must((object.operator->()->*set)(value));
	EXPECT_TRUE(value == (object.operator->()->*get)());
	EXPECT_TRUE(element->HasAttribute(key));
	const auto copy = Cast<Interface>(Must(CloneObject(element)));
	EXPECT_TRUE(value == (copy.operator->()->*get)());
}

TEST_F(CompleteImport, ElementsHaveInitialValuesAndKeepWhatIsSet)
{
	using M = SVGMarkerElementInterface;
	using P = SVGPatternElementInterface;
	using F = SVGFilterElementInterface;
	using E = SVGFilterPrimitiveInterface;
	constexpr SVGLength kZero{0.0, SVGLengthUnit::number};
	constexpr SVGLength kThree{3.0, SVGLengthUnit::number};
	constexpr SVGLength kOther{5.0, SVGLengthUnit::mm};
	const String nothing, name = Text("name");
	ExpectKept("marker", &M::SetRefX, &M::GetRefX, kZero, kOther, Attribute::refX);
	ExpectKept("marker", &M::SetRefY, &M::GetRefY, kZero, kOther, Attribute::refY);
	ExpectKept("marker", &M::SetMarkerWidth, &M::GetMarkerWidth, kThree, kOther, Attribute::markerWidth);
	ExpectKept("marker", &M::SetMarkerHeight, &M::GetMarkerHeight, kThree, kOther, Attribute::markerHeight);
	ExpectKept("marker", &M::SetMarkerUnits, &M::GetMarkerUnits, SVGMarkerUnits::strokeWidth,
			   SVGMarkerUnits::userSpaceOnUse, Attribute::markerUnits);
	ExpectKept("pattern", &P::SetPatternUnits, &P::GetPatternUnits, SVGUnits::objectBoundingBox,
			   SVGUnits::userSpaceOnUse, Attribute::patternUnits);
	ExpectKept("pattern", &P::SetPatternContentUnits, &P::GetPatternContentUnits, SVGUnits::userSpaceOnUse,
			   SVGUnits::objectBoundingBox, Attribute::patternContentUnits);
	ExpectKept("pattern", &P::SetPatternTransform, &P::GetPatternTransform, Matrix2d(),
			   Matrix2d{{4.0, 5.0}, {2.0, 0.0}, {0.0, 3.0}}, Attribute::patternTransform);
	ExpectKept("filter", &F::SetFilterUnits, &F::GetFilterUnits, SVGUnits::objectBoundingBox, SVGUnits::userSpaceOnUse,
			   Attribute::filterUnits);
	ExpectKept("filter", &F::SetPrimitiveUnits, &F::GetPrimitiveUnits, SVGUnits::userSpaceOnUse,
			   SVGUnits::objectBoundingBox, Attribute::primitiveUnits);
	ExpectKept("feblend", &E::SetInput, &E::GetInput, nothing, name, Attribute::in);
	ExpectKept("feblend", &E::SetSecondInput, &E::GetSecondInput, nothing, name, Attribute::in2);
	ExpectKept("feblend", &E::SetResult, &E::GetResult, nothing, name, Attribute::result);
	ExpectKept("anchor", &SVGAnchorElementInterface::SetTarget, &SVGAnchorElementInterface::GetTarget, nothing, name,
			   Attribute::target);
	ExpectKept("textpath", &SVGTextPathElementInterface::SetStartOffset, &SVGTextPathElementInterface::GetStartOffset,
			   kZero, kOther, Attribute::startOffset);

	const auto marker = Make<SVGMarkerElementInterface>("svgmarkerelement");
	EXPECT_EQ(0.0, marker->GetOrient().angle);
	Must(marker->SetOrient({SVGOrientType::autoStartReverse, 30.0}));
	EXPECT_EQ(SVGOrientType::autoStartReverse, marker->GetOrient().type);
	EXPECT_EQ(30.0, marker->GetOrient().angle);

	const auto image = Make<SVGImageElementInterface>("svgimageelement");
	EXPECT_EQ(SVGAlign::xMidYMid, image->GetPreserveAspectRatio().align);
	Must(image->SetPreserveAspectRatio({SVGAlign::xMaxYMin, SVGMeetOrSlice::slice}));
	EXPECT_EQ(SVGAlign::xMaxYMin, image->GetPreserveAspectRatio().align);
	EXPECT_EQ(SVGMeetOrSlice::slice, image->GetPreserveAspectRatio().meetOrSlice);

	// Each list by itself, with its own values.
	const auto content = Make<SVGTextContentInterface>("svgtextelement");
	const auto list = [](Float start)
	{
		BaseArray<SVGLength> lengths;
		for (const Float value : {start, start + 1.0})
			Must(lengths.Append({value, SVGLengthUnit::px}));
		return lengths;
	};
	const auto first = [](const BaseArray<SVGLength>& lengths)
	{
		return lengths.GetCount() == 2 ? lengths[1].value - 1.0 : -1.0;
	};
	EXPECT_TRUE(Must(content->GetDxList()).IsEmpty());
	Must(content->SetXList(list(1.0)));
	Must(content->SetYList(list(2.0)));
	Must(content->SetDxList(list(3.0)));
	Must(content->SetDyList(list(4.0)));
	BaseArray<Float> rotations;
	Must(rotations.Append(30.0));
	Must(content->SetRotations(rotations));
	EXPECT_EQ(1.0, first(Must(content->GetXList())));
	EXPECT_EQ(2.0, first(Must(content->GetYList())));
	EXPECT_EQ(3.0, first(Must(content->GetDxList())));
	EXPECT_EQ(4.0, first(Must(content->GetDyList())));
	EXPECT_EQ(30.0, Must(content->GetRotations())[0]);
	EXPECT_EQ(2.0, Cast<SVGPositionInterface>(content)->GetY().value);
}

TEST_F(CompleteImport, ReadsTheCharactersOfEachEncoding)
{
	const auto read = [](const std::string& bytes)
	{
		const Loaded loaded = LoadWith(bytes);
		const auto title = Cast<SVGDescriptionInterface>(loaded["t"]);
		return title ? std::string(title->GetText().View()) : Places(loaded.report);
	};
	const std::string before = "<svg><title id='t'>" + std::string(200, '.'), after = "</title></svg>";
	const auto readUtf8 = [&](const std::string& bytes)
	{
		const std::string text = read(before + bytes + 'x' + after);
		return text.size() < 201 ? text : text.substr(200, text.size() - 201);
	};
	const auto readWide = [&](const std::u16string& units, bool isBigEndian)
	{
		std::string bytes = isBigEndian ? "\xfe\xff" : "\xff\xfe";
		const auto append = [&](char16_t unit)
		{
			const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit);
			bytes += {isBigEndian ? high : low, isBigEndian ? low : high};
		};
		for (const char c : before)
			append(static_cast<char16_t>(c));
		for (const char16_t unit : units)
			append(unit);
		for (const char c : after)
			append(static_cast<char16_t>(c));
		return read(bytes).substr(200);
	};
	// The first and last characters of each length, beside the surrogates, and the last of all.
	for (const auto& [utf8, utf16] :
		 std::initializer_list<std::pair<const char*, std::u16string>>{{"\x7f", u"\x7f"},
																	   {"\xc2\x80", u"\x80"},
																	   {"\xdf\xbf", u"\x7ff"},
																	   {"\xe0\xa0\x80", u"\x800"},
																	   {"\xed\x9f\xbf", u"\xd7ff"},
																	   {"\xee\x80\x80", u"\xe000"},
																	   {"\xef\xbf\xbd", u"\xfffd"},
																	   {"\xf0\x90\x80\x80", u"\xd800\xdc00"},
																	   {"\xf0\x90\x8f\xbf", u"\xd800\xdfff"},
																	   {"\xf4\x8f\xb0\x80", u"\xdbff\xdc00"},
																	   {"\xf4\x8f\xbf\xbd", u"\xdbff\xdffd"}})
	{
		EXPECT_EQ(utf8, readUtf8(utf8));
		EXPECT_EQ(utf8, readWide(utf16, false));
		EXPECT_EQ(utf8, readWide(utf16, true));
	}
	// What is none is replaced, byte by byte, and the next character stands.
	const std::string replacement = "\xef\xbf\xbd";
	for (const char* none : {"\x80", "\xc1", "\xc1\xbf", "\xe0\x9f\xbf", "\xed\xa0\x80", "\xf0\x8f\xbf\xbf",
							 "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xc3", "\xe2\x82", "\xf0\x9f\x98"})
		EXPECT_EQ(Repeat(replacement, static_cast<int>(std::strlen(none))), readUtf8(none));
	for (const std::u16string half : {u"\xdc00", u"\xd800", u"\xdfff", u"\xdbff"})
		EXPECT_EQ(replacement + "x", readWide(half + u"x", true));
	EXPECT_EQ("\u20ac\u00e9", read("<?xml version='1.0' encoding='CP1252'?><svg><title id='t'>\x80\xe9</title></svg>"));
}

TEST_F(CompleteImport, BoundsWhatEntitiesComeTo)
{
	const std::string kilobyte(1000, 'x');
	const std::string big = "<!ENTITY k '" + kilobyte + "'><!ENTITY b '" + Repeat("&k;", 66) + "'>";
	EXPECT_EQ(kilobyte, ClassOf(LoadWith(WithEntities(big, "class='&k;'"))["r"]));
	EXPECT_NE("nothing", Refusal(WithEntities(big, "class='&b;'")));
	EXPECT_NE("nothing", Refusal(WithEntities(big, "class='" + Repeat("&k;", 700) + "'")));
	EXPECT_NE("nothing", Refusal(WithEntities("<!ENTITY a '&b;'><!ENTITY b '&a;'>", "class='&a;'")));
	// Nothing, doubled sixty times: it grows by nothing, but takes for ever.
	std::string nothing = "<!ENTITY e0 ''>";
	for (int i = 1; i <= 60; i++)
		nothing += "<!ENTITY e" + std::to_string(i) + " '" + Repeat("&e" + std::to_string(i - 1) + ';', 2) + "'>";
	EXPECT_NE("nothing", Refusal(WithEntities(nothing, "class='&e60;'")));
	EXPECT_EQ(Outcome::loaded, LoadWith(WithEntities(nothing, "class='&e9;'")).report.outcome);
	std::string many;
	for (int i = 0; i < 4097; i++)
		many += "<!ENTITY e" + std::to_string(i) + " ''>";
	EXPECT_NE("nothing", Refusal(WithEntities(many, "")));
	EXPECT_NE("nothing", Refusal(WithEntities("<!ENTITY a '&#12'>", "")));
	EXPECT_NE("nothing", Refusal(WithEntities("<!ENTITY a 'b&#x;c &#y;'>", "")));
	// External ones are never read: the reference stays what it is.
	const Loaded external = LoadWith(WithEntities("<!ENTITY e SYSTEM 'file:///etc/hostname'>", "class='&e;'"));
	EXPECT_EQ("&e;", ClassOf(external["r"]));
}

TEST_F(CompleteImport, BoundsWhatIsUnpackedAndMatched)
{
	EXPECT_EQ("g#a", Outline(LoadWith(Gzip("<svg><g id='a'/></svg>"))["a"]));
	// Members count together.
	const std::string blanks = Gzip(std::string(std::size_t{1} << 20, ' '));
	EXPECT_NE("nothing", Refusal(Repeat(blanks, 257)));
	const std::string cut = Gzip(std::string(kRich));
	EXPECT_NE("nothing", Refusal(cut.substr(0, cut.size() / 2)));
	// Each element is held against all rules, until the work is used up; that is told once, and the file loads.
	const std::string sheet = "<style>" + Repeat("[x]:not([y]) g [z]{fill:red}", 10'000) + "</style>";
	const Loaded loaded = LoadWith("<svg>" + sheet + Repeat("<g x='' z=''/>", 10'000) + "</svg>");
	EXPECT_EQ(1, loaded.report.findingCount);
	EXPECT_EQ(Outcome::loadedWithFindings, loaded.report.outcome);
}

/// Everything that a load has made.
std::string ContentsOf(const SVGElementRef& element)
{
	std::string contents = std::to_string(static_cast<int>(element->GetElementType())) + element->GetId().CString() +
						   '/' + std::to_string(element->GetAttributeDictionary().GetCount());
	if (const auto run = Cast<SVGTextRunInterface>(element))
		contents += run->GetText().CString();
	if (const auto description = Cast<SVGDescriptionInterface>(element))
		contents += description->GetText().CString();
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		contents += ' ' + ContentsOf(Cast<SVGElementInterface>(child));
	return contents + ')';
}

TEST_F(CompleteImport, EndsWithTheErrorWhenMemoryRunsOut)
{
	const std::string faulty = "<svg><style>g { opacity: b }</style><g id='g' fill='1'/><path d='M0 0 1'/></svg>";
	const std::string packed = Gzip(std::string(kRich));
	std::string wide = "\xfe\xff";
	for (const char c : kRich)
		wide += {'\0', c};
	for (const std::string_view text : {kRich, std::string_view(faulty), std::string_view(packed),
										std::string_view(wide), std::string_view("<svg><g></svg>")})
	{
		const CollectedFindings ignored;
		const Loaded loaded = LoadWith(text);
		const std::string whole = ContentsOf(loaded.document->GetRootElement());
		loaded.document->Reset();
		const std::int64_t before = CountAllocations();
		for (int number = 1;; number++)
		{
			SCOPED_TRACE(number);
			bool hasFailed = false;
			{
				const AllocationFailure failure(number, AllocationFailure::Extent::one);
				const Result<void> result = InitFrom(loaded.import, text);
				hasFailed = failure.HasFailed();
				if (!result.IsOk())
				{
					EXPECT_EQ(ErrorClass::outOfMemory, result.GetError().GetClass());
					EXPECT_FALSE(loaded.document->GetRootElement()) << "a part of a tree";
				}
			}
			// Giving unused memory back, and growing a cache, may fail without harm.
			if (loaded.document->GetRootElement())
			{
				EXPECT_EQ(whole, ContentsOf(loaded.document->GetRootElement()));
			}
			loaded.document->Reset();
			ASSERT_EQ(before, CountAllocations());
			if (!hasFailed)
				break;
			ASSERT_FALSE(HasFailure());
		}
	}
}

TEST_F(CompleteImport, LoadsOnManyThreads)
{
	const std::string whole = ContentsOf(LoadWith(kRich).document->GetRootElement());
	std::vector<std::thread> threads;
	for (int number = 0; number < 6; number++)
	{
		threads.emplace_back(
			[&]
			{
				for (int round = 0; round < 20; round++)
				{
					EXPECT_EQ(whole, ContentsOf(LoadWith(kRich).document->GetRootElement()));
					EXPECT_EQ("1:15 g# fill\n", Places(LoadWith("<svg><g fill='1'/></svg>").report));
				}
			});
	}
	for (std::thread& thread : threads)
		thread.join();
}

} // namespace
} // namespace orvan
