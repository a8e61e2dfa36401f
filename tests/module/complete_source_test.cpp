// SPDX-License-Identifier: MIT
// From the bytes of a file to text, within bounds: encodings, entities, what is packed.
#include "complete_import.h"

#include <cstring>
#include <initializer_list>

namespace orvan
{
namespace
{

/// A document type with these declarations around a rect with this attribute.
std::string WithEntities(const std::string& declarations, const std::string& attribute)
{
	return "<!DOCTYPE svg [" + declarations + "]>\n<svg><rect id='r' " + attribute + "/></svg>";
}

std::string ClassOf(const SVGElementRef& element)
{
	return element->GetAttributeDictionary()
		.GetOr<String>(static_cast<std::int32_t>(SVGImportAttribute::classList), {})
		.CString();
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
	// The first, one in the middle and the last of what is beyond ASCII.
	for (const auto& [encoding, expected] :
		 std::initializer_list<std::pair<const char*, const char*>>{{"CP1252", "\u20ac\u00c0\u00ff"},
																	{"ASCII", "\u20ac\u00c0\u00ff"},
																	{"windows-1250", "\u20ac\u0154\u02d9"},
																	{"Windows-1251", "\u0402\u0410\u044f"},
																	{"windows-1253", "\u20ac\u0390\ufffd"},
																	{"windows-1254", "\u20ac\u00c0\u00ff"},
																	{"ISO-8859-2", "\u0080\u0154\u02d9"},
																	{"iso-8859-5", "\u0080\u0420\u045f"},
																	{"iso-8859-7", "\u0080\u0390\ufffd"},
																	{"latin5", "\u20ac\u00c0\u00ff"},
																	{"iso-8859-15", "\u0080\u00c0\u00ff"},
																	{"KOI8-R", "\u2500\u044e\u042a"},
																	{"koi8-u", "\u2500\u044e\u042a"}})
		EXPECT_EQ(expected, read("<?xml version='1.0' encoding='" + std::string(encoding) +
								 "'?><svg><title id='t'>\x80\xc0\xff</title></svg>"))
			<< encoding;
	EXPECT_EQ("\u0490\u0491\u011e",
			  read("<?xml version='1.0' encoding='koi8-u'?><svg><title id='t'>\xbd\xad</title></svg>") +
				  read("<?xml version='1.0' encoding='iso-8859-9'?><svg><title id='t'>\xd0</title></svg>"));
}

/// What the XML parser knows nothing of ends for it at the first ">", and names may have quotation marks.
TEST_F(CompleteImport, ReplacesEntitiesBehindOddMarkupAsTheParserSeesThem)
{
	for (const std::string odd : {"<!odd \">", "<odd\"/>", "<odd='\"/>", "<odd a\"='>'/>", "<odd a = \">\"/>"})
	{
		const Loaded loaded = LoadWith("<!DOCTYPE svg [<!ENTITY e 'x'>]><svg>" + odd +
									   "<title id='t' class = \"&e;\">\"&e;</title>" + odd + "</svg>");
		ASSERT_TRUE(loaded["t"]) << odd;
		EXPECT_EQ("\"x", Cast<SVGDescriptionInterface>(loaded["t"])->GetText().View()) << odd;
		EXPECT_EQ("x", ClassOf(loaded["t"])) << odd;
	}
}

TEST_F(CompleteImport, RefusesReferencesToWhatIsNoCharacterOfXml)
{
	for (const std::string reference : {"&#0;", "&#8;", "&#x1f;", "&#xd800;", "&#xdfff;", "&#xfffe;", "&#xffff;", "&#;",
										"&#x;", "&#6a;", "&#x110000;"})
	{
		EXPECT_NE("nothing", Refusal("<svg><text>" + reference + "</text></svg>")) << reference;
		EXPECT_NE("nothing", Refusal("<svg id='" + reference + "'/>")) << reference;
		EXPECT_NE("nothing", Refusal(WithEntities("<!ENTITY e '" + reference + "'>", ""))) << reference;
	}
	EXPECT_EQ("\t\n\r ~\u0080\ud7ff\ue000\ufffd\U00010000\U0010ffff",
			  ClassOf(LoadWith("<svg><g id='g' class='&#9;&#10;&#13;&#32;&#126;&#x80;&#xd7ff;&#xe000;&#xFFFD;&#x10000;"
							   "&#x10ffff;'/></svg>")["g"]));
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

} // namespace
} // namespace orvan
