// SPDX-License-Identifier: MIT
#include "importer/text/code_pages.h"

#include <algorithm>

namespace orvan::svg
{
namespace
{

struct CodePage
{
	Encoding encoding;
	std::u16string_view characters; ///< Of the bytes from 0x80 on. What is none is U+FFFD, or a control character.
};

// clang-format off
constexpr CodePage kCodePages[] = {
	{Encoding::windows1252,
		u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008dŽ\u008f\u0090‘’“”•–—˜™š›œ\u009džŸ\u00a0¡¢£¤¥¦§¨©ª«¬\u00ad®¯°±²³´µ¶·¸¹º»¼"
		u"½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"},
	{Encoding::windows1250,
		u"€\u0081‚\u0083„…†‡\u0088‰Š‹ŚŤŽŹ\u0090‘’“”•–—\u0098™š›śťžź\u00a0ˇ˘Ł¤Ą¦§¨©Ş«¬\u00ad®Ż°±˛ł´µ¶·¸ąş»Ľ"
		u"˝ľżŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢßŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ˙"},
	{Encoding::windows1251,
		u"ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏђ‘’“”•–—\u0098™љ›њќћџ\u00a0ЎўЈ¤Ґ¦§Ё©Є«¬\u00ad®Ї°±Ііґµ¶·ё№є»јЅѕїАБВГДЕЖЗИЙКЛМНОПР"
		u"СТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя"},
	{Encoding::windows1253,
		u"€\u0081‚ƒ„…†‡\u0088‰\u008a‹\u008c\u008d\u008e\u008f\u0090‘’“”•–—\u0098™\u009a›\u009c\u009d\u009e"
		u"\u009f\u00a0΅Ά£¤¥¦§¨©\ufffd«¬\u00ad®―°±²³΄µ¶·ΈΉΊ»Ό½ΎΏΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ\ufffdΣΤΥΦΧΨΩΪΫάέήίΰαβγδε"
		u"ζηθικλμνξοπρςστυφχψωϊϋόύώ\ufffd"},
	{Encoding::windows1254,
		u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008d\u008e\u008f\u0090‘’“”•–—˜™š›œ\u009d\u009eŸ\u00a0¡¢£¤¥¦§¨©ª«¬\u00ad®¯°±²"
		u"³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞßàáâãäåæçèéêëìíîïğñòóôõö÷øùúûüışÿ"},
	{Encoding::iso88592,
		u"\u0080\u0081\u0082\u0083\u0084\u0085\u0086\u0087\u0088\u0089\u008a\u008b\u008c\u008d\u008e\u008f"
		u"\u0090\u0091\u0092\u0093\u0094\u0095\u0096\u0097\u0098\u0099\u009a\u009b\u009c\u009d\u009e\u009f"
		u"\u00a0Ą˘Ł¤ĽŚ§¨ŠŞŤŹ\u00adŽŻ°ą˛ł´ľśˇ¸šşťź˝žżŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢßŕáâăäĺćçčéęëěíîďđńňóôő"
		u"ö÷řůúűüýţ˙"},
	{Encoding::iso88595,
		u"\u0080\u0081\u0082\u0083\u0084\u0085\u0086\u0087\u0088\u0089\u008a\u008b\u008c\u008d\u008e\u008f"
		u"\u0090\u0091\u0092\u0093\u0094\u0095\u0096\u0097\u0098\u0099\u009a\u009b\u009c\u009d\u009e\u009f"
		u"\u00a0ЁЂЃЄЅІЇЈЉЊЋЌ\u00adЎЏАБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя№ёђѓєѕ"
		u"іїјљњћќ§ўџ"},
	{Encoding::iso88597,
		u"\u0080\u0081\u0082\u0083\u0084\u0085\u0086\u0087\u0088\u0089\u008a\u008b\u008c\u008d\u008e\u008f"
		u"\u0090\u0091\u0092\u0093\u0094\u0095\u0096\u0097\u0098\u0099\u009a\u009b\u009c\u009d\u009e\u009f"
		u"\u00a0‘’£€₯¦§¨©ͺ«¬\u00ad\ufffd―°±²³΄΅Ά·ΈΉΊ»Ό½ΎΏΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ\ufffdΣΤΥΦΧΨΩΪΫάέήίΰαβγδεζηθικλ"
		u"μνξοπρςστυφχψωϊϋόύώ\ufffd"},
	{Encoding::iso885915,
		u"\u0080\u0081\u0082\u0083\u0084\u0085\u0086\u0087\u0088\u0089\u008a\u008b\u008c\u008d\u008e\u008f"
		u"\u0090\u0091\u0092\u0093\u0094\u0095\u0096\u0097\u0098\u0099\u009a\u009b\u009c\u009d\u009e\u009f"
		u"\u00a0¡¢£€¥Š§š©ª«¬\u00ad®¯°±²³Žµ¶·ž¹º»ŒœŸ¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõ"
		u"ö÷øùúûüýþÿ"},
	{Encoding::koi8r,
		u"─│┌┐└┘├┤┬┴┼▀▄█▌▐░▒▓⌠■∙√≈≤≥\u00a0⌡°²·÷═║╒ё╓╔╕╖╗╘╙╚╛╜╝╞╟╠╡Ё╢╣╤╥╦╧╨╩╪╫╬©юабцдефгхийклмнопярстужвьыз"
		u"шэщчъЮАБЦДЕФГХИЙКЛМНОПЯРСТУЖВЬЫЗШЭЩЧЪ"},
	{Encoding::koi8u,
		u"─│┌┐└┘├┤┬┴┼▀▄█▌▐░▒▓⌠■∙√≈≤≥\u00a0⌡°²·÷═║╒ёє╔ії╗╘╙╚╛ґ╝╞╟╠╡ЁЄ╣ІЇ╦╧╨╩╪Ґ╬©юабцдефгхийклмнопярстужвьыз"
		u"шэщчъЮАБЦДЕФГХИЙКЛМНОПЯРСТУЖВЬЫЗШЭЩЧЪ"},
};
// clang-format on

static_assert(std::all_of(std::begin(kCodePages), std::end(kCodePages),
						  [](const CodePage& page) { return page.characters.size() == 0x80; }));

struct Name
{
	std::string_view name; ///< In small letters.
	Encoding encoding;
};

/// What XML declarations call them. As in browsers, Latin-1 and ASCII are read as Windows-1252, and Latin-5 as
/// Windows-1254.
constexpr Name kNames[] = {
	{"iso-8859-1", Encoding::windows1252},
	{"iso8859-1", Encoding::windows1252},
	{"iso_8859-1", Encoding::windows1252},
	{"latin1", Encoding::windows1252},
	{"latin-1", Encoding::windows1252},
	{"l1", Encoding::windows1252},
	{"windows-1252", Encoding::windows1252},
	{"cp1252", Encoding::windows1252},
	{"cp-1252", Encoding::windows1252},
	{"x-cp1252", Encoding::windows1252},
	{"us-ascii", Encoding::windows1252},
	{"ascii", Encoding::windows1252},
	{"windows-1250", Encoding::windows1250},
	{"cp1250", Encoding::windows1250},
	{"windows-1251", Encoding::windows1251},
	{"cp1251", Encoding::windows1251},
	{"windows-1253", Encoding::windows1253},
	{"cp1253", Encoding::windows1253},
	{"windows-1254", Encoding::windows1254},
	{"cp1254", Encoding::windows1254},
	{"iso-8859-9", Encoding::windows1254},
	{"latin5", Encoding::windows1254},
	{"iso-8859-2", Encoding::iso88592},
	{"latin2", Encoding::iso88592},
	{"iso-8859-5", Encoding::iso88595},
	{"cyrillic", Encoding::iso88595},
	{"iso-8859-7", Encoding::iso88597},
	{"greek", Encoding::iso88597},
	{"iso-8859-15", Encoding::iso885915},
	{"latin-9", Encoding::iso885915},
	{"koi8-r", Encoding::koi8r},
	{"koi8-u", Encoding::koi8u},
};

} // namespace

Encoding FindCodePage(std::string_view name) noexcept
{
	for (const Name& known : kNames)
	{
		const bool isSame =
			std::equal(known.name.begin(), known.name.end(), name.begin(), name.end(),
					   [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + ('a' - 'A') : b); });
		if (isSame)
			return known.encoding;
	}
	return Encoding::unknown;
}

char32_t ReadByte(unsigned char byte, Encoding encoding) noexcept
{
	for (const CodePage& page : kCodePages)
	{
		if (page.encoding == encoding)
			return byte < 0x80 ? byte : page.characters[byte - 0x80u];
	}
	return byte;
}

} // namespace orvan::svg
