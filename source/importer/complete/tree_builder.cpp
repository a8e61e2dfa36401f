// SPDX-License-Identifier: MIT
#include "importer/complete/tree_builder.h"

#include "css/bounds.h"
#include "css/simple_declarations.h"
#include "elements/complete_classes.h"

#include <functional>
#include <string>
#include <utility>

namespace orvan::svg::complete
{

using Kind = SVGImportElementKind;
using grammar::Source;

namespace
{

constexpr std::string_view kXlinkHref = "xlink:href";
constexpr std::string_view kAll = "all"; ///< Stands for all properties, and is none itself.

bool IsSvg(const XmlNode& node) noexcept
{
	const std::string_view space = NamespaceOf(node);
	return space == kSvgNamespace || (node.prefix_size() == 0 && space.empty());
}

/// The rule of an XML attribute; null when it is not known. Names without a prefix, links under any prefix of their
/// namespace, and the two attributes of XML's own that count.
const Rule* RuleOf(const XmlAttribute& attribute) noexcept
{
	const std::string_view name = NameOf(attribute);
	if (attribute.prefix_size() == 0)
		return FindRule(name);
	if (name == kXlinkHref || (LocalNameOf(attribute) == "href" && NamespaceOf(attribute) == kXlinkNamespace))
		return FindRule(kXlinkHref);
	return name == "xml:space" || name == "xml:lang" ? FindRule(name) : nullptr;
}

bool CountsAsAttribute(const Rule& rule) noexcept
{
	return rule.role != Role::declaration;
}

bool IsText(const XmlNode& node) noexcept
{
	return node.type() == xml::node_data || node.type() == xml::node_cdata;
}

bool IsBlank(char c) noexcept
{
	return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// The blanks before an element of a text when there is nothing else between it and the tag or section before: the
/// parser makes no node of them. `isBehindData` tells that the node before is character data.
std::string_view BlanksBefore(const XmlNode& element, bool isBehindData) noexcept
{
	const char* const end = NameOf(element).data() - 1; // At its "<".
	const char* start = end;
	while (IsBlank(start[-1]))
		start--;
	const bool isBehindMarkup = start[-1] == '>' && (!isBehindData || (start[-2] == ']' && start[-3] == ']'));
	return {start, isBehindMarkup ? static_cast<std::size_t>(end - start) : 0};
}

/// The blanks in an element without nodes.
std::string_view BlanksIn(const XmlNode& element) noexcept
{
	const std::string_view name = NameOf(element);
	const char* at = name.data() + name.size();
	if (const XmlAttribute* const last = element.last_attribute())
		at = last->value() + last->value_size() + 1; // Behind the quotation mark.
	while (IsBlank(*at))
		at++;
	if (*at != '>')
		return {};
	const char* const start = ++at;
	while (IsBlank(*at))
		at++;
	return {start, *at == '<' ? static_cast<std::size_t>(at - start) : 0};
}

/// Where characters begin and end in the text, with what marks a CDATA section.
const char* BeginOf(const XmlNode& text) noexcept
{
	constexpr std::size_t kMark = std::string_view("<![CDATA[").size();
	return text.value() - (text.type() == xml::node_cdata ? kMark : 0);
}

const char* EndOf(const XmlNode& text) noexcept
{
	constexpr std::size_t kMark = std::string_view("]]>").size();
	return text.value() + text.value_size() + (text.type() == xml::node_cdata ? kMark : 0);
}

/// Elements whose characters are text of a drawing, inside of a text element.
bool HoldsText(Tag tag) noexcept
{
	static constexpr TagSet kHolders{Kind::text, Kind::tspan, Kind::textPath, Kind::anchor};
	return kHolders.Has(tag);
}

bool HoldsCharacters(Tag tag) noexcept
{
	static constexpr TagSet kHolders{Kind::title, Kind::desc, Kind::style, Kind::metadata};
	return kHolders.Has(tag);
}

/// The size that percentages of an svg element's content refer to, where it is known.
Vector2d ViewportOf(const ElementBase& svg, const Vector2d& outer) noexcept
{
	if (const auto* box = svg.Find<SVGViewbox>(SVGImportAttribute::viewBox))
		return {box->width.value, box->height.value};
	const auto side = [&](SVGImportAttribute key, Float whole)
	{
		const SVGLength length = svg.GetOr(key, SVGLength{1.0, SVGLengthUnit::percent});
		switch (length.unit)
		{
		case SVGLengthUnit::px:
		case SVGLengthUnit::number:
			return length.value;
		case SVGLengthUnit::percent:
			return length.value * whole;
		default:
			return whole;
		}
	};
	return {side(SVGImportAttribute::width, outer.x), side(SVGImportAttribute::height, outer.y)};
}

bool PreservesSpace(std::int32_t whiteSpace) noexcept
{
	const auto value = static_cast<SVGWhiteSpace>(whiteSpace);
	return value == SVGWhiteSpace::pre || value == SVGWhiteSpace::preWrap || value == SVGWhiteSpace::breakSpaces;
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

} // namespace

Tag TagOfNode(const XmlNode& node) noexcept
{
	return IsSvg(node) ? FindTag(LocalNameOf(node)) : Tag::unknown;
}

TreeBuilder::TreeBuilder(Importer& importer, XmlTree& tree, SourceRecorder* recorder) noexcept
	: _importer(importer), _tree(tree), _recorder(recorder), _sheets(importer, _memory), _values(tree.HasReferences()),
	  _styles(tree.HasReferences()), _arena(&_memory), _declarations(&_memory),
	  _noVariables(nullptr, _variableBudget, &_memory), _variables(&_memory)
{
}

Result<SVGElementRef> TreeBuilder::BuildDocument(const XmlNode& root, std::string_view clientSheet)
{
	ORVAN_TRY(_sheets.Collect(root, clientSheet));
	return Build(root, nullptr, {});
}

Result<SVGElementRef> TreeBuilder::Build(const XmlNode& node, HierarchyObject* parent, const Surroundings& outer)
{
	// Selectors look back.
	if (_sheets.IsEmpty())
		_tree.ReleaseBefore(node);
	// Most elements have their namespace from the same declaration.
	const bool isSvg = node.namespace_uri() == _svgNamespace || IsSvg(node);
	if (isSvg && node.namespace_uri_size() != 0)
		_svgNamespace = node.namespace_uri();
	const Tag tag = isSvg ? FindTag(LocalNameOf(node)) : Tag::unknown;
	const SVGElementRef reference = ORVAN_TRY(FactoryOf(tag).Create<SVGElementInterface>());
	auto& element = static_cast<ElementBase&>(*static_cast<HierarchyObject*>(reference.GetObject()));
	if (parent != nullptr)
		ORVAN_TRY(element.HierarchyObject::InsertAsLastChildOf(HierarchyObjectRef::From(parent), {}));
	_elementTag = NameOf(node);
	if (_recorder != nullptr) [[unlikely]]
		_recorder->NoteElement(node.name(), reference);

	Surroundings inner = outer;
	const std::size_t outerVariables = _variables.size();
	if (isSvg)
	{
		_importer.viewport = outer.viewport;
		const std::string_view style = ORVAN_TRY(SetAttributes(node, element, tag));
		ORVAN_TRY(SetDeclarations(node, element, tag, style));
		if (_singleTransforms.IsAny()) [[unlikely]]
			ORVAN_TRY(_singleTransforms.ApplyTo(element));
		if (const auto* whiteSpace = element.Find<std::int32_t>(SVGImportAttribute::whiteSpace))
			inner.preservesSpace = PreservesSpace(*whiteSpace);
		if (tag == TagOf(Kind::svg))
			inner.viewport = ViewportOf(element, outer.viewport);
	}
	else if (const XmlAttribute* id = node.first_attribute("id", 2))
	{
		const std::string_view text = ORVAN_TRY(_values.Decode(ValueOf(*id)));
		ORVAN_TRY(_importer.Read({_importer, element, tag, *FindRule("id"), text, Source::attribute}));
	}

	ORVAN_TRY(BuildContent(node, element, tag, inner));
	if (_variables.size() != outerVariables) [[unlikely]]
		_variables.pop_back();
	return reference;
}

Result<void> TreeBuilder::BuildContent(const XmlNode& node, ElementBase& element, Tag tag, Surroundings& inner)
{
	if (tag == Tag::tref && inner.text != nullptr)
		inner.text->Interrupt();
	if (node.first_node() == nullptr)
		return inner.text != nullptr && HoldsText(tag) ? AppendBlanks(BlanksIn(node), element, inner) : Result<void>();
	if (tag == TagOf(Kind::text) && inner.text == nullptr)
	{
		TextRuns runs;
		inner.text = &runs;
		ORVAN_TRY(BuildChildren(node, element, inner));
		return runs.Finish();
	}
	if (!HoldsText(tag))
		inner.text = nullptr;
	if (HoldsCharacters(tag))
		ORVAN_TRY(SetCharacters(node, element, tag));
	return BuildChildren(node, element, inner);
}

/// Sets all attributes but the style, whose text is the result: it comes after the sheets.
Result<std::string_view> TreeBuilder::SetAttributes(const XmlNode& node, ElementBase& element, Tag tag)
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
		if (IsProperty(*rule) && css::MayHaveVariables(text))
			_waiting.push_back({*rule, std::string(text), raw.data()});
		else
			ORVAN_TRY(_importer.Refuse(application, {raw.data(), _elementTag}, reading));
	}
	return style;
}

Result<void> TreeBuilder::SetDeclarations(const XmlNode& node, ElementBase& element, Tag tag, std::string_view style)
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
Result<void> TreeBuilder::SetInlineStyle(ElementBase& element, Tag tag, std::string_view style)
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
			element.ReplaceAttributes(_styleCache.Get());
			return {};
		}
	}
	bool isShareable = true;
	css::SimpleDeclarations simple(style);
	// A longer text may have more declarations than count.
	while (style.size() < css::kMaxDeclarations && _waiting.empty() && simple.Next())
	{
		const Rule* const rule = FindRule(simple.Name());
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
		const char* const where = isInPlace ? simple.Value().data() : _rawStyle.data();
		ORVAN_TRY(_importer.WarnOfValue(application, {where, _elementTag}));
	}
	if (!simple.IsAtEnd() || !_waiting.empty())
		isShareable &= ORVAN_TRY(SetRestOfStyle(element, tag, style, simple.Offset()));
	if (finding == StyleCache::Finding::noted && isShareable)
		_styleCache.Keep(element.Attributes());
	return {};
}

