// SPDX-License-Identifier: MIT
#include "importer/complete/tree_builder.h"

#include "elements/complete_classes.h"

#include <utility>

namespace orvan::svg::complete
{

using Kind = SVGImportElementKind;

namespace
{

bool IsSvg(const XmlNode& node) noexcept
{
	const std::string_view space = NamespaceOf(node);
	return space == kSvgNamespace || (node.prefix_size() == 0 && space.empty());
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

} // namespace

Tag TagOfNode(const XmlNode& node) noexcept
{
	return IsSvg(node) ? FindTag(LocalNameOf(node)) : Tag::unknown;
}

TreeBuilder::TreeBuilder(Importer& importer, XmlTree& tree, SourceRecorder* recorder) noexcept
	: _importer(importer), _tree(tree), _recorder(recorder), _sheets(importer, _memory),
	  _setter(importer, _sheets, &_memory, tree.HasReferences()), _characters(tree.HasReferences())
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
	if (_recorder != nullptr) [[unlikely]]
		_recorder->NoteElement(node.name(), reference);

	Surroundings inner = outer;
	const std::size_t outerScopes = _setter.GetScopeCount();
	if (isSvg)
	{
		_importer.viewport = outer.viewport;
		ORVAN_TRY(_setter.Set(node, element, tag));
		if (const auto* whiteSpace = element.Find<std::int32_t>(SVGImportAttribute::whiteSpace))
			inner.preservesSpace = PreservesSpace(*whiteSpace);
		if (tag == TagOf(Kind::svg))
			inner.viewport = ViewportOf(element, outer.viewport);
	}
	else
		ORVAN_TRY(_setter.SetIdOnly(node, element, tag));

	ORVAN_TRY(BuildContent(node, element, tag, inner));
	_setter.LeaveScopes(outerScopes);
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
		characters = node->type() == xml::node_data ? ORVAN_TRY(_characters.Decode(raw)) : raw;
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
		const std::string_view text = child->type() == xml::node_data ? ORVAN_TRY(_characters.Decode(raw)) : raw;
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
