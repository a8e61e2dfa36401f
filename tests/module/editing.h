// SPDX-License-Identifier: MIT
/// A document to edit, and an observer that writes down what it is told.
#pragma once

#include "support/svg_module.h"
#include "support/tree_json.h"
#include "svg_edit.h"

namespace orvan
{

/// The class of an error; `unknown` when there is none.
template <typename T>
ErrorClass ClassOf(const Result<T>& result)
{
	return result.IsOk() ? ErrorClass::unknown : result.GetError().GetClass();
}

class Editing : public SvgModuleTest
{
public: // For what observers do.
	static SVGElementEditRef Edit(const SVGElementRef& element)
	{
		return Cast<SVGElementEditInterface>(element);
	}

	SVGElementEditRef Edit(std::string_view id) const
	{
		return Edit(Find(document, id));
	}

	std::string Tree() const
	{
		return Outline(document->GetRootElement());
	}

	bool IsFound(std::string_view id) const
	{
		return document->GetElementById(Text(id)).IsOk();
	}

	/// What was told since the last call.
	std::string Heard()
	{
		return std::exchange(heard, {});
	}

	/// Writes down what it is told: "+child<parent", "-child<parent", "id.attribute", "loaded 1".
	static void Hear(void* context, const SVGChange& change) noexcept
	{
		auto& test = *static_cast<Editing*>(context);
		const auto nameOf = [](const SVGElementRef& element)
		{
			return element ? std::string(element->GetId()) : "null";
		};
		std::string& heard = test.heard;
		heard += heard.empty() ? "" : " ";
		switch (change.kind)
		{
		case SVGChangeKind::attribute:
			heard += nameOf(change.element) + '.' +
					 std::string(kSVGAttributeNames.at(static_cast<std::size_t>(change.attribute)));
			break;
		case SVGChangeKind::text:
			heard += nameOf(change.element) + ".text";
			break;
		case SVGChangeKind::type:
			heard += nameOf(change.element) + ".type";
			break;
		case SVGChangeKind::inserted:
			heard += '+' + nameOf(change.element) + '<' + nameOf(change.parent);
			break;
		case SVGChangeKind::removed:
			heard += '-' + nameOf(change.element) + '<' + nameOf(change.parent);
			break;
		case SVGChangeKind::loaded:
			heard += "loaded " + std::to_string(static_cast<int>(change.report->outcome));
			break;
		case SVGChangeKind::notReloaded:
			heard += "not reloaded";
			break;
		}
		if (test.meanwhile)
			std::exchange(test.meanwhile, nullptr)(test);
	}

	const SVGDocumentRef document = Load("<svg id='s'><g id='a'><rect id='b'/><path id='p' d='M1 2L3 4'/></g>"
										 "<g id='c'><use id='u' href='#b'/></g><rect id='d'/></svg>");
	const SVGDocumentEditRef edit = Cast<SVGDocumentEditInterface>(document);
	std::string heard;
	void (*meanwhile)(Editing&) = nullptr; ///< Done once, inside of the next call of an observer.
};

} // namespace orvan
