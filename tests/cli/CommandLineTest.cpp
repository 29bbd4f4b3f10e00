// The real `kova` against a whole agent on the simulated desktop.
#include "cli/Terminal.h"
#include "cli/Verbs.h"
#include "tests/cli/CommandRun.h"
#include "tests/control/AgentStage.h"
#include "tests/control/JsonSchema.h"
#include "windowing/KeyCodes.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <iterator>

namespace kova {

namespace {

using nlohmann::json;
using Words = std::vector<std::string>;

constexpr std::string_view kSubscribeToOverlay =
    R"({"jsonrpc": "2.0", "id": 1, "method": "subscribe", "params": {"topic": "overlay"}})";

class CommandLine : public testing::Test, public AgentStage {
  protected:
    struct Result {
        int code;
        std::string out, err;
    };
    std::unique_ptr<RunningCommand> begin(const Words& words) {
        return std::make_unique<RunningCommand>(words, environment, [this] { turn(); });
    }
    Result run(const Words& words) {
        auto command = begin(words);
        pressWhatIsAwaited(words);
        const int code = command->wait();
        return {code, command->out, command->err};
    }

    /// Where a command waits for a key, as a person would.
    void pressWhatIsAwaited(const Words& words) {
        const auto has = [&](const char* word) { return std::ranges::find(words, word) != words.end(); };
        if (!has("record") || has("help") || has("--help")) return;
        EXPECT_TRUE(waitUntil([this] { turn(); }, [this] { return *shortcuts.isRecording; }));
        desk.desktop.keyboard().press(keyCode::g, modifierFlag::control | modifierFlag::option);
    }

    /// Commands that write a file write it here.
    void SetUp() override {
        std::filesystem::current_path(files.path());
        for (const char* home : {"HOME=", "XDG_STATE_HOME="}) environment.push_back(home + state.path().string());
        state.write(kLogFolder + "agent.log", "2024-02-29 12:34:56.789 info: workspace started\n"
                                              "2024-02-29 12:34:57.000 warning: it rains\n");
    }
    void TearDown() override { std::filesystem::current_path("/"); }

