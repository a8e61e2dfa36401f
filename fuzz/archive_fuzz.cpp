// SPDX-License-Identifier: MIT
// Archives: whatever is in them, they are listed to an end, and what a member reads as does not hang on what was read
// before, because workers come to it in different ways. The first byte says which kind of archive the others are.

#include "batch/inputs.h"
#include "require.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

using orvan::fuzz::Require;

namespace
{
namespace batch = orvan::batch;
namespace fs = std::filesystem;

constexpr std::array<const char*, 5> kSuffixes = {".tar", ".zip", ".tar.gz", ".tar.xz", ".tar.zst"};
constexpr std::size_t kMostMembers = 20; // Reading is quadratic in them.

/// A file in memory under the names of all kinds of archives.
class NamedMemory
{
public:
	NamedMemory()
	{
		std::string name = (fs::temp_directory_path() / "archive-fuzz-XXXXXX").string();
		Require(mkdtemp(name.data()) != nullptr, "there is a folder");
		_folder = name;
		for (const char* suffix : kSuffixes)
			fs::create_symlink("/proc/self/fd/" + std::to_string(_file), GetPath(suffix));
	}

	~NamedMemory()
	{
		fs::remove_all(_folder);
	}

	void Set(const std::uint8_t* data, std::size_t size) const
	{
		Require(ftruncate(_file, 0) == 0 && pwrite(_file, data, size, 0) == static_cast<ssize_t>(size),
				"it is written");
	}

	std::string GetPath(const char* suffix) const
	{
		return (_folder / "a").string() + suffix;
	}

private:
	const int _file = memfd_create("archive", MFD_CLOEXEC);
	fs::path _folder;
};

/// What a member reads as, or why it cannot be read.
std::string Read(batch::InputReader& reader, const batch::Input& input)
{
	try
	{
		return '=' + reader.Read(input);
	}
	catch (const std::runtime_error& error)
	{
		return std::string("!") + error.what();
	}
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	if (size == 0)
		return 0;
	static const NamedMemory memory;
	memory.Set(data + 1, size - 1);
	const std::string path = memory.GetPath(kSuffixes[data[0] % kSuffixes.size()]);

	// Every member, whatever its name: what the list passes over is read as well.
	std::vector<batch::Input> inputs;
	batch::Archive archive(path);
	while (const auto member = archive.Next())
	{
		Require(inputs.empty() || !inputs.back().name.empty(), "nothing comes behind what cannot be listed");
		Require(!member->name.empty() || member->place.starts_with('!'), "what has no name says why");
		inputs.push_back({member->name, path, member->place});
	}
	Require(!archive.Next(), "the end stays the end");
	const std::vector<batch::Input> again = batch::UnpackInputs(batch::PackInputs(inputs));
	Require(again.size() == inputs.size(), "inputs are packed");
	inputs.resize(std::min(inputs.size(), kMostMembers));

	batch::InputReader inOrder;
	std::vector<std::string> contents;
	for (std::size_t i = 0; i < inputs.size(); i++)
	{
		Require(again[i].name == inputs[i].name && again[i].place == inputs[i].place, "inputs are unpacked");
		contents.push_back(Read(inOrder, again[i]));
	}
	batch::InputReader backwards;
	for (std::size_t i = inputs.size(); i-- > 0;)
	{
		batch::InputReader alone;
		Require(Read(alone, inputs[i]) == contents[i], "a member alone reads as in order", inputs[i].name);
		Require(Read(backwards, inputs[i]) == contents[i], "a member reads the same backwards", inputs[i].name);
	}
	return 0;
}
