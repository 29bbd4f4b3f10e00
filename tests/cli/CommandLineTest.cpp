// The real `kova` against a whole agent on the simulated desktop.
#include "cli/Terminal.h"
#include "cli/Verbs.h"
#include "tests/cli/CommandLineStage.h"
#include "tests/control/JsonSchema.h"

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

/// Splits the command into words as a shell does; leaves out the first word.
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

TEST_F(CommandLine, ReadsNotificationsThatArriveBeforeTheResponse) {
    struct NotifiesFirst final : ControlHandling {
        void handle(const ControlRequest&, const std::shared_ptr<ControlPeer>& peer,
                    ControlResponder respond) override {
            json shortcut = {{"action", "undo"}, {"title", "Undo"},     {"keys", "Ctrl+Z"},
                             {"label", "Z"},     {"conflict", nullptr}, {"isHeldByOther", true}};
            const json notification = {{"jsonrpc", "2.0"}, {"method", "claimed"}, {"params", {{"shortcut", shortcut}}}};
            peer->send(notification.dump());
            shortcut["isHeldByOther"] = false;
            respond(json{{"shortcut", shortcut}});
        }
    } other;
    endServer();
    ControlServer otherServer(std::get<AgentClaim>(AgentClaim::take({socketPath(), true})), desk.desktop.queue(),
                              other);
    ASSERT_EQ(otherServer.start(), std::nullopt);
    otherServer.serve();
    auto command = begin({"shortcut", "set", "undo", "ctrl+z"});
    EXPECT_EQ(command->wait(), 0) << command->err;
    EXPECT_NE(command->out.find("another program"), std::string::npos) << command->out;
}

TEST_F(CommandLine, ReportsAnErrorIfAnAgentOfAnotherVersionRespondsInAnotherForm) {
    struct OtherVersion final : ControlHandling {
        void handle(const ControlRequest&, const std::shared_ptr<ControlPeer>&, ControlResponder respond) override {
            respond(json::object());
        }
    } other;
    endServer();
    ControlServer otherServer(std::get<AgentClaim>(AgentClaim::take({socketPath(), true})), desk.desktop.queue(),
                              other);
    ASSERT_EQ(otherServer.start(), std::nullopt);
    otherServer.serve();
    for (const Words& words : {Words{"status"}, {"layout", "list"}, {"shortcut", "record", "undo"}, {"subscribe"}}) {
        auto command = begin(words);
        EXPECT_EQ(command->wait(), 1) << words[0];
        EXPECT_NE(command->err.find("Unexpected response from the agent"), std::string::npos)
            << words[0] << ": " << command->err;
    }
    const auto checked = run({"doctor"});
    EXPECT_EQ(checked.code, 1);
    EXPECT_NE(checked.out.find("The agent has another version"), std::string::npos) << checked.out << checked.err;
    EXPECT_EQ(run({"bugreport", "report.txt"}).code, 0);
    for (const cli::Verb& verb : cli::verbs()) {
        if (!verb.print) continue;
        EXPECT_THROW((void)verb.print(json::object(), {}), json::exception) << verb.name;
    }
}

} // namespace

TEST_F(CommandLine, EveryExampleInTheHelpAndTheReadmeWorks) {
    std::vector<std::string> examples;
    for (const cli::Verb& verb : cli::verbs()) {
        EXPECT_FALSE(verb.examples.empty()) << verb.name;
        for (const auto& example : linesOf(verb.examples)) examples.push_back(example);
    }
    examples.emplace_back("kova layout select dual-split"); // the examples of the verbs selected other layouts
    if (std::filesystem::exists(KOVA_README)) {
        for (const auto& line : documentedLines(KOVA_README, "sh", "kova ")) examples.push_back("kova " + line);
    }
    ASSERT_GT(examples.size(), 30u);
    auto drawing = client(); // “ui show” needs a client
    drawing.request(kSubscribeToOverlay);
    for (const auto& example : examples) {
        const Words words = wordsOf(example);
        reopen();
        // The arrangement may have put the focused window into a tile that has no neighbor in this direction.
        if (example == "kova focus right") (void)run({"swap", "1"});
        if (example == "kova focus left") (void)run({"swap", "2"});
        auto command = begin(words);
        if (words[0] == "subscribe") {
            EXPECT_TRUE(command->waitForOutput("windows")) << example;
            continue;
        }
        pressRecordedKey(words);
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
    EXPECT_EQ(json::parse(run({"help", "--json"}).out).at("verbs").size(), cli::verbs().size());
    EXPECT_EQ(json::parse(run({"--json", "layout", "help"}).out).at("verbs").at(0).at("name"), "layout list");
    EXPECT_TRUE(json::parse(run({"--version", "--json"}).out).at("version").is_string());
    auto drawing = client(); // “ui show” needs a client
    drawing.request(kSubscribeToOverlay);
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

        const json record = json::parse(run(wordsOf("kova help " + name + " --json")).out).at("verb");
        EXPECT_EQ(record.at("name"), name);
        EXPECT_EQ(record.at("examples").size(), linesOf(verb.examples).size());
        words.emplace_back("--json");
        EXPECT_EQ(json::parse(run(words).out).at("verb"), record);

        if (verb.name == "subscribe" || verb.method.empty()) continue;
        words = wordsOf(linesOf(verb.examples).front());
        words.insert(words.begin(), "--json");
        reopen();
        const Result asJson = run(words);
        EXPECT_EQ(asJson.code, 0) << asJson.err;
        EXPECT_EQ(schemaViolation(schema, "result:" + std::string(verb.method), json::parse(asJson.out)), "");
    }
}

