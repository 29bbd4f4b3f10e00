#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/EventLoop.h"
#include "platform/linux/SerialWorkQueue.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <thread>

namespace kova {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Runs each job at once, inside `post`.
class ImmediateWorkQueue final : public WorkQueue {
  public:
    void post(std::function<void()> job) override { job(); }
};

/// A home folder in which the stores of one test keep their preference file.
class Home {
  public:
    fs::path folder() const { return temporary_.path() / "config/kova"; }
    fs::path file() const { return folder() / "preferences.json"; }
    fs::path writePreferences(const std::string& text) const {
        return temporary_.write("config/kova/preferences.json", text);
    }
    FilePreferencesStore store() { return FilePreferencesStore(file(), loop_, disk_); }
    /// Runs the loop until all changes have been written.
    void waitForWrite() {
        loop_.after(FilePreferencesStore::kGatheringTime + 100ms, [this] { loop_.quit(0); });
        loop_.run();
    }
    /// The contents of the file that was set aside under a name with `word`. If there is not exactly one such file, the
    /// number of such files.
    std::string setAside(const std::string& word) const {
        std::vector<fs::path> found;
        for (const auto& member : fs::directory_iterator(folder())) {
            if (member.path().filename().string().starts_with("preferences.json." + word + "-"))
                found.push_back(member);
        }
        return found.size() == 1 ? contentsOf(found.front()) : std::to_string(found.size()) + " files";
    }
    const TemporaryFolder& temporary() const { return temporary_; }

