// Tests when a change counts as saved, even if the disk fails or another program writes the file.
#include "persistence/PreferenceKeys.h"
#include "platform/linux/FilePreferencesStore.h"
#include "platform/simulated/VirtualTime.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/resource.h>
#include <unistd.h>

#include <deque>

namespace kova {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// A work queue that runs its jobs only when the test calls `run`.
class ManualWorkQueue final : public WorkQueue {
  public:
    void post(std::function<void()> job) override { jobs.push_back(std::move(job)); }
    /// Returns the number of jobs that it ran.
    int run() {
        int done = 0;
        for (; !jobs.empty(); ++done) {
            const auto job = std::move(jobs.front());
            jobs.pop_front();
            job();
        }
        return done;
    }
    std::deque<std::function<void()>> jobs;
};

class SavingPreferences : public testing::Test {
  protected:
    fs::path folder() const { return temporary.path() / "config/kova"; }
    fs::path file() const { return folder() / "preferences.json"; }
    fs::path writePreferences(const std::string& text) const {
        return temporary.write("config/kova/preferences.json", text);
    }
    json inFile() const { return json::parse(contentsOf(file())); }
    FilePreferencesStore store() {
        return FilePreferencesStore(file(), queue, disk, [this](const std::string& text) { log += text + "\n"; });
    }
    /// Saves and runs the disk's jobs. Returns "on disk" or the problem; "none" if the save was not completed.
    std::string resultOfSaving(FilePreferencesStore& store) {
        std::string result = "none";
        store.save([&](const auto& problem) { result = problem.value_or("on disk"); });
        disk.run();
        queue.runDue();
        return result;
    }
    /// The contents of all files that were set aside or copied under a name with `word`.
    std::vector<std::string> copies(const std::string& word) const {
        std::vector<std::string> found;
        for (const auto& member : fs::directory_iterator(folder())) {
            if (member.path().filename().string().starts_with("preferences.json." + word + "-"))
                found.push_back(contentsOf(member.path()));
        }
        return found;
    }
    static std::string problemsOf(const PreferencesStore& store) {
        std::string text;
        for (const auto& problem : store.problems()) text += problem + "\n";
        return text;
    }
    /// While this object exists, no file can be opened.
    class NoDescriptors {
      public:
        NoDescriptors() {
            getrlimit(RLIMIT_NOFILE, &usual_);
            rlimit none = usual_;
            const int lowestFree = dup(STDERR_FILENO);
            close(lowestFree);
            none.rlim_cur = static_cast<rlim_t>(lowestFree);
            setrlimit(RLIMIT_NOFILE, &none);
        }
        ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &usual_); }

      private:
        rlimit usual_{};
    };

    TemporaryFolder temporary;
    VirtualMainQueue queue;
    ManualWorkQueue disk;
    std::string log;
};

TEST_F(SavingPreferences, ASaveCompletesOnceTheValuesAreOnDiskAndDoesNotBlock) {
    auto store = this->store();
    std::string results;
    const auto save = [&](const char* name) {
        store.save([&results, name](const auto& problem) { results += name + problem.value_or(""); });
    };
    store.setValue("a", true);
    save("a");
    store.setValue("b", true);
    save("b"); // while "a" is being written
    queue.runDue();
    EXPECT_EQ(results, "");
    ASSERT_EQ(disk.jobs.size(), 1U);
    disk.run();
    EXPECT_EQ(inFile(), json::parse(R"({"a":true})"));
    EXPECT_EQ(results, "") << "the result has not reached the main queue";
    queue.runDue();
    EXPECT_EQ(results, "a");
    disk.run();
    queue.runDue();
    EXPECT_EQ(results, "ab");
    EXPECT_EQ(inFile(), json::parse(R"({"a":true,"b":true})"));
    save("c");
    EXPECT_EQ(results, "abc") << "nothing is left to write";
    queue.advance(Seconds(5));
    EXPECT_TRUE(disk.jobs.empty()) << "saved values are not written again";
    store.setValueLater("later", [] { return PreferenceValue(true); });
    EXPECT_EQ(resultOfSaving(store), "on disk");
    EXPECT_TRUE(inFile().contains("later"));
    EXPECT_EQ(queue.pendingCount(), 0U);
}

TEST_F(SavingPreferences, AFailedWriteIsReportedAndRetriedUntilItSucceeds) {
    const auto obstacle = temporary.write("config", "a file where the folder should be");
    auto store = this->store();
    store.setValue("a", true);
    EXPECT_NE(resultOfSaving(store).find("cannot make the folder"), std::string::npos);
    EXPECT_NE(problemsOf(store).find("in memory only"), std::string::npos) << problemsOf(store);
    EXPECT_EQ(store.boolean("a"), true);
    EXPECT_EQ(std::ranges::count(log, '\n'), 1) << log;
    std::string tries;
    for (int second = 1; second <= 200; ++second) {
        queue.advance(Seconds(1));
        if (disk.run() > 0) tries += std::to_string(second) + " ";
        queue.runDue();
    }
    EXPECT_EQ(tries, "1 3 7 15 31 63 123 183 ");
    EXPECT_EQ(std::ranges::count(log, '\n'), 1) << "the problem is reported once";
    fs::remove(obstacle);
    queue.advance(FilePreferencesStore::kLongestRetry);
    disk.run();
    queue.runDue();
    EXPECT_EQ(inFile(), json::parse(R"({"a":true})"));
    EXPECT_EQ(problemsOf(store), "");
    EXPECT_EQ(queue.pendingCount(), 0U);
}