/// Sets the declarations of a style from a place on, behind which no important one stands.
Result<bool> TreeBuilder::SetRestOfStyle(ElementBase& element, Tag tag, std::string_view style, std::size_t start)
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
Result<bool> TreeBuilder::SetAll(ElementBase& element, Tag tag, std::string_view value)
{
	if (grammar::complete::ParseCssWide(value) == grammar::complete::CssWideKeyword::none)
		return true;
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
void TreeBuilder::AddVariable(const css::Declaration& declaration)
{
	if (!_hasOwnVariables)
		_variables.emplace_back(_variables.empty() ? nullptr : &_variables.back(), _variableBudget, &_memory);
	_hasOwnVariables = true;
	// Sheets stay in place as long as the import, the style attribute may not.
	if (declaration.source == StyleSheets::kInlineSource)
		_variables.back().SetCopy(declaration.name, declaration.value);
	else
		_variables.back().Set(declaration.name, declaration.value);
}

/// Sets the attributes that have waited for the custom properties; all declarations count more.
Result<void> TreeBuilder::SetWaiting(ElementBase& element, Tag tag)
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
Result<void> TreeBuilder::SetSubstituted(const Application& application, const ValuePlace& place)
{
	std::string value;
	css::Variables& variables = _variables.empty() ? _noVariables : _variables.back();
	const css::Substitution outcome = variables.Substitute(application.text, value);
	Application substituted = application;
	substituted.text = value;
	if (outcome == css::Substitution::done && ORVAN_TRY(_importer.Read(substituted)) == Reading::applied)
		return {};
	ORVAN_TRY(_importer.WarnOfValue(application, place));
	if (outcome == css::Substitution::malformed)
		return {};
	substituted.text = "unset";
	ORVAN_TRY(_importer.Read(substituted));
	return {};
}

/// Sets one declaration. The result tells whether the element's dictionary says all that it did, for any element.
Result<bool> TreeBuilder::Declare(ElementBase& element, Tag tag, const css::Declaration& declaration, const char* where)
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
	declaration.tag |= kRefused;
	ORVAN_TRY(_importer.WarnOfValue(application, {where, _elementTag}));
	return false;
}

