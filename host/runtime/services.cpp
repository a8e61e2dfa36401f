// SPDX-License-Identifier: MIT
/// The table that every module gets.
#include "orvan/services.h"

#include "bulk_memory.h"
#include "dictionary.h"
#include "errors.h"
#include "file_monitor.h"
#include "file_replacement.h"
#include "files.h"
#include "memory.h"
#include "objects.h"
#include "registry.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>

namespace orvan
{
namespace
{

/// True when a plain decimal number that does not fit a double is too large rather than too small: its first digit
/// that is not 0 stands before the point, counting the exponent.
bool IsTooLarge(std::string_view number) noexcept
{
	const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
	const std::string_view digits = number.substr(0, exponentAt);
	const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
	const auto first = static_cast<std::int64_t>(digits.find_first_of("123456789"));
	std::int64_t exponent = 0;
	if (exponentAt < number.size())
	{
		std::string_view text = number.substr(exponentAt + 1);
		const bool isNegative = text.starts_with('-');
		if (text.starts_with('+'))
			text.remove_prefix(1);
		if (std::from_chars(text.data(), text.data() + text.size(), exponent).ec != std::errc())
			return !isNegative;
	}
	return exponent > first - point; // The exponent may be so large that it cannot be added to anything.
}

bool ParseFloat(const char* begin, const char* end, double* result) noexcept
{
	if (begin != end && *begin == '+')
		begin++;
	const auto [stop, error] = std::from_chars(begin, end, *result);
	if (error == std::errc::result_out_of_range)
	{
		const double size = IsTooLarge({begin, end}) ? std::numeric_limits<double>::infinity() : 0.0;
		*result = *begin == '-' ? -size : size;
	}
	return error != std::errc::invalid_argument && stop == end;
}

constexpr HostServices kServices = {
	.abiVersion = kHostAbiVersion,
	.allocate = &runtime::Allocate,
	.reallocate = &runtime::Reallocate,
	.free = &runtime::Free,
	.beginBulk = &runtime::BeginBulk,
	.endBulk = &runtime::EndBulk,
	.outOfMemory = &runtime::OutOfMemory,
	.makeError = &runtime::MakeError,
	.releaseError = &runtime::ReleaseError,
	.diagnose = &runtime::Diagnose,
	.debugStop = &runtime::DebugStop,
	.findClass = &runtime::FindClass,
	.findDataType = &runtime::FindDataType,
	.createObject = &runtime::CreateObject,
	.cloneObject = &runtime::CloneObject,
	.destroyObject = &runtime::DestroyObject,
	.acquireWeak = &runtime::AcquireWeak,
	.lockWeak = &runtime::LockWeak,
	.releaseWeak = &runtime::ReleaseWeak,
	.dictionaryStore = &runtime::DictionaryStore,
	.dictionaryClone = &runtime::DictionaryClone,
	.dictionaryRelease = &runtime::DictionaryRelease,
	.detectUrl = &runtime::DetectUrl,
	.openStream = &runtime::OpenStream,
	.streamLength = &runtime::StreamLength,
	.readStream = &runtime::ReadStream,
	.closeStream = &runtime::CloseStream,
	.watchFile = &runtime::WatchFile,
	.unwatchFile = &runtime::UnwatchFile,
	.parseFloat = &ParseFloat,
	.dictionaryRemove = &runtime::DictionaryRemove,
	.stampFile = &runtime::StampFile,
	.stampStream = &runtime::StampStream,
	.followFile = &runtime::FollowFile,
	.retryPostponed = &runtime::RetryPostponed,
	.replaceFile = &runtime::ReplaceFile,
};

/// The host's own types are there before `main` starts, so that data can be made without any module.
[[maybe_unused]] const bool g_hasHostTypes = (runtime::EnsureHostTypes(), true);

} // namespace

constinit const HostServices* detail::g_hostServices = &kServices;

} // namespace orvan
