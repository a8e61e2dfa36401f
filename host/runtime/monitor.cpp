// SPDX-License-Identifier: MIT
#include "monitor.h"

#include "files.h"
#include "orvan/diagnostics.h"
#include "path_walk.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace orvan::runtime
{
namespace
{

/// What is asked for every folder on the way: names that come and go, and the folder itself.
constexpr std::uint32_t kNameEvents =
	IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;
/// What is asked beyond it for the folder of the file. Folders on the way go without: every write to any file in /tmp
/// would wake the host up.
constexpr std::uint32_t kContentEvents = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;

/// How long to wait before a path is followed again that could not be watched.
constexpr std::chrono::milliseconds kRetry(1000);

} // namespace

class Monitor::Follower : public PathVisitor
{
public:
	explicit Follower(Monitor& monitor) noexcept : _monitor(monitor)
	{
	}

	bool Visit(const std::string& folder, const std::string& name, bool isLast) override
	{
		const std::uint32_t events = isLast ? kNameEvents | kContentEvents : kNameEvents;
		const int number = inotify_add_watch(_monitor._descriptor, folder.c_str(), events);
		if (number >= 0)
		{
			names.push_back({number, name, isLast});
			return true;
		}
		// The folder went away since the walk found it: the folder above, which is watched already, will tell more. A
		// folder on the way that may be passed but not read leaves the others to be watched.
		const bool isHarmless = errno == ENOENT || errno == ENOTDIR || (errno == EACCES && !isLast);
		if (!isHarmless)
			error = errno;
		return isHarmless && errno == EACCES;
	}

	std::vector<WatchedName> names;
	int error = 0;

private:
	Monitor& _monitor;
};

/// Opens what the monitor needs of the system; once it has succeeded, nothing. Leaves the system's error number.
bool Monitor::Open() noexcept
{
	if (_pollDescriptor >= 0)
		return true;
	if (_descriptor < 0)
		_descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
	if (_descriptor >= 0 && _alarm < 0)
		_alarm = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
	const int both = _alarm >= 0 ? epoll_create1(EPOLL_CLOEXEC) : -1;
	if (both < 0)
		return false;
	for (const int descriptor : {_descriptor, _alarm})
	{
		epoll_event event = {};
		event.events = EPOLLIN;
		if (epoll_ctl(both, EPOLL_CTL_ADD, descriptor, &event) != 0)
		{
			const int error = errno;
			close(both);
			errno = error;
			return false;
		}
	}
	_pollDescriptor = both;
	return true;
}

/// Wakes a pump that may be waiting on another thread and cannot know what has become due.
void Monitor::WakePump() noexcept
{
	eventfd_write(_alarm, 1);
}

/// Has the path of `watch` watched as it leads now. The result is the system's error number, 0 for success.
int Monitor::Follow(MonitorRegistration& watch)
{
	Follower follower(*this);
	WalkPath(watch.path, follower);
	// The new names are entered before the old ones go, so that folders that are still needed keep their watch and lose
	// no event, and so that running out of memory here leaves nothing entered that is not in the list.
	const auto oldCount = static_cast<std::ptrdiff_t>(watch.names.size());
	watch.names.insert(watch.names.end(), follower.names.begin(), follower.names.end());
	for (const WatchedName& name : follower.names)
		_folders[name.folder].emplace(name.name, &watch);
	for (auto name = watch.names.begin(); name != watch.names.begin() + oldCount; ++name)
		Leave(&watch, *name);
	watch.names.erase(watch.names.begin(), watch.names.begin() + oldCount);
	return follower.error;
}

void Monitor::FollowAgain(MonitorRegistration& watch, Clock::time_point now)
{
	int error = ENOMEM;
	try
	{
		error = Follow(watch);
	}
	catch (const std::bad_alloc&)
	{
		// Tried again like the system's own refusals.
	}
	watch.mustFollow = false;
	const bool wasUnwatched = std::exchange(watch.isUnwatched, error != 0);
	if (error == 0 && !wasUnwatched)
		return;
	if (!wasUnwatched)
		WarningOutput("File '@' cannot be watched at the moment: @.", watch.path.c_str(), SystemErrorText(error));
	watch.Note(now);
	if (error != 0)
		watch.deadline = now + kRetry;
}

void Monitor::Leave(MonitorRegistration* watch, const WatchedName& name) noexcept
{
	const auto folder = _folders.find(name.folder);
	if (folder == _folders.end())
		return;
	auto [first, last] = folder->second.equal_range(name.name);
	first = std::find_if(first, last, [watch](const auto& entry) { return entry.second == watch; });
	if (first != last)
		folder->second.erase(first);
	if (folder->second.empty())
	{
		_folders.erase(folder);
		inotify_rm_watch(_descriptor, name.folder);
	}
}

Result<MonitorRegistration*> Monitor::Start(std::unique_ptr<MonitorRegistration> watch, const Url& url,
											const FileStamp* loaded)
{
	const Location location = ORVAN_TRY(Locate(url));
	if (location.scheme != Location::Scheme::file)
		return IoError(url, "'@' cannot be watched: it is no file on disk.", url.GetText());
	std::string& path = watch->path;
	path = location.path.View();
	if (path.front() != '/')
	{
		const std::unique_ptr<char, decltype(&std::free)> current(get_current_dir_name(), &std::free);
		if (current == nullptr)
			return IoError(url, "'@' cannot be watched: @.", url.GetText(), SystemErrorText(errno));
		path = std::string(current.get()) + '/' + path;
	}

	const std::lock_guard lock(_mutex);
	if (!Open())
		return IoError(url, "'@' cannot be watched: @.", url.GetText(), SystemErrorText(errno));
	_watches.reserve(_watches.size() + 1);
	int error = ENOMEM;
	try
	{
		error = Follow(*watch);
	}
	catch (const std::bad_alloc&)
	{
		// Ends as the system's own want of memory does.
	}
	// Looked at after the system has begun to watch, so that there is no moment in which a change is missed.
	watch->TakeStamp();
	if (loaded != nullptr && watch->reported.MayDifferFrom(*loaded))
	{
		watch->mustReport = true;
		watch->Note(Clock::now());
		WakePump();
	}
	if (error == 0 && watch->names.empty())
		error = EACCES;
	if (error == 0)
		return _watches.emplace_back(std::move(watch)).get();
	for (const WatchedName& name : watch->names)
		Leave(watch.get(), name);
	return IoError(url, "'@' cannot be watched: @.", url.GetText(), SystemErrorText(error));
}

void Monitor::Stop(MonitorRegistration* watch) noexcept
{
	std::unique_lock lock(_mutex);
	for (const WatchedName& name : watch->names)
		Leave(watch, name);
	// Another thread may be in the callback just now; afterwards it is never made again.
	if (_pumpThread != std::this_thread::get_id())
		_callbackDone.wait(lock, [&] { return std::find(_running.begin(), _running.end(), watch) == _running.end(); });
	std::erase_if(_watches, [watch](const auto& owned) { return owned.get() == watch; });
}

int Monitor::GetDescriptor() noexcept
{
	const std::lock_guard lock(_mutex);
	return Open() ? _pollDescriptor : -1;
}

int Monitor::CountWatches() noexcept
{
	const std::lock_guard lock(_mutex);
	return static_cast<int>(_watches.size());
}

void Monitor::RetryPostponed() noexcept
{
	const std::lock_guard lock(_mutex);
	for (const auto& watch : _watches)
	{
		if (!std::exchange(watch->isPostponed, false))
			continue;
		watch->mustReport = true;
		watch->Note(Clock::now());
		WakePump();
	}
}

int Monitor::GetTimeout() noexcept
{
	const std::lock_guard lock(_mutex);
	auto earliest = Clock::time_point::max();
	for (const auto& watch : _watches)
	{
		if (watch->isDue)
			earliest = std::min(earliest, watch->deadline);
	}
	if (earliest == Clock::time_point::max())
		return -1;
	const auto left = std::chrono::ceil<std::chrono::milliseconds>(earliest - Clock::now()).count();
	return static_cast<int>(std::max<std::int64_t>(0, left));
}

void Monitor::NoteAll(Clock::time_point now) noexcept
{
	for (const auto& watch : _watches)
	{
		watch->mustFollow = true;
		watch->Note(now);
	}
}

void Monitor::Take(const inotify_event& event, Clock::time_point now)
{
	if (event.mask & IN_Q_OVERFLOW)
	{
		WarningOutput("Changes of files came faster than they were read; all watched files are looked at.");
		return NoteAll(now);
	}
	const auto folder = _folders.find(event.wd);
	if (folder == _folders.end())
		return;
	if (event.len == 0)
	{
		// Something happened to the folder itself.
		for (const auto& [name, watch] : folder->second)
		{
			watch->mustFollow = true;
			watch->Note(now);
		}
		if (event.mask & IN_IGNORED)
			_folders.erase(folder);
		return;
	}
	const std::string name(event.name);
	const auto [first, last] = folder->second.equal_range(name);
	for (auto entry = first; entry != last; ++entry)
		TakeFor(*entry->second, event, name, now);
}

void Monitor::TakeFor(MonitorRegistration& watch, const inotify_event& event, std::string_view name,
					  Clock::time_point now)
{
	const bool isLast = std::any_of(watch.names.begin(), watch.names.end(),
									[&](const WatchedName& watched)
									{ return watched.isLast && watched.folder == event.wd && watched.name == name; });
	const bool isContent = event.mask & (IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB);
	// A folder on the way may stand beside a watched file; its attributes are of no concern.
	if (isContent && !isLast)
		return;
	watch.mustFollow = watch.mustFollow || !isContent;
	// A new file is usually there to be written. Whoever wrote the one that is gone has no say any more.
	if (event.mask & (IN_MODIFY | IN_CREATE))
		watch.hasWriter = isLast && !(event.mask & IN_ISDIR);
	else if (!(event.mask & IN_ATTRIB))
		watch.hasWriter = false;
	watch.Note(now);
}

void Monitor::ReadEvents(Clock::time_point now)
{
	if (_pollDescriptor < 0)
		return;
	eventfd_t ignored;
	eventfd_read(_alarm, &ignored);
	alignas(inotify_event) char buffer[16384];
	// Bounded, so that whoever writes without end cannot keep the host in here.
	for (int round = 0; round < 64; round++)
	{
		const ssize_t size = read(_descriptor, buffer, sizeof buffer);
		if (size <= 0)
			break;
		for (ssize_t at = 0; at < size;)
		{
			const auto& event = *reinterpret_cast<const inotify_event*>(buffer + at);
			Take(event, now);
			at += static_cast<ssize_t>(sizeof event + event.len);
		}
	}
	// At once, not at the end of the burst: a new folder must be watched before its file is written.
	for (const auto& watch : _watches)
	{
		if (watch->mustFollow)
			FollowAgain(*watch, now);
	}
}

MonitorRegistration* Monitor::NextDue(Clock::time_point now) noexcept
{
	for (const auto& watch : _watches)
	{
		if (watch->isDue && watch->deadline <= now)
			return watch.get();
	}
	return nullptr;
}

/// Ends the burst of `watch`; true when it changed something that has not been reported yet.
bool Monitor::CloseBurst(MonitorRegistration& watch) noexcept
{
	watch.isDue = watch.hasWriter = false;
	const bool mustReport = std::exchange(watch.mustReport, false);
	return watch.TakeStamp() || mustReport;
}

bool Monitor::IsActive(const MonitorRegistration* watch) const noexcept
{
	return std::any_of(_watches.begin(), _watches.end(), [watch](const auto& owned) { return owned.get() == watch; });
}

int Monitor::Dispatch(FileChangeObserver observer, void* observerContext)
{
	std::unique_lock lock(_mutex);
	const auto now = Clock::now();
	ReadEvents(now);
	_pumpThread = std::this_thread::get_id();
	int count = 0;
	while (MonitorRegistration* watch = NextDue(now))
	{
		const bool isChanged = CloseBurst(*watch);
		if (watch->isUnwatched)
			FollowAgain(*watch, now);
		if (!isChanged)
			continue;
		count++;
		Call(watch, lock, observer, observerContext);
	}
	return count;
}

/// Makes the callback of a watch, which may be gone afterwards, and tells the observer.
void Monitor::Call(MonitorRegistration* watch, std::unique_lock<std::mutex>& lock, FileChangeObserver observer,
				   void* observerContext)
{
	const FileChangeCallback callback = watch->callback;
	const FileChangeHandler handler = watch->handler;
	void* const context = watch->context;
	FileChangeReport report{{}, watch->owner.Lock(), FileChangeOutcome::noted};
	const std::string path = observer != nullptr ? watch->path : std::string();
	_running.push_back(watch);
	lock.unlock();
	if (handler != nullptr)
		report.outcome = handler(context);
	else
		callback(context);
	lock.lock();
	_running.pop_back();
	_callbackDone.notify_all();
	if (report.outcome == FileChangeOutcome::postponed && IsActive(watch))
		watch->isPostponed = true;
	lock.unlock();
	report.path = path;
	if (observer != nullptr)
		observer(report, observerContext);
	// Here the owner's last reference may go, and with it the watch.
	report.owner = nullptr;
	lock.lock();
}

Monitor& Monitor::Get() noexcept
{
	static auto* monitor = new Monitor;
	return *monitor;
}

} // namespace orvan::runtime
