// SPDX-License-Identifier: MIT
/// The watches of all files over one inotify instance.
#pragma once

#include "file_watch.h"
#include "orvan/host/file_monitor_pump.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string_view>
#include <sys/inotify.h>
#include <thread>
#include <unordered_map>

namespace orvan::runtime
{

/// Does the work of `FileWatch` and `FileMonitorPump`. The system's watches are on folders, one for each however many
/// files are watched in it: a file that is replaced or deleted takes a watch of its own with it.
///
/// One mutex guards everything; no callback is made under it.
class Monitor
{
public:
	/// Starts `watch`, which says whom to call, on a file. `loaded` is the file as the client has it, or null.
	Result<MonitorRegistration*> Start(std::unique_ptr<MonitorRegistration> watch, const Url& url,
									   const FileStamp* loaded);
	void Stop(MonitorRegistration* watch) noexcept;
	int GetDescriptor() noexcept;
	int GetTimeout() noexcept;
	int Dispatch(FileChangeObserver observer, void* observerContext);
	void RetryPostponed() noexcept;
	int CountWatches() noexcept;

	/// The process's monitor; never destroyed, because watches may end while the process does.
	static Monitor& Get() noexcept;

private:
	/// Has the system watch each folder that a walk passes.
	class Follower;

	/// The watches that wait for a name in one folder.
	using Folder = std::unordered_multimap<std::string, MonitorRegistration*>;

	bool Open() noexcept;
	void WakePump() noexcept;
	int Follow(MonitorRegistration& watch);
	void FollowAgain(MonitorRegistration& watch, Clock::time_point now);
	void Leave(MonitorRegistration* watch, const WatchedName& name) noexcept;
	void ReadEvents(Clock::time_point now);
	void Take(const inotify_event& event, Clock::time_point now);
	void TakeFor(MonitorRegistration& watch, const inotify_event& event, std::string_view name, Clock::time_point now);
	void NoteAll(Clock::time_point now) noexcept;
	MonitorRegistration* NextDue(Clock::time_point now) noexcept;
	bool CloseBurst(MonitorRegistration& watch) noexcept;
	void Call(MonitorRegistration* watch, std::unique_lock<std::mutex>& lock, FileChangeObserver observer,
			  void* observerContext);
	bool IsActive(const MonitorRegistration* watch) const noexcept;

	std::mutex _mutex;
	int _descriptor = -1;     ///< Of the system's watches.
	int _alarm = -1;          ///< Readable when something is due of which the system knows nothing.
	int _pollDescriptor = -1; ///< Readable when one of the two is; -1 as long as not all three are there.
	std::vector<std::unique_ptr<MonitorRegistration>> _watches;
	std::unordered_map<int, Folder> _folders;

	// The watches whose callbacks are being made, innermost last: callbacks may drive the pump themselves.
	std::vector<MonitorRegistration*> _running;
	std::thread::id _pumpThread;
	std::condition_variable _callbackDone;
};

} // namespace orvan::runtime