/// What is no property of its own: the element's transform takes it over.
Result<void> TreeBuilder::ReadSingleTransform(ElementBase& element, std::string_view name, std::string_view value,
											  const char* where)
{
	if (_singleTransforms.Read(name, value, _importer.viewport))
		return {};
	return _importer.Warn(&element, {where, _elementTag}, name, ORVAN_TRY(DescribeRefusedValue(name, value)).View());
}

Result<void> TreeBuilder::BuildChildren(const XmlNode& node, ElementBase& element, const Surroundings& inner)
{
	bool isBehindData = false;
	for (const XmlNode *child = node.first_node(), *next = nullptr; child != nullptr; child = next)
	{
		if (inner.text != nullptr && IsText(*child))
		{
			ORVAN_TRY(AppendRun(child, element, inner));
			next = child;
			isBehindData = true;
			continue;
		}
		if (inner.text != nullptr && child->type() == xml::node_element)
		{
			ORVAN_TRY(AppendBlanks(BlanksBefore(*child, std::exchange(isBehindData, false)), element, inner));
		}
		next = child->next_sibling(); // While it is still there.
		if (child->type() == xml::node_element)
			ORVAN_TRY(Build(*child, &element, inner));
	}
	return {};
}

/// Makes one run of adjacent character data and CDATA sections, and moves behind them.
Result<void> TreeBuilder::AppendRun(const XmlNode*& node, HierarchyObject& parent, const Surroundings& inner)
{
	BaseArray<char> joined;
	std::string_view characters;
	const char* const from = BeginOf(*node);
	const char* to = from;
	const XmlNode* const first = node;
	for (; node != nullptr && IsText(*node); node = node->next_sibling())
	{
		const std::string_view raw = ValueOf(*node);
		to = EndOf(*node);
		characters = node->type() == xml::node_data ? ORVAN_TRY(_values.Decode(raw)) : raw;
		if (node != first || (node->next_sibling() != nullptr && IsText(*node->next_sibling())))
			ORVAN_TRY(joined.AppendAll(characters.data(), characters.size()));
	}
	if (!joined.IsEmpty())
		characters = {joined.begin(), joined.GetCount()};
	const SVGElementRef run = ORVAN_TRY(inner.text->Append(parent, characters, inner.preservesSpace));
	return _recorder != nullptr && run ? _recorder->NoteRun(from, to, run) : Result<void>();
}