TEST_F(SavingPreferences, AFileCountsAsSavedOnlyAfterItsFolderIsSynced) {
    writePreferences(R"({"theirs": "1"})");
    int error = EIO, syncs = 0;
    PreferencesFile written(file(), [&](const fs::path& synced) {
        EXPECT_EQ(synced, folder());
        ++syncs;
        return error;
    });
    (void)written.load(queue.now());
    const PreferencesFile::Request request{
        .values = {{"theirs", std::string("1")}, {"ours", std::string("1")}}, .version = 1, .unusable = {}};
    writePreferences(R"({"theirs": "2"})"); // another program has changed the file
    for (int attempt = 1; attempt <= 2; ++attempt) {
        const auto failed = written.write(request, queue.now());
        EXPECT_FALSE(failed.isOnDisk);
        EXPECT_EQ(failed.problem, "cannot make sure that " + file().string() + " lasts: Input/output error");
        EXPECT_EQ(syncs, attempt);
    }
    error = 0;
    const auto done = written.write(request, queue.now());
    EXPECT_TRUE(done.isOnDisk) << done.problem;
    EXPECT_EQ(inFile(), json::parse(R"({"theirs": "2", "ours": "1"})"));
    EXPECT_EQ(syncs, 3);
    (void)written.write({.values = request.values, .version = 2, .unusable = {}}, queue.now());
    EXPECT_EQ(syncs, 3) << "nothing was written";
}

TEST_F(SavingPreferences, AFileThatCannotBeReadIsKeptAndItsValuesLaterTakePrecedence) {
    {
        // The undefined-behavior sanitizer opens a descriptor when it checks a type for the first time. This first run
        // of the same code lets the sanitizer do so while descriptors are available.
        writePreferences(R"({"both": "theirs"})");
        auto ordinary = this->store();
        ordinary.setValue("both", std::string("ours"));
        EXPECT_EQ(resultOfSaving(ordinary), "on disk");
        EXPECT_EQ(problemsOf(ordinary), "");
    }
    writePreferences(R"({"KOVA.workspaceProfile.v1": {"name": "Mine"}, "both": "theirs"})");
    std::optional<FilePreferencesStore> store;
    {
        const NoDescriptors none;
        store.emplace(file(), queue, disk);
        EXPECT_NE(problemsOf(*store).find("cannot be read now"), std::string::npos) << problemsOf(*store);
        store->setValue("KOVA.workspaceProfile.v1", PreferenceData{R"({"name": "New", "themeID": "x"})"});
        store->setValue("both", std::string("ours"));
        EXPECT_NE(resultOfSaving(*store).find("cannot be read now"), std::string::npos);
    }
    EXPECT_EQ(resultOfSaving(*store), "on disk");
    EXPECT_EQ(inFile(),
              json::parse(R"({"KOVA.workspaceProfile.v1": {"name": "Mine", "themeID": "x"}, "both": "theirs"})"));
    EXPECT_EQ(store->string("both"), "theirs");
    EXPECT_EQ(problemsOf(*store), "") << "the file can be read again";

    // An edit of the file is not lost if the agent cannot read the file at its next write.
    writePreferences(R"({"both": "edited", "new": true})");
    store->setValue("mine", true);
    {
        const NoDescriptors none;
        EXPECT_NE(resultOfSaving(*store).find("cannot be read now"), std::string::npos);
    }
    EXPECT_EQ(resultOfSaving(*store), "on disk");
    EXPECT_EQ(inFile(), json::parse(R"({"both": "edited", "mine": true, "new": true})"));
    EXPECT_TRUE(copies("damaged").empty());
}

TEST_F(SavingPreferences, AnUnusableValueIsCopiedBeforeItIsOverwritten) {
    const std::string text = R"({"good": {"n": 1}, "bad": {"n": "one"}})";
    writePreferences(text);
    auto store = this->store();
    store.noteUnusable("bad", "n: expected a number");
    store.noteUnusable("bad", "n: expected a number");
    EXPECT_EQ(problemsOf(store),
              "bad is not used as stored: n: expected a number. A copy will be kept before it is overwritten\n");
    EXPECT_EQ(log, problemsOf(store));
    store.setValue("good", PreferenceData{R"({"n":2})"});
    EXPECT_EQ(resultOfSaving(store), "on disk");
    EXPECT_EQ(inFile()["bad"]["n"], "one");
    EXPECT_TRUE(copies("damaged").empty());
    const std::string before = contentsOf(file());
    for (const char* value : {R"({"n":1})", R"({"n":3})"}) {
        store.setValue("bad", PreferenceData{value});
        EXPECT_EQ(resultOfSaving(store), "on disk");
    }
    EXPECT_EQ(copies("damaged"), std::vector{before}) << "one copy is made";
    EXPECT_NE(problemsOf(store).find("What was stored is kept as " + file().string() + ".damaged-"), std::string::npos)
        << problemsOf(store);

    // When no copy can be kept, nothing is overwritten.
    store.noteUnusable("good", "n: too small");
    store.setValue("good", PreferenceData{"7"});
    {
        const NoDescriptors none;
        EXPECT_NE(resultOfSaving(store).find("no copy"), std::string::npos);
    }
    EXPECT_EQ(inFile()["good"]["n"], 2);
}

