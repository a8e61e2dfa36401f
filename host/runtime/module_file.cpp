// SPDX-License-Identifier: MIT
#include "module_file.h"

#include "orvan/module.h"
#include "orvan/url.h"

#include <cerrno>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvan::runtime
{
namespace
{

/// A file mapped for reading. Every access is checked against its size, so a damaged file reads as "not there".
class MappedFile
{
public:
	explicit MappedFile(const char* path) noexcept
	{
		const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
		struct stat status = {};
		if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
		{
			_size = static_cast<std::uint64_t>(status.st_size);
			_data = mmap(nullptr, _size, PROT_READ, MAP_PRIVATE, descriptor, 0);
		}
		if (descriptor >= 0)
			close(descriptor);
	}

	MappedFile(const MappedFile&) = delete;

	~MappedFile()
	{
		if (IsOpen())
			munmap(_data, _size);
	}

	bool IsOpen() const noexcept
	{
		return _data != MAP_FAILED;
	}

	template <typename T>
	std::optional<T> Read(std::uint64_t offset) const noexcept
	{
		if (offset > _size || _size - offset < sizeof(T))
			return std::nullopt;
		T value;
		std::memcpy(&value, static_cast<const char*>(_data) + offset, sizeof(T));
		return value;
	}

	/// True when the zero-terminated text at `offset` is `text`.
	bool HasText(std::uint64_t offset, std::string_view text) const noexcept
	{
		return offset < _size && _size - offset > text.size() &&
			   std::memcmp(static_cast<const char*>(_data) + offset, text.data(), text.size() + 1) == 0;
	}

private:
	void* _data = MAP_FAILED;
	std::uint64_t _size = 0;
};

/// Where in the file the bytes stand that are mapped to `address`.
std::optional<std::uint64_t> FileOffset(const MappedFile& file, const Elf64_Ehdr& header,
										std::uint64_t address) noexcept
{
	for (unsigned i = 0; i < header.e_phnum; i++)
	{
		const auto segment = file.Read<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr));
		if (segment && segment->p_type == PT_LOAD && address >= segment->p_vaddr &&
			address - segment->p_vaddr < segment->p_filesz)
			return segment->p_offset + (address - segment->p_vaddr);
	}
	return std::nullopt;
}

/// The place of the exported symbol `name` in the file.
std::optional<std::uint64_t> FindSymbol(const MappedFile& file, std::string_view name) noexcept
{
	const auto header = file.Read<Elf64_Ehdr>(0);
	if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64)
		return std::nullopt;
	for (unsigned i = 0; i < header->e_shnum; i++)
	{
		const auto section = file.Read<Elf64_Shdr>(header->e_shoff + i * sizeof(Elf64_Shdr));
		if (!section || section->sh_type != SHT_DYNSYM)
			continue;
		const auto names = file.Read<Elf64_Shdr>(header->e_shoff + section->sh_link * sizeof(Elf64_Shdr));
		for (std::uint64_t at = 0; names && at + sizeof(Elf64_Sym) <= section->sh_size; at += sizeof(Elf64_Sym))
		{
			const auto symbol = file.Read<Elf64_Sym>(section->sh_offset + at);
			if (!symbol)
				return std::nullopt;
			if (symbol->st_shndx != SHN_UNDEF && file.HasText(names->sh_offset + symbol->st_name, name))
				return FileOffset(file, *header, symbol->st_value);
		}
	}
	return std::nullopt;
}

} // namespace

Result<AbiVersion> ReadAbiVersion(const std::string& path) noexcept
{
	errno = 0;
	const MappedFile file(path.c_str());
	if (!file.IsOpen())
	{
		return IoError(Url::FromPath(path).GetValueOr(Url()), "Module '@' cannot be opened: @.", path.c_str(),
					   errno != 0 ? std::strerror(errno) : "it is not a file");
	}
	const auto offset = FindSymbol(file, kModuleSymbol);
	if (!offset)
		return IllegalArgumentError("File '@' is not a module: it does not export '@'.", path.c_str(), kModuleSymbol);
	const auto magic = file.Read<std::uint64_t>(*offset + offsetof(ModuleDescriptor, magic));
	const auto version = file.Read<AbiVersion>(*offset + offsetof(ModuleDescriptor, abiVersion));
	if (!version || magic != ModuleDescriptor::kMagic)
		return IllegalArgumentError("File '@' is not a module: its descriptor is not one.", path.c_str());
	return *version;
}

} // namespace orvan::runtime
