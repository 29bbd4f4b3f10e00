// Completion of commands in shells.
#include "tests/cli/CommandRun.h"
#include "tests/control/AgentStage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace kova {

namespace {

using Words = std::vector<std::string>;

class Completion : public testing::Test, public AgentStage {
  protected:
    void SetUp() override {
        desk.controller().perform(action::CaptureScene{"Deep Work"});
        desk.controller().perform(action::CaptureScene{"At 10:30"});
        desk.opens("Mail", {.title = "Drafts"});
        desk.settle();
    }
    std::string outputOf(const char* program, const Words& words, int expectedCode = 0) {
        RunningCommand command(
            words, environment, [this] { runAgentOnce(); }, program);
        EXPECT_EQ(command.wait(), expectedCode) << command.err;
        EXPECT_EQ(command.err, "");
        return command.out;
    }
    /// The offered completions as a text: "one|two".
    std::string offered(Words words) {
        words.insert(words.begin(), "--complete");
        std::string out;
        for (const auto& line : linesOf(outputOf(KOVA_COMMAND, words))) {
            out += (out.empty() ? "" : "|") + line.substr(0, line.find('\t'));
        }
        return out;
    }
    static Words linesOf(const std::string& text) {
        Words lines;
        for (std::size_t at = 0; at < text.size();) {
            const auto end = std::min(text.find('\n', at), text.size());
            lines.push_back(text.substr(at, end - at));
            at = end + 1;
        }
        return lines;
    }
    static bool isInstalled(const std::string& program) {
        return std::filesystem::exists("/usr/bin/" + program) || std::filesystem::exists("/bin/" + program);
    }

    TemporaryFolder home;
    Words environment{"KOVA_SOCKET=" + socketPath(), "LANG=C.UTF-8", "HOME=" + home.path().string(), "TERM=dumb",
                      "PATH=" + std::filesystem::path(KOVA_COMMAND).parent_path().string() + ":/usr/bin:/bin"};
};

} // namespace

TEST_F(Completion, OffersTheArgumentsOfTheVerb) {
    const std::vector<std::pair<Words, std::string>> cases = {
        {{"sta"}, "stack|status"},
        {{"layout", ""}, "list|fit|show|next|previous|select|reset-sizes|prefer|inset"},
        {{"LAYOUT", "n"}, ""},
        {{"help", "scene", "r"}, "rename"},
        {{"--json", "und"}, "undo"},
        {{"focus", ""}, "left|right|up|down|window|display"},
        {{"focus", "left", ""}, "--window|--display|--json|--help"},
        {{"focus", "display", ""}, "next|previous|A"},
        {{"place", "No", ""}, "focus-main|secondary-1"},
        {{"swap", "s"}, "secondary-1"},
        {{"stack", ""}, "next|previous"},
        {{"float", "--window", "No"}, "Notes"},
        {{"layout", "select", "QUAD"}, "quad-grid|quad-strip"},
        {{"layout", "select", "aut"}, "automatic"},
        {{"layout", "select", "quad-grid", "--d"}, "--display"},
        {{"layout", "select", "--display", ""}, "A"},
        {{"layout", "select", "--display", "A", "dual-sp"}, "dual-split"},
        {{"layout", "show", "--display=A", "--"}, "--width|--json|--help"},
        {{"layout", "show", "--display="}, "--display=A"},
        {{"scene", "rename", ""}, "Deep Work|At 10:30"},
        {{"scene", "rename", "Deep Work", ""}, ""},
        {{"explain", ""}, "Inbox|Drafts|Notes|Terminal"},
        {{"launch", "org", ""}, "--tile|--display|--json|--help"},
        {{"launch", "org", "--tile", "focus"}, "focus-main"},
        {{"rule", "add", "--focused", "t"}, "tile"},
        {{"theme", "select", "ko"}, "kova.native"},
        {{"theme", "brain", ""}, "on|off"},
        {{"no", "such", ""}, ""},
        {{"layout", "turn", "left", ""}, ""},
        {{}, ""},
    };
    for (const auto& [words, expected] : cases) {
        EXPECT_EQ(offered(words), expected) << testing::PrintToString(words);
    }
    EXPECT_EQ(outputOf(KOVA_COMMAND, {"--complete", "import", ""}), "\tfiles\n");

    // Titles come from other programs and may contain control characters.
    desk.desktop.setTitle("Notes", "a\nb\x1b]0;c\x07");
    desk.settle();
    EXPECT_EQ(outputOf(KOVA_COMMAND, {"--complete", "explain", "No"}), "Notes\ta?b?]0;c?\n");

    environment[0] += ".missing";
    EXPECT_EQ(offered({"scene", "open", ""}), "");
    EXPECT_EQ(offered({"scene", "op"}), "open");
}

TEST_F(Completion, WorksInBash) {
    if (!isInstalled("bash")) GTEST_SKIP() << "there is no bash";
    EXPECT_EQ(outputOf("bash", {"--norc", KOVA_SHELLS "/completion.bash", KOVA_COMPLETIONS}),
              R"(kova theme b => [background] [brain]
kova scene open  => [Deep\ Work] [At\ 10:30]
kova scene open "deep => [Deep Work]
kova scene open Deep\ W => [Deep\ Work]
kova scene open At\ 10: => [30]
kova scene open At\ 10:3 => [30]
kova layout show --display= => [A]
kova import  => [<default>]
)");
}

TEST_F(Completion, WorksInZsh) {
    if (!isInstalled("zsh")) GTEST_SKIP() << "there is no zsh";
    EXPECT_EQ(outputOf("zsh", {"-f", KOVA_SHELLS "/completion.zsh", KOVA_COMPLETIONS}),
              R"(kova theme b => [kova theme b]
kova scene open D => [kova scene open Deep\ Work ]
kova scene open "D => [kova scene open "Deep Work" ]
kova scene open At => [kova scene open At\ 10:30 ]
kova layout show --display A => [kova layout show --display A ]
kova layout show --display  => [kova layout show --display A ]
)");
}

TEST_F(Completion, WorksInFish) {
    if (!isInstalled("fish")) GTEST_SKIP() << "there is no fish";
    EXPECT_EQ(outputOf("fish", {"--no-config", KOVA_SHELLS "/completion.fish", KOVA_COMPLETIONS}),
              R"(kova theme b => [background] [brain]
kova scene open  => [Deep Work] [At 10:30]
kova scene open "D => [Deep Work]
kova scene open Deep\ W => [Deep Work]
kova layout show --display  => [A]
)");
}

} // namespace kova
