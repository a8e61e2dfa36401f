// SPDX-License-Identifier: MIT
#include "image_files.h"

#include "images/data_url.h"

#include <cstdlib>
#include <memory>

namespace orvan::cairo
{
namespace
{

constexpr std::string_view kScheme = "file:";

struct Free
{
	void operator()(char* text) const noexcept
	{
		std::free(text);
	}
};

using PathPtr = std::unique_ptr<char, Free>;

/// A path as the file system has it, without links and dots; null when nothing is there.
PathPtr Resolve(std::string_view path) noexcept
{
	const auto text = String::Create(path);
	if (!text.IsOk() || path.empty() || path.find('\0') != std::string_view::npos)
		return nullptr;
	return PathPtr(realpath(text.GetValue().CString(), nullptr));
}

/// The path of a link or a `file:` URL: without host, query and fragment, and with its escapes replaced.
Result<BaseArray<unsigned char>> GetPath(std::string_view link) noexcept
{
	if (link.starts_with(kScheme))
	{
		link.remove_prefix(kScheme.size());
		if (link.starts_with("//"))
			link.remove_prefix(std::min(link.find('/', 2), link.size()));
	}
	return images::DecodePercents(link.substr(0, link.find_first_of("?#")));
}

/// True for a link that names a scheme; a letter and a colon are none.
bool HasScheme(std::string_view link) noexcept
{
	const std::size_t colon = link.find_first_of(":/?#");
	return colon != std::string_view::npos && link[colon] == ':' && colon > 1;
}

std::string_view View(const BaseArray<unsigned char>& bytes) noexcept
{
	return {reinterpret_cast<const char*>(bytes.begin()), bytes.GetCount()};
}

} // namespace

Result<BaseArray<unsigned char>> ReadFileBeside(const Url& base, std::string_view link, double limit) noexcept
{
	using Bytes = BaseArray<unsigned char>;
	if (!base.GetText().View().starts_with(kScheme) || (HasScheme(link) && !link.starts_with(kScheme)))
		return Bytes();
	Bytes folder = ORVAN_TRY(GetPath(base.GetText().View()));
	const std::size_t slash = View(folder).rfind('/');
	ORVAN_TRY(folder.Resize(slash == std::string_view::npos ? 0 : slash + 1));
	if (folder.IsEmpty())
		ORVAN_TRY(folder.AppendAll(reinterpret_cast<const unsigned char*>("./"), 2));
	const Bytes path = ORVAN_TRY(GetPath(link));
	Bytes whole;
	if (!View(path).starts_with('/'))
		ORVAN_TRY(whole.AppendAll(folder.begin(), folder.GetCount()));
	ORVAN_TRY(whole.AppendAll(path.begin(), path.GetCount()));

	const PathPtr root = Resolve(View(folder));
	const PathPtr target = Resolve(View(whole));
	if (root == nullptr || target == nullptr)
		return Bytes();
	const std::string_view rootPath(root.get());
	const std::string_view targetPath(target.get());
	const bool isBelow =
		targetPath.starts_with(rootPath) && (rootPath == "/" || targetPath.substr(rootPath.size()).starts_with('/'));
	if (!isBelow)
		return Bytes();
	const Url url = ORVAN_TRY(Url::FromPath(targetPath));
	if (url.IoDetect() != IoDetection::file)
		return Bytes();
	auto stream = url.OpenInputStream();
	if (!stream.IsOk())
		return Bytes();
	auto length = stream.GetValue().GetStreamLength();
	if (!length.IsOk() || length.GetValue() < 0 || static_cast<double>(length.GetValue()) > limit)
		return Bytes();
	Bytes bytes;
	ORVAN_TRY(bytes.Resize(static_cast<std::size_t>(length.GetValue())));
	if (!stream.GetValue().ReadBytes(bytes.begin(), length.GetValue()).IsOk())
		return Bytes();
	return bytes;
}

} // namespace orvan::cairo
