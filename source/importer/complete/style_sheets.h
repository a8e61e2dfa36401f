// SPDX-License-Identifier: MIT
/// The style sheets of one document, and which of their declarations apply to an element of the XML tree.
#pragma once

#include "css/cascade.h"
#include "css/style_sheet.h"
#include "importer/complete/host_memory.h"
#include "importer/complete/importer.h"
#include "importer/xml/xml_tree.h"

#include <memory_resource>
#include <optional>
#include <span>
#include <string_view>

namespace orvan::svg::complete
{

/// Whether the sheet of a style element with these attributes is one of CSS whose media query holds, see `css/media.h`.
bool IsSheetForScreens(std::string_view type, std::string_view media) noexcept;

/// How selectors see the nodes of the XML library.
class XmlElementView final : public css::ElementView
{
public:
	explicit XmlElementView(css::Arena& arena) noexcept : _arena(arena)
	{
	}

	css::ElementNames GetNames(css::Element element) const override;
	bool GetAttribute(css::Element element, std::string_view name, std::string_view& value) const override;
	bool GetPrefixedAttribute(css::Element element, std::string_view localName, std::size_t index,
							  std::string_view& value) const override;
	css::Element GetParent(css::Element element) const override;
	css::Element GetPrevious(css::Element element) const override;
	css::Element GetNext(css::Element element) const override;
	css::Element GetFirstChild(css::Element element) const override;
	bool IsEmpty(css::Element element) const override;
	bool IsLink(css::Element element) const override;

private:
	std::string_view Decode(std::string_view value) const;

	css::Arena& _arena; ///< For values with references.
};

/// The sheets of one document. Everything may throw std::bad_alloc.
class StyleSheets
{
public:
	StyleSheets(Importer& importer, std::pmr::memory_resource& memory);
	StyleSheets(const StyleSheets&) = delete;

	/// Collects the style elements below a node, and the client's own sheet behind them.
	Result<void> Collect(const XmlNode& root, std::string_view clientSheet);

	/// Whether there is any rule.
	bool IsEmpty() const noexcept
	{
		return _sheet.IsEmpty();
	}

	/// The declarations that apply to an element, in ascending order of precedence, its style attribute's among them.
	std::span<const css::Declaration* const> DeclarationsFor(const XmlNode& node,
															 std::span<const css::Declaration> inlineStyle);

	/// The place of a declaration's value in the text that is parsed; null when the text of its sheet stands elsewhere.
	const char* PlaceOf(const css::Declaration& declaration) const noexcept;

	/// Says once when matching was given up.
	Result<void> ReportBudget() noexcept;

	/// Number of the source that style attributes name; above that of all sheets.
	static constexpr std::uint32_t kInlineSource = ~std::uint32_t{0};

private:
	class Problems;

	struct Source
	{
		const char* text;
		bool isInPlace; ///< The text stands in the document's.
	};

	Result<void> AddElement(const XmlNode& style);
	void Add(std::string_view text, bool isInPlace);

	Importer& _importer;
	css::Arena _arena;
	css::StyleSheet _sheet;
	XmlElementView _view;
	std::pmr::vector<Source> _sources;
	std::optional<css::Cascade> _cascade;
	bool _isBudgetReported = false;
};

} // namespace orvan::svg::complete
