/// The table that every module gets.
#include "orvan/services.h"

#include "dictionary.h"
#include "errors.h"
#include "file_monitor.h"
#include "files.h"
#include "memory.h"
#include "objects.h"
#include "registry.h"

#include <charconv>

namespace orvan
{
namespace
{

bool ParseFloat(const char* begin, const char* end, double* result) noexcept
{
	if (begin != end && *begin == '+')
		begin++;
	const auto [stop, error] = std::from_chars(begin, end, *result);
	return error == std::errc() && stop == end;
}

constexpr HostServices kServices = {
	.abiVersion = kHostAbiVersion,
	.structureSize = sizeof(HostServices),
	.allocate = &runtime::Allocate,
	.reallocate = &runtime::Reallocate,
	.free = &runtime::Free,
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
};

/// The host's own types are there before `main` starts, so that data can be made without any module.
[[maybe_unused]] const bool g_hasHostTypes = (runtime::EnsureHostTypes(), true);

} // namespace

constinit const HostServices* detail::g_hostServices = &kServices;

} // namespace orvan
