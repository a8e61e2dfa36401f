// SPDX-License-Identifier: MIT
/// Loads in two threads of one process, and in two processes, beside one thread: `thread_bench FOLDER… [ROUNDS]`.
/// Printed is how many times as fast as one thread both are together, over a folder's files from memory.
///
/// So that the figures hold on a busy machine as well, work is cut into slices of a millisecond or two, and only those
/// times count in which nobody was interrupted, which shows by the clock and the processor time being the same. They
/// are printed as a share of all.
#include "corpus.h"

#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "svg_base.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{

using namespace orvan;

/// The files of one slice, for each of the two.
struct Slice
{
	std::vector<Url> files[2];
};
using Slices = std::vector<Slice>;

/// Seconds.
struct Cost
{
	double processor = 0;
	double clock = 0;

	bool IsUndisturbed() const
	{
		return clock < processor * 1.03;
	}
};

double Now(clockid_t clock)
{
	timespec time;
	clock_gettime(clock, &time);
	return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

Cost Load(const std::vector<Url>& files)
{
	const double clock = Now(CLOCK_MONOTONIC);
	const double processor = Now(CLOCK_THREAD_CPUTIME_ID);
	for (const Url& url : files)
	{
		const Result<SVGDocumentRef> document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass);
		if (!document.IsOk() || !document.GetValue()->Init(url).IsOk())
			std::abort();
	}
	return {Now(CLOCK_THREAD_CPUTIME_ID) - processor, Now(CLOCK_MONOTONIC) - clock};
}

/// Who loads the other half: in memory that processes share.
struct Partner
{
	static constexpr std::size_t kNothing = SIZE_MAX;
	static constexpr std::size_t kEnd = SIZE_MAX - 1;

	std::atomic<std::size_t> slice = kNothing; ///< To be loaded.
	std::atomic<bool> isReady = false;         ///< It waits for just this moment, on a processor.
	std::atomic<bool> mayStart = false;
	std::atomic<bool> isDone = false;
	Cost cost;

	static Partner* Make()
	{
		void* memory = mmap(nullptr, sizeof(Partner), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
		return memory == MAP_FAILED ? nullptr : new (memory) Partner;
	}

	void Serve(const Slices& slices)
	{
		for (std::size_t which; (which = slice.load()) != kEnd;)
		{
			if (which == kNothing)
			{
				std::this_thread::yield();
				continue;
			}
			isReady = true;
			while (!mayStart)
				;
			cost = Load(slices[which].files[1]);
			slice = kNothing;
			isReady = mayStart = false;
			isDone = true;
		}
	}

	/// Loads a slice with this partner and returns what it took both; nothing when somebody came in between.
	bool LoadTogether(const Slices& slices, std::size_t which, double& seconds)
	{
		slice = which;
		while (!isReady)
			std::this_thread::yield();
		mayStart = true;
		const Cost own = Load(slices[which].files[0]);
		while (!isDone)
			std::this_thread::yield();
		isDone = false;
		// Both were at it for as long as the longer one; the two halves of a slice differ, the halves of all do not.
		seconds = (own.processor + cost.processor) / 2;
		return own.IsUndisturbed() && cost.IsUndisturbed();
	}
};

bool LoadAlone(const Slice& slice, double& seconds)
{
	const Cost first = Load(slice.files[0]);
	const Cost second = Load(slice.files[1]);
	seconds = first.processor + second.processor;
	return first.IsUndisturbed() && second.IsUndisturbed();
}

Slices Cut(const bench::Corpus& corpus)
{
	constexpr std::size_t kBytes = 512 << 10;
	Slices slices(1);
	std::size_t bytes[2] = {};
	for (std::size_t i = 0; i < corpus.files.size(); i++)
	{
		const bench::CorpusFile& file = corpus.files[i];
		IgnoreResult(MemoryFiles::Publish(file.name, file.bytes));
		if (bytes[0] + bytes[1] > kBytes && bytes[1] != 0)
		{
			slices.emplace_back();
			bytes[0] = bytes[1] = 0;
		}
		slices.back().files[i % 2].push_back(Url::Create("memory:" + file.name).GetValue());
		bytes[i % 2] += file.bytes.size();
	}
	return slices;
}

double Median(std::vector<double>& values)
{
	const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
	std::nth_element(values.begin(), middle, values.end());
	return *middle;
}

void Compare(const bench::Corpus& corpus, int rounds)
{
	enum
	{
		alone,
		threads,
		processes,
		kWays
	};
	const Slices slices = Cut(corpus);
	Partner* const partners[kWays] = {nullptr, Partner::Make(), Partner::Make()};
	const pid_t child = fork();
	if (child == 0)
	{
		partners[processes]->Serve(slices);
		_exit(0);
	}
	std::thread thread([&] { partners[threads]->Serve(slices); });
	std::vector<std::vector<double>> times[kWays];
	for (auto& way : times)
		way.resize(slices.size());
	std::size_t taken = 0;
	for (int round = 0; round <= rounds; round++)
	{
		for (std::size_t i = 0; i < slices.size(); i++)
		{
			for (int way = alone; way < kWays; way++)
			{
				double seconds = 0;
				const bool counts =
					way == alone ? LoadAlone(slices[i], seconds) : partners[way]->LoadTogether(slices, i, seconds);
				// The first round warms up.
				if (round == 0 || !counts)
					continue;
				times[way][i].push_back(seconds);
				taken++;
			}
		}
	}
	double sums[kWays] = {};
	for (std::size_t i = 0; i < slices.size(); i++)
	{
		if (times[alone][i].empty() || times[threads][i].empty() || times[processes][i].empty())
			continue;
		for (int way = alone; way < kWays; way++)
			sums[way] += Median(times[way][i]);
	}
	std::printf("%-10s %9.2f %9.2f %9.0f %%\n", corpus.name.c_str(), sums[alone] / sums[threads],
				sums[alone] / sums[processes],
				100.0 * static_cast<double>(taken) / static_cast<double>(slices.size() * kWays) / rounds);
	partners[threads]->slice = partners[processes]->slice = Partner::kEnd;
	thread.join();
	waitpid(child, nullptr, 0);
}

} // namespace

int main(int argumentCount, char** arguments)
{
	if (!Module::Load(ORVAN_SVG_MODULE).IsOk())
		return 1;
	SetDiagnosticSink([](const Diagnostic&, void*) {}, nullptr);
	int rounds = 15;
	if (argumentCount > 2 && std::atoi(arguments[argumentCount - 1]) > 0)
		rounds = std::atoi(arguments[--argumentCount]);
	std::printf("%-10s %9s %9s %11s\n", "files", "threads", "processes", "counted");
	for (int i = 1; i < argumentCount; i++)
		Compare(bench::ReadCorpus(arguments[i]), rounds);
	return 0;
}
