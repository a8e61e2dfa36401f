// SPDX-License-Identifier: MIT
/// Memory of a load: `memory_bench FILE…` prints for each file the growth of the process at the peak of the load and
/// once the tree is all that is left, beside a plain parse of the XML; with bytes per element and per path command.
/// Every measurement runs in a process of its own. Code does not count: it is shared with all processes that run it.
#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/module_loader.h"
#include "svg_base.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <malloc.h>
#include <rapidxml_ns/rapidxml_ns.hpp>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using namespace orvan;

struct Usage
{
	double peak = 0; ///< MiB.
	double kept = 0; ///< MiB.
	long elements = 0;
	long commands = 0;
};

double ReadStatus(const char* field)
{
	std::ifstream status("/proc/self/status");
	for (std::string line; std::getline(status, line);)
	{
		if (line.starts_with(field))
			return std::strtod(line.c_str() + std::strlen(field), nullptr) / 1024.0;
	}
	return 0;
}

/// Has all that is mapped from files in memory, as it comes there anyway, now more and now less of it at a time.
void PopulateCode()
{
	std::ifstream maps("/proc/self/maps");
	for (std::string line; std::getline(maps, line);)
	{
		std::uintptr_t begin = 0;
		std::uintptr_t end = 0;
		if (std::sscanf(line.c_str(), "%lx-%lx r", &begin, &end) == 2 && line.find('/') != line.npos)
			madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_READ);
	}
}

/// Runs `load` in a child process and returns what it did to the child's memory.
Usage Measure(const std::function<void(Usage&)>& load)
{
	int pipeEnds[2];
	if (pipe(pipeEnds) != 0)
		std::abort();
	const pid_t child = fork();
	if (child == 0)
	{
		Usage usage;
		PopulateCode();
		const double before = ReadStatus("VmRSS:");
		load(usage);
		usage.peak -= before;
		usage.kept -= before;
		_exit(write(pipeEnds[1], &usage, sizeof usage) == sizeof usage ? 0 : 1);
	}
	Usage usage;
	if (read(pipeEnds[0], &usage, sizeof usage) != sizeof usage)
		std::abort();
	waitpid(child, nullptr, 0);
	close(pipeEnds[0]);
	close(pipeEnds[1]);
	return usage;
}

void Count(const SVGElementRef& element, Usage& usage)
{
	usage.elements++;
	if (const auto path = Cast<SVGPathElementInterface>(element))
		usage.commands += static_cast<long>(path->GetPath().GetValue().GetCount());
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		Count(Cast<SVGElementInterface>(child), usage);
}

void LoadDocument(const char* path, Usage& usage)
{
	const auto document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue();
	const Url url = Url::FromPath(path).GetValue();
	if (!document->Init(url).IsOk())
		std::abort();
	usage.peak = ReadStatus("VmHWM:"); // Counting takes memory, too.
	malloc_trim(0);
	usage.kept = ReadStatus("VmRSS:");
	Count(document->GetRootElement(), usage);
}

void ParseXml(const char* path, Usage& usage)
{
	std::ifstream stream(path, std::ios::binary);
	stream.seekg(0, std::ios::end);
	std::vector<char> text(static_cast<std::size_t>(stream.tellg()) + 1);
	stream.seekg(0);
	stream.read(text.data(), static_cast<std::streamsize>(text.size() - 1));
	rapidxml_ns::xml_document<> document;
	document.parse<rapidxml_ns::parse_default>(text.data());
	usage.peak = ReadStatus("VmHWM:");
	usage.kept = ReadStatus("VmRSS:");
}

} // namespace

int main(int argumentCount, char** arguments)
{
	if (!Module::Load(ORVAN_SVG_MODULE).IsOk())
		return 1;
	SetDiagnosticSink([](const Diagnostic&, void*) {}, nullptr);
	std::printf("%-40s %9s %9s %9s %9s %9s %9s\n", "file", "xml peak", "peak", "kept", "elements", "bytes/el",
				"commands");
	for (int i = 1; i < argumentCount; i++)
	{
		const char* path = arguments[i];
		const Usage xml = Measure([path](Usage& usage) { ParseXml(path, usage); });
		const Usage document = Measure([path](Usage& usage) { LoadDocument(path, usage); });
		std::printf("%-40s %5.1f MiB %5.1f MiB %5.1f MiB %9ld %9.1f %9ld\n",
					std::strrchr(path, '/') ? std::strrchr(path, '/') + 1 : path, xml.peak, document.peak,
					document.kept, document.elements,
					document.kept * 1024 * 1024 / static_cast<double>(document.elements), document.commands);
	}
	return 0;
}