    TemporaryFolder files, state;
    Words environment{"KOVA_SOCKET=" + socketPath(), "LANG=C.UTF-8"};
};

/// The words of a command as a shell would cut it, without the first.
Words wordsOf(const std::string& command) {
    Words words;
    bool isQuoted = false;
    bool isInside = false;
    for (const char c : command) {
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (c == ' ' && !isQuoted) {
            isInside = false;
        } else {
            if (!std::exchange(isInside, true)) words.emplace_back();
            words.back() += c;
        }
    }
    words.erase(words.begin());
    return words;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find('\n', at), text.size());
        lines.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

TEST_F(CommandLine, SaysWhenAChangeIsInMemoryOnly) {
    disk.problem = "cannot write preferences.json: No space left on device";
    const auto changed = run({"accent", "select", "matrix-emerald"});
    EXPECT_EQ(changed.code, 0);
    EXPECT_EQ(changed.err,
              "kova: not saved yet: " + *disk.problem + ". The change is in memory only; writing is tried again.\n");
    EXPECT_NE(run({"status"}).out.find("preferences " + *disk.problem), std::string::npos);
    EXPECT_NE(run({"doctor"}).out.find(*disk.problem), std::string::npos);
    EXPECT_EQ(run({"doctor"}).code, 1);
}

TEST_F(CommandLine, NotificationsBeforeTheResponseAreRead) {
    struct Hasty final : ControlHandling {
        void handle(const ControlRequest&, const std::shared_ptr<ControlPeer>& peer, ControlAnswer answer) override {
            json shortcut = {{"action", "undo"}, {"title", "Undo"},     {"keys", "Ctrl+Z"},
                             {"label", "Z"},     {"conflict", nullptr}, {"isHeldByOther", true}};
            const json told = {{"jsonrpc", "2.0"}, {"method", "claimed"}, {"params", {{"shortcut", shortcut}}}};
            peer->send(told.dump());
            shortcut["isHeldByOther"] = false;
            answer(json{{"shortcut", shortcut}});
        }
    } other;
    endServer();
    ControlServer answers(std::get<AgentClaim>(AgentClaim::take({socketPath(), true})), desk.desktop.queue(), other);
    ASSERT_EQ(answers.start(), std::nullopt);
    answers.serve();
    auto command = begin({"shortcut", "set", "undo", "ctrl+z"});
    EXPECT_EQ(command->wait(), 0) << command->err;
    EXPECT_NE(command->out.find("another program"), std::string::npos) << command->out;
}

TEST_F(CommandLine, ResponsesOfAnotherVersionAreHandled) {
    struct OtherVersion final : ControlHandling {
        void handle(const ControlRequest&, const std::shared_ptr<ControlPeer>&, ControlAnswer answer) override {
            answer(json::object());
        }
    } other;
    endServer();
    ControlServer answers(std::get<AgentClaim>(AgentClaim::take({socketPath(), true})), desk.desktop.queue(), other);
    ASSERT_EQ(answers.start(), std::nullopt);
    answers.serve();
    for (const Words& words : {Words{"status"}, {"layout", "list"}, {"shortcut", "record", "undo"}, {"subscribe"}}) {
        auto command = begin(words);
        EXPECT_EQ(command->wait(), 1) << words[0];
        EXPECT_NE(command->err.find("Unexpected response from the agent"), std::string::npos)
            << words[0] << ": " << command->err;
    }
    const auto checked = run({"doctor"});
    EXPECT_EQ(checked.code, 1);
    EXPECT_NE(checked.out.find("answers as another version does"), std::string::npos) << checked.out << checked.err;
    EXPECT_EQ(run({"bugreport", "report.txt"}).code, 0);
    for (const cli::Verb& verb : cli::verbs()) {
        if (!verb.print) continue;
        EXPECT_THROW((void)verb.print(json::object(), {}), json::exception) << verb.name;
    }
}

} // namespace

TEST_F(CommandLine, EveryExampleInTheHelpAndTheDocumentsWorks) {
    std::vector<std::string> examples = documentedLines(KOVA_DOCS "/control.md", "sh", "kova ");
    if (std::filesystem::exists(KOVA_README)) {
        for (const auto& line : documentedLines(KOVA_README, "sh", "kova ")) examples.push_back(line);
    }
    for (auto& example : examples) example = "kova " + example;
    examples.emplace_back("kova layout select dual-split"); // whatever the documents have left
    for (const cli::Verb& verb : cli::verbs()) {
        EXPECT_FALSE(verb.examples.empty()) << verb.name;
        for (const auto& example : linesOf(verb.examples)) examples.push_back(example);
    }
    ASSERT_GT(examples.size(), 30u);
    auto drawing = client(); // what “ui show” asks
    drawing.ask(kSubscribeToOverlay);
    for (const auto& example : examples) {
        const Words words = wordsOf(example);
        reopen();
        if (example == "kova focus right") (void)run({"swap", "1"}); // what was learnt may have put it elsewhere
        auto command = begin(words);
        if (words[0] == "subscribe") {
            EXPECT_TRUE(command->waitForOutput("windows")) << example;
            continue;
        }
        pressWhatIsAwaited(words);
        EXPECT_EQ(command->wait(), 0) << example << "\n" << command->err;
        EXPECT_FALSE(command->out.empty()) << example;
        const bool hasPrompt = words[0] == "shortcut" && words[1] == "record";
        EXPECT_EQ(command->err, hasPrompt ? "Type Shortcut…\n" : "") << example;
    }
    EXPECT_TRUE(hasQuit);
}

TEST_F(CommandLine, EveryVerbHasHelpAndJson) {
    const json schema = controlSchema();
    const std::string overview = run({"help"}).out;
    auto drawing = client(); // what “ui show” asks
    drawing.ask(kSubscribeToOverlay);
    for (const cli::Verb& verb : cli::verbs()) {
        const std::string name(verb.name);
        SCOPED_TRACE(name);
        EXPECT_NE(overview.find("  " + name + " "), std::string::npos);
        Words words = wordsOf("kova " + name);
        words.emplace_back("--help");
        const Result asOption = run(words);
        const Result asVerb = run(wordsOf("kova help " + name));
        EXPECT_EQ(asOption.code, 0);
        EXPECT_EQ(asOption.out, asVerb.out);
        EXPECT_NE(asOption.out.find(verb.description.substr(0, 20)), std::string::npos);
        for (const auto& example : linesOf(verb.examples)) EXPECT_NE(asOption.out.find(example), std::string::npos);

        if (verb.name == "subscribe" || verb.method.empty()) continue;
        words = wordsOf(linesOf(verb.examples).front());
        words.insert(words.begin(), "--json");
        reopen();
        const Result asJson = run(words);
        EXPECT_EQ(asJson.code, 0) << asJson.err;
        EXPECT_EQ(schemaViolation(schema, "result:" + std::string(verb.method), json::parse(asJson.out)), "");
    }
}

TEST_F(CommandLine, ExitCodesOfEachError) {
    mkfifo("pipe", 0600);
    struct Case {
        Words words;
        int code;
        std::string says; // on standard error
    };
    const std::vector<Case> cases = {
        {{"layout", "select", "hexagons"}, 1, "jarvis.quad-grid  Quad Grid (2×2)"},
        {{"layout", "select", "quad"}, 1, "more than one layout"},
        {{"layout", "show", "--display=Beamer"}, 1, "1  A"},
        {{"explain", "--", "--display"}, 1, "There is no window “--display”"},
        {{"explain", "Solitaire"}, 1, "Mail  Inbox"},
        {{"explain", "\xFF\xFE"}, 1, "There is no window"},
        {{}, 2, "usage: kova VERB"},
        {{"arange"}, 2, "There is no verb “arange”. Did you mean “kova arrange”?"},
        {{"layout", "slect"}, 2, "Did you mean “kova layout select”? There is:"},
        {{"layout", "select", "qaud-grid"}, 1, "Did you mean “quad-grid”? There is:"},
        {{"place", "mail"}, 2, "either WINDOW and TILE or --tile is needed"},
        {{"place", "mail", "9"}, 1, "2  Secondary  secondary-1"},
        {{"swap", "left"}, 1, "Put it into one with “kova tile” or “kova place”"},
        {{"stack", "first"}, 2, "STEP: “first” is not next or previous"},
        {{"focus", "display", "next"}, 1, "There is no other display"},
        {{"move", "display", "Beamer"}, 1, "There is no display “Beamer”"},
        {{"zoom", "--window", "Solitaire"}, 1, "There is no window “Solitaire”"},
        {{"--json", "layout", "select", "qaud"}, 1, "\"choices\": [\n      \"jarvis.command-center\""},
        {{"status", "please", "--json"}, 2, "\"code\": \"wrongUsage\""},
        {{"layout"}, 2, "layout reset-sizes"},
        {{"layout", "turn"}, 2, "There is no “layout turn”"},
        {{"layout", "select"}, 2, "LAYOUT is missing"},
        {{"layout", "select", ""}, 2, "must not be empty"},
        {{"layout", "inset"}, 2, "POINTS is missing"},
        {{"layout", "inset", "5px"}, 2, "“5px” is not a number from 0 to 100"},
        {{"layout", "inset", "nan"}, 2, "“nan” is not a number from 0 to 100"},
        {{"layout", "inset", "0x10"}, 2, "“0x10” is not a number from 0 to 100"},
        {{"layout", "inset", "1e9"}, 2, "“1e9” is not a number from 0 to 100"},
        {{"layout", "show", "--width", "wide"}, 2, "“wide” is not a whole number"},
        {{"arrange", "--dry"}, 2, "--dry"},
        {{"zoom", "--widow", "mail"}, 2, "there is no option “--widow”. Did you mean “--window”?"},
        {{"stack"}, 1, "Terminal is in no tile. Put it into one with “kova tile” or “kova place”"},
        {{"focus", "left"}, 1, "Terminal is in no tile. Put it into one with “kova tile” or “kova place”"},
        {{"focus"}, 2, "DIRECTION is missing"},
        {{"move", "sideways"}, 2, "DIRECTION: “sideways” is not left, right, up or down"},
        {{"move", "left", "right"}, 2, "“right” is a word too many"},
        {{"divider", "drag", "root", "7", "10"}, 1, "There is no divider “root 7” on this display"},
        {{"divider", "drag", "root", "0", "-10", "--display", "Beamer"}, 1, "1  A"},
        {{"divider", "drag", "root", "first", "10"}, 2, "BOUNDARY: “first” is not a whole number from 0 to 1000"},
        {{"divider", "drag", "root", "0", "far"}, 2, "POINTS: “far” is not a number"},
        {{"divider", "drag", "root", "0"}, 2, "POINTS is missing"},
        {{"divider", "list", "root"}, 2, "“root” is a word too many"},
        {{"layout", "inset", "-5"}, 2, "“-5” is not a number from 0 to 100"},
        {{"layout", "show", "--width"}, 2, "--width needs a value: COLUMNS"},
        {{"layout", "show", "--display="}, 2, "--display: a name must not be empty"},
        {{"arrange", "--dry-run=no"}, 2, "--dry-run takes no value"},
        {{"launch", "maps"}, 2, "--tile SLOT is missing"},
        {{"launch", "--tile", "1"}, 2, "APP is missing"},
        {{"launch", "maps", "--tile", "9"}, 1, "2  Secondary  secondary-1"},
        {{"launch", "solitaire", "--tile", "1"}, 1, "/Applications/Maps  Maps"},
        {{"app", "quit"}, 2, "WINDOW is missing"},
        {{"app", "quit", "Solitaire"}, 1, "Mail  Inbox"},
        {{"force-quit-all"}, 1, "There is no terminal to ask at"},
        {{"scene", "open"}, 2, "SCENE is missing"},
        {{"scene", "open", "Work"}, 1, "there is no scene at all"},
        {{"scene", "rename", "Work"}, 2, "NAME is missing"},
        {{"rule", "add", "float"}, 2, "either --app or --focused is needed"},
        {{"rule", "add", "--focused", "--app", "mail", "float"}, 2, "either --app or --focused is needed"},
        {{"rule", "add", "--focused", "tile"}, 2, "SLOT is missing"},
        {{"rule", "add", "--focused", "float", "1"}, 2, "only “tile” takes a SLOT"},
        {{"rule", "add", "--focused", "hide"}, 2, "“hide” is not tile, float or ignore"},
        {{"rule", "change", "1"}, 2, "either a DISPOSITION or --title is needed"},
        {{"rule", "move", "1", "0"}, 2, "PLACE: “0” is not a whole number from 1 on"},
        {{"rules"}, 2, "rules off"},
        {{"import", "missing.json"}, 1, "Import failed: cannot read “missing.json”: No such file or directory"},
        {{"import", "."}, 1, "Import failed: cannot read “.”: Is a directory"},
        {{"import", "pipe"}, 1, "Import failed: no program writes to the pipe “pipe”"},
        {{"import", "/dev/zero"}, 1, "Import failed: “/dev/zero” is larger than 64 MiB"},
        {{"export", "missing/"}, 1, "Export failed: cannot write"},
        {{"export", "/proc/nothing.json"}, 1, "Export failed: cannot write “/proc/nothing.json”"},
        {{"open", "https://action/undo"}, 1, "This URL asks for nothing that KOVA does"},
        {{"open", "kova://scene/Leisure"}, 1, "There is no such scene"},
        {{"open", "kova://action/focus/left"},
         1,
         "Terminal is in no tile. Put it into one with “kova tile” or “kova place”"},
        {{"open", ""}, 2, "URL: a name must not be empty"},
        {{"theme", "select", "plaid"}, 1, "kova.native  Native"},
        {{"theme", "background"}, 2, "on|off is missing"},
        {{"theme", "brain", "maybe"}, 2, "“maybe” is not on or off"},
        {{"accent", "select", "e"}, 1, "more than one accent color"},
        {{"status", "please"}, 2, "“please” is a word too many"},
        {{"help", "arange"}, 2, "There is no verb “arange”"},
        {{"--version"}, 0, ""},
        {{"layout", "--help"}, 0, ""},
    };
    for (const Case& c : cases) {
        const Result result = run(c.words);
        SCOPED_TRACE(json(c.words).dump(-1, ' ', false, json::error_handler_t::replace) + "\n" + result.err);
        EXPECT_EQ(result.code, c.code);
        EXPECT_NE(result.err.find(c.says), std::string::npos);
        EXPECT_EQ(result.out.empty(), c.code != 0);
    }
    EXPECT_EQ(desk.tiles(), "- | -");

    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(run({"arrange"}).code, 4);
    EXPECT_EQ(run({"status"}).code, 0);
    const Result sick = run({"doctor"});
    EXPECT_EQ(sick.code, 1);
    EXPECT_NE(sick.out.find("permission   wrong "), std::string::npos) << sick.out;

    environment[0] = "KOVA_SOCKET=" + socketPath() + ".gone";
    const Result alone = run({"arrange"});
    EXPECT_EQ(alone.code, 3);
    EXPECT_NE(alone.err.find("Start it with “kova-agent”"), std::string::npos);
    EXPECT_EQ(run({"open", "kova://action/arrange"}).code, 3);
    EXPECT_EQ(run({"doctor"}).code, 1);
}

TEST_F(CommandLine, OutputThatCannotBeWrittenIsAnError) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no file that is always full";
    for (const char* verb : {"status", "doctor", "log", "help", "layout list --json"}) {
        RunningCommand command(
            {"-c", std::string(KOVA_COMMAND " ") + verb + " > /dev/full"}, environment, [this] { turn(); }, "/bin/sh");
        EXPECT_EQ(command.wait(), 1) << verb;
        EXPECT_NE(command.err.find("cannot write to standard output: "), std::string::npos) << verb << command.err;
    }
}

