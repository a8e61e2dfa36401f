// SPDX-License-Identifier: MIT
#include "importer/complete/tree_builder.h"

#include "elements/complete_classes.h"
#include "importer/new_child.h"

#include <algorithm>
#include <cstring>
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

/// Where an element's start tag ends: at its ">", or at "/>".
const char* FindTagEnd(const XmlNode& element) noexcept
{
	const std::string_view name = NameOf(element);
	const char* at = name.data() + name.size();
	if (const XmlAttribute* const last = element.last_attribute())
		at = last->value() + last->value_size() + 1; // Behind the quotation mark.
	while (IsBlank(*at))
		at++;
	return at;
}

/// What the parser makes no node of between two nodes: blanks from one piece of markup to the next, comments and
/// processing instructions.
class Gap
{
public:
	/// `at` is behind a node or a start tag.
	explicit Gap(const char* at) noexcept : _at(at)
	{
	}

	/// The next blanks; none are left when there are none.
	std::string_view Next() noexcept
	{
		for (;;)
		{
			const char* end = _at;
			while (IsBlank(*end))
				end++;
			if (*end != '<')
				return {}; // They belong to the characters that follow.
			if (end != _at)
				return {std::exchange(_at, end), end};
			if (!SkipMarkup())
				return {};
		}
	}

	/// Where what follows begins, after all blanks.
	const char* GetEnd() const noexcept
	{
		return _at;
	}

private:
	bool SkipMarkup() noexcept
	{
		struct Markup
		{
			std::string_view begin, end;
		};
		static constexpr Markup kSkipped[] = {{"<!--", "-->"}, {"<?", "?>"}, {"<!", ">"}};

		if (StartsWith("<![CDATA["))
			return false;
		for (const Markup& markup : kSkipped)
		{
			if (!StartsWith(markup.begin))
				continue;
			const char* const found = std::strstr(_at + markup.begin.size(), markup.end.data());
			_at = found != nullptr ? found + markup.end.size() : _at;
			return found != nullptr;
		}
		return false;
	}

	bool StartsWith(std::string_view text) const noexcept
	{
		return std::strncmp(_at, text.data(), text.size()) == 0;
	}

	const char* _at;
};

/// Where a node of a text ends. What it holds must still be there.
const char* FindEnd(const XmlNode& node) noexcept
{
	if (IsText(node))
		return EndOf(node);
	const XmlNode* const last = node.first_node() != nullptr ? node.last_node() : nullptr;
	const char* const tagEnd = FindTagEnd(node);
	if (last == nullptr && *tagEnd == '/')
		return tagEnd + 2;
	Gap gap(last != nullptr ? FindEnd(*last) : tagEnd + 1);
	while (!gap.Next().empty())
	{
	}
	return std::strchr(gap.GetEnd(), '>') + 1; // Of the end tag.
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
	return IsSvg(node) ? FindTagInText(LocalNameOf(node)) : Tag::unknown;
}

TreeBuilder::TreeBuilder(Importer& importer, XmlTree& tree, SourceRecorder* recorder, bool hasReferences) noexcept
	: _importer(importer), _tree(tree), _recorder(recorder), _sheets(importer, _memory),
	  _setter(importer, _sheets, &_memory, hasReferences), _characters(hasReferences)
{
}

Result<SVGElementRef> TreeBuilder::BuildDocument(const XmlNode& root, std::string_view clientSheet)
{
	ORVAN_TRY(_sheets.Collect(root, clientSheet));
	const NodeTag tag = Enter(root);
	SVGElementRef element = ORVAN_TRY(FactoryOf(tag.tag).Create<SVGElementInterface>());
	ORVAN_TRY(Fill(element, root, tag, {}));
	return element;
}

Result<void> TreeBuilder::BuildChild(const XmlNode& node, ElementBase& parent, const Surroundings& outer)
{
	const NodeTag tag = Enter(node);
	const NewChild child(ORVAN_TRY(FactoryOf(tag.tag).Create<SVGElementInterface>()), parent);
	return Fill(child.Get(), node, tag, outer);
}

/// Gives back what lies behind, and finds out what the node is.
TreeBuilder::NodeTag TreeBuilder::Enter(const XmlNode& node) noexcept
{
	// Selectors look back.
	if (_sheets.IsEmpty())
		_tree.ReleaseBefore(node);
	// Most elements have their namespace from the same declaration.
	const bool isSvg = node.namespace_uri() == _svgNamespace || IsSvg(node);
	if (isSvg && node.namespace_uri_size() != 0)
		_svgNamespace = node.namespace_uri();
	return {isSvg ? FindTagInText(LocalNameOf(node)) : Tag::unknown, isSvg};
}

