// SPDX-License-Identifier: MIT
#include "unpacking.h"

#include "batch/inflating.h"
#include "console.h"

#include <filesystem>
#include <stdexcept>

namespace orvan::program
{

bool IsPacked(const std::string& file)
{
	return std::filesystem::path(file).extension() == ".svgz";
}

std::string ReadPacked(const Url& url)
{
	InputStream stream = Unwrap(url.OpenInputStream());
	std::string packed(static_cast<std::size_t>(Unwrap(stream.GetStreamLength())), '\0');
	if (packed.size() > batch::kMostBytes)
		throw Failure("The file is too large.");
	Unwrap(stream.ReadBytes(packed.data(), static_cast<std::int64_t>(packed.size())));
	try
	{
		return batch::Inflate(packed);
	}
	catch (const std::runtime_error& error)
	{
		throw Failure(error.what());
	}
}

} // namespace orvan::program