TEST_F(CommandLine, WindowsAreListedByTheirTilesAndDriftIsFound) {
    desk.arrange();
    EXPECT_EQ(run({"windows"}).out, R"(A: Dual Split (2)
  1  Primary    * Terminal
  2  Secondary  Notes
In no tile:
  Mail “Inbox”, minimized
)");
    EXPECT_EQ(run({"place", "mail", "2", "--dry-run"}).out,
              "Mail “Inbox” would go to display-UUID-OF-A::secondary-1\nNotes would wait behind it\n");
    EXPECT_EQ(run({"place", "mail", "2"}).out, "Moved Mail to Secondary\n");
    desk.settle();
    EXPECT_EQ(run({"windows"}).out, R"(A: Dual Split (2)
  1  Primary    * Terminal
  2  Secondary  Mail “Inbox”
                behind: Notes
)");
    EXPECT_EQ(run({"query", "focus"}).out, "window   Terminal  103:48\n"
                                           "tile     display-UUID-OF-A::focus-main\n"
                                           "display  display-UUID-OF-A\n");
    EXPECT_EQ(run({"verify"}).out, "2 windows are where requested.\n");
    desk.desktop.userMoves("Mail", makeRect(1500, 100, 500, 400)); // and no poll has seen it yet
    const Result drifted = run({"verify"});
    EXPECT_EQ(drifted.code, 1);
    EXPECT_EQ(drifted.out, R"(WINDOW        TILE                            REQUESTED          ACTUAL            STATE
Mail “Inbox”  display-UUID-OF-A::secondary-1  1291,15 1254x1382  1500,100 500x400  drifted
1 window is where requested.
)");
    EXPECT_EQ(run({"pause"}).code, 0);
    EXPECT_EQ(run({"move", "left"}).err, "KOVA is paused; “kova resume” goes on\n");
    EXPECT_NE(run({"status"}).out.find("management  paused"), std::string::npos);
    EXPECT_EQ(run({"verify", "--repair"}).code, 1);
    EXPECT_EQ(run({"resume"}).out, "KOVA manages windows\n");
    desk.settle();
    EXPECT_EQ(run({"verify"}).code, 0);
    desk.desktop.userMoves("Mail", makeRect(1500, 100, 500, 400));
    EXPECT_EQ(json::parse(run({"verify", "--json"}).out)["isAsRequested"], false);
}