TEST_F(SavingPreferences, ADamagedFileBehindALinkKeepsItsName) {
    const auto foreign = temporary.write("home/.bashrc", "alias ll=ls");
    fs::create_directories(folder());
    fs::create_symlink(foreign, file());
    auto store = this->store();
    store.setValue("a", true);
    EXPECT_EQ(resultOfSaving(store), "on disk");
    EXPECT_EQ(contentsOf(foreign), "alias ll=ls");
    EXPECT_EQ(inFile(), json::parse(R"({"a":true})"));
    EXPECT_EQ(copies("damaged"), std::vector<std::string>{"alias ll=ls"})
        << "the link itself must be set aside, not its target";
}

TEST_F(SavingPreferences, TwoAgentsKeepEachOthersAdditions) {
    auto first = this->store(), second = this->store();
    const std::string product(preferenceKey::workspaceProduct), profile(preferenceKey::workspaceProfile),
        session(preferenceKey::workspaceSession);
    for (int i = 1; i <= 12; ++i) {
        for (auto* agent : {&first, &second}) {
            const std::string name = agent == &first ? "first" : "second";
            json scenes = json::array(), selections = json::object();
            for (int scene = 1; scene <= i; ++scene) {
                scenes.push_back({{"id", name + std::to_string(scene)}});
                selections["display of " + name + std::to_string(scene)] = scene;
            }
            agent->setValue(
                product, PreferenceData{json{{"scenes", scenes}, {"activeSceneID", name + std::to_string(i)}}.dump()});
            agent->setValue(profile,
                            PreferenceData{json{{"id", name}, {"layoutSelectionsByDisplay", selections}}.dump()});
            agent->setValue(session, PreferenceData{json{{"windows", {name, i}}}.dump()});
            agent->setValue(name, std::to_string(i));
            ASSERT_EQ(resultOfSaving(*agent), "on disk");
        }
    }
    EXPECT_EQ(inFile()[product]["scenes"].size(), 24U);
    EXPECT_EQ(inFile()[profile]["layoutSelectionsByDisplay"].size(), 24U);
    EXPECT_EQ(inFile()[session], json::parse(R"({"windows": ["second", 12]})"));
    EXPECT_EQ(inFile()["first"], "12");
    EXPECT_EQ(copies("edited").size() + copies("damaged").size(), 0U);
    EXPECT_EQ(log, "");

    // One agent removes one of its scenes, and then the other agent writes. The scene stays removed.
    json scenes = json::array();
    for (int scene = 2; scene <= 12; ++scene) scenes.push_back({{"id", "first" + std::to_string(scene)}});
    first.setValue(product, PreferenceData{json{{"scenes", scenes}}.dump()});
    ASSERT_EQ(resultOfSaving(first), "on disk");
    second.setValue("more", true);
    ASSERT_EQ(resultOfSaving(second), "on disk");
    EXPECT_EQ(inFile()[product]["scenes"].size(), 23U);
}

TEST_F(SavingPreferences, AnEditWithinARecordIsMergedWithTheAgentsChanges) {
    const std::string profile(preferenceKey::workspaceProfile);
    writePreferences(json{{profile, {{"tileInset", 5}, {"name", "Mine"}, {"themeID", "a"}}}}.dump());
    auto store = this->store();
    writePreferences(json{{profile, {{"tileInset", 5}, {"name", "Edited"}, {"themeID", "a"}}}}.dump());
    for (const int inset : {7, 8}) { // the records that the agent sets never contain the edit
        store.setValue(profile, PreferenceData{json{{"tileInset", inset}, {"name", "Mine"}, {"themeID", "a"}}.dump()});
        ASSERT_EQ(resultOfSaving(store), "on disk");
        EXPECT_EQ(inFile()[profile],
                  json::parse(R"({"tileInset": )" + std::to_string(inset) + R"(, "name": "Edited", "themeID": "a"})"));
    }
    EXPECT_TRUE(copies("edited").empty());
    const std::string edited = json{{profile, {{"tileInset", 9}, {"name", "Edited"}, {"themeID", "a"}}}}.dump();
    writePreferences(edited);
    store.setValue(profile, PreferenceData{R"({"tileInset":10,"name":"Mine","themeID":"a"})"});
    ASSERT_EQ(resultOfSaving(store), "on disk");
    EXPECT_EQ(inFile()[profile]["tileInset"], 10);
    EXPECT_EQ(copies("edited"), std::vector{edited});
    EXPECT_NE(log.find(profile + ".tileInset also changed here"), std::string::npos) << log;
}

} // namespace
} // namespace kova
