// SPDX-License-Identifier: MIT
#include "orvan/url.h"

#include "support.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvan
{
namespace
{

Url UrlOf(std::string_view text)
{
	return Must(Url::Create(text));
}

Url UrlOfPath(const std::filesystem::path& path)
{
	return Must(Url::FromPath(path.string()));
}

std::string ReadAll(const Url& url)
{
	InputStream stream = Must(url.OpenInputStream());
	std::string content(static_cast<std::size_t>(Must(stream.GetStreamLength())), '\0');
	Must(stream.ReadBytes(content.data(), static_cast<std::int64_t>(content.size())));
	return content;
}

class Urls : public testing::Test
{
protected:
	TemporaryFolder folder;
};

TEST_F(Urls, TellFilesFoldersAndOtherThingsApart)
{
	WriteFile(folder / "file", "x");
	std::filesystem::create_symlink("file", folder / "link");
	std::filesystem::create_symlink("gone", folder / "dangling");
	mkfifo((folder / "pipe").c_str(), 0600);
	EXPECT_EQ(IoDetection::file, UrlOfPath(folder / "file").IoDetect());
	EXPECT_EQ(IoDetection::file, UrlOfPath(folder / "link").IoDetect());
	EXPECT_EQ(IoDetection::directory, UrlOfPath(folder / "").IoDetect());
	EXPECT_EQ(IoDetection::nonExistent, UrlOfPath(folder / "none").IoDetect());
	EXPECT_EQ(IoDetection::nonExistent, UrlOfPath(folder / "file/below").IoDetect());
	EXPECT_EQ(IoDetection::nonExistent, UrlOfPath(folder / "dangling").IoDetect());
	EXPECT_EQ(IoDetection::unknown, UrlOfPath(folder / "pipe").IoDetect());
	EXPECT_EQ(IoDetection::unknown, UrlOf("file:///dev/null").IoDetect());
	EXPECT_EQ(IoDetection::unknown, UrlOf("https://localhost/file").IoDetect());
	EXPECT_EQ(IoDetection::unknown, Url().IoDetect());
	EXPECT_EQ(IoDetection::error, UrlOfPath(folder / std::string(300, 'x')).IoDetect());
	EXPECT_EQ(3, static_cast<int>(IoDetection::file));
}

TEST_F(Urls, DecodeEveryWayToWriteAPath)
{
	const auto path = folder / "\xc3\xa9 100%?#.svg";
	WriteFile(path, "content");
	const std::string encoded = (folder / "%C3%a9%20100%25%3f%23.svg").string();
	for (const std::string& url : {"file://" + encoded, "file:" + encoded, "FILE://LocalHost" + encoded,
								   "file://" + encoded + "#layer", "file://" + encoded + "?x#y"})
		EXPECT_EQ("content", ReadAll(UrlOf(url))) << url;
	EXPECT_EQ("content", ReadAll(UrlOfPath(path)));
	WriteFile(folder / "a ", "at the end");
	EXPECT_EQ("at the end", ReadAll(UrlOf("file://" + (folder / "a%20").string())));
}

TEST_F(Urls, TakeRelativePathsFromTheWorkingFolderAtTheTimeOfUse)
{
	WriteFile(folder / "a.svg", "here");
	const Url url = UrlOfPath(std::filesystem::path("a.svg"));
	EXPECT_EQ("file:a.svg", url.GetText().View());
	const auto before = std::filesystem::current_path();
	std::filesystem::current_path(folder / "");
	EXPECT_EQ("here", ReadAll(url));
	std::filesystem::current_path(before);
}

TEST_F(Urls, ThatCannotBePathsAreErrors)
{
	WriteFile(folder / "a", "x");
	const std::string path = (folder / "a").string();
	for (const std::string& url :
		 {"file://" + path + "%00.svg", "file://" + path + "%4", "file://" + path + "%zz", "file://" + path + "%4g",
		  "file://" + path + "%g4", std::string("file:"), "file://elsewhere" + path})
	{
		EXPECT_EQ(IoDetection::error, UrlOf(url).IoDetect()) << url;
		const auto opened = UrlOf(url).OpenInputStream();
		ASSERT_FALSE(opened.IsOk()) << url;
		EXPECT_EQ(ErrorClass::io, opened.GetError().GetClass());
		EXPECT_EQ(url, opened.GetError().GetUrlText().View());
	}
}

TEST_F(Urls, SayWhyTheyCannotBeOpened)
{
	const auto text = [](const Url& url)
	{
		return std::string(url.GetText().View());
	};
	const Url none = UrlOfPath(folder / "none");
	EXPECT_EQ("'" + text(none) + "' cannot be opened: No such file or directory.", MessageOf(none.OpenInputStream()));
	const Url directory = UrlOfPath(folder / "");
	EXPECT_EQ("'" + text(directory) + "' cannot be opened: it is a directory.", MessageOf(directory.OpenInputStream()));
	EXPECT_EQ("'ftp:a' cannot be opened: the scheme of the URL is not known.",
			  MessageOf(UrlOf("ftp:a").OpenInputStream()));
}

TEST_F(Urls, DoNotHangOnPipesDevicesAndSockets)
{
	mkfifo((folder / "pipe").c_str(), 0600);
	const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
	sockaddr_un address{};
	address.sun_family = AF_UNIX;
	(folder / "socket").string().copy(address.sun_path, sizeof address.sun_path - 1);
	ASSERT_EQ(0, bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
	EXPECT_FALSE(UrlOfPath(folder / "pipe").OpenInputStream().IsOk());
	EXPECT_FALSE(UrlOfPath(folder / "socket").OpenInputStream().IsOk());
	EXPECT_FALSE(UrlOf("file:///dev/zero").OpenInputStream().IsOk());
	close(socket);
}

TEST_F(Urls, TellWhatMayNotBeReadFromWhatMayNotBeSeen)
{
	std::filesystem::create_directory(folder / "closed");
	WriteFile(folder / "closed/file", "x");
	WriteFile(folder / "secret", "x");
	const Url hidden = UrlOfPath(folder / "closed/file");
	const Url secret = UrlOfPath(folder / "secret");
	chmod((folder / "").c_str(), 0755);
	chmod((folder / "closed").c_str(), 0);
	chmod((folder / "secret").c_str(), 0);
	const auto check = [&]
	{
		// In a process of its own, so that root, who may read everything, can become nobody.
		if (geteuid() == 0 && setuid(65534) != 0)
			_exit(1);
		EXPECT_EQ(IoDetection::error, hidden.IoDetect());
		EXPECT_EQ(IoDetection::file, secret.IoDetect());
		EXPECT_TRUE(MessageOf(secret.OpenInputStream()).ends_with("cannot be opened: Permission denied."));
		_exit(HasFailure() ? 2 : 0);
	};
	EXPECT_EXIT(check(), testing::ExitedWithCode(0), "");
	chmod((folder / "closed").c_str(), 0700);
}

TEST_F(Urls, ReportFilesThatShrinkWhileTheyAreRead)
{
	WriteFile(folder / "file", std::string(10, 'x'));
	const Url url = UrlOfPath(folder / "file");
	InputStream stream = Must(url.OpenInputStream());
	char buffer[10];
	Must(stream.ReadBytes(buffer, 3));
	std::filesystem::resize_file(folder / "file", 5);
	const auto rest = stream.ReadBytes(buffer, 7);
	EXPECT_EQ("The requested number of bytes could not be read (2 of 7).", MessageOf(rest));
	EXPECT_EQ(url.GetText(), rest.GetError().GetUrlText());
	EXPECT_EQ(10, Must(stream.GetStreamLength()));
}

TEST_F(Urls, ReportWantOfMemoryAndCloseTheirDescriptors)
{
	WriteFile(folder / "file", "x");
	const Url url = UrlOfPath(folder / "file");
	const int firstFree = open("/dev/null", O_RDONLY);
	close(firstFree);
	EXPECT_GE(FailEachAllocation([&] { return url.OpenInputStream(); }), 2);
	EXPECT_GE(FailEachAllocation([] { return Url::FromPath("/some/path"); }), 2);
	const int again = open("/dev/null", O_RDONLY);
	close(again);
	EXPECT_EQ(firstFree, again);
}

TEST_F(Urls, ReplaceFilesAtOnceOrNotAtAll)
{
	namespace fs = std::filesystem;
	const fs::path file = folder / "file";
	const Url url = UrlOfPath(folder / "link");
	fs::create_symlink("file", folder / "link");
	const auto countDescriptors = []
	{
		return std::distance(fs::directory_iterator("/proc/self/fd"), {});
	};
	const auto descriptors = countDescriptors();
	// Through a link that leads nowhere yet; then over what stands there, with its permissions.
	const FileStamp first = Must(url.Replace("one", 3));
	EXPECT_EQ("one", ReadAll(UrlOfPath(file)));
	EXPECT_FALSE(UrlOfPath(file).GetStamp().MayDifferFrom(
		[&]
		{
			FileStamp sure = first;
			sure.isUncertain = false;
			return sure;
		}()));
	fs::permissions(file, fs::perms(0604));
	Must(url.Replace("", 0));
	EXPECT_EQ("", ReadAll(UrlOfPath(file)));
	EXPECT_EQ(fs::perms(0604), fs::status(file).permissions());
	EXPECT_TRUE(fs::is_symlink(folder / "link"));
	// What cannot be done leaves nothing behind.
	EXPECT_FALSE(UrlOfPath(folder.GetPath()).Replace("x", 1).IsOk());
	EXPECT_FALSE(UrlOfPath(folder / "missing" / "file").Replace("x", 1).IsOk());
	EXPECT_FALSE(UrlOf("memory:file").Replace("x", 1).IsOk());
	EXPECT_FALSE(url.Replace("x", -1).IsOk());
	EXPECT_EQ(descriptors, countDescriptors());
	EXPECT_EQ(2, std::distance(fs::directory_iterator(folder.GetPath()), {}));
}

} // namespace
} // namespace orvan