TEST_F(CommandLine, DrawsLayoutsAsWideAsTheTerminal) {
    desk.arrange();
    environment.push_back("COLUMNS=40");
    EXPECT_EQ(run({"layout", "show"}).out, R"(┌───────────────────┬──────────────────┐
│                   │                  │
│                   │                  │
│      Primary      │    Secondary     │
│    focus-main     │   secondary-1    │
│     1254×1382     │    1254×1382     │
│     Terminal      │      Notes       │
│                   │                  │
│                   │                  │
│                   │                  │
└───────────────────┴──────────────────┘
Dual Split (2), jarvis.dual-split
in force on A (2560×1440 points)
)");
    EXPECT_EQ(run({"layout", "show", "command-center", "--width", "48"}).out,
              R"(┌──────────────────────────────┬───────────────┐
│                              │               │
│                              │   Reference   │
│                              │focus-right-top│
│           Primary            │    850×684    │
│          focus-main          │               │
│          1658×1035           │               │
│                              ├───────────────┤
│                              │               │
│                              │   Secondary   │
├──────────────────────────────┤focus-right-bo…│
│           Utility            │    850×648    │
│        focus-utility         │               │
└──────────────────────────────┴───────────────┘
Focus + Utility, jarvis.command-center
as it would be on A (2560×1440 points)
)");
    // On a small display the margins and gaps are wide, and not drawn all the same.
    desk.display(800, 600, "Small");
    EXPECT_EQ(run({"layout", "show", "dual-stack", "--display", "Small"}).out,
              R"(┌──────────────────────────────────────┐
│                                      │
│               Primary                │
│              focus-main              │
│               770×246                │
│                                      │
│                                      │
├──────────────────────────────────────┤
│                                      │
│              Secondary               │
│             secondary-1              │
│               770×246                │
│                                      │
│                                      │
└──────────────────────────────────────┘
Dual Stack (2), jarvis.dual-stack
as it would be on Small (800×600 points)
)");
    environment[1] = "LANG=C";
    const std::string list = run({"layout", "list"}).out;
    EXPECT_EQ(list.substr(0, list.find("\n\n", 300)), R"(+-----------+-----+  Focus + Utility
|           |     |  jarvis.command-center
|           |     |  4 tiles, standard
|           +-----+  in force on Small
+-----------+     |
|           |     |
+-----------+-----+

+-----------+-----+  Compact Focus
|           |     |  jarvis.compact-16-by-9
|           +-----+  3 tiles, compact16By9
|           |     |
+-----------+-----+)");
    EXPECT_NE(list.find("  in force on A\n"), std::string::npos) << list;
}

