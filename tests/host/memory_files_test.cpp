// SPDX-License-Identifier: MIT
#include "orvan/host/memory_files.h"

#include "orvan/url.h"
#include "support.h"

#include <thread>

namespace orvan
{
namespace
{

TEST(MemoryFiles, AreReadThroughTheirUrlInPieces)
{
	Must(MemoryFiles::Publish("icons/a b.svg", "0123456789"));
	const Url url = Must(Url::Create("memory:icons/a b.svg"));
	EXPECT_EQ(IoDetection::file, url.IoDetect());
	InputStream stream = Must(url.OpenInputStream());
	EXPECT_EQ(10, Must(stream.GetStreamLength()));
	char buffer[10];
	Must(stream.ReadBytes(buffer, 4));
	Must(stream.ReadBytes(buffer, 4));
	EXPECT_EQ("4567", std::string(buffer, 4));
	EXPECT_EQ("The requested number of bytes could not be read (2 of 4).", MessageOf(stream.ReadBytes(buffer, 4)));
	MemoryFiles::Withdraw("icons/a b.svg");
	EXPECT_EQ(IoDetection::nonExistent, url.IoDetect());
	EXPECT_EQ(ErrorClass::io, url.OpenInputStream().GetError().GetClass());
}

TEST(MemoryFiles, AreReplacedWhileOlderStreamsKeepTheirBytes)
{
	Must(MemoryFiles::Publish("a", "old"));
	const Url url = Must(Url::Create("memory:a"));
	InputStream before = Must(url.OpenInputStream());
	Must(MemoryFiles::Publish("a", "newer"));
	char buffer[3];
	Must(before.ReadBytes(buffer, 3));
	EXPECT_EQ("old", std::string(buffer, 3));
	EXPECT_EQ(5, Must(Must(url.OpenInputStream()).GetStreamLength()));
	MemoryFiles::Withdraw("a");
	MemoryFiles::Withdraw("a");
}

TEST(MemoryFiles, MayBeEmpty)
{
	Must(MemoryFiles::Publish("empty", {}));
	const Url url = Must(Url::Create("memory:empty"));
	EXPECT_EQ(IoDetection::file, url.IoDetect());
	InputStream stream = Must(url.OpenInputStream());
	EXPECT_EQ(0, Must(stream.GetStreamLength()));
	Must(stream.ReadBytes(nullptr, 0));
	MemoryFiles::Withdraw("empty");
}

TEST(MemoryFiles, AreFoundHoweverManyThereAre)
{
	const auto nameOf = [](int i)
	{
		return "many/" + std::to_string(i);
	};
	const auto lengthOf = [&](int i) -> std::int64_t
	{
		const Url url = Must(Url::Create("memory:" + nameOf(i)));
		return url.IoDetect() == IoDetection::file ? Must(Must(url.OpenInputStream()).GetStreamLength()) : -1;
	};
	constexpr int kCount = 700;
	static const std::string bytes(kCount, 'x');
	for (int i = 0; i < kCount; i++)
		Must(MemoryFiles::Publish(nameOf(i), std::string_view(bytes).substr(0, static_cast<std::size_t>(i))));
	for (int i = 0; i < kCount; i += 3)
		MemoryFiles::Withdraw(nameOf(i));
	for (int i = 0; i < kCount; i++)
		EXPECT_EQ(i % 3 == 0 ? -1 : i, lengthOf(i));
	for (int i = 0; i < kCount; i++)
		MemoryFiles::Withdraw(nameOf(i));
	EXPECT_EQ(-1, lengthOf(1));
}

TEST(MemoryFiles, AreSafeToReadWhileOthersComeAndGo)
{
	Must(MemoryFiles::Publish("steady", "content"));
	std::thread writer(
		[]
		{
			for (int i = 0; i < 2000; i++)
			{
				const std::string name = std::to_string(i % 50);
				IgnoreResult(MemoryFiles::Publish(name, "x"));
				MemoryFiles::Withdraw(name);
			}
		});
	const Url url = Must(Url::Create("memory:steady"));
	for (int i = 0; i < 2000; i++)
	{
		char buffer[7];
		InputStream stream = Must(url.OpenInputStream());
		Must(stream.ReadBytes(buffer, 7));
		ASSERT_EQ("content", std::string(buffer, 7));
	}
	writer.join();
	MemoryFiles::Withdraw("steady");
}

} // namespace
} // namespace orvan
