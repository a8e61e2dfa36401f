// SPDX-License-Identifier: MIT
/// Icons of the loaded module.
#pragma once

#include "host/support.h"
#include "orvan/host/module_loader.h"
#include "vector_icon.h"

#include <array>

namespace orvan
{

inline constexpr std::array kStateLayers = {"State:EnabledActivatedHighlight", "State:EnabledActivatedNoHighlight",
											"State:EnabledDeactivatedHighlight", "State:EnabledDeactivatedNoHighlight"};

/// An icon file with these layers; `mark` tells one content from another by the root's id.
template <typename Ids>
std::string IconFile(const Ids& layers, const std::string& mark = "root")
{
	std::string text = "<svg id='" + mark + "'>";
	for (const std::string id : layers)
		text += "<g id='" + id + "'><rect width='1' height='1'/></g>";
	return text + "</svg>";
}

/// Loads the module for its tests and unloads it after them, which is refused while anything of it is left over.
class IconTest : public testing::Test
{
protected:
	static void SetUpTestSuite()
	{
		_module = Must(Module::Load(ORVAN_SVG_MODULE));
	}

	static void TearDownTestSuite()
	{
		Must(Module::Unload(_module));
	}

	static VectorIconRef LoadIcon(const std::filesystem::path& path)
	{
		const auto icon = Must(CreateObject<VectorIconInterface>(kVectorIconClass));
		Must(Cast<SVGDocumentInterface>(icon)->Init(Must(Url::FromPath(path.string()))));
		return icon;
	}

	/// The display values of the four state layers, by their numbers; "-" for a missing layer.
	static std::string Displays(const VectorIconRef& icon)
	{
		std::string values;
		for (const char* id : kStateLayers)
		{
			const SVGElementRef layer = icon->GetLayer(Text(id));
			values += layer ? std::to_string(static_cast<int>(layer->GetDisplay())) : "-";
		}
		return values;
	}

	static std::string RootId(const VectorIconRef& icon)
	{
		return Cast<SVGDocumentInterface>(icon)->GetRootElement()->GetId().CString();
	}

	TemporaryFolder folder;
	const std::filesystem::path file = folder / "icon.svg";

private:
	static inline Module* _module = nullptr;
};

} // namespace orvan