TEST_F(CommandLine, TablesAreAlignedAndTitlesCannotControlTheTerminal) {
    desk.desktop.setTitle("Notes", "a\x1b]0;b\x07\u009b\u202E\xFF 漢字");
    desk.arrange();
    EXPECT_EQ(run({"query", "windows"}).out,
              R"(ID      APPLICATION  TILE                            FRAME              STATE      TITLE
101:16  Mail         -                               100,100 800x600    minimized  Inbox
102:32  Notes        display-UUID-OF-A::secondary-1  1291,15 1254x1382  visible    a?]0;b???� 漢字
103:48  Terminal     display-UUID-OF-A::focus-main   15,15 1254x1382    visible    Terminal
)");
    EXPECT_EQ(run({"query", "tiles"}).out,
              R"(TILE                            NAME       FRAME              STACK  WINDOW
display-UUID-OF-A::focus-main   Primary    15,15 1254x1382        1  Terminal
display-UUID-OF-A::secondary-1  Secondary  1291,15 1254x1382      1  Notes
)");
}

TEST_F(CommandLine, CharactersHaveTheWidthOfTheTerminal) {
    const std::vector<std::pair<const char*, std::size_t>> cases = {
        {"plain", 5}, {"漢字", 4}, {"⭐", 2}, {"⌚⚡", 4}, {"ที่", 1}, {"ਪੰ", 1}, {"e\u0301", 1}, {"─×…", 3}, {"😀", 2},
    };
    for (const auto& [text, columns] : cases) EXPECT_EQ(cli::columnsOf(text), columns) << text;

    // In a locale that is not UTF-8 too.
    environment[1] = "LANG=C";
    environment.emplace_back("TZ=XYZ-5");
    EXPECT_EQ(run({"scene", "capture", "⭐ ที่"}).code, 0);
    const std::string list = run({"scene", "list"}).out;
    EXPECT_EQ(list.substr(0, list.find(" ", list.find("2023"))), "NAME    CAPTURED             DISPLAYS  WINDOWS  ID\n"
                                                                 "* ⭐ ที่  2023-11-15");
}

