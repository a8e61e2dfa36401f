// SPDX-License-Identifier: MIT
#include "icon_fixture.h"
#include "orvan/host/file_monitor_pump.h"
#include "svg_edit.h"
#include "svg_source.h"

#include <thread>

namespace orvan
{
namespace
{

namespace fs = std::filesystem;

/// Pumps until no file has changed for a quarter of a second.
void PumpUntilQuiet()
{
	while (FileMonitorPump::Wait(250) > 0)
	{
	}
}

class LiveReload : public IconTest
{
protected:
	LiveReload()
	{
		Write("first");
		// A watch that starts within a clock step of the last change cannot tell whether it came before or after.
		std::this_thread::sleep_for(std::chrono::milliseconds(30));
	}

	void Write(const std::string& mark) const
	{
		WriteFile(file, IconFile(kStateLayers, mark));
	}

	/// What the next client to be told has done.
	static FileChangeOutcome WaitForOutcome()
	{
		auto outcome = FileChangeOutcome::noted;
		const auto take = [](const FileChangeReport& report, void* told) noexcept
		{
			*static_cast<FileChangeOutcome*>(told) = report.outcome;
		};
		FileMonitorPump::Wait(5000, take, &outcome);
		return outcome;
	}

	static VectorIconRef Follow(const fs::path& path)
	{
		VectorIconRef icon = LoadIcon(path);
		icon->SetLiveReloadEnabled(true);
		return icon;
	}

