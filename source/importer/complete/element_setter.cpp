// SPDX-License-Identifier: MIT
#include "importer/complete/element_setter.h"

#include "css/bounds.h"
#include "css/simple_declarations.h"

namespace orvan::svg::complete
{

using grammar::Source;

namespace
{

constexpr std::string_view kXlinkHref = "xlink:href";
constexpr std::string_view kAll = "all"; ///< Stands for all properties, and is none itself.

/// The rule of an XML attribute; null when it is not known. Names without a prefix, links under any prefix of their
/// namespace, and the two attributes of XML's own that count.
const Rule* RuleOf(const XmlAttribute& attribute) noexcept
{
	const std::string_view name = NameOf(attribute);
	if (attribute.prefix_size() == 0)
		return FindRuleInText(name);
	if (name == kXlinkHref || (LocalNameOf(attribute) == "href" && NamespaceOf(attribute) == kXlinkNamespace))
		return FindRule(kXlinkHref);
	return name == "xml:space" || name == "xml:lang" ? FindRule(name) : nullptr;
}

bool CountsAsAttribute(const Rule& rule) noexcept
{
	return rule.role != Role::declaration;
}

/// Whether escapes stand in the words of a value. Those in strings and references are the readers' own.
bool HasEscapedWords(std::string_view value) noexcept
{
	return value.find_first_of("\"'(") == value.npos;
}

/// Whether a property that was set says all that it says in the element's dictionary, and the same on any element.
bool IsSaidByDictionary(const Application& application) noexcept
{
	const SVGImportAttribute number = application.rule.number;
	return number != SVGImportAttribute::transform && number != SVGImportAttribute::d &&
		   !grammar::complete::EqualsIgnoreCase(application.text, "inherit");
}

/// Takes away what applies to an element as a whole, for one that has no box: what is inherited stays.
Result<void> Dissolve(ElementBase& element) noexcept
{
	for (const SVGImportAttribute number : kEffects)
		ORVAN_TRY(element.Unset(number));
	ORVAN_TRY(element.Unset(SVGImportAttribute::maskLayers));
	ORVAN_TRY(element.Unset(SVGImportAttribute::transformPercentages));
	return element.SetLocalTransform(Matrix2d());
}

} // namespace

ElementSetter::ElementSetter(Importer& importer, StyleSheets& sheets, std::pmr::memory_resource* memory,
							 bool hasReferences) noexcept
	: _importer(importer), _sheets(sheets), _memory(memory), _values(hasReferences), _styles(hasReferences),
	  _arena(memory), _declarations(memory), _noVariables(nullptr, _variableBudget, memory), _variables(memory)
{
}

Result<void> ElementSetter::Set(const XmlNode& node, ElementBase& element, Tag tag)
{
	_elementTag = NameOf(node);
	_importer.isDissolved = false;
	ORVAN_TRY(_staging.Lend(element.LoadedAttributes()));
	const std::string_view style = ORVAN_TRY(SetAttributes(node, element, tag));
	ORVAN_TRY(SetDeclarations(node, element, tag, style));
	if (_singleTransforms.IsAny()) [[unlikely]]
		ORVAN_TRY(_singleTransforms.ApplyTo(element));
	ORVAN_TRY(_staging.TakeBack(element.LoadedAttributes()));
	return _importer.isDissolved ? Dissolve(element) : Result<void>();
}

Result<void> ElementSetter::SetIdOnly(const XmlNode& node, ElementBase& element, Tag tag)
{
	const XmlAttribute* const id = node.first_attribute("id", 2);
	if (id == nullptr)
		return {};
	const std::string_view text = ORVAN_TRY(_values.Decode(ValueOf(*id)));
	ORVAN_TRY(_importer.Read({_importer, element, tag, *FindRule("id"), text, Source::attribute}));
	return {};
}

/// Sets all attributes but the style, whose text is the result: it comes after the sheets.
Result<std::string_view> ElementSetter::SetAttributes(const XmlNode& node, ElementBase& element, Tag tag)
{
	std::string_view style;
	bool hasLink = false;
	_rawStyle = {};
	_hasOwnVariables = false;
	for (const XmlAttribute* attribute = node.first_attribute(); attribute != nullptr;
		 attribute = attribute->next_attribute())
	{
		const Rule* const rule = RuleOf(*attribute);
		if (rule == nullptr || !CountsAsAttribute(*rule))
			continue;
		const std::string_view raw = ValueOf(*attribute);
		if (rule->number == SVGImportAttribute::style)
		{
			_rawStyle = raw;
			style = ORVAN_TRY(_styles.Decode(raw));
			continue;
		}
		if (rule->number == SVGImportAttribute::href)
		{
			const bool isPrefixed = attribute->prefix_size() != 0;
			if (isPrefixed && hasLink)
				continue; // The one without a prefix wins.
			hasLink |= !isPrefixed;
		}
		const std::string_view text = ORVAN_TRY(_values.Decode(raw));
		const Application application{_importer, element, tag, *rule, text, Source::attribute};
		const Reading reading = ORVAN_TRY(_importer.Read(application));
		if (reading == Reading::applied) [[likely]]
			continue;
		if (reading == Reading::refused && ORVAN_TRY(_importer.ReadCalculated(application)) == Reading::applied)
			continue;
		if (IsProperty(*rule) && css::MayHaveVariables(text))
			_waiting.push_back({*rule, std::string(text), raw.data()});
		else
			ORVAN_TRY(_importer.Refuse(application, {raw.data(), _elementTag}, reading));
	}
	return style;
}

Result<void> ElementSetter::SetDeclarations(const XmlNode& node, ElementBase& element, Tag tag, std::string_view style)
{
	if (_sheets.IsEmpty())
		return style.empty() && _waiting.empty() ? Result<void>() : SetInlineStyle(element, tag, style);
	_declarations.clear();
	if (!style.empty())
		css::ReadDeclarations(style, {.arena = _arena, .source = StyleSheets::kInlineSource}, _declarations);
	const std::span<const css::Declaration* const> declarations = _sheets.DeclarationsFor(node, _declarations);
	for (const css::Declaration* declaration : declarations)
	{
		if (declaration->isCustom) [[unlikely]]
			AddVariable(*declaration);
	}
	ORVAN_TRY(SetWaiting(element, tag));
	for (const css::Declaration* declaration : declarations)
	{
		const bool isInline = declaration->source == StyleSheets::kInlineSource;
		const char* where = isInline ? _rawStyle.data() : _sheets.PlaceOf(*declaration);
		if (isInline && style.data() == _rawStyle.data())
			where += declaration->valueOffset;
		ORVAN_TRY(Declare(element, tag, *declaration, where));
	}
	return _sheets.ReportBudget();
}

/// The usual case, without any sheet: the style attribute alone.
Result<void> ElementSetter::SetInlineStyle(ElementBase& element, Tag tag, std::string_view style)
{
	// On an element without other attributes so far, a style that was seen before comes to what it came to then. A
	// short one is read sooner than it is looked for, and a text that was decoded is not in place long enough.
	constexpr std::size_t kShort = 16;
	const bool isInPlace = style.data() == _rawStyle.data();
	StyleCache::Finding finding = StyleCache::Finding::unknown;
	if (isInPlace && style.size() >= kShort && element.Attributes().GetCount() == 0)
	{
		finding = _styleCache.Find(style, static_cast<SVGImportElementKind>(tag));
		if (finding == StyleCache::Finding::kept)
		{
			ORVAN_TRY(_staging.TakeBack(element.LoadedAttributes()));
			element.ReplaceAttributes(_styleCache.Get());
			return {};
		}
	}
	bool isShareable = true;
	css::SimpleDeclarations simple(style);
	// A longer text may have more declarations than count.
	while (style.size() < css::kMaxDeclarations && _waiting.empty() && simple.Next())
	{
		const Rule* const rule = FindRuleInText(simple.Name());
		if (rule == nullptr && (!simple.HasPlainName() || simple.Name() == kAll))
		{
			simple.PutBack();
			break;
		}
		if (rule == nullptr || !IsProperty(*rule))
		{
			if (SingleTransforms::IsName(simple.Name())) [[unlikely]]
			{
				const char* const where = isInPlace ? simple.Value().data() : _rawStyle.data();
				ORVAN_TRY(ReadSingleTransform(element, simple.Name(), simple.Value(), where));
				isShareable = false;
			}
			continue;
		}
		const Application application{_importer, element, tag, *rule, simple.Value(), Source::style};
		if (ORVAN_TRY(_importer.Read(application)) == Reading::applied) [[likely]]
		{
			isShareable &= IsSaidByDictionary(application);
			continue;
		}
		isShareable = false;
		if (ORVAN_TRY(_importer.ReadCalculated(application)) == Reading::applied)
			continue;
		const char* const where = isInPlace ? simple.Value().data() : _rawStyle.data();
		ORVAN_TRY(_importer.WarnOfValue(application, {where, _elementTag}));
	}
	if (!simple.IsAtEnd() || !_waiting.empty())
		isShareable &= ORVAN_TRY(SetRestOfStyle(element, tag, style, simple.Offset()));
	if (finding == StyleCache::Finding::noted && isShareable)
	{
		ORVAN_TRY(_staging.TakeBack(element.LoadedAttributes()));
		_styleCache.Keep(element.Attributes());
	}
	return {};
}

/// Sets the declarations of a style from a place on, behind which no important one stands.
Result<bool> ElementSetter::SetRestOfStyle(ElementBase& element, Tag tag, std::string_view style, std::size_t start)
{
	_declarations.clear();
	css::ReadDeclarations(style, {.arena = _arena, .source = StyleSheets::kInlineSource, .start = start},
						  _declarations);
	const bool isInPlace = style.data() == _rawStyle.data();
	// In ascending order of precedence, as below.
	for (const bool isImportant : {false, true})
	{
		for (const css::Declaration& declaration : _declarations)
		{
			if (declaration.isCustom && declaration.isImportant == isImportant) [[unlikely]]
				AddVariable(declaration);
		}
	}
	bool isShareable = _waiting.empty();
	ORVAN_TRY(SetWaiting(element, tag));
	for (const bool isImportant : {false, true})
	{
		for (const css::Declaration& declaration : _declarations)
		{
			if (declaration.isImportant != isImportant)
				continue;
			const char* const where = _rawStyle.data() + (isInPlace ? declaration.valueOffset : 0);
			isShareable &= ORVAN_TRY(Declare(element, tag, declaration, where));
		}
	}
	return isShareable;
}

/// Sets every property but the two that "all" leaves alone. The result is as that of `Declare`.
Result<bool> ElementSetter::SetAll(ElementBase& element, Tag tag, std::string_view value)
{
	if (grammar::complete::ParseCssWide(value) == grammar::complete::CssWideKeyword::none)
		return true;
	_singleTransforms.Reset();
	for (const Rule& rule : AllRules())
	{
		const bool isLeftAlone =
			rule.number == SVGImportAttribute::direction || rule.number == SVGImportAttribute::unicodeBidi;
		if (IsProperty(rule) && !isLeftAlone)
			ORVAN_TRY(_importer.Read({_importer, element, tag, rule, value, Source::style}));
	}
	return false;
}

/// Takes a custom property down for its element and all that is in it.
void ElementSetter::AddVariable(const css::Declaration& declaration)
{
	if (!_hasOwnVariables)
		_variables.emplace_back(_variables.empty() ? nullptr : &_variables.back(), _variableBudget, _memory);
	_hasOwnVariables = true;
	// Sheets stay in place as long as the import, the style attribute may not.
	if (declaration.source == StyleSheets::kInlineSource)
		_variables.back().SetCopy(declaration.name, declaration.value);
	else
		_variables.back().Set(declaration.name, declaration.value);
}

/// Sets the attributes that have waited for the custom properties; all declarations count more.
Result<void> ElementSetter::SetWaiting(ElementBase& element, Tag tag)
{
	for (const WaitingAttribute& attribute : _waiting)
	{
		const Application application{_importer, element, tag, attribute.rule, attribute.text, Source::attribute};
		ORVAN_TRY(SetSubstituted(application, {attribute.where, _elementTag}));
	}
	_waiting.clear();
	return {};
}

/// Sets a property whose value has var() in it. One that comes to nothing leaves the property as if it were unset,
/// whatever stood below it.
Result<void> ElementSetter::SetSubstituted(const Application& application, const ValuePlace& place)
{
	std::string value;
	css::Variables& variables = _variables.empty() ? _noVariables : _variables.back();
	const css::Substitution outcome = variables.Substitute(application.text, value);
	Application substituted = application;
	substituted.text = value;
	if (outcome == css::Substitution::done && (ORVAN_TRY(_importer.Read(substituted)) == Reading::applied ||
											   ORVAN_TRY(_importer.ReadCalculated(substituted)) == Reading::applied))
		return {};
	ORVAN_TRY(_importer.WarnOfValue(application, place));
	if (outcome == css::Substitution::malformed)
		return {};
	substituted.text = "unset";
	ORVAN_TRY(_importer.Read(substituted));
	return {};
}

/// Sets one declaration. The result tells whether the element's dictionary says all that it did, for any element.
Result<bool> ElementSetter::Declare(ElementBase& element, Tag tag, const css::Declaration& declaration,
									const char* where)
{
	// A sheet's declaration is looked up and, when it is refused, reported once; the tag remembers both.
	constexpr std::uint32_t kRefused = 1u << 31;
	constexpr std::uint32_t kUnknown = kRefused - 1;
	constexpr std::uint32_t kSingleTransform = kRefused - 2;
	if (declaration.tag == 0)
	{
		const Rule* const found = declaration.isCustom ? nullptr : FindRule(declaration.name);
		declaration.tag = SingleTransforms::IsName(declaration.name) ? kSingleTransform
						  : found == nullptr || !IsProperty(*found)
							  ? kUnknown
							  : static_cast<std::uint32_t>(found - AllRules().data()) + 1;
	}
	const std::uint32_t number = declaration.tag & ~kRefused;
	if (number == kUnknown)
		return declaration.name == kAll ? SetAll(element, tag, declaration.value) : true;
	if (number == kSingleTransform)
	{
		ORVAN_TRY(ReadSingleTransform(element, declaration.name, declaration.value, where));
		return false;
	}
	const Rule& rule = AllRules()[number - 1];
	if ((declaration.tag & kRefused) != 0)
		return false;
	const Source source = declaration.source == StyleSheets::kInlineSource ? Source::style : Source::sheet;
	std::string resolved;
	std::string_view value = declaration.value;
	if (declaration.hasEscapes && HasEscapedWords(value))
		value = resolved = grammar::complete::ResolveEscapes(value);
	const Application application{_importer, element, tag, rule, value, source};
	if (declaration.hasVariables)
	{
		ORVAN_TRY(SetSubstituted(application, {where, _elementTag}));
		return false;
	}
	if (ORVAN_TRY(_importer.Read(application)) == Reading::applied) [[likely]]
		return IsSaidByDictionary(application);
	if (ORVAN_TRY(_importer.ReadCalculated(application)) == Reading::applied)
		return false;
	declaration.tag |= kRefused;
	ORVAN_TRY(_importer.WarnOfValue(application, {where, _elementTag}));
	return false;
}

/// What is no property of its own: the element's transform takes it over.
Result<void> ElementSetter::ReadSingleTransform(ElementBase& element, std::string_view name, std::string_view value,
												const char* where)
{
	if (_singleTransforms.Read(name, value, _importer.viewport))
		return {};
	return _importer.Warn(&element, {where, _elementTag}, name, ORVAN_TRY(DescribeRefusedValue(name, value)).View());
}

} // namespace orvan::svg::complete
