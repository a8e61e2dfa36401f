// SPDX-License-Identifier: MIT
#include "picture.h"

#include "console.h"
#include "file_replacement.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/mman.h>
#include <unistd.h>

namespace orvan::program
{
namespace
{
/// By the numbers of `SVGRenderOutput`.
constexpr std::array<std::string_view, 2> kSuffixes = {".png", ".pdf"};

/// A file in memory, for what only writes to files by their names.
class ScratchFile
{
public:
	ScratchFile() : _file(memfd_create("picture", MFD_CLOEXEC))
	{
		if (_file < 0)
			throw Failure(std::string("There is no memory for the picture: ") + std::strerror(errno));
	}

	ScratchFile(const ScratchFile&) = delete;

	~ScratchFile()
	{
		close(_file);
	}

	std::string GetPath() const
	{
		return "/proc/self/fd/" + std::to_string(_file);
	}

	void PrintTo(Output& output) const
	{
		std::array<char, 1 << 16> bytes;
		lseek(_file, 0, SEEK_SET);
		ssize_t count = 0;
		while ((count = read(_file, bytes.data(), bytes.size())) > 0)
			output.Print({bytes.data(), static_cast<std::size_t>(count)});
	}

private:
	int _file;
};
} // namespace

void WritePicture(const SVGDocumentRef& document, const SVGRenderOptions& options, const std::string& path,
				  Output& output)
{
	// Whoever has registered the class draws; this program knows no renderer by name.
	Result<SVGContextRef> created = CreateObject<SVGContextInterface>(kSVGContextClass);
	if (!created.IsOk() && created.GetError().GetClass() == ErrorClass::notFound)
		throw Failure("There is no renderer: " + std::string(created.GetError().GetMessage().View()));
	const SVGContextRef context = Unwrap(std::move(created));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	if (!target)
		throw Failure("The renderer that is there cannot write pictures.");

	Unwrap(target->Begin(document, options));
	Unwrap(DrawSVGElement(context, document->GetRootElement()));
	if (path == "-")
	{
		const ScratchFile file;
		Unwrap(target->Finish(Unwrap(String::Create(file.GetPath()))));
		return file.PrintTo(output);
	}
	FileReplacement file(path);
	Unwrap(target->Finish(Unwrap(String::Create(file.GetPath()))));
	file.Commit();
}

std::optional<SVGRenderOutput> GetPictureKind(const std::string& path)
{
	const auto found = std::ranges::find(kSuffixes, std::filesystem::path(path).extension().native());
	if (found == kSuffixes.end())
		return std::nullopt;
	return static_cast<SVGRenderOutput>(found - kSuffixes.begin());
}

std::string_view GetPictureSuffix(SVGRenderOutput kind)
{
	return kSuffixes[static_cast<std::size_t>(kind)];
}

} // namespace orvan::program