TEST_F(CommandLine, HistoryAndDividersAreListed) {
    environment.emplace_back("TZ=XYZ-5");
    EXPECT_EQ(run({"undo"}).out, "Last window action undone\n");
    EXPECT_EQ(run({"history"}).out, "There is nothing to undo.\n");
    desk.layout("jarvis.dual-split").arrange();
    EXPECT_EQ(run({"divider", "drag", "root", "0", "-120"}).out, "The divider root 0 moved by -120 points.\n");
    EXPECT_EQ(run({"divider", "list"}).out,
              R"(SPLIT  BOUNDARY  ROOM                    FRAME            DISPLAY
root          0  -824 left, +1064 right  1154,10 12x1392  display-UUID-OF-A
)");
    EXPECT_EQ(run({"history"}).out, R"(TIME                 ACTION                 WINDOWS
2023-11-15 04:13:25  drag divider           Notes, Terminal
2023-11-15 04:13:23  arrange                Mail, Notes, Terminal
2023-11-15 04:13:20  layout Dual Split (2)  -
)");
    EXPECT_EQ(run({"zoom"}).out, "Focus Mode — Terminal owns this display\n");
    EXPECT_EQ(run({"divider", "list"}).out, "There is no divider.\n");
}

TEST_F(CommandLine, ThemesAndAccentColorsAreListedAndSelected) {
    EXPECT_EQ(run({"theme", "select", "neon"}).out, "The theme is Neon Cyan (jarvis.neon-cyan).\nStored; nothing shows "
                                                    "it, as kova-ui does not run (see “kova ui status”).\n");
    EXPECT_EQ(
        run({"theme", "background", "on"}).out,
        "The theme's background is on.\nStored; nothing shows it, as kova-ui does not run (see “kova ui status”).\n");
    EXPECT_EQ(run({"accent", "select", "AMBER"}).out,
              "The accent color is REACTOR AMBER (reactor-amber).\nStored; nothing shows it, as kova-ui does not run "
              "(see “kova ui status”).\n");
    EXPECT_EQ(run({"theme", "list"}).out,
              R"(NAME         ID                BACKGROUND  PANEL    TEXT     ACCENT
Native       kova.native       #1C1C1F     #2B2B2E  #F5F5F7  #FF9E1F
* Neon Cyan  jarvis.neon-cyan  #03080F     #081421  #E0F7FF  #FF9E1F

The theme's background is on.
The brain is off.
The backgrounds of tiles are on.
Stored; nothing shows it, as kova-ui does not run (see “kova ui status”).
)");
    const std::string accents = run({"accent", "list"}).out;
    EXPECT_NE(accents.find("* REACTOR AMBER  reactor-amber    #FF9E1F  #FFD161\n"), std::string::npos) << accents;

    // Each under its key, when it has changed, and there again at the next start.
    EXPECT_EQ(desk.preferences.string("KOVA.accentColor.v1"), "reactor-amber");
    EXPECT_EQ(desk.preferences.boolean("KOVA.useThemeBackground.v1"), true);
    EXPECT_FALSE(desk.preferences.contains("KOVA.showBrain.v1"));
    EXPECT_EQ(run({"theme", "brain", "on"}).code, 0);
    EXPECT_EQ(run({"theme", "tile-backgrounds", "off"}).code, 0);
    EXPECT_EQ(desk.preferences.boolean("KOVA.showBrain.v1"), true);
    EXPECT_EQ(desk.preferences.boolean("KOVA.showTileBackgrounds.v1"), false);
    const WorkspaceController again({desk.desktop, desk.desktop, desk.desktop, desk.desktop, desk.desktop,
                                     desk.preferences, desk.desktop.queue(), desk.desktop.pollingQueue(),
                                     desk.desktop});
    EXPECT_EQ(again.state().profile->themeID, "jarvis.neon-cyan");
    EXPECT_EQ(*again.state().accentColorID, "reactor-amber");
    EXPECT_TRUE(*again.state().useThemeBackground && *again.state().showBrain);
    EXPECT_FALSE(*again.state().showTileBackgrounds);
}

