#include "app/LogFile.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <thread>
#include <vector>

namespace kova {
namespace {

TEST(LogFile, KeepsTheRequestedLevelsAndAtMostTwoFiles) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "agent.log";
    log(LogLevel::error, "dropped before the log is opened");
    ASSERT_EQ(openLog(file.string(), LogLevel::note, LogEcho::none), std::nullopt);
    EXPECT_FALSE(isLogged(LogLevel::detail));
    log(LogLevel::detail, "the title of a window");
    log(LogLevel::note, "100% {of it} %s");
    const std::string first = contentsOf(file); // lines are written at once, since a crash may follow
    EXPECT_NE(first.find("info: 100% {of it} %s\n"), std::string::npos) << first;
    EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 1);
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0077, 0U); // no access for other users

    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < 400; ++i) log(LogLevel::warning, std::string(2000, 'x'));
        });
    }
    for (auto& thread : threads) thread.join();
    closeLog();
    log(LogLevel::error, "dropped after the log is closed");
    std::uintmax_t bytes = 0;
    int files = 0;
    for (const auto& member : std::filesystem::directory_iterator(folder.path())) {
        bytes += member.file_size();
        ++files;
    }
    EXPECT_EQ(files, 2);
    EXPECT_LE(bytes, 2U * 1024 * 1024 + 4096);
    EXPECT_GE(bytes, 1024U * 1024);
}

TEST(LogFile, OpeningReturnsAnErrorIfTheFileCannotBeWritten) {
    const TemporaryFolder folder;
    folder.write("a file", "");
    EXPECT_TRUE(openLog((folder.path() / "a file/agent.log").string(), LogLevel::note, LogEcho::none));
    log(LogLevel::error, "dropped, since the file cannot be written");
    closeLog();
}

} // namespace
} // namespace kova
