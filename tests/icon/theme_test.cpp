// SPDX-License-Identifier: MIT
/// Icons in other colours and states, and what is told of their reloads.
#include "icon_fixture.h"
#include "orvan/host/allocation_failure.h"
#include "orvan/host/file_monitor_pump.h"
#include "svg_edit.h"
#include "svg_source.h"
#include "vector_icon_theme.h"

#include <fstream>
#include <iterator>
#include <thread>

namespace orvan
{
namespace
{

constexpr const char* kThemed =
	"<svg id='root'><style>.text{fill:#f00}</style><g id='State:Busy' class='text other'><rect id='r' fill='#00f'/></g>"
	"<path id='p' class='text' style='fill:lime;stroke:currentColor'/><g id='State:EnabledActivatedHighlight'/>"
	"<polygon id='q'/><g id='State:Busy'/></svg>";

class IconTheme : public IconTest
{
public: // For what observers do.
	IconTheme()
	{
		WriteFile(file, kThemed);
		std::this_thread::sleep_for(std::chrono::milliseconds(30)); // More than a step of the file system's clock.
		SVGImportOptions options;
		options.isComplete = true;
		Must(Cast<SVGDocumentImportInterface>(icon)->SetImportOptions(options));
		Must(document->Init(Must(Url::FromPath(file.string()))));
	}

	/// The fills of some elements as letters, "-" where nothing is said.
	std::string Fills() const
	{
		std::string letters;
		for (const char* id : {"State:Busy", "r", "p", "q"})
		{
			const SVGElementRef element = icon->GetLayer(Text(id));
			const Color color = element->GetFill().color;
			letters += !element->HasAttribute(SVGImportAttribute::fill) ? '-'
					   : color == Color{1.0, 0.0, 0.0}                  ? 'r'
					   : color == Color{0.0, 1.0, 0.0}                  ? 'g'
					   : color == Color{0.0, 0.0, 1.0}                  ? 'b'
																		: '?';
		}
		return letters;
	}

	/// What currentColor stands for, as far as the root says it.
	SVGPaint RootColor() const
	{
		return document->GetRootElement()->GetAttributeDictionary().GetOr(
			static_cast<std::int32_t>(SVGImportAttribute::color), SVGPaint{SVGPaintType::none, {}, {}});
	}

	std::string Busy() const
	{
		std::string values;
		for (const char* id : {"State:Busy", "State:EnabledActivatedHighlight"})
			values += std::to_string(static_cast<int>(icon->GetLayer(Text(id))->GetDisplay()));
		return values;
	}

	static void PumpUntilQuiet()
	{
		while (FileMonitorPump::Wait(250) > 0)
		{
		}
	}