TEST_F(CommandLine, OpeningNothingStartsAnAgentUnlessOneRuns) {
    files.write("kova-agent", "#!/bin/sh\necho started $#\n");
    std::filesystem::permissions("kova-agent", std::filesystem::perms::owner_all);
    environment.push_back("PATH=" + files.path().string() + ":/bin:/usr/bin");
    EXPECT_EQ(run({"open"}).out, run({"status"}).out);
    environment[0] += ".gone";
    EXPECT_EQ(run({"open"}).out, "started 0\n");
    environment.back() = "PATH=/nowhere";
    const Result missing = run({"open"});
    EXPECT_EQ(missing.code, 3);
    EXPECT_NE(missing.err.find("kova-agent cannot be started: No such file"), std::string::npos) << missing.err;
}

TEST_F(CommandLine, SubscribersGetEachChangeUntilTheAgentEnds) {
    auto command = begin({"subscribe"});
    ASSERT_TRUE(command->waitForOutput("0  windows  3 windows\n")) << command->out;
    EXPECT_EQ(run({"arrange"}).code, 0);
    EXPECT_TRUE(command->waitForOutput("1  message  Windows arranged into zones — Undo is available\n"))
        << command->out;
    EXPECT_NE(command->out.find("1  tiles  2 of 2 tiles taken\n"), std::string::npos) << command->out;
    endServer();
    EXPECT_EQ(command->wait(), 3);
}