TEST_F(CommandLine, EachErrorHasItsExitCode) {
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
        {{"--json"}, 2, "\"choices\": [\n      \"arrange\""},
        {{"layout", "--json"}, 2, "\"choices\": [\n      \"list\""},
        {{"zoom", "--widow", "--json"}, 2, "\"choices\": [\n      \"--window\""},
        {{"stack", "first", "--json"}, 2, "\"choices\": [\n      \"next\",\n      \"previous\""},
        {{"--json", "focus"}, 2, "\"choices\": [\n      \"left\""},
        {{"focus", "lft"}, 2, "“lft” is not left, right, up or down. Did you mean “left”?"},
        {{"swap", "lft"}, 1, "There is no direction or tile “lft”. Did you mean “left”?"},
        {{"layout"}, 2, "layout reset-sizes"},
        {{"layout", "turn"}, 2, "There is no “layout turn”"},
        {{"layout", "select"}, 2, "LAYOUT is missing"},
        {{"layout", "select", ""}, 2, "must not be empty"},
        {{"layout", "inset", "5", "6"}, 2, "“6” is a word too many"},
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
        {{"theme", "background", "on", "off"}, 2, "“off” is a word too many"},
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
    const Result diagnosed = run({"doctor"});
    EXPECT_EQ(diagnosed.code, 1);
    EXPECT_NE(diagnosed.out.find("permission   wrong "), std::string::npos) << diagnosed.out;

    environment[0] = "KOVA_SOCKET=" + socketPath() + ".missing";
    const Result withoutAgent = run({"arrange"});
    EXPECT_EQ(withoutAgent.code, 3);
    EXPECT_NE(withoutAgent.err.find("Start it with “kova-agent”"), std::string::npos);
    EXPECT_EQ(run({"open", "kova://action/arrange"}).code, 3);
    EXPECT_EQ(run({"doctor"}).code, 1);
}

TEST_F(CommandLine, NamesThatAreNearlyRightAreSuggested) {
    desk.arrange();
    EXPECT_EQ(run({"scene", "capture", "Work"}).code, 0);
    const std::string learned = json::parse(run({"app", "learned", "--json"}).out)["applications"][0]["name"];
    const Result application = run({"app", "forget", learned + "m", "--json"});
    const json error = json::parse(application.err)["error"];
    EXPECT_NE(error["message"].get<std::string>().find("m”. Did you mean “" + learned + "”?"), std::string::npos);
    EXPECT_EQ(error["choices"][0], learned);
    EXPECT_NE(run({"scene", "open", "Wrok"}).err.find("no scene “Wrok”. Did you mean “Work”? There is:"),
              std::string::npos);
}

TEST_F(CommandLine, OutputThatCannotBeWrittenIsAnError) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no file that is always full";
    for (const char* verb : {"status", "doctor", "log", "help", "layout list --json"}) {
        RunningCommand command(
            {"-c", std::string(KOVA_COMMAND " ") + verb + " > /dev/full"}, environment, [this] { runAgentOnce(); },
            "/bin/sh");
        EXPECT_EQ(command.wait(), 1) << verb;
        EXPECT_NE(command.err.find("cannot write to standard output: "), std::string::npos) << verb << command.err;
    }
}

TEST_F(CommandLine, OpenWithoutAURLStartsAnAgentUnlessOneRuns) {
    files.write("kova-agent", "#!/bin/sh\necho started $#\n");
    std::filesystem::permissions("kova-agent", std::filesystem::perms::owner_all);
    environment.push_back("PATH=" + files.path().string() + ":/bin:/usr/bin");
    EXPECT_EQ(run({"open"}).out, run({"status"}).out);
    environment[0] += ".missing";
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
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 3) << "no temporary file is left";

    EXPECT_EQ(run({"scene", "delete", "work"}).out, "Scene “Work” deleted\n");
    EXPECT_EQ(run({"rule", "delete", "1"}).out, "Rule “Mail → focus-main” is deleted.\n");
    RunningCommand reading(
        {"-c", KOVA_COMMAND " import - < KOVA-Workspace.json"}, environment, [this] { runAgentOnce(); }, "/bin/sh");
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
    // The names have different lengths, so that some piece of the document ends in the middle of a character.
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
