// SPDX-License-Identifier: MIT
#include "writer/repair.h"

#include "elements/element_classes.h"
#include "import.h"
#include "importer/complete/importer.h"
#include "importer/text/entities.h"
#include "importer/xml/xml_guard.h"
#include "writer/element_text.h"
#include "writer/style_editor.h"
#include "writer/text_edits.h"
#include "writer/xml_text.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace orvan::svg
{

using complete::FindRule;
using complete::Rule;
using complete::Tag;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trim(std::string_view text) noexcept
{
	const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
	return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// What a browser reads in the place of a value.
struct BrowserValue
{
	std::string text; ///< Empty when it reads nothing.
	Float alpha = 1.0;
	std::size_t faultOffset = 0; ///< Of a path with a fault: what stands before it counts.
	bool isPartial = false;
};

BrowserValue ReadAsBrowser(const Rule& rule, Tag tag, std::string_view value, bool isDeclaration)
{
	const grammar::Source source = isDeclaration ? grammar::Source::style : grammar::Source::attribute;
	const Result<SVGElementRef> made = complete::FactoryOf(tag).Create<SVGElementInterface>();
	if (!made.IsOk())
		throw std::bad_alloc();
	ElementBase& element = *ElementOf(made.GetValue());
	const SVGImportOptions options;
	complete::Importer importer(options);
	const Result<complete::Reading> reading = importer.Read({importer, element, tag, rule, value, source});
	if (!reading.IsOk())
		throw std::bad_alloc();
	BrowserValue read;
	// The plain import takes no exponents in declarations, and colours of 256 steps.
	const ValueStyle style{{NumberStyle::kExact, !isDeclaration}, false, true};
	if (FormatAttribute(read.text, element, rule, tag, style) != Formatted::text)
		read.text.clear();
	// Nor tips of lines that are cut off.
	if (rule.number == Number::strokeLineJoin && element.GetStrokeLineJoin() == SVGLineJoin::miterClip)
		read.text = "miter";
	read.isPartial = reading.GetValue() != complete::Reading::applied && !read.text.empty();
	read.faultOffset = std::min(importer.faultOffset, value.size());
	if (const auto* paint = element.Find<SVGPaint>(rule.number))
		read.alpha = paint->alpha;
	return read;
}

/// "13." becomes "13": a decimal point needs digits behind it.
std::string WithoutLoosePoints(std::string_view value)
{
	const auto isDigit = [&](std::size_t i)
	{
		return i < value.size() && value[i] >= '0' && value[i] <= '9';
	};
	std::string text;
	for (std::size_t i = 0; i < value.size(); i++)
	{
		if (value[i] != '.' || isDigit(i + 1) || i == 0 || !isDigit(i - 1))
			text += value[i];
	}
	return text;
}

/// Path data in which radii of arcs are above zero: a browser takes them without their sign.
std::string WithoutNegativeRadii(std::string_view path)
{
	constexpr std::string_view kCommands = "MmZzLlHhVvCcSsQqTtAa";
	constexpr int kArguments = 7; // Of an arc: two radii, an angle, two flags, and a point.
	std::string text;
	int argument = -1; // Of an arc; negative elsewhere.
	for (std::size_t i = 0; i < path.size();)
	{
		const char c = path[i];
		const bool isFlag = argument == 3 || argument == 4;
		if (kCommands.find(c) != kCommands.npos)
			argument = c == 'A' || c == 'a' ? 0 : -1;
		else if (argument >= 0 && kBlanks.find(c) == kBlanks.npos && c != ',')
		{
			std::size_t end = i + 1;
			bool hasPoint = c == '.';
			for (; !isFlag && end < path.size(); end++)
			{
				const bool isExponent = path[end - 1] == 'e' || path[end - 1] == 'E';
				const bool isSign = (path[end] == '-' || path[end] == '+') && isExponent;
				const bool isPoint = path[end] == '.' && !hasPoint;
				hasPoint |= isPoint;
				const bool isDigit = path[end] >= '0' && path[end] <= '9';
				if (!isDigit && !isSign && !isPoint && path[end] != 'e' && path[end] != 'E')
					break;
			}
			const bool loses = argument < 2 && c == '-';
			if (loses && !text.empty() && text.back() >= '0' && text.back() <= '9')
				text += ' ';
			text += path.substr(i + (loses ? 1 : 0), end - i - (loses ? 1 : 0));
			argument = (argument + 1) % kArguments;
			i = end;
			continue;
		}
		text += c;
		i++;
	}
	return text;
}

/// An IRI in which only characters stand that may.
std::string WithoutOddCharacters(std::string_view iri)
{
	constexpr char kHex[] = "0123456789ABCDEF";
	std::string text;
	for (const char c : iri)
	{
		const auto byte = static_cast<unsigned char>(c);
		if (byte <= ' ' || byte >= 0x7f || std::string_view("\\\"<>^`{|}").find(c) != std::string_view::npos)
			text += {'%', kHex[byte >> 4], kHex[byte & 15]};
		else
			text += c;
	}
	return text;
}

/// The names of opacities that a colour's alpha goes to.
std::string_view OpacityFor(Number number) noexcept
{
	return number == Number::fill ? "fill-opacity" : number == Number::stroke ? "stroke-opacity" : "stop-opacity";
}

/// The repair of one text, round by round: the plain import tells what it refuses.
class Repairer
{
public:
	explicit Repairer(std::string& text) noexcept : _text(text)
	{
	}

	Result<BaseArray<SVGRepair>> Run()
	{
		// A round can reveal what the one before it hid, and a value may take several attempts.
		constexpr int kMostRounds = 1000;
		for (int round = 0; round < kMostRounds; round++)
		{
			if (!ORVAN_TRY(RunRound()))
				break;
		}
		return std::move(_repairs);
	}

private:
	/// A value that was refused: of an attribute, or of a declaration within one.
	struct Refused
	{
		const SVGImportFinding& finding;
		const SourceElement& element;
		std::uint32_t elementNumber; ///< The same in all rounds.
		std::uint32_t number;        ///< Of the attribute.
		std::size_t place;           ///< In the text.
		Tag tag;
	};

	Result<bool> RunRound()
	{
		BaseArray<char> bytes;
		ORVAN_TRY(bytes.AppendAll(_text.data(), _text.size()));
		ORVAN_TRY(bytes.Append('\0'));
		SVGImportOptions options;
		options.isTolerant = true;
		options.keepsSource = true;
		SVGImportReport report;
		const ImportResult loaded = ORVAN_TRY(Import(std::move(bytes), options, report));
		if (!loaded.root)
		{
			return IllegalArgumentError("The text cannot be repaired. @",
										report.findings.IsEmpty() ? String() : report.findings[0].message);
		}
		_source = loaded.source.get();
		TextEdits edits;
		std::size_t reached = 0;
		for (const SVGImportFinding& finding : report.findings)
		{
			const std::size_t place = PlaceOf(finding);
			const std::optional<Refused> refused = FindValue(finding, place);
			// One at a time where they share an attribute.
			if (refused && refused->element.begin >= reached)
			{
				if (ORVAN_TRY(Mend(*refused, edits)))
					reached = refused->element.contentBegin;
			}
		}
		if (edits.IsEmpty())
			return false;
		_text = edits.Apply(_text, 0, _text.size());
		return true;
	}

	std::size_t PlaceOf(const SVGImportFinding& finding) const noexcept
	{
		std::size_t line = 0;
		for (std::int64_t i = 1; i < finding.line; i++)
			line = std::min(_text.find('\n', line), _text.size() - 1) + 1;
		return std::min(line + static_cast<std::size_t>(std::max<std::int64_t>(finding.column, 1) - 1), _text.size());
	}

	std::optional<Refused> FindValue(const SVGImportFinding& finding, std::size_t place) const
	{
		if (finding.line == 0)
			return {};
		for (std::uint32_t i = 0; i < _source->elements.GetCount(); i++)
		{
			const SourceElement& element = _source->elements[i];
			if (place < element.begin || place >= element.contentBegin)
				continue;
			for (std::uint32_t number = element.firstAttribute;
				 number < element.firstAttribute + element.attributeCount; number++)
			{
				const SourceAttribute& attribute = _source->attributes[number];
				if (place < attribute.valueBegin || place > attribute.valueBegin + attribute.valueSize)
					continue;
				const Tag tag = complete::FindTag(WithoutPrefix(_source->NameOf(element)));
				return Refused{finding, element, i, number, place, tag};
			}
		}
		return {};
	}

	/// Edits one value; false when there is nothing left to try.
	Result<bool> Mend(const Refused& refused, TextEdits& edits)
	{
		const SourceAttribute& attribute = _source->attributes[refused.number];
		const std::string_view name = _source->NameOf(attribute);
		const std::string_view raw = _source->RawValueOf(attribute);
		if (name != "style")
		{
			const Rule* rule = FindRule(name);
			if (rule == nullptr && WithoutPrefix(name) == "href")
				rule = FindRule("xlink:href");
			const std::optional<std::string> value =
				rule != nullptr ? Choose(refused, *rule, Decode(raw), false) : std::optional<std::string>();
			if (!value)
				return false;
			std::string written;
			AppendAttributeValue(written, *value, _text[attribute.valueBegin - 1]);
			ORVAN_TRY(Note(refused, name, raw, written));
			if (value->empty())
				edits.Replace(BeginOf(attribute), attribute.valueBegin + attribute.valueSize + 1, {});
			else
				edits.Replace(attribute.valueBegin, attribute.valueBegin + attribute.valueSize, written);
			AddOpacity(refused, *rule, edits);
			return true;
		}
		return MendDeclaration(refused, attribute, edits);
	}

	Result<bool> MendDeclaration(const Refused& refused, const SourceAttribute& attribute, TextEdits& edits)
	{
		const std::string_view name = refused.finding.attribute.View();
		const Rule* const rule = FindRule(name == "path" ? "d" : name);
		if (rule == nullptr || _source->RawValueOf(attribute).find('&') != std::string_view::npos)
			return MendStyle(refused, attribute, rule, edits);
		const std::size_t end = attribute.valueBegin + attribute.valueSize;
		const std::size_t stop = std::min(_text.find(';', refused.place), end);
		const std::string_view raw = Trim(std::string_view(_text).substr(refused.place, stop - refused.place));
		const std::optional<std::string> value = Choose(refused, *rule, std::string(raw), true);
		if (!value)
			return false;
		ORVAN_TRY(Note(refused, rule->name, raw, *value));
		if (!value->empty())
		{
			std::string written;
			AppendStyleValue(written, *value, _text[attribute.valueBegin - 1]);
			edits.Replace(refused.place, refused.place + raw.size(), std::move(written));
		}
		else
		{
			std::size_t begin = _text.rfind(':', refused.place);
			begin = std::max<std::size_t>(_text.find_last_of(";\"'", begin) + 1, attribute.valueBegin);
			edits.Replace(begin, std::min(stop + 1, end), {});
		}
		AddOpacity(refused, *rule, edits);
		return true;
	}

	/// A style with references is written anew, without the property.
	Result<bool> MendStyle(const Refused& refused, const SourceAttribute& attribute, const Rule* rule, TextEdits& edits)
	{
		if (rule == nullptr || !IsProperty(*rule))
			return false;
		StyleEditor style(Decode(_source->RawValueOf(attribute)));
		style.Remove(*rule);
		std::string written;
		AppendStyleValue(written, style.GetText(), _text[attribute.valueBegin - 1]);
		if (written == _source->RawValueOf(attribute))
			return false;
		ORVAN_TRY(Note(refused, rule->name, refused.finding.message.View(), {}));
		edits.Replace(attribute.valueBegin, attribute.valueBegin + attribute.valueSize, std::move(written));
		return true;
	}

	/// The text to try in the place of a value: the nearest to what is written first. None when all were tried.
	std::optional<std::string> Choose(const Refused& refused, const Rule& rule, const std::string& value,
									  bool isDeclaration)
	{
		std::set<std::string>& tried = _tried[{refused.elementNumber, isDeclaration, std::string(rule.name)}];
		_alpha = 1.0;
		const BrowserValue read = ReadAsBrowser(rule, refused.tag, value, isDeclaration);
		std::vector<std::string> candidates;
		if (read.isPartial)
			candidates.emplace_back(Trim(std::string_view(value).substr(0, read.faultOffset)));
		const std::string pointed = WithoutLoosePoints(value);
		for (const std::string& tidy : {pointed, rule.number == Number::d ? WithoutNegativeRadii(pointed) : pointed})
		{
			if (!read.text.empty() && tidy != value &&
				ReadAsBrowser(rule, refused.tag, tidy, isDeclaration).text == read.text)
				candidates.push_back(tidy);
		}
		if (rule.number == Number::href && !read.text.empty())
			candidates.push_back(WithoutOddCharacters(read.text));
		candidates.push_back(read.text);
		for (const std::string& candidate : candidates)
		{
			if (candidate == value || candidate.empty() || !tried.insert(candidate).second)
				continue;
			if (read.alpha == 0.0 && (rule.number == Number::fill || rule.number == Number::stroke))
				return "none";
			_alpha = read.alpha;
			return candidate;
		}
		// What no form of can be read is taken out, as a browser that cannot read it does.
		if (read.text.empty() && tried.insert(std::string()).second)
			return std::string();
		return {};
	}

	/// A colour's alpha goes to the opacity beside it.
	void AddOpacity(const Refused& refused, const Rule& rule, TextEdits& edits) const
	{
		if (_alpha == 1.0)
			return;
		const std::string_view name = OpacityFor(rule.number);
		Float opacity = _alpha;
		const SourceAttribute* known = nullptr;
		for (std::uint32_t i = 0; i < refused.element.attributeCount; i++)
		{
			const SourceAttribute& attribute = _source->attributes[refused.element.firstAttribute + i];
			if (_source->NameOf(attribute) == name)
				known = &attribute;
		}
		std::string number;
		if (known != nullptr)
		{
			const BrowserValue before =
				ReadAsBrowser(*FindRule(name), refused.tag, Decode(_source->RawValueOf(*known)), false);
			opacity *= before.text.empty() ? 1.0 : std::strtod(before.text.c_str(), nullptr);
		}
		AppendNumber(number, opacity, {.precision = 6, .takesExponents = false});
		if (known != nullptr)
			edits.Replace(known->valueBegin, known->valueBegin + known->valueSize, number);
		else
		{
			const SourceAttribute& color = _source->attributes[refused.number];
			edits.Insert(color.valueBegin + color.valueSize + 1, ' ' + std::string(name) + "=\"" + number + '"');
		}
	}

	std::size_t BeginOf(const SourceAttribute& attribute) const noexcept
	{
		std::size_t begin = attribute.nameBegin;
		while (IsXmlBlank(_text[begin - 1]))
			begin--;
		return begin;
	}

	/// What a value of the text stands for: with what the document type declares, and with characters, in the place of
	/// references.
	std::string Decode(std::string_view raw) const
	{
		std::string value(raw);
		const std::string_view prolog = std::string_view(_text).substr(0, _source->elements[0].begin);
		if (raw.find('&') != raw.npos && DeclaresEntities(prolog))
		{
			const std::string quote = raw.find('"') == raw.npos ? "\"" : "'";
			const std::string opening = std::string(prolog) + "<a a=" + quote;
			const std::string closing = quote + "/>";
			PositionMap ignored;
			const Result<BaseArray<char>> replaced = ReplaceEntities(opening + value + closing, ignored);
			if (!replaced.IsOk())
				throw std::bad_alloc();
			const std::string_view all(replaced.GetValue().begin(), replaced.GetValue().GetCount());
			value = all.substr(opening.size(), all.size() - opening.size() - closing.size());
		}
		std::string decoded(value.size(), '\0');
		decoded.resize(static_cast<std::size_t>(DecodeReferences(value, decoded.data()) - decoded.data()));
		return decoded;
	}

	Result<void> Note(const Refused& refused, std::string_view name, std::string_view before, std::string_view after)
	{
		for (SVGRepair& known : _repairs)
		{
			if (known.line == refused.finding.line && known.attribute == name && known.after == before)
			{
				known.after = ORVAN_TRY(String::Create(after));
				return {};
			}
		}
		SVGRepair repair;
		repair.line = refused.finding.line;
		repair.column = refused.finding.column;
		repair.elementTag = refused.finding.elementTag;
		repair.elementId = refused.finding.elementId;
		repair.attribute = ORVAN_TRY(String::Create(name));
		repair.before = ORVAN_TRY(String::Create(before));
		repair.after = ORVAN_TRY(String::Create(after));
		return _repairs.Append(std::move(repair));
	}

	std::string& _text;
	const DocumentSource* _source = nullptr;
	BaseArray<SVGRepair> _repairs;
	Float _alpha = 1.0;
	/// What was tried for a value, by its element, whether it is a declaration, and its name.
	std::map<std::tuple<std::uint32_t, bool, std::string>, std::set<std::string>> _tried;
};

} // namespace

Result<BaseArray<SVGRepair>> RepairText(std::string& text)
{
	return Repairer(text).Run();
}

} // namespace orvan::svg