/// Gives an element its attributes and all that is below it.
Result<void> TreeBuilder::Fill(const SVGElementRef& reference, const XmlNode& node, NodeTag nodeTag,
							   const Surroundings& outer)
{
	const Tag tag = nodeTag.tag;
	auto& element = static_cast<ElementBase&>(*static_cast<HierarchyObject*>(reference.GetObject()));
	if (_recorder != nullptr) [[unlikely]]
		_recorder->NoteElement(node.name(), reference);

	Surroundings inner = outer;
	const std::size_t outerScopes = _setter.GetScopeCount();
	if (nodeTag.isSvg)
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
	return {};
}

Result<void> TreeBuilder::BuildContent(const XmlNode& node, ElementBase& element, Tag tag, Surroundings& inner)
{
	if (tag == Tag::tref && inner.text != nullptr)
		inner.text->Interrupt();
	if (tag == TagOf(Kind::text) && inner.text == nullptr)
	{
		TextRuns runs;
		inner.text = &runs;
		ORVAN_TRY(BuildText(node, element, inner));
		return runs.Finish();
	}
	if (inner.text != nullptr && HoldsText(tag))
		return BuildText(node, element, inner);
	if (node.first_node() == nullptr)
		return {};
	inner.text = nullptr;
	if (HoldsCharacters(tag))
		ORVAN_TRY(SetCharacters(node, element, tag));
	return BuildChildren(node, element, inner);
}

Result<void> TreeBuilder::BuildChildren(const XmlNode& node, ElementBase& element, const Surroundings& inner)
{
	for (const XmlNode *child = node.first_node(), *next = nullptr; child != nullptr; child = next)
	{
		next = child->next_sibling(); // While it is still there.
		if (child->type() == xml::node_element)
			ORVAN_TRY(BuildChild(*child, element, inner));
	}
	return {};
}

/// Makes one run of all characters before, between and behind elements.
Result<void> TreeBuilder::BuildText(const XmlNode& node, ElementBase& element, const Surroundings& inner)
{
	const char* const tagEnd = FindTagEnd(node);
	if (*tagEnd == '/')
		return {};
	const char* reached = tagEnd + 1;
	for (const XmlNode* child = node.first_node();;)
	{
		ORVAN_TRY(AppendRun(child, reached, element, inner));
		if (child == nullptr)
			return {};
		const XmlNode& inside = *child;
		reached = FindEnd(inside); // While it is still there, like the next one.
		child = child->next_sibling();
		ORVAN_TRY(BuildChild(inside, element, inner));
	}
}

/// Makes a run of the characters from `from` to the next element: character data, CDATA sections, and the blanks
/// between these and other markup. Moves behind them.
Result<void> TreeBuilder::AppendRun(const XmlNode*& node, const char* from, ElementBase& parent,
									const Surroundings& inner)
{
	BaseArray<char> joined;
	const char* to = from;
	const auto append = [&](std::string_view characters, const char* begin, const char* end) -> Result<void>
	{
		from = joined.IsEmpty() ? begin : from;
		to = end;
		return joined.AppendAll(characters.data(), characters.size());
	};
	for (Gap gap(from);;)
	{
		for (std::string_view blanks = gap.Next(); !blanks.empty(); blanks = gap.Next())
			ORVAN_TRY(append(blanks, blanks.data(), blanks.data() + blanks.size()));
		if (node == nullptr || !IsText(*node))
			break;
		const std::string_view raw = ValueOf(*node);
		ORVAN_TRY(append(node->type() == xml::node_data ? ORVAN_TRY(_characters.Decode(raw)) : raw, BeginOf(*node),
						 EndOf(*node)));
		gap = Gap(EndOf(*node));
		node = node->next_sibling();
	}
	const std::string_view characters(joined.begin(), joined.GetCount());
	// Blanks before a text's end tag make no run that would then be empty.
	const bool isEnd = node == nullptr && ClassKindOf(parent) == Kind::text && !inner.preservesSpace;
	if (characters.empty() || (isEnd && std::all_of(characters.begin(), characters.end(), &IsBlank)))
		return {};
	const SVGElementRef run = ORVAN_TRY(inner.text->Append(parent, characters, inner.preservesSpace));
	return _recorder != nullptr && run ? _recorder->NoteRun(from, to, run) : Result<void>();
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
