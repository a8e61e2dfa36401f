// SPDX-License-Identifier: MIT
#include "icon_fixture.h"

namespace orvan
{
namespace
{

using State = SVGIconState;

class IconLayers : public IconTest
{
};

TEST_F(IconLayers, AreUntouchedInANewIconWhoseStateIsUninitialized)
{
	WriteFile(file, IconFile(kStateLayers));
	const VectorIconRef icon = LoadIcon(file);
	EXPECT_EQ(0xffffffffu, static_cast<std::uint32_t>(icon->GetState()));
	EXPECT_EQ("0000", Displays(icon));
}

TEST_F(IconLayers, ShowTheStateAlone)
{
	WriteFile(file, IconFile(kStateLayers));
	const VectorIconRef icon = LoadIcon(file);
	icon->SetState(State::enabledActivatedHighlight);
	EXPECT_EQ("1222", Displays(icon));
	icon->SetState(State::enabledDeactivatedNoHighlight);
	EXPECT_EQ("2221", Displays(icon));
	const CollectedDiagnostics diagnostics;
	icon->SetState(State(4));
	EXPECT_EQ("2222", Displays(icon));
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
	EXPECT_EQ(State(4), icon->GetState());

	// Set by a client, even the state of a new icon is one that shows no layer, also in the next file.
	icon->SetState(State::uninitialized);
	const auto document = Cast<SVGDocumentInterface>(icon);
	Must(document->Init(document->GetUrl()));
	EXPECT_EQ("2222", Displays(icon));
}

TEST_F(IconLayers, AreLeftAloneByTheStateThatIsAlreadyStored)
{
	CollectedDiagnostics diagnostics;
	WriteFile(file, IconFile(std::array{kStateLayers[0]}));
	const VectorIconRef icon = LoadIcon(file);
	icon->SetState(State::enabledActivatedNoHighlight);
	ASSERT_EQ(1u, diagnostics.lines.size());
	Must(icon->GetLayer(Text(kStateLayers[0]))->SetDisplay(SVGDisplay::shown));
	icon->SetState(State::enabledActivatedNoHighlight);
	EXPECT_EQ("1---", Displays(icon));
	EXPECT_EQ(1u, diagnostics.lines.size());
}

TEST_F(IconLayers, ThatAreMissingAreReportedAtEveryChangeOfState)
{
	CollectedDiagnostics diagnostics;
	WriteFile(file, IconFile(std::array{kStateLayers[0], kStateLayers[2]}));
	const VectorIconRef icon = LoadIcon(file);
	icon->SetState(State::enabledActivatedHighlight);
	EXPECT_EQ("2-0-", Displays(icon)) << "switching stops at the first missing layer";
	icon->SetState(State::enabledDeactivatedHighlight);
	EXPECT_EQ(State::enabledDeactivatedHighlight, icon->GetState());
	const std::string text = "VectorIconImpl::SetState() error. Maybe some layer is missing. "
							 "SVG element with id 'State:EnabledActivatedNoHighlight' not found.";
	EXPECT_EQ((std::vector{text, text}), diagnostics.lines);
}

TEST_F(IconLayers, AreSwitchedAndToggledById)
{
	WriteFile(file, IconFile(std::array{"a", "b"}));
	const VectorIconRef icon = LoadIcon(file);
	const SVGElementRef a = icon->GetLayer(Text("a"));
	Must(icon->SetLayerEnabled(Text("a"), false));
	EXPECT_EQ(SVGDisplay::none, a->GetDisplay());
	Must(icon->SetLayerEnabled(Text("a"), true));
	EXPECT_EQ(SVGDisplay::shown, a->GetDisplay());
	Must(icon->ToggleLayer(Text("a")));
	EXPECT_EQ(SVGDisplay::none, a->GetDisplay());
	Must(icon->ToggleLayer(Text("b")));
	EXPECT_EQ(SVGDisplay::shown, icon->GetLayer(Text("b"))->GetDisplay()) << "shown when nothing was said before";
}

TEST_F(IconLayers, ThatDoNotExistAreErrorsOrEmptyReferences)
{
	WriteFile(file, IconFile(kStateLayers));
	const VectorIconRef icon = LoadIcon(file);
	EXPECT_EQ("SVG element with id 'none' not found.", MessageOf(icon->SetLayerEnabled(Text("none"), true)));
	EXPECT_EQ("SVG element with id 'none' not found.", MessageOf(icon->ToggleLayer(Text("none"))));
	EXPECT_FALSE(icon->GetLayer(Text("none")));
	EXPECT_EQ("0000", Displays(icon));
}

TEST_F(IconLayers, ShowTheStateInTheNextFileToo)
{
	WriteFile(file, IconFile(kStateLayers));
	const VectorIconRef icon = LoadIcon(file);
	const auto document = Cast<SVGDocumentInterface>(icon);
	icon->SetState(State::enabledDeactivatedHighlight);
	Must(document->Init(document->GetUrl()));
	EXPECT_EQ("2212", Displays(icon));
	document->Reset();
	EXPECT_FALSE(document->GetRootElement());
	EXPECT_EQ("----", Displays(icon));
}

TEST_F(IconLayers, ComeWithTheOutOfMemoryErrorWhereMemoryEnds)
{
	WriteFile(file, IconFile(std::array{"a"}));
	const VectorIconRef icon = LoadIcon(file);
	const String id = Text("a");
	FailEachAllocation([&] { return icon->ToggleLayer(id); });
	EXPECT_EQ(SVGDisplay::shown, icon->GetLayer(id)->GetDisplay());
	FailEachAllocation([] { return CreateObject<VectorIconInterface>(kVectorIconClass); });
	const auto document = Cast<SVGDocumentInterface>(icon);
	const Url url = document->GetUrl();
	FailEachAllocation([&] { return document->Init(url); });
}

} // namespace
} // namespace orvan