TEST_F(CommandLine, ScenesAndRulesAreExportedAndImported) {
    environment.emplace_back("TZ=XYZ-5");
    desk.arrange();
    EXPECT_EQ(run({"scene", "capture", "Work"}).out, "Scene “Work” captured\n");
    const std::string list = run({"scene", "list"}).out;
    EXPECT_EQ(list.substr(0, list.size() - 37), "NAME    CAPTURED             DISPLAYS  WINDOWS  ID\n"
                                                "* Work  2023-11-15 04:13:23         1        2  ");
    EXPECT_EQ(run({"rule", "add", "--app", "mail", "tile", "1"}).out,
              "Rule added for sim.mail\nRules are off; “kova rules on” lets them act.\n");
    EXPECT_EQ(run({"rule", "add", "--focused", "--title", "make", "ignore"}).code, 0);
    EXPECT_EQ(run({"rule", "list"}).out, R"(NUMBER  NAME               DOES             ENABLED  WINDOWS  FOR
     1  Mail → focus-main  tile focus-main  yes            1  sim.mail
     2  Terminal ignored   ignore           yes            0  sim.terminal, “make” in the title

Rules are off; “kova rules on” lets them act.
)");
    EXPECT_EQ(run({"rule", "change", "2", "tile", "1", "--title", ""}).out,
              "Rule “Terminal ignored”: tile focus-main, for sim.terminal\n");
    EXPECT_EQ(run({"rule", "change", "2", "--title", "make"}).code, 0);
    std::filesystem::create_directory("real");
    std::filesystem::create_symlink("real/old.json", "link.json");
    std::ofstream("real/old.json") << "old";
    std::filesystem::permissions("real/old.json", std::filesystem::perms::owner_read);
    EXPECT_NE(run({"export", "link.json"}).err.find("/real/old.json” is there already; --force overwrites it\n"),
              std::string::npos);
    EXPECT_EQ(contentsOf("link.json"), "old");
    EXPECT_EQ(run({"export", "--force", "link.json"}).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink("link.json"));
    EXPECT_EQ(std::filesystem::status("real/old.json").permissions(), std::filesystem::perms::owner_read);
    EXPECT_EQ(run({"export", "."}).out, "1 scene and 2 rules written to ./KOVA-Workspace.json\n");
    const std::string text = contentsOf("KOVA-Workspace.json");
    EXPECT_EQ(contentsOf("link.json"), text);
    EXPECT_EQ(run({"export", "/dev/stdout"}).out.substr(0, text.size()), text);
    EXPECT_EQ(run({"export", "-"}).out, text);
    std::filesystem::remove("pipe");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 3) << "no draft is left behind";

    EXPECT_EQ(run({"scene", "delete", "work"}).out, "Scene “Work” deleted\n");
    EXPECT_EQ(run({"rule", "delete", "1"}).out, "Rule “Mail → focus-main” is deleted.\n");
    RunningCommand reading(
        {"-c", KOVA_COMMAND " import - < KOVA-Workspace.json"}, environment, [this] { turn(); }, "/bin/sh");
    EXPECT_EQ(reading.wait(), 0) << reading.err;
    EXPECT_EQ(reading.out, "Imported 1 scenes and 2 rules\n");
    EXPECT_EQ(run({"scene", "diff", "Work"}).out, "Nothing differs from scene “Work”.\n");
    EXPECT_EQ(run({"rule", "move", "2", "1"}).out, "Rule “Mail → focus-main” is number 1 of 2.\n");

    files.write("binary.json", "{\"scenes\": \"\xFF\"}");
    EXPECT_EQ(run({"import", "binary.json"}).err, "Import failed: “binary.json” is not UTF-8 text\n");
    files.write("broken.json", R"({"version": 1, "scenes": [], "rules": [{"disposition": 1}]})");
    const Result broken = run({"import", "broken.json"});
    EXPECT_EQ(broken.code, 1);
    EXPECT_EQ(broken.err.substr(0, 24), "Import failed: rules[0].") << broken.err;
}

TEST_F(CommandLine, ALargeDocumentIsExportedAndImportedCompletely) {
    desk.arrange();
    EXPECT_EQ(run({"scene", "capture", std::string(1000, 'n') + "ä"}).code, 0);
    EXPECT_EQ(run({"export", "one.json"}).code, 0);
    json document = json::parse(contentsOf("one.json"));
    const json scene = document["scenes"][0];
    document["scenes"] = json::array();
    // Of odd lengths: somewhere a piece ends in the middle of a character.
    std::string filling;
    for (int i = 0; i < 1700; ++i) filling += "€";
    for (int i = 0; i < 500; ++i) {
        json copy = scene;
        std::array<char, 37> id{};
        std::snprintf(id.data(), id.size(), "00000000-0000-4000-8000-%012X", static_cast<unsigned>(i));
        copy["id"] = id.data();
        copy["name"] = "ä\n" + std::string(static_cast<std::size_t>(i % 7), 'x') + filling;
        document["scenes"].push_back(copy);
    }
    files.write("many.json", document.dump());
    ASSERT_GT(std::filesystem::file_size("many.json"), 2U << 20);
    EXPECT_EQ(run({"import", "many.json"}).out, "Imported 500 scenes and 0 rules\n");
    EXPECT_EQ(run({"export", "all.json"}).code, 0);
    const json all = json::parse(contentsOf("all.json"));
    ASSERT_EQ(all["scenes"].size(), 501u);
    EXPECT_EQ(json(std::vector<json>(all["scenes"].begin() + 1, all["scenes"].end())), document["scenes"]);
}

} // namespace kova
