#include "cli/LogFiles.h"
#include "cli/Redactor.h"
#include "support/Version.h"
#include "tests/cli/CommandRun.h"
#include "tests/control/AgentStage.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <set>

namespace kova {
namespace {

using nlohmann::json;

class Diagnosis : public testing::Test, public AgentStage {
  protected:
    Diagnosis() {
        environment = {"KOVA_SOCKET=" + socketPath(), "HOME=" + files.path().string(),
                       "XDG_STATE_HOME=" + files.path().string(),
                       "XDG_CONFIG_HOME=" + (files.path() / "config").string(), "LANG=C.UTF-8"};
    }
    std::unique_ptr<RunningCommand> begin(const std::vector<std::string>& words) {
        return std::make_unique<RunningCommand>(words, environment, [this] { runAgentOnce(); });
    }
    /// The output of the command; on failure followed by "!", its exit code and its error text.
    std::string run(const std::vector<std::string>& words) {
        auto command = begin(words);
        const int code = command->wait();
        return command->out + (code == 0 ? "" : "!" + std::to_string(code) + " " + command->err);
    }
    std::string path(const std::string& name) const { return (files.path() / name).string(); }

    TemporaryFolder files;
    std::vector<std::string> environment;
};

constexpr const char* kFirst = "2024-02-29 12:34:56.789 debug: in detail\n";
constexpr const char* kSecond = "2024-02-29 12:34:57.000 info: a note\nof two lines\n";
constexpr const char* kThird = "2024-02-29 12:34:58.000 error: a fault\n";

TEST(LogReader, ReadsEveryLineOfTheFormatsPage) {
    std::ifstream page(KOVA_DOCS "/formats.md");
    const std::string text{std::istreambuf_iterator<char>(page), {}};
    const std::string fence = "```text log\n";
    const auto begin = text.find(fence);
    ASSERT_NE(begin, std::string::npos);
    const auto end = text.find("```", begin + fence.size());
    const auto example = text.substr(begin + fence.size(), end - begin - fence.size());
    std::string severitiesAndTimes;
    for (const cli::LogLine& line : cli::LogReader(cli::LogSeverity::detail).take(example)) {
        severitiesAndTimes += std::to_string(static_cast<int>(line.severity)) + " " + line.time + "\n";
    }
    EXPECT_EQ(severitiesAndTimes, "1 2026-11-22 08:36:28.291\n2 2026-11-22 08:36:28.292\n");
}

TEST_F(Diagnosis, TheLogIsReadWithItsOlderFileAndFollowed) {
    EXPECT_EQ(run({"log"}), "!1 There is no log at " + path(kLogFolder + "agent.log") + ".\n");
    files.write(kLogFolder + "agent.1.log", kFirst);
    files.write(kLogFolder + "agent.log", std::string(kSecond) + kThird + "half a li");
    struct Case {
        std::vector<std::string> words;
        std::string out;
    };
    const std::vector<Case> cases = {
        {{"log"}, std::string(kFirst) + kSecond + kThird},
        {{"log", "-n", "2"}, std::string("of two lines\n") + kThird},
        {{"log", "--level", "note"}, std::string(kSecond) + kThird},
        {{"log", "--level=warning"}, kThird},
        {{"log", "-n", "0"}, ""},
        {{"log", "--level", "loud"},
         "!2 kova: --level: “loud” is not detail, note, warning or error\n"
         "Try “kova log --help”.\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(run(c.words), c.out);

    auto following = begin({"log", "-f", "--level", "error"});
    EXPECT_TRUE(following->waitForOutput("a fault"));
    std::filesystem::rename(path(kLogFolder + "agent.log"),
                            path(kLogFolder + "agent.1.log")); // as the agent does at the size limit
    files.write(kLogFolder + "agent.log", "2024-02-29 12:35:00.000 error: another fault\n");
    EXPECT_TRUE(following->waitForOutput("another fault")) << following->out;
}

TEST_F(Diagnosis, AReportContainsNoTextOfTheUser) {
    desk.opens("Editor", {.title = "Secret plan"});
    desk.settle();
    (void)desk.controller().perform(action::CaptureScene{"Secret scene"});
    files.write("config/kova/preferences.json",
                R"({"KOVA.accentColor.v1": "system-blue", "KOVA.workspaceProduct.v1":
                    {"scenes": [{"name": "Secret scene", "placements": [{"windowTitle": "Secret plan"}]}],
                     "rules": [{"titleContains": "Secret plan"}]}})");
    files.write(kLogFolder + "agent.log", "2024-02-29 12:34:56.789 debug: Secret plan\n"
                                          "2024-02-29 12:34:57.000 warning: " +
                                              path("x") + " is full\n");
    EXPECT_EQ(run({"bugreport", path("report.txt")}),
              "The report is in " + path("report.txt") + ". Read it before you pass it on.\n");
    const std::string report = contentsOf(path("report.txt"));
    EXPECT_EQ(report.find("Secret"), std::string::npos) << report;
    EXPECT_EQ(report.find(files.path().string()), std::string::npos) << report;
    for (const char* part : {
             "== Checks", "\"application\": \"Editor\"", "\"title\": \"text-",
#if !defined(__APPLE__) // on a Mac the preferences are not in a file
                 "\"windowTitle\": \"text-", "\"KOVA.accentColor.v1\": \"system-blue\"",
#endif
                 "~/x is full", KOVA_VERSION
         }) {
        EXPECT_NE(report.find(part), std::string::npos) << part;
    }
    struct stat file {};
    ASSERT_EQ(stat(path("report.txt").c_str(), &file), 0);
    EXPECT_EQ(file.st_mode & 0777U, 0600U);
    EXPECT_EQ(run({"bugreport", path("report.txt")}),
              "!1 " + path("report.txt") + " is there already; it is not overwritten\n");

    endServer();
    EXPECT_EQ(run({"bugreport", path("alone.txt")}).front(), 'T');
    const std::string withoutAgent = contentsOf(path("alone.txt"));
    EXPECT_NE(withoutAgent.find("~/x is full"), std::string::npos) << "the log is read without an agent";
    EXPECT_NE(withoutAgent.find("no agent could be asked"), std::string::npos);
}

TEST(Redactor, UsesTheSameWordForTheSameTextWithinOneReportOnly) {
    const json tiles = {{"assigned", {{"d::left", "7:8"}}}, {"stacks", {{"d::left", {"7:8", "7:9"}}}}};
    const json record = {
        {"title", "Inbox"}, {"id", "7:8"},         {"unknownKey", "Inbox"}, {"list", {"Inbox", "Mail", 3}},
        {"empty", ""},      {"KOVA.x.v1", "dark"}, {"tiles", tiles}};
    cli::Redactor redactor;
    const json shown = redactor.applied(record);
    EXPECT_EQ(shown["id"], "7:8");
    EXPECT_EQ(shown["tiles"], tiles) << "ids of windows and tiles are not private";
    EXPECT_EQ(shown["KOVA.x.v1"], "dark");
    EXPECT_EQ(shown["empty"], "");
    EXPECT_EQ(redactor.applied({{"KOVA.y.v1", {"Inbox"}}})["KOVA.y.v1"][0], shown["title"])
        << "a list under a preference key may hold private texts";
    EXPECT_EQ(shown["list"][2], 3);
    EXPECT_EQ(shown["title"], shown["unknownKey"]);
    EXPECT_EQ(shown["title"], shown["list"][0]);
    EXPECT_NE(shown["title"], shown["list"][1]);
    EXPECT_EQ(shown.dump().find("Inbox"), std::string::npos);
    EXPECT_NE(cli::Redactor().applied(record)["title"], shown["title"]);
}

} // namespace
} // namespace kova