/// Makes a run of blanks that stand between tags.
Result<void> TreeBuilder::AppendBlanks(std::string_view blanks, HierarchyObject& parent, const Surroundings& inner)
{
	const SVGElementRef run = ORVAN_TRY(inner.text->Append(parent, blanks, inner.preservesSpace));
	return _recorder != nullptr && run ? _recorder->NoteRun(blanks.data(), blanks.data() + blanks.size(), run)
									   : Result<void>();
}

/// Keeps the characters of a title, a description, a style or metadata as they stand.
Result<void> TreeBuilder::SetCharacters(const XmlNode& node, ElementBase& element, Tag tag)
{
	BaseArray<char> characters;
	for (const XmlNode* child = node.first_node(); child != nullptr; child = child->next_sibling())
	{
		if (!IsText(*child))
			continue;
		const std::string_view raw = ValueOf(*child);
		const std::string_view text = child->type() == xml::node_data ? ORVAN_TRY(_values.Decode(raw)) : raw;
		ORVAN_TRY(characters.AppendAll(text.data(), text.size()));
	}
	const bool isBlank = std::string_view(characters.begin(), characters.GetCount()).find_first_not_of(" \t\r\n") ==
						 std::string_view::npos;
	// What stands between the elements of metadata says nothing.
	if (isBlank && tag == TagOf(Kind::metadata))
		return {};
	const String text = ORVAN_TRY(String::Create({characters.begin(), characters.GetCount()}));
	return Borrowed<SVGDescriptionInterface>(SVGElementRef::From(&element))->SetText(text);
}

} // namespace orvan::svg::complete
