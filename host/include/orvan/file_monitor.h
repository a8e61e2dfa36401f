// SPDX-License-Identifier: MIT
/// Being told when a file changes.
///
///     FileWatch watch = ORVAN_TRY(FileWatch::Start(url, &Reload, this, {.loaded = &stamp, .owner = this}));
///
/// where `Reload` is a function `FileChangeOutcome (void* context) noexcept`, and `stamp` is what
/// `InputStream::GetStamp` said of the stream that the present content was read from.
#pragma once

#include "orvan/object.h"
#include "orvan/url.h"

#include <utility>

namespace orvan
{

/// What a client did about a changed file. The host program is told, see `FileMonitorPump`.
enum class FileChangeOutcome : std::int32_t
{
	noted = 0,     ///< It took note; there is nothing to tell.
	reloaded = 1,  ///< It has the new content.
	failed = 2,    ///< The new content was refused; the client stays as it was.
	postponed = 3, ///< It may not load at the moment: called again after `FileWatch::RetryPostponed`.
};

/// How a watch starts, and for whom.
struct FileWatchOptions
{
	/// The file as the client has it. When the file differs from it at the start of the watch, that counts as a change:
	/// nothing is lost that happens between a load and its watch, or during the load. Null, the default, takes what is
	/// there at the start for known. Only read during the call.
	///
	/// When a load failed because the file could not be opened, take the stamp from `Url::GetStamp` before the load: an
	/// empty stamp differs from a file that is there but may not be read, and each watch would report it anew.
	const FileStamp* loaded = nullptr;
	/// The object on whose behalf the file is watched, which the host program is told with each report. The watch holds
	/// it weakly, and while the callback runs the host keeps it alive. Null, the default, for nobody.
	ObjectBase* owner = nullptr;
};

/// A watch on one file, kept up as long as the object lives. The host follows the path, not the inode: the file may be
/// rewritten, replaced by renaming, deleted and created again, and so may its folder. A burst of changes is one call.
///
/// The callback runs inside the host's event processing, on the thread that pumps it, and never after the watch has
/// ended: ending it also takes back a call that was due but not made. A callback may end its own watch and others.
class FileWatch
{
public:
	FileWatch() noexcept = default;

	FileWatch(FileWatch&& other) noexcept : _registration(std::exchange(other._registration, nullptr))
	{
	}

	FileWatch& operator=(FileWatch&& other) noexcept
	{
		std::swap(_registration, other._registration);
		return *this;
	}

	~FileWatch()
	{
		Stop();
	}

	/// Starts watching what is there now. Fails when the URL does not designate a place on disk, or the system's means
	/// are exhausted. `context` is handed to the callback.
	static Result<FileWatch> Start(const Url& url, FileChangeCallback callback, void* context) noexcept
	{
		FileWatch watch;
		ORVAN_TRY(ResultOf(Host().watchFile(url, callback, context, &watch._registration)));
		return watch;
	}

	/// Starts watching with options; fails as above, and for want of memory.
	static Result<FileWatch> Start(const Url& url, FileChangeHandler handler, void* context,
								   const FileWatchOptions& options) noexcept
	{
		FileWatch watch;
		ORVAN_TRY(ResultOf(Host().followFile(url, handler, context, options, &watch._registration)));
		return watch;
	}

	/// Makes all changes due again whose handlers answered `postponed`, in the whole process. They are called by the
	/// pump, as for any change, not here. Any thread may call it.
	static void RetryPostponed() noexcept
	{
		Host().retryPostponed();
	}

	/// Ends the watch; nothing when there is none. While another thread is in the callback it waits for the end of
	/// that.
	void Stop() noexcept
	{
		if (_registration != nullptr)
			Host().unwatchFile(std::exchange(_registration, nullptr));
	}

	/// True from the start to the end of the watch, also while the file is not there.
	bool IsActive() const noexcept
	{
		return _registration != nullptr;
	}

private:
	MonitorRegistration* _registration = nullptr;
};

} // namespace orvan