  private:
    TemporaryFolder temporary_;
    EventLoop loop_;
    ImmediateWorkQueue disk_;
};

/// All problems of the store, one per line.
std::string problemsOf(const PreferencesStore& store) {
    std::string text;
    for (const auto& problem : store.problems()) text += problem + "\n";
    return text;
}

int permissionsOf(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : -1;
}

ino_t inodeOf(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

TEST(FilePreferencesStore, KeepsTypedValuesInAReadableFile) {
    Home home;
    {
        auto store = home.store();
        EXPECT_FALSE(store.contains("KOVA.showBrain.v1"));
        store.synchronize();
        EXPECT_FALSE(fs::exists(home.folder())); // without a value no file is made
        store.setValue("KOVA.showBrain.v1", false);
        store.setValue("KOVA.accentColor.v1", std::string("caf\xc3\xa9 \"\\\n"));
        store.setValue("KOVA.workspaceProfile.v1", PreferenceData{R"({"z":[1,2.50,1e300],"a":{"b":null}})"});
        store.setValue("KOVA.removed.v1", true);
        store.removeValue("KOVA.removed.v1");
        store.synchronize();
        EXPECT_EQ(problemsOf(store), "");
    }
    EXPECT_EQ(contentsOf(home.file()), R"({
  "KOVA.accentColor.v1": "café \"\\\n",
  "KOVA.showBrain.v1": false,
  "KOVA.workspaceProfile.v1": {
    "a": {
      "b": null
    },
    "z": [
      1,
      2.5,
      1e+300
    ]
  }
}
)");
    EXPECT_EQ(permissionsOf(home.file()), 0600);
    EXPECT_EQ(permissionsOf(home.folder()), 0700);
    const auto store = home.store();
    EXPECT_EQ(store.boolean("KOVA.showBrain.v1"), false);
    EXPECT_EQ(store.string("KOVA.accentColor.v1"), "caf\xc3\xa9 \"\\\n");
    EXPECT_EQ(store.boolean("KOVA.accentColor.v1"), std::nullopt); // a value of another type counts as absent
    const auto record = store.data("KOVA.workspaceProfile.v1");
    ASSERT_TRUE(record);
    EXPECT_EQ(nlohmann::json::parse(record->json), nlohmann::json::parse(R"({"z":[1,2.5,1e300],"a":{"b":null}})"));
}

TEST(FilePreferencesStore, ChangesAreWrittenTogetherAndUnknownKeysAreKept) {
    Home home;
    home.writePreferences(R"({"later.v9": [1, {"x": 2}], "number": 3, "nothing": null, "KOVA.showBrain.v1": true})");
    auto store = home.store();
    EXPECT_FALSE(store.contains("nothing"));
    for (int i = 0; i < 100; ++i) store.setValue("KOVA.accentColor.v1", std::to_string(i));
    store.setValue("broken", PreferenceData{"{"});                        // not JSON, so not written
    EXPECT_EQ(contentsOf(home.file()).find("accent"), std::string::npos); // `setValue` does not wait for the write
    home.waitForWrite();
    const auto written = nlohmann::json::parse(contentsOf(home.file()));
    EXPECT_EQ(written, nlohmann::json::parse(R"({"later.v9": [1, {"x": 2}], "number": 3, "nothing": null,
                                                 "KOVA.showBrain.v1": true, "KOVA.accentColor.v1": "99"})"));
    const auto before = inodeOf(home.file());
    store.setValue("KOVA.accentColor.v1", std::string("99"));
    home.waitForWrite();
    store.synchronize();
    EXPECT_EQ(inodeOf(home.file()), before); // writing the same value again is no change
}

TEST(FilePreferencesStore, ADeferredValueIsMadeOnlyWhenItIsReadOrWritten) {
    Home home;
    auto store = home.store();
    int made = 0;
    const auto deferred = [&made](const char* text) {
        return [&made, text]() -> PreferenceValue { return ++made, std::string(text); };
    };
    const auto accentInFile = [&] { return nlohmann::json::parse(contentsOf(home.file()))["KOVA.accentColor.v1"]; };
    store.setValueLater("KOVA.accentColor.v1", deferred("replaced"));
    store.setValueLater("KOVA.accentColor.v1", deferred("green"));
    EXPECT_EQ(made, 0);
    EXPECT_EQ(store.string("KOVA.accentColor.v1"), "green") << "a read makes the value before it is written";
    home.waitForWrite();
    EXPECT_EQ(accentInFile(), "green");

    made = 0;
    store.setValueLater("KOVA.accentColor.v1", deferred("replaced"));
    store.setValue("KOVA.accentColor.v1", std::string("red"));
    store.setValueLater("other", deferred("removed"));
    store.removeValue("other");
    store.synchronize();
    EXPECT_EQ(made, 0);
    EXPECT_EQ(accentInFile(), "red");
    EXPECT_FALSE(nlohmann::json::parse(contentsOf(home.file())).contains("other"));
    store.setValueLater("KOVA.accentColor.v1", deferred("blue"));
    store.synchronize();
    EXPECT_EQ(accentInFile(), "blue");
}

TEST(FilePreferencesStore, SetsAsideADamagedFile) {
    const std::vector<std::string> unreadable = {"",
                                                 "{",
                                                 "[]",
                                                 "{\"a\": 1,}",
                                                 "{\"a\": \"\xff\"}",
                                                 std::string(100000, '['),
                                                 "{\"a\":" + std::string(100, '[') + std::string(100, ']') + "}"};
    for (const auto& text : unreadable) {
        Home home;
        home.writePreferences(text);
        auto store = home.store();
        EXPECT_NE(problemsOf(store).find("set aside as"), std::string::npos) << text.substr(0, 20);
        EXPECT_FALSE(fs::exists(home.file()));
        store.setValue("a", true);
        store.synchronize();
        EXPECT_EQ(home.setAside("damaged"), text);
        EXPECT_EQ(home.store().boolean("a"), true);
    }
    Home home;
    fs::create_directories(home.file() / "a folder in place of the file");
    auto store = home.store();
    store.setValue("a", true);
    store.synchronize();
    EXPECT_EQ(home.store().boolean("a"), true);
}

TEST(FilePreferencesStore, WritesNothingWhenTheDamagedFileCannotBeSetAside) {
    const std::pair<fs::perms, const char*> cases[] = {
        {fs::perms::owner_read | fs::perms::owner_exec, "not be set aside"}, {fs::perms::none, "cannot be read now"}};
    for (const auto& [allowed, expected] : cases) {
        Home home;
        home.writePreferences("precious, but broken");
        // A child process without root's privileges uses the store, since permissions do not restrict root.
        const pid_t child = fork();
        if (child == 0) {
            fs::permissions(home.temporary().path(), fs::perms::all);
            fs::permissions(home.temporary().path() / "config", fs::perms::all);
            fs::permissions(home.file(), fs::perms::all);
            fs::permissions(home.folder(), allowed);
            if (getuid() == 0 && (chown(home.folder().c_str(), 65534, 65534) != 0 || setuid(65534) != 0)) _exit(2);
            auto store = home.store();
            store.setValue("a", true);
            store.synchronize();
            store.synchronize();
            _exit(problemsOf(store).find(expected) != std::string::npos ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(WEXITSTATUS(status), 0) << expected;
        fs::permissions(home.folder(), fs::perms::owner_all);
        EXPECT_EQ(contentsOf(home.file()), "precious, but broken");
        EXPECT_EQ(std::distance(fs::directory_iterator(home.folder()), fs::directory_iterator()), 1);
    }
}

TEST(FilePreferencesStore, AnEditOfTheUserIsMergedWithTheAgentsChanges) {
    Home home;
    home.writePreferences(R"({"mine": "1", "theirs": "1", "both": "1", "removed": true, "same": "1"})");
    auto store = home.store();
    store.setValue("mine", std::string("2"));
    store.setValue("same", std::string("2"));
    home.writePreferences(R"({"mine": "1", "theirs": "3", "both": "1", "new": "3", "same": "2"})");
    store.synchronize();
    EXPECT_EQ(nlohmann::json::parse(contentsOf(home.file())),
              nlohmann::json::parse(R"({"mine": "2", "theirs": "3", "both": "1", "new": "3", "same": "2"})"));
    EXPECT_EQ(store.string("theirs"), "3");
    EXPECT_EQ(store.string("new"), "3");
    EXPECT_FALSE(store.contains("removed"));
    EXPECT_EQ(problemsOf(store), "");

    // Both the user and the agent changed one key: the agent's value is newer, and the edited file is kept as a copy.
    const std::string edited = R"({"mine": "2", "theirs": "3", "both": "4", "new": "3", "same": "2"})";
    store.setValue("both", std::string("5"));
    home.writePreferences(edited);
    home.waitForWrite();
    EXPECT_EQ(home.setAside("edited"), edited);
    EXPECT_NE(problemsOf(store).find("both"), std::string::npos);
    EXPECT_EQ(home.store().string("both"), "5");

    // The preferences survive a file that was emptied by accident, and one that was removed.
    home.writePreferences("");
    store.setValue("mine", std::string("6"));
    home.waitForWrite();
    EXPECT_EQ(home.setAside("damaged"), "");
    EXPECT_EQ(home.store().string("both"), "5");
    fs::remove(home.file());
    store.synchronize();
    EXPECT_EQ(home.store().string("both"), "5");

    // A file in the user's own formatting is not rewritten until the agent has a change.
    home.writePreferences(R"({"mine":"7"})");
    store.synchronize();
    EXPECT_EQ(contentsOf(home.file()), R"({"mine":"7"})");
    EXPECT_EQ(store.string("mine"), "7");
    store.setValue("ours", true);
    store.synchronize();
    EXPECT_EQ(nlohmann::json::parse(contentsOf(home.file())), nlohmann::json::parse(R"({"mine": "7", "ours": true})"));
}

TEST(FilePreferencesStore, WritesThroughALink) {
    Home home;
    const auto real = home.temporary().write("dotfiles/kova.json", R"({"a": false})");
    fs::create_directories(home.folder());
    fs::create_symlink("../../dotfiles/kova.json", home.file());
    {
        auto store = home.store();
        store.setValue("a", true);
        store.synchronize();
    }
    EXPECT_TRUE(fs::is_symlink(home.file()));
    EXPECT_EQ(nlohmann::json::parse(contentsOf(real))["a"], true);
    fs::remove(real);
    auto store = home.store(); // the link points to nothing: its target is created again
    store.setValue("a", false);
    store.synchronize();
    EXPECT_EQ(nlohmann::json::parse(contentsOf(real))["a"], false);
    fs::remove(home.file());
    fs::create_symlink("preferences.json", home.file());
    store.setValue("a", true);
    store.synchronize();
    EXPECT_NE(problemsOf(store), "");
}

TEST(FilePreferencesStore, AFileThatIsTooLargeToBeReadIsNotWritten) {
    Home home;
    auto store = home.store();
    store.setValue("a", true);
    store.synchronize();
    store.setValue("b", std::string(std::size_t{96} << 20, 'b'));
    store.synchronize();
    EXPECT_NE(problemsOf(store).find("too large"), std::string::npos) << problemsOf(store);
    EXPECT_EQ(home.store().boolean("a"), true);
}

TEST(FilePreferencesStore, TheLastValueIsKeptWhenWritesOfTheWorkerAndOfTheMainThreadOverlap) {
    TemporaryFolder folder;
    const auto file = folder.path() / "kova/preferences.json";
    EventLoop loop;
    SerialWorkQueue disk("disk");
    {
        FilePreferencesStore store(file, loop, disk);
        for (int round = 0; round < 20; ++round) {
            loop.after(round * 110ms, [&store, round] {
                store.setValue("round", std::to_string(round));
                if (round % 3 == 0) store.synchronize(); // competes with the worker; the newer value must remain
            });
        }
        loop.after(2.3s, [&] { loop.quit(0); });
        loop.run();
        store.synchronize();
        store.setValue("round", std::string("not written before the store is destroyed"));
    }
    FilePreferencesStore reopened(file, loop, disk);
    EXPECT_EQ(reopened.string("round"), "19");
}

/// Writes preferences of changing size until the process is killed.
[[noreturn]] void writeForever(const fs::path& file, int first) {
    EventLoop loop;
    ImmediateWorkQueue disk;
    FilePreferencesStore store(file, loop, disk);
    for (int i = first;; ++i) {
        store.setValue("text", std::string(static_cast<std::size_t>(i * 7919 % 200000), 'x'));
        store.setValue("length", std::to_string(i * 7919 % 200000));
        store.synchronize();
        if (!store.problems().empty()) _exit(1);
    }
}

TEST(FilePreferencesStore, TheFileIsCompleteWheneverTheWriterIsKilled) {
    Home home;
    home.writePreferences(R"({"length": "0", "text": ""})");
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> microseconds(0, 10000);
    std::set<std::string> lengths;
    for (int round = 0; round < 60; ++round) {
        const pid_t child = fork();
        if (child == 0) writeForever(home.file(), round * 97 + 1);
        // A new inode shows that the child has replaced the file, and so has begun to write.
        const auto before = inodeOf(home.file());
        for (int i = 0; i < 5000 && inodeOf(home.file()) == before; ++i) std::this_thread::sleep_for(1ms);
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        auto store = home.store();
        ASSERT_EQ(problemsOf(store), "");
        ASSERT_EQ(std::to_string(store.string("text")->size()), *store.string("length"));
        lengths.insert(*store.string("length"));
    }
    EXPECT_GT(lengths.size(), 30U) << "the writers were not killed at different moments";
    // The temporary files of the killed processes have been removed.
    EXPECT_EQ(std::distance(fs::directory_iterator(home.folder()), fs::directory_iterator()), 1);
}

} // namespace
} // namespace kova
