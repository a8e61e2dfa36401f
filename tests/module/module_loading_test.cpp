// SPDX-License-Identifier: MIT
/// Loading and unloading the module, alone and beside others.
#include "modules/pen.h"
#include "support/svg_module.h"

#include <memory>
#include <sstream>

namespace orvan
{
namespace
{

std::string OutputOf(const std::string& command)
{
	std::string output;
	const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
	for (int c; (c = std::fgetc(pipe.get())) != EOF;)
		output += static_cast<char>(c);
	return output;
}

/// The lines of this process's memory map; those that mention `name`, when one is given.
int CountMappings(const std::string& name = "")
{
	std::ifstream maps("/proc/self/maps");
	int count = 0;
	for (std::string line; std::getline(maps, line);)
		count += line.find(name) != line.npos ? 1 : 0;
	return count;
}

class ModuleLoading : public testing::Test
{
protected:
	static SVGDocumentRef LoadDocument(std::string_view text)
	{
		const auto document = Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
		Must(document->Init(TextFile(text).GetUrl()));
		return document;
	}

	/// Who makes the pens of a class; empty when nobody does.
	static std::string MakerOf(const char* classId)
	{
		const auto pen = CreateObject<PenInterface>(classId);
		return pen.IsOk() ? Must(pen.GetValue()->GetMaker()).CString() : "";
	}