	CollectedDiagnostics diagnostics;
};

TEST_F(LiveReload, FollowsRewritesRenamesAndRecreation)
{
	const VectorIconRef icon = Follow(file);
	Write("rewritten");
	PumpUntilQuiet();
	EXPECT_EQ("rewritten", RootId(icon));
	Write("told");
	EXPECT_EQ(FileChangeOutcome::reloaded, WaitForOutcome());
	WriteFile(folder / "new", IconFile(kStateLayers, "renamed"));
	fs::rename(folder / "new", file);
	PumpUntilQuiet();
	EXPECT_EQ("renamed", RootId(icon));
	fs::remove(file);
	Write("recreated");
	PumpUntilQuiet();
	EXPECT_EQ("recreated", RootId(icon));
	const auto layer = Cast<SVGElementEditInterface>(icon->GetLayer(Text(kStateLayers[0])));
	EXPECT_TRUE(layer->GetDocument()) << "What was loaded anew knows its document, too.";
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
}

TEST_F(LiveReload, LeavesWhatTheIconHasSavedItself)
{
	const auto icon = Must(CreateObject<VectorIconInterface>(kVectorIconClass));
	SVGImportOptions options;
	options.keepsSource = true;
	Must(Cast<SVGDocumentImportInterface>(icon)->SetImportOptions(options));
	Must(Cast<SVGDocumentInterface>(icon)->Init(Must(Url::FromPath(file.string()))));
	icon->SetLiveReloadEnabled(true);
	icon->SetState(SVGIconState::enabledActivatedHighlight);
	const SVGElementRef root = Cast<SVGDocumentInterface>(icon)->GetRootElement();
	Must(root->SetId(Text("saved")));
	const auto source = Cast<SVGDocumentSourceInterface>(icon);
	Must(source->Save(Cast<SVGDocumentInterface>(icon)->GetUrl(), {}));
	// What the state shows and hides is not a change of the file.
	std::ifstream saved(file);
	EXPECT_EQ(IconFile(kStateLayers, "saved"), std::string(std::istreambuf_iterator<char>(saved), {}));
	PumpUntilQuiet();
	EXPECT_EQ(root, Cast<SVGDocumentInterface>(icon)->GetRootElement());
	Write("another");
	PumpUntilQuiet();
	EXPECT_EQ("another", RootId(icon));
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
	Write("of another");
	PumpUntilQuiet();
	EXPECT_EQ(IconFile(kStateLayers, "of another"), std::string(Must(source->GetSourceText()).View()));
}

TEST_F(LiveReload, AppliesTheStateAndThenTheClientsSwitches)
{
	const VectorIconRef icon = Follow(file);
	Must(icon->SetLayerEnabled(Text("first"), true));         // Will be gone in between.
	Must(icon->SetLayerEnabled(Text(kStateLayers[0]), true)); // Overruled by the state.
	icon->SetState(SVGIconState::enabledActivatedNoHighlight);
	// Of several switches of a layer the last one counts.
	for (const unsigned layer : {2U, 2U, 3U, 3U, 3U})
		Must(icon->ToggleLayer(Text(kStateLayers[layer])));
	EXPECT_EQ("2121", Displays(icon));
	Write("second");
	PumpUntilQuiet();
	EXPECT_EQ("second", RootId(icon));
	EXPECT_EQ("2121", Displays(icon));
	EXPECT_EQ(SVGIconState::enabledActivatedNoHighlight, icon->GetState());
	Write("first");
	PumpUntilQuiet();
	EXPECT_EQ(SVGDisplay::shown, icon->GetLayer(Text("first"))->GetDisplay());

	// The switches belong to the file, the state to the icon.
	const auto document = Cast<SVGDocumentInterface>(icon);
	const Url url = document->GetUrl();
	for (const bool isReset : {false, true})
	{
		Must(icon->SetLayerEnabled(Text(kStateLayers[3]), true));
		if (isReset)
			document->Reset();
		Must(document->Init(url));
		Write(isReset ? "after Reset" : "after Init");
		PumpUntilQuiet();
		EXPECT_EQ("2122", Displays(icon)) << RootId(icon);
	}
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
}

TEST_F(LiveReload, ComparesWhatWasLoaded)
{
	const VectorIconRef late = LoadIcon(file);
	Write("before the switch");
	late->SetLiveReloadEnabled(true);
	PumpUntilQuiet();
	EXPECT_EQ("before the switch", RootId(late));
	const SVGElementRef root = Cast<SVGDocumentInterface>(late)->GetRootElement();
	late->SetLiveReloadEnabled(false);
	late->SetLiveReloadEnabled(true);
	PumpUntilQuiet();
	EXPECT_EQ(root, Cast<SVGDocumentInterface>(late)->GetRootElement()) << "a reload is a load";

	// Whoever reads the diagnostics mends the file while it is being loaded.
	const std::string text = file.string();
	const auto mend = [](const Diagnostic&, void* context)
	{
		WriteFile(*static_cast<const std::string*>(context), IconFile(kStateLayers, "mended"));
	};
	WriteFile(file, "<broken");
	const auto document = Cast<SVGDocumentInterface>(late);
	{
		const ThreadDiagnosticSink sink(mend, const_cast<std::string*>(&text));
		Must(document->Init(document->GetUrl()));
	}
	EXPECT_EQ("", RootId(late));
	PumpUntilQuiet();
	EXPECT_EQ("mended", RootId(late));
}

TEST_F(LiveReload, StaysOnUntilItIsSwitchedOff)
{
	const VectorIconRef icon = Follow(file);
	const auto document = Cast<SVGDocumentInterface>(icon);
	const Url url = document->GetUrl();
	const auto expectReload = [&](const std::string& mark)
	{
		Write(mark);
		PumpUntilQuiet();
		EXPECT_EQ(mark, RootId(icon));
	};
	icon->SetState(SVGIconState::enabledActivatedHighlight);
	icon->SetState(SVGIconState::uninitialized);
	EXPECT_FALSE(document->Init(Must(Url::FromPath((folder / "missing.svg").string()))).IsOk());
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
	Must(document->Init(url));
	expectReload("after a load that failed");
	EXPECT_EQ("2222", Displays(icon)) << "the state that was set";
	document->Reset();
	Must(document->Init(url));
	expectReload("after Reset");
	icon->GlobalSetLiveReloadEnabled(false);
	Must(document->Init(url));
	icon->GlobalSetLiveReloadEnabled(true);
	expectReload("after a load without the global switch");
	icon->SetLiveReloadEnabled(false);
	Must(document->Init(url));
	Write("unseen");
	PumpUntilQuiet();
	EXPECT_EQ("after a load without the global switch", RootId(icon));
}

TEST_F(LiveReload, KeepsTheLastGoodTreeUntilTheFileIsGoodAgain)
{
	const VectorIconRef icon = Follow(file);
	const SVGElementRef root = Cast<SVGDocumentInterface>(icon)->GetRootElement();
	for (const char* refused : {"", "<svg><g>", "<html/>", "<svg><path d='M0'/></svg>"})
	{
		diagnostics.lines.clear();
		WriteFile(file, refused);
		EXPECT_EQ(FileChangeOutcome::failed, WaitForOutcome()) << refused;
		PumpUntilQuiet();
		EXPECT_EQ(root, Cast<SVGDocumentInterface>(icon)->GetRootElement()) << refused;
		ASSERT_FALSE(diagnostics.lines.empty()) << refused;
		EXPECT_NE(std::string::npos, diagnostics.lines.back().find("stays as it is")) << diagnostics.lines.back();
	}
	fs::remove(file);
	PumpUntilQuiet();
	EXPECT_NE(std::string::npos, diagnostics.lines.back().find("could not be loaded")) << diagnostics.lines.back();
	EXPECT_TRUE(icon->GetLayer(Text(kStateLayers[0])));
	Write("good");
	PumpUntilQuiet();
	EXPECT_EQ("good", RootId(icon));
}

TEST_F(LiveReload, TakesAHalfWrittenThenCompletedFileOnce)
{
	const VectorIconRef icon = Follow(file);
	const std::string content = IconFile(kStateLayers, "whole");
	{
		std::ofstream out(file);
		out << content.substr(0, 60) << std::flush;
		PumpUntilQuiet();
		EXPECT_EQ("first", RootId(icon));
		out << content.substr(60);
	}
	PumpUntilQuiet();
	EXPECT_EQ("whole", RootId(icon));
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
}

TEST_F(LiveReload, LeavesTheOldTreeToThoseWhoHoldIt)
{
	const VectorIconRef icon = Follow(file);
	const SVGElementRef& current = Cast<SVGDocumentInterface>(icon)->GetRootElement();
	const SVGElementRef old = current;
	Write("second");
	PumpUntilQuiet();
	EXPECT_EQ("second", std::string(current->GetId().CString()));
	EXPECT_EQ("first", std::string(old->GetId().CString()));
	EXPECT_EQ(4u, Must(Cast<HierarchyObjectInterface>(old)->GetChildren()).GetCount());
}

TEST_F(LiveReload, ReachesEveryIconOfTheFileAndNoneThatIsReleasedOrSwitchedOff)
{
	const VectorIconRef first = Follow(file);
	const VectorIconRef second = Follow(file);
	const VectorIconRef off = Follow(file);
	VectorIconRef released = Follow(file);
	const VectorIconRef never = LoadIcon(file);
	Write("second");
	std::this_thread::sleep_for(std::chrono::milliseconds(100));
	FileMonitorPump::DispatchDue(); // The change is noted for all of them now.
	off->SetLiveReloadEnabled(false);
	released = {};
	PumpUntilQuiet();
	EXPECT_EQ("second", RootId(first));
	EXPECT_EQ("second", RootId(second));
	EXPECT_EQ("first", RootId(off));
	EXPECT_EQ("first", RootId(never));
}

TEST_F(LiveReload, SurvivesAnIconThatIsReleasedByWhoReadsItsWarnings)
{
	struct Client
	{
		VectorIconRef icon;
		WeakRef observer;
		int count = 0;
	};
	Client client{Follow(file), {}};
	client.observer = Must(WeakRef::To(client.icon.GetObject()));
	const auto release = [](const Diagnostic&, void* context)
	{
		auto& its = *static_cast<Client*>(context);
		its.icon = nullptr;
		EXPECT_TRUE(its.observer.Lock()) << "it is at work still";
		its.count++;
	};
	const ThreadDiagnosticSink sink(release, &client);
	WriteFile(file, "<broken");
	PumpUntilQuiet();
	EXPECT_EQ(2, client.count) << "the parser's, and the icon's";
	EXPECT_FALSE(client.observer.Lock());
}

TEST_F(LiveReload, NeedsAFileToStartAndTheGlobalSwitchToStartAndToLoad)
{
	const auto empty = Must(CreateObject<VectorIconInterface>(kVectorIconClass));
	empty->SetLiveReloadEnabled(true);
	const std::string text = IconFile(kStateLayers, "bytes");
	Must(Cast<SVGDocumentImportInterface>(empty)->InitFromMemory(text.data(), static_cast<std::int64_t>(text.size()),
																 Must(Url::FromPath(file.string()))));
	empty->SetLiveReloadEnabled(true);
	PumpUntilQuiet();
	EXPECT_EQ("bytes", RootId(empty)) << "the URL is but what links are relative to";
	Must(Cast<SVGDocumentInterface>(empty)->Init(Must(Url::FromPath(file.string()))));
	const VectorIconRef before = Follow(file);
	EXPECT_TRUE(before->GlobalGetLiveReloadEnabled());
	before->GlobalSetLiveReloadEnabled(false);
	const VectorIconRef refused = Follow(file);
	EXPECT_FALSE(refused->GlobalGetLiveReloadEnabled());
	Write("postponed");
	PumpUntilQuiet();
	EXPECT_EQ("first", RootId(before));
	before->GlobalSetLiveReloadEnabled(true);
	PumpUntilQuiet();
	EXPECT_EQ("postponed", RootId(before));
	Write("seen");
	PumpUntilQuiet();
	EXPECT_EQ("seen", RootId(before));
	for (const auto& icon : {refused, empty})
		EXPECT_EQ("first", RootId(icon)) << "its start was refused, and is not made up for";
}

TEST_F(LiveReload, GoesOnWithTheNextFileAndFollowsNoneAfterReset)
{
	const VectorIconRef icon = Follow(file);
	const auto document = Cast<SVGDocumentInterface>(icon);
	const fs::path other = folder / "other.svg";
	WriteFile(other, IconFile(kStateLayers, "other"));
	Must(document->Init(Must(Url::FromPath(other.string()))));
	WriteFile(other, IconFile(kStateLayers, "changed"));
	PumpUntilQuiet();
	EXPECT_EQ("changed", RootId(icon));
	document->Reset();
	WriteFile(other, IconFile(kStateLayers, "later"));
	PumpUntilQuiet();
	EXPECT_FALSE(document->GetRootElement());
	icon->SetLiveReloadEnabled(true); // There is no file to follow.
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
}

} // namespace
} // namespace orvan