	const VectorIconRef icon = Must(CreateObject<VectorIconInterface>(kVectorIconClass));
	const SVGDocumentRef document = Cast<SVGDocumentInterface>(icon);
	const VectorIconThemeRef theme = Cast<VectorIconThemeInterface>(icon);
	CollectedDiagnostics diagnostics;
};

TEST_F(IconTheme, LiesOverTheTreeThatWasLoaded)
{
	EXPECT_EQ("rbg-", Fills());
	Must(theme->SetCurrentColor({0.0, 0.0, 1.0}));
	EXPECT_EQ(1.0, RootColor().color.blue);
	Must(theme->SetStyleSheet(
		Text(".text { fill: blue; stroke: url(#x) } #root > path:nth-of-type(2), .none { fill: red }"
			 " g > rect { fill: lime ! important; width: 3px; d: none } svg { color: lime }"
			 " rect[id], [class=text], [style] { fill: red !important }"))); // Attributes are not looked at.
	EXPECT_EQ("bgbr", Fills()) << "over the style attribute, too";
	EXPECT_EQ(1.0, RootColor().color.blue) << "the colour that was set holds";
	EXPECT_EQ(3.0, Cast<SVGSizeInterface>(icon->GetLayer(Text("r")))->GetWidth().value);
	EXPECT_EQ(SVGPaintType::reference, icon->GetLayer(Text("p"))->GetStroke().type);
	Must(theme->ClearCurrentColor());
	EXPECT_EQ(1.0, RootColor().color.green);
	Must(theme->SetCurrentColor({1.0, 0.0, 0.0}));
	EXPECT_EQ("bgbr", Fills()) << "The sheet stays beside another colour.";
	// It lies over the next tree as well, whether both are given or one.
	Must(document->Init(document->GetUrl()));
	EXPECT_EQ("bgbr", Fills());
	EXPECT_EQ(1.0, RootColor().color.red);
	Must(theme->ClearCurrentColor());
	Must(document->Init(document->GetUrl()));
	EXPECT_EQ("bgbr", Fills());
	Must(icon->GetLayer(Text("p"))->SetOpacity(0.5));
	Must(theme->SetStyleSheet(Text("rect { fill: red } } broken")));
	EXPECT_EQ("rrg-", Fills());
	EXPECT_EQ(SVGPaintType::none, RootColor().type);
	EXPECT_EQ(SVGPaintType::currentColor, icon->GetLayer(Text("p"))->GetStroke().type);
	EXPECT_EQ(0.5, icon->GetLayer(Text("p"))->GetOpacity()) << "what else was set stays";
	Must(theme->SetStyleSheet(Text("svg { --a: lime; --b: var(--a) } g { --a: red; fill: var(--b) }"
								   " rect, #q { fill: var(--a) } path { fill: var(--none) }"
								   " rect { --c: red; --d: red } #q { fill: var(--c, lime) }")));
	EXPECT_EQ("grgg", Fills()) << "with the sheet's own variables";
	Must(theme->SetStyleSheet({}));
	EXPECT_EQ("rbg-", Fills());
	EXPECT_FALSE(icon->GetLayer(Text("r"))->HasAttribute(SVGImportAttribute::width));
	EXPECT_EQ(3, theme->GetLoadCount());
	Must(theme->SetCurrentColor({0.0, 0.0, 1.0}));
	Must(document->Init(document->GetUrl()));
	EXPECT_EQ(1.0, RootColor().color.blue);
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
}

TEST_F(IconTheme, IsNotSaved)
{
	const auto import = Cast<SVGDocumentImportInterface>(icon);
	SVGImportOptions options = import->GetImportOptions();
	const auto source = Cast<SVGDocumentSourceInterface>(icon);
	const auto saved = [&](SVGSaveMode mode = SVGSaveMode::edit)
	{
		const BaseArray<char> bytes = Must(source->SaveToMemory({.mode = mode}));
		return std::string(bytes.begin(), bytes.end());
	};
	Must(theme->SetCurrentColor({0.0, 0.0, 1.0}));
	Must(theme->SetStyleSheet(Text("path { fill: blue; stroke-dasharray: 1 2; opacity: .5 } polygon { fill: blue }")));
	const std::string whole = saved();
	EXPECT_EQ(whole.npos, whole.find("color=\"")) << whole;
	EXPECT_NE(whole.npos, whole.find("<path id=\"p\" stroke=\"currentColor\" class=\"text\" style=\"fill:#0f0\"/>"))
		<< whole;
	// With a source nothing was edited, also when the icon shows a layer; what a client edits beside it is saved.
	options.keepsSource = true;
	Must(import->SetImportOptions(options));
	Must(document->Init(Must(Url::FromPath(file.string()))));
	Must(theme->SetStateLayer(Text("State:Busy")));
	EXPECT_EQ(kThemed, saved());
	icon->SetState(SVGIconState::enabledActivatedHighlight);
	Must(icon->SetLayerEnabled(Text("r"), false));
	EXPECT_EQ(kThemed, saved());
	const std::filesystem::path copy = file.string() + ".copy.svg";
	Must(source->Save(Must(Url::FromPath(copy.string())), {}));
	std::ifstream written(copy);
	EXPECT_EQ(kThemed, std::string(std::istreambuf_iterator<char>(written), {}));
	Must(icon->GetLayer(Text("p"))->SetOpacity(0.25));
	Must(Cast<SVGElementEditInterface>(icon->GetLayer(Text("q")))->RemoveAttribute(SVGImportAttribute::fill));
	// Which has the result loaded and compared.
	Must(source->SetAttributeText(icon->GetLayer(Text("r")), Text("class"), Text("x")));
	std::string expected = kThemed;
	expected.insert(expected.find("/></g>"), " class=\"x\"");
	expected.insert(expected.find(" style='fill:lime") + 38, " opacity=\".25\"");
	EXPECT_EQ(expected, saved());
}

TEST_F(IconTheme, IsAsBeforeWhenMemoryRunsOut)
{
	Must(theme->SetStyleSheet(Text("rect { fill: red }")));
	const String next = Text("path { fill: blue } g { fill: lime }");
	for (int number = 1;; number++)
	{
		bool isChanged = false;
		{
			const AllocationFailure failure(number, AllocationFailure::Extent::one);
			isChanged = theme->SetStyleSheet(next).IsOk();
			EXPECT_NE(isChanged, failure.HasFailed()) << number;
		}
		ASSERT_EQ(isChanged ? "gbbb" : "rrg-", Fills()) << number;
		ASSERT_EQ(isChanged, theme->GetStyleSheet() == next) << number;
		if (isChanged)
		{
			EXPECT_GT(number, 20);
			break;
		}
	}
}

TEST_F(IconTheme, ComesBackWithEveryReload)
{
	Must(theme->SetCurrentColor({0.0, 1.0, 0.0}));
	Must(theme->SetStyleSheet(Text("rect { fill: red }")));
	Must(icon->SetLayerEnabled(Text("State:Busy"), false));
	Must(theme->SetStateLayer(Text("State:Busy"))); // Which has the last word.
	static std::string heard;
	heard.clear();
	const auto edit = Cast<SVGDocumentEditInterface>(icon);
	const auto hear = [](void* context, const SVGChange& change) noexcept
	{
		const auto& test = *static_cast<const IconTheme*>(context);
		if (change.kind == SVGChangeKind::loaded || change.kind == SVGChangeKind::notReloaded)
			heard += std::to_string(static_cast<int>(change.kind)) + ' ' +
					 std::to_string(static_cast<int>(change.report->outcome)) + ' ' + test.Fills() + test.Busy() + '\n';
	};
	const std::int64_t number = Must(edit->AddObserver(hear, this));
	const auto import = Cast<SVGDocumentImportInterface>(icon);
	SVGImportOptions options = import->GetImportOptions();
	options.isTolerant = true;
	Must(import->SetImportOptions(options));
	icon->SetLiveReloadEnabled(true);
	const std::string text = kThemed;
	WriteFile(file, text.substr(0, text.size() - 6) + "<g fill='odd'/></svg>");
	PumpUntilQuiet();
	EXPECT_EQ(1, Must(import->GetImportReport()).findingCount);
	WriteFile(file, "<svg");
	PumpUntilQuiet();
	std::filesystem::remove(file);
	PumpUntilQuiet();
	EXPECT_EQ("5 2 rrg-12\n6 3 rrg-12\n6 0 rrg-12\n", heard);
	EXPECT_EQ(1.0, RootColor().color.green);
	EXPECT_EQ(4, theme->GetLoadCount());
	// Letting go of the icon in the middle of its reload.
	static VectorIconRef last;
	edit->RemoveObserver(number);
	last = icon;
	Must(edit->AddObserver([](void*, const SVGChange&) noexcept { last = nullptr; }, nullptr));
	WriteFile(file, text);
	PumpUntilQuiet();
	EXPECT_FALSE(last);
	Must(theme->SetStyleSheet({}));
	EXPECT_EQ("rbg-", Fills());
}

TEST_F(IconTheme, LiesOverWhatComesFromMemory)
{
	Must(theme->SetStyleSheet(Text("rect { fill: red }")));
	icon->SetState(SVGIconState::enabledActivatedHighlight);
	icon->SetLiveReloadEnabled(true);
	constexpr std::string_view kOther = "<svg><g id='State:Busy'><rect id='r'/></g><path id='p'/><polygon id='q'/>"
										"<g id='State:EnabledActivatedHighlight'/></svg>";
	Must(Cast<SVGDocumentImportInterface>(icon)->InitFromMemory(kOther.data(), std::ssize(kOther), {}));
	EXPECT_EQ("-r--", Fills());
	EXPECT_EQ("02", Busy()) << "Switching stops at the first layer that is missing.";
	EXPECT_EQ(2, theme->GetLoadCount());
	// It has no file to follow.
	WriteFile(file, std::string(kThemed) + "<!-- changed -->");
	PumpUntilQuiet();
	EXPECT_EQ("-r--", Fills());
	EXPECT_EQ(2, theme->GetLoadCount());
	// Layers that the next file has not are told.
	Must(theme->SetStateLayer(Text("State:Busy")));
	diagnostics.lines.clear();
	WriteFile(file, "<svg/>");
	Must(document->Init(Must(Url::FromPath(file.string()))));
	EXPECT_EQ((std::vector<std::string>{"State layer 'State:Busy' could not be shown. "
										"SVG element with id 'State:Busy' not found."}),
			  diagnostics.lines);
}

TEST_F(IconTheme, ShowsStatesByName)
{
	const auto layers = Must(theme->GetStateLayers());
	ASSERT_EQ(2u, layers.GetCount());
	EXPECT_EQ(Text("State:Busy"), layers[0]);
	EXPECT_EQ(Text(kStateLayers[0]), layers[1]);
	Must(icon->SetLayerEnabled(Text("State:Busy"), false));
	Must(theme->SetStateLayer(layers[0]));
	EXPECT_EQ("12", Busy());
	EXPECT_EQ(layers[0], theme->GetStateLayer());
	EXPECT_EQ(SVGIconState::uninitialized, icon->GetState());
	Must(theme->SetStateLayer(layers[1]));
	EXPECT_EQ("21", Busy());
	EXPECT_EQ(SVGIconState::enabledActivatedHighlight, icon->GetState());
	for (const char* missing : {"State:None", "r", ""})
		EXPECT_EQ(ErrorClass::notFound, theme->SetStateLayer(Text(missing)).GetError().GetClass()) << missing;
	EXPECT_EQ("21", Busy());
	Must(theme->SetStateLayer(layers[0]));
	icon->SetState(SVGIconState::uninitialized); // Which it is, but by a name.
	EXPECT_EQ("22", Busy());
	EXPECT_TRUE(theme->GetStateLayer().IsEmpty());
}

} // namespace
} // namespace orvan