	static bool HasContext()
	{
		return CreateObject<SVGContextInterface>(kSVGContextClass).IsOk();
	}
};

const std::string kModule = ORVAN_SVG_MODULE;

TEST_F(ModuleLoading, ExportsTheDescriptorAndNothingElse)
{
	const std::string symbols = OutputOf("nm -D --defined-only --format=posix '" + kModule + "'");
	EXPECT_TRUE(symbols.starts_with("g_orvan D ")) << symbols;
	EXPECT_EQ(1, std::count(symbols.begin(), symbols.end(), '\n')) << symbols;
}

TEST_F(ModuleLoading, ImportsTheLanguagesRuntimeAndNothingElse)
{
	std::istringstream headers(OutputOf("objdump -p '" + kModule + "' | grep NEEDED"));
	std::vector<std::string> unexpected;
	int count = 0;
	for (std::string word, name; headers >> word >> name; count++)
	{
		bool isRuntime = false;
		for (const char* known : {"libc.so.", "libm.so.", "libstdc++.so.", "libgcc_s.so.", "ld-linux",
								  // Sanitizers are in test builds only.
								  "libasan.", "libubsan.", "libtsan.", "libclang_rt."})
			isRuntime = isRuntime || name.starts_with(known);
		if (!isRuntime)
			unexpected.push_back(name);
	}
	EXPECT_EQ(std::vector<std::string>(), unexpected);
	EXPECT_GT(count, 1);
	const std::string imports = OutputOf("nm -D --undefined-only '" + kModule + "'");
	EXPECT_EQ(imports.npos, imports.find("orvan")) << imports;
	EXPECT_NE(imports.npos, imports.find("memcpy"));
}

TEST_F(ModuleLoading, LeavesNothingBehind)
{
	Module* module = Must(Module::Load(kModule));
	EXPECT_GT(CountMappings(kModule), 0);
	EXPECT_NE(nullptr, FindDataType<SVGPaint>()->operations.load());
	Must(Module::Unload(module));
	EXPECT_EQ(0, CountMappings(kModule)) << "the file is mapped still";
	EXPECT_TRUE(Module::GetLoaded().empty());
	for (const char* id : {kSVGDocumentClass, kVectorIconClass, "net.orvan.image.class.svgrectelement"})
		EXPECT_EQ(ErrorClass::notFound, CreateObject<ObjectInterface>(id).GetError().GetClass());
	EXPECT_EQ(nullptr, FindDataType<SVGPaint>()->operations.load());
	EXPECT_EQ(nullptr, FindDataType<SVGElementRef>()->operations.load());
}

TEST_F(ModuleLoading, MayBeRepeatedAHundredTimesWithoutGrowth)
{
	std::int64_t allocations = 0;
	[[maybe_unused]] int mappings = 0;
	for (int round = 0; round < 100; round++)
	{
		Module* module = Must(Module::Load(kModule));
		LoadDocument(
			"<svg id='a' viewBox='0 0 1 1'><path d='M1 2A3 4 5 0 1 6 7' fill='red' transform='scale(2)'/></svg>");
		Must(Module::Unload(module));
		if (round < 10)
		{
			allocations = CountAllocations();
			mappings = CountMappings();
		}
	}
	EXPECT_EQ(allocations, CountAllocations());
#ifndef __SANITIZE_THREAD__ // Whose runtime maps a list of modules at every load, and keeps it.
	EXPECT_LE(CountMappings(), mappings + 20) << "one a round would be ninety; allocators may take a few";
#endif
}

TEST_F(ModuleLoading, MayNotBeUndoneWhileObjectsAreAlive)
{
	Module* module = Must(Module::Load(kModule));
	SVGElementRef rect = Must(CreateObject<SVGElementInterface>("net.orvan.image.class.svgrectelement"));
	SVGDocumentRef document = LoadDocument("<svg><g/></svg>");
	EXPECT_EQ("Module 'net.orvan.svg' cannot be unloaded: 4 of its objects and values are alive.",
			  MessageOf(Module::Unload(module)));
	document = nullptr;
	EXPECT_EQ("Module 'net.orvan.svg' cannot be unloaded: 1 of its objects and values are alive.",
			  MessageOf(Module::Unload(module)));
	Must(rect->SetOpacity(0.5)); // Everything works as before.
	rect = nullptr;
	EXPECT_EQ("no error", MessageOf(Module::Unload(module)));
}

TEST_F(ModuleLoading, MayNotBeUndoneWhileAClientKeepsValuesThatNeedIt)
{
	Module* module = Must(Module::Load(kModule));
	DataDictionary dictionary;
	Must(dictionary.Set(1, SVGPaint{SVGPaintType::reference, {}, Text("a")}));
	Data data = Must(Data::Create(SVGLinearGradient()));
	EXPECT_EQ("Module 'net.orvan.svg' cannot be unloaded: 2 of its objects and values are alive.",
			  MessageOf(Module::Unload(module)));
	dictionary = {};
	data.Reset();
	EXPECT_EQ("no error", MessageOf(Module::Unload(module)));
}

TEST_F(ModuleLoading, IsRefusedTwiceAndForFilesThatAreNoModules)
{
	const TemporaryFolder folder;
	WriteFile(folder / "text.so", "This is no module.");
	std::filesystem::create_symlink(kModule, folder / "link.so");
	Module* module = Must(Module::Load(kModule));
	EXPECT_EQ("Module '" + std::filesystem::canonical(kModule).string() + "' is already loaded.",
			  MessageOf(Module::Load((folder / "link.so").string())));
	EXPECT_FALSE(Module::Load((folder / "text.so").string()).IsOk());
	EXPECT_FALSE(Module::Load((folder / "missing.so").string()).IsOk());
	std::filesystem::copy_file(kModule, folder / "copy.so");
	EXPECT_EQ("Module 'net.orvan.svg' is already loaded, from '" + std::filesystem::canonical(kModule).string() + "'.",
			  MessageOf(Module::Load((folder / "copy.so").string())));
	EXPECT_EQ(1u, Module::GetLoaded().size());
	EXPECT_EQ("svg", std::string(LoadDocument("<svg/>")->GetRootElement()->GetClassId()).substr(22, 3));
	Must(Module::Unload(module));
}

TEST_F(ModuleLoading, RunsNothingOfAModuleForAnotherHost)
{
	unsetenv("ORVAN_FOREIGN_MODULE_RAN");
	const auto module = Module::Load(ORVAN_FOREIGN_MODULE);
	ASSERT_FALSE(module.IsOk());
	const std::string major = std::to_string(kHostAbiVersion.major) + '.';
	EXPECT_EQ("Module '" ORVAN_FOREIGN_MODULE "' was built against host ABI version " + major +
				  std::to_string(kHostAbiVersion.minor + 41) + "; this host has version " + major +
				  std::to_string(kHostAbiVersion.minor) + ".",
			  MessageOf(module));
	EXPECT_EQ(nullptr, std::getenv("ORVAN_FOREIGN_MODULE_RAN"));
}

TEST_F(ModuleLoading, TwoRenderersShareAnInterfaceAndAHostChoosesByClass)
{
	CollectedDiagnostics diagnostics;
	Module* module = Must(Module::Load(kModule));
	Module* first = Must(Module::Load(ORVAN_FIRST_MODULE));
	Module* second = Must(Module::Load(ORVAN_SECOND_MODULE));
	EXPECT_TRUE(diagnostics.lines.empty()) << diagnostics.lines[0];
	EXPECT_EQ("first", MakerOf(kSVGContextClass));
	EXPECT_EQ("first", MakerOf("net.orvan.test.class.first"));
	EXPECT_EQ("second", MakerOf("net.orvan.test.class.second"));

	Data pen = Must(Data::Create(Must(CreateObject<PenInterface>("net.orvan.test.class.second"))));
	EXPECT_EQ("Module 'net.orvan.test.second' cannot be unloaded: 1 of its objects and values are alive.",
			  MessageOf(Module::Unload(second)));
	EXPECT_EQ("no error", MessageOf(Module::Unload(first))) << "the reference is none that needs it";
	EXPECT_EQ("second", MakerOf(kSVGContextClass)) << "whoever came next takes over";
	EXPECT_EQ("", MakerOf("net.orvan.test.class.first"));
	EXPECT_EQ("second", std::string(Must((*pen.Get<PenRef>())->GetMaker()).CString()));
	pen.Reset();

	EXPECT_EQ("Module 'net.orvan.svg' cannot be unloaded: module 'net.orvan.test.second' uses its framework "
			  "'net.orvan.svg.framework'.",
			  MessageOf(Module::Unload(module)));
	Must(Module::Unload(second));
	EXPECT_EQ("", MakerOf(kSVGContextClass));
	Module* guest = Must(Module::Load(ORVAN_GUEST_MODULE)); // Which only names a header of the framework.
	EXPECT_EQ("Module 'net.orvan.svg' cannot be unloaded: module 'net.orvan.test.guest' uses its framework "
			  "'net.orvan.svg.framework'.",
			  MessageOf(Module::Unload(module)));
	Must(Module::Unload(guest));
	EXPECT_EQ("no error", MessageOf(Module::Unload(module)));
}

TEST_F(ModuleLoading, AModuleThatIsRefusedLeavesNothingBehindAndTheOthersAsTheyAre)
{
	Module* module = Must(Module::Load(kModule));
	Module* first = Must(Module::Load(ORVAN_FIRST_MODULE));
	{
		const auto rect = Must(CreateObject<SVGElementInterface>("net.orvan.image.class.svgrectelement"));
		Must(rect->SetFill({SVGPaintType::reference, {}, Text("a paint of some length")}));
		EXPECT_EQ("Data type 'net.orvan.datatype.SVGPaint' is already registered.",
				  MessageOf(Module::Load(ORVAN_FLAWED_MODULE)));
		EXPECT_EQ(0, CountMappings(ORVAN_FLAWED_MODULE));
		EXPECT_EQ("a paint of some length", rect->GetFill().reference.View());
		EXPECT_EQ("first", MakerOf(kSVGContextClass));
		EXPECT_EQ("", MakerOf("net.orvan.test.class.flawed"));
	}
	Must(Module::Unload(first));
	const auto loadAndUnload = []() -> Result<void>
	{
		Module* loaded = ORVAN_TRY(Module::Load(ORVAN_FIRST_MODULE));
		for (const RegistrationEntry* entry = loaded->GetFirstRegistration(); entry != nullptr;
			 entry = entry->GetNext())
			EXPECT_TRUE(loaded->IsRegistered(*entry)) << "want of memory leaves nothing out";
		return Module::Unload(loaded);
	};
	EXPECT_LT(2, FailEachAllocation(loadAndUnload));
	EXPECT_EQ("Data type 'net.orvan.datatype.SVGPaint' is already registered.",
			  MessageOf(Module::Load(ORVAN_FLAWED_MODULE)));
	EXPECT_EQ("", MakerOf(kSVGContextClass));
	EXPECT_FALSE(Data::Create(PenRef()).IsOk()) << "its reference type is still there";
	EXPECT_EQ(1u, Module::GetLoaded().size());
	Must(Module::Unload(module));
	const CollectedDiagnostics aboutClasses;
	EXPECT_EQ("Unit 'guest_module' uses 'SVGContextInterface' of header 'svg_base', which no loaded framework "
			  "provides.",
			  MessageOf(Module::Load(ORVAN_GUEST_MODULE)));
	EXPECT_TRUE(Module::GetLoaded().empty());
}

TEST_F(ModuleLoading, FindsADrawingContextOnlyWhereAnotherModuleBringsOne)
{
	Module* module = Must(Module::Load(kModule));
	EXPECT_FALSE(HasContext());

	CollectedDiagnostics diagnostics;
	Module* guest = Must(Module::Load(ORVAN_GUEST_MODULE));
	EXPECT_EQ(std::vector<std::string>{"Class 'net.orvan.test.class.lost' is not available. Interface "
									   "'net.orvan.test.interface.lost' is not registered."},
			  diagnostics.lines);
	EXPECT_FALSE(CreateObject<ObjectInterface>("net.orvan.test.class.lost").IsOk());
	EXPECT_TRUE(HasContext());

	Must(Module::Unload(guest));
	EXPECT_FALSE(HasContext());
	Must(Module::Unload(module));
}

TEST_F(ModuleLoading, ADrawingContextOfAnotherModuleReceivesTheTree)
{
	Module* module = Must(Module::Load(kModule));
	Module* guest = Must(Module::Load(ORVAN_GUEST_MODULE));
	{
		const SVGContextRef context = Must(CreateObject<SVGContextInterface>(kSVGContextClass));
		const SVGDocumentRef document =
			LoadDocument("<svg id='s'><defs><rect/></defs><g id='g'><path id='p'/></g><g display='none'><rect/></g>"
						 "<ellipse id='c'/><symbol><rect/></symbol><mask><rect/></mask><clipPath><rect/></clipPath>"
						 "<linearGradient><stop/></linearGradient><use id='u'/><line id='l'/><text id='t'>x</text>"
						 "<unknown id='k'><rect id='r'/></unknown></svg>");
		CollectedDiagnostics drawn;
		EXPECT_EQ("no error", MessageOf(DrawSVGElement(context, document->GetRootElement())));
		EXPECT_EQ((std::vector<std::string>{"svg s", "group g", "path p", "circle c", "use u", "line l", "text t",
											"group k", "rectangle r"}),
				  drawn.lines);

		drawn.lines.clear();
		const SVGDocumentRef broken = LoadDocument("<svg id='s'><g id='g'><rect id='broken'/></g><path id='p'/></svg>");
		EXPECT_EQ("The pen is broken.", MessageOf(DrawSVGElement(context, broken->GetRootElement())));
		EXPECT_EQ((std::vector<std::string>{"svg s", "group g"}), drawn.lines) << "an error ends the walk";
	}
	Must(Module::Unload(guest));
	Must(Module::Unload(module));
}

} // namespace
} // namespace orvan
