// SPDX-License-Identifier: MIT
#include "batch_worker.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace orvan::program
{
namespace
{

[[noreturn]] void Fail(const char* what)
{
	throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

// Messages: texts, each with a zero behind it, after the length of all.
// ------------------------------------------------

class Message
{
public:
	void Add(std::string_view text)
	{
		_bytes.append(text) += '\0';
	}

	void Add(std::int64_t number)
	{
		Add(std::to_string(number));
	}

	/// What has zeros inside comes last.
	void AddLast(std::string_view bytes)
	{
		_bytes.append(bytes);
	}

	/// False when nobody reads any more.
	bool Send(int socket) const
	{
		const std::uint64_t size = _bytes.size();
		std::string bytes(reinterpret_cast<const char*>(&size), sizeof(size));
		bytes += _bytes;
		for (std::string_view rest = bytes; !rest.empty();)
		{
			const ssize_t count = send(socket, rest.data(), rest.size(), MSG_NOSIGNAL);
			if (count < 0 && errno != EINTR)
				return false;
			rest.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
		}
		return true;
	}

	/// False when nobody writes any more.
	bool Receive(int socket)
	{
		std::uint64_t size = 0;
		if (!Read(socket, reinterpret_cast<char*>(&size), sizeof(size)))
			return false;
		_bytes.resize(size);
		return Read(socket, _bytes.data(), size);
	}

	std::string_view GetRest() const
	{
		return std::string_view(_bytes).substr(_at);
	}

	std::string Take()
	{
		std::string text = _bytes.c_str() + _at;
		_at += text.size() + 1;
		return text;
	}

	std::int64_t TakeNumber()
	{
		return std::stoll(Take());
	}

private:
	static bool Read(int socket, char* bytes, std::size_t count)
	{
		while (count > 0)
		{
			const ssize_t read = recv(socket, bytes, count, 0);
			if (read == 0 || (read < 0 && errno != EINTR))
				return false;
			const auto done = static_cast<std::size_t>(std::max<ssize_t>(read, 0));
			bytes += done;
			count -= done;
		}
		return true;
	}

	std::string _bytes;
	std::size_t _at = 0;
};

Message Pack(const batch::Chunk& chunk)
{
	Message message;
	message.Add(chunk.folder);
	message.Add(chunk.first);
	message.Add(static_cast<std::int64_t>(chunk.failures.size()));
	for (const auto& [number, text] : chunk.failures)
	{
		message.Add(number);
		message.Add(text);
	}
	message.AddLast(batch::PackInputs(chunk.inputs));
	return message;
}

batch::Chunk Unpack(Message& message)
{
	batch::Chunk chunk;
	chunk.folder = message.Take();
	chunk.first = message.TakeNumber();
	for (std::int64_t left = message.TakeNumber(); left > 0; left--)
	{
		const std::int64_t number = message.TakeNumber();
		chunk.failures[number] = message.Take();
	}
	chunk.inputs = batch::UnpackInputs(message.GetRest());
	return chunk;
}

} // namespace

BatchWorker::BatchWorker(const batch::BatchOptions& options) : _options(options)
{
	void* const shared = mmap(nullptr, sizeof(*_place), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
	if (shared == MAP_FAILED)
		throw std::bad_alloc();
	_place = static_cast<std::int64_t*>(shared);
}

BatchWorker::~BatchWorker()
{
	Stop();
	munmap(_place, sizeof(*_place));
}

void BatchWorker::Start()
{
	int sockets[2];
	if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
		Fail("A worker cannot be started");
	*_place = -1;
	_process = fork();
	if (_process == 0)
	{
		close(sockets[0]);
		Serve(sockets[1]);
	}
	close(sockets[1]);
	_socket = sockets[0];
	if (_process < 0)
		Fail("A worker cannot be started");
}

void BatchWorker::Serve(int socket)
{
	// One that is stuck at an input shall not outlive whoever watches it.
	prctl(PR_SET_PDEATHSIG, SIGKILL);
	if (_options.memory > 0)
	{
		const auto memory = static_cast<rlim_t>(_options.memory);
		const rlimit limit{memory, memory};
		setrlimit(RLIMIT_AS, &limit);
	}
	batch::InputReader reader;
	for (Message message; message.Receive(socket); message = {})
	{
		Message answer;
		try
		{
			const batch::ChunkCounts counts = batch::RunChunk(Unpack(message), _options, reader, *_place);
			answer.Add("done");
			answer.Add(counts.done);
			answer.Add(counts.notDone);
		}
		catch (const std::exception& error)
		{
			answer.Add(error.what());
		}
		answer.Send(socket);
	}
	_exit(0);
}

std::string BatchWorker::Stop()
{
	int status = 0;
	if (_process > 0)
	{
		kill(_process, SIGKILL);
		waitpid(_process, &status, 0);
	}
	if (_socket >= 0)
		close(_socket);
	_process = _socket = -1;
	return "exit status " + std::to_string(WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status));
}

void BatchWorker::Begin(batch::Chunk chunk)
{
	_chunk = std::move(chunk);
	_ends.clear();
	Send();
}

void BatchWorker::Send()
{
	if (_process < 0)
		Start();
	_at = -1;
	Pack(*_chunk).Send(_socket); // Whether there is somebody to read shows in the answer.
}

void BatchWorker::NoteEnd()
{
	constexpr int kMostBefore = 2;
	const std::int64_t place = *_place;
	const std::string reason = Stop();
	const int ends = ++_ends[place];
	if (place < 0 && ends > kMostBefore)
		throw std::runtime_error("The workers end before their work: " + reason);
	// Somebody else may have ended it: once is not enough.
	if (place >= 0 && ends > 1)
		_chunk->failures[place] = "The worker ended at it: " + reason + '.';
}

std::optional<batch::ChunkCounts> BatchWorker::Look(bool hasAnswer)
{
	if (hasAnswer)
	{
		Message answer;
		if (!answer.Receive(_socket))
		{
			NoteEnd();
			Send();
			return std::nullopt;
		}
		_chunk.reset();
		if (const std::string text = answer.Take(); text != "done")
			throw std::runtime_error(text);
		const std::int64_t done = answer.TakeNumber();
		return batch::ChunkCounts{done, answer.TakeNumber()};
	}
	const std::int64_t at = std::atomic_ref<std::int64_t>(*_place);
	const auto now = std::chrono::steady_clock::now();
	if (at != _at)
	{
		_at = at;
		_since = now;
	}
	else if (at >= 0 && std::chrono::duration<double>(now - _since).count() > _options.deadline)
	{
		char text[64];
		std::snprintf(text, sizeof(text), "It took more than %g seconds.", _options.deadline);
		_chunk->failures[at] = text;
		Stop();
		Send();
	}
	return std::nullopt;
}

} // namespace orvan::program
