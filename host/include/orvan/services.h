// SPDX-License-Identifier: MIT
/// The table of services that the host hands to every module.
///
/// A module is linked against nothing of the host: the loader writes the address of this table into the module's
/// descriptor before any entry of the module is used, and all headers in this folder reach the host through `Host()`.
/// The table belongs to the host and lives as long as the process.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvan
{

/// Version of everything that a module and a host have to agree on: this table, the object header, the method tables,
/// the layouts of strings, arrays, dictionaries and registration entries.
///
/// The rule of compatibility, for all of the binary interface:
///
/// - What is published keeps its meaning: ids of interfaces, classes and data types, slots, attribute numbers, values
///   of enumerations, places in the table of services. New things come after them, at the end.
/// - A service at the end of the table raises `minor`. Every other change of what the first sentence lists raises
///   `major` and sets `minor` to zero. A host loads the modules that were built against the same `major` and against no
///   later `minor`, as `CanLoad` says; it finds the version in the module's file before any code of the module runs.
/// - A method at the end of an interface raises neither: an interface's version is its number of slots. A class may
///   have been built against fewer slots than its interface has by now, never against more. A client gets an interface
///   of an object when the object's class has at least the slots that the client was compiled for; otherwise it finds
///   that the object does not implement it.
/// - Modules have no version of their own that anybody compares.
struct AbiVersion
{
	std::uint32_t major;
	std::uint32_t minor;

	/// True when both numbers are the same; what fits together is asked of `CanLoad`.
	friend constexpr bool operator==(const AbiVersion&, const AbiVersion&) noexcept = default;
};

/// The version that these headers describe.
inline constexpr AbiVersion kHostAbiVersion = {2, 1};

/// True when a host of one version can load a module that was built against another.
constexpr bool CanLoad(const AbiVersion& host, const AbiVersion& module) noexcept
{
	return host.major == module.major && host.minor >= module.minor;
}

class Data;
class ObjectBase;
class String;
class Url;
struct ClassInfo;
struct DataType;
struct DictionaryBlock;
struct ErrorBlock;
struct FileStamp;
struct FileWatchOptions;
struct FormatArgument;
struct MonitorRegistration;
struct StreamHandle;
struct WeakBlock;
struct DocumentPosition;
enum class ErrorClass : std::int32_t;
enum class DiagnosticLevel : std::int32_t;
enum class FileChangeOutcome : std::int32_t;
enum class IoDetection : std::int32_t;

/// Function called by the file monitor when a watched file has changed; see `FileMonitor`.
using FileChangeCallback = void (*)(void* context) noexcept;
/// The same for a client that tells the host what it did.
using FileChangeHandler = FileChangeOutcome (*)(void* context) noexcept;

/// One function for each host service. Every function is safe to call from any thread unless it says otherwise, and
/// none lets an exception out. Headers wrap each of them; module code has no reason to use the table directly.
struct HostServices
{
	AbiVersion abiVersion; ///< The host's.

	// Memory. Each may return null: an allocation that fails is an ordinary event and ends as the out-of-memory error.
	void* (*allocate)(std::size_t bytes) noexcept;
	void* (*reallocate)(void* memory, std::size_t bytes) noexcept;
	void (*free)(void* memory) noexcept;
	void (*beginBulk)() noexcept;
	void (*endBulk)() noexcept;

	// Errors and diagnostics. Texts are copied, so that an error outlives the module that made it.
	ErrorBlock* (*outOfMemory)() noexcept;
	ErrorBlock* (*makeError)(ErrorClass errorClass, const char* pattern, const FormatArgument* arguments,
							 std::size_t argumentCount, const Url* url, const char* file, int line) noexcept;
	void (*releaseError)(ErrorBlock* error) noexcept;
	void (*diagnose)(DiagnosticLevel level, const char* pattern, const FormatArgument* arguments,
					 std::size_t argumentCount, const DocumentPosition* position, const char* file, int line) noexcept;
	void (*debugStop)(const char* text, const char* file, int line) noexcept;

	// Registries. Records are made at the first mention of an id and stay for the life of the process, so a pointer to
	// one may be kept; whether something stands behind it is asked when it is used. Null when memory runs out.
	ClassInfo* (*findClass)(const char* id) noexcept;
	const DataType* (*findDataType)(const char* id) noexcept;
	ErrorBlock* (*createObject)(ClassInfo* objectClass, ObjectBase** result) noexcept;
	ErrorBlock* (*cloneObject)(const ObjectBase* source, ObjectBase** result) noexcept;
	void (*destroyObject)(ObjectBase* object) noexcept;

	// Weak references.
	WeakBlock* (*acquireWeak)(ObjectBase* object) noexcept;
	ObjectBase* (*lockWeak)(WeakBlock* block) noexcept;
	void (*releaseWeak)(WeakBlock* block) noexcept;

	// Dictionaries: the growing and releasing half; looking up is inline in `data_dictionary.h`.
	void* (*dictionaryStore)(DictionaryBlock** block, std::int32_t key, const DataType* type) noexcept;
	ErrorBlock* (*dictionaryClone)(const DictionaryBlock* block, DictionaryBlock** result) noexcept;
	void (*dictionaryRelease)(DictionaryBlock* block) noexcept;

	// Files.
	IoDetection (*detectUrl)(const Url& url) noexcept;
	ErrorBlock* (*openStream)(const Url& url, StreamHandle** result) noexcept;
	ErrorBlock* (*streamLength)(StreamHandle* stream, std::int64_t* length) noexcept;
	ErrorBlock* (*readStream)(StreamHandle* stream, void* buffer, std::int64_t bytes) noexcept;
	void (*closeStream)(StreamHandle* stream) noexcept;
	ErrorBlock* (*watchFile)(const Url& url, FileChangeCallback callback, void* context,
							 MonitorRegistration** result) noexcept;
	void (*unwatchFile)(MonitorRegistration* registration) noexcept;

	// Numbers, independent of the locale: false unless the whole text is a decimal number, as in "-1.5e3" or ".5".
	// Correctly rounded; too large a number gives an infinity, too small a one zero.
	bool (*parseFloat)(const char* begin, const char* end, double* result) noexcept;

	// What came later stands here, at the end.

	/// Takes the entry of `key` out of a block that is not shared; nothing when there is none.
	void (*dictionaryRemove)(DictionaryBlock* block, std::int32_t key) noexcept;

	/// What a URL designates now, and what a stream was opened on; see `FileStamp`.
	void (*stampFile)(const Url& url, FileStamp* result) noexcept;
	void (*stampStream)(const StreamHandle* stream, FileStamp* result) noexcept;
	ErrorBlock* (*followFile)(const Url& url, FileChangeHandler handler, void* context, const FileWatchOptions& options,
							  MonitorRegistration** result) noexcept;
	/// Makes every change due again that a handler has postponed.
	void (*retryPostponed)() noexcept;

	// Since version 2.1.

	/// Replaces what a URL designates by these bytes, see `Url::Replace`.
	ErrorBlock* (*replaceFile)(const Url& url, const void* bytes, std::int64_t count, FileStamp* stamp) noexcept;
};

namespace detail
{
/// Where this binary keeps the address of the table: set by the loader in a module, constant in a host program.
[[gnu::visibility("hidden")]] extern const HostServices* g_hostServices;
} // namespace detail

/// The host's services.
inline const HostServices& Host() noexcept
{
	return *detail::g_hostServices;
}

/// Says that what the thread allocates while it lives will be released together, by and large: the objects of a
/// document, say. Such memory is cheaper to get and to give back. Scopes nest; they change nothing but speed.
class BulkScope
{
public:
	BulkScope() noexcept
	{
		Host().beginBulk();
	}

	BulkScope(const BulkScope&) = delete;

	~BulkScope()
	{
		Host().endBulk();
	}
};

} // namespace orvan
