// SPDX-License-Identifier: MIT
#include "icon_watch.h"

#include "console.h"
#include "orvan/host/file_monitor_pump.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <poll.h>

namespace orvan::program
{
namespace
{
volatile std::sig_atomic_t g_isInterrupted = 0;

/// Lets the two signals through only while the program waits, so that none falls between the look at the flag and the
/// wait.
class InterruptMask
{
public:
	InterruptMask()
	{
		sigset_t interrupts;
		sigemptyset(&interrupts);
		sigaddset(&interrupts, SIGINT);
		sigaddset(&interrupts, SIGTERM);
		pthread_sigmask(SIG_BLOCK, &interrupts, &_usual);
		struct sigaction action = {};
		action.sa_handler = [](int)
		{
			g_isInterrupted = 1;
		};
		sigaction(SIGINT, &action, nullptr);
		sigaction(SIGTERM, &action, nullptr);
	}

	InterruptMask(const InterruptMask&) = delete;

	~InterruptMask()
	{
		pthread_sigmask(SIG_SETMASK, &_usual, nullptr);
	}

	const sigset_t& GetUsual() const
	{
		return _usual;
	}

private:
	sigset_t _usual;
};
} // namespace

void WatchIcon(const VectorIconRef& icon, const std::function<void()>& onReload)
{
	const InterruptMask mask;
	icon->SetLiveReloadEnabled(true);
	if (FileMonitorPump::CountWatches() == 0)
		throw Failure("The file cannot be watched.");

	const auto document = Cast<SVGDocumentInterface>(icon);
	// Held, so that the next root cannot come to stand where the last one stood.
	SVGElementRef lastRoot = document->GetRootElement();
	FlushOutput();
	while (g_isInterrupted == 0)
	{
		pollfd monitor = {.fd = FileMonitorPump::GetDescriptor(), .events = POLLIN, .revents = 0};
		const int milliseconds = FileMonitorPump::GetTimeout();
		const timespec timeout = {.tv_sec = milliseconds / 1000, .tv_nsec = milliseconds % 1000 * 1'000'000L};
		if (ppoll(&monitor, 1, milliseconds < 0 ? nullptr : &timeout, &mask.GetUsual()) < 0 && errno != EINTR)
			throw Failure(std::string("Waiting for changes failed: ") + std::strerror(errno));
		FileMonitorPump::DispatchDue();
		// An icon that could not be reloaded keeps its tree.
		if (document->GetRootElement() == lastRoot)
			continue;
		lastRoot = document->GetRootElement();
		onReload();
		FlushOutput();
	}
}

} // namespace orvan::program
