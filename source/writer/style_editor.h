// SPDX-License-Identifier: MIT
/// Changing single declarations of a style attribute.
#pragma once

#include "css/declarations.h"
#include "importer/complete/attribute_rules.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvan::svg
{

/// The text of one style attribute while it is edited. What is not touched stays as it is written.
class StyleEditor
{
public:
	/// What a style says about a property.
	enum class Saying
	{
		nothing,
		byItself,    ///< By its own name, or another of the same attribute.
		byShorthand, ///< "font" sets the size, too, and "all" nearly everything.
	};

	/// The text without references.
	explicit StyleEditor(std::string text) : _text(std::move(text))
	{
	}

	const std::string& GetText() const noexcept
	{
		return _text;
	}

	/// Whether anything is left.
	bool IsBlank() const noexcept
	{
		return _text.find_first_not_of(" \t\r\n\f;") == std::string::npos;
	}

	Saying Find(SVGImportAttribute number) const;

	/// Sets a property: in place, or at the end when nothing says it or just a shorthand does. An important one stays
	/// so.
	void Set(const complete::Rule& rule, std::string_view value, bool makesImportant = false);

	/// Takes all declarations of a property out; where a shorthand says it, "unset" comes behind that.
	void Remove(const complete::Rule& rule);

	/// Takes out what shares the element's transform with "transform": "translate", "rotate" and "scale".
	void RemoveSingleTransforms();

private:
	struct Place
	{
		std::size_t begin; ///< Of the name.
		std::size_t valueBegin;
		std::size_t valueEnd; ///< Without blanks; "!important" is before it.
		std::size_t end;      ///< Behind the ";", or of the text.
		Saying saying;
		bool isImportant;
	};

	/// The last declaration of a property that counts, or the last shorthand.
	std::optional<Place> FindLast(SVGImportAttribute number, Saying saying) const;
	Place PlaceOf(const css::Declaration& declaration, Saying saying) const;
	void Append(std::string_view name, std::string_view value, bool isImportant);
	void Erase(const Place& place);

	std::string _text;
};

/// What a declaration, of a style attribute or of a sheet, says about a property.
StyleEditor::Saying SayingOf(const css::Declaration& declaration, SVGImportAttribute number) noexcept;

} // namespace orvan::svg
