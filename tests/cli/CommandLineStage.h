// A whole agent on the simulated desktop, and runs of `kova` that connect to the agent.
#pragma once

#include "tests/cli/CommandRun.h"
#include "tests/control/AgentStage.h"
#include "windowing/KeyCodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace kova {

class CommandLine : public testing::Test, public AgentStage {
  protected:
    struct Result {
        int code;
        std::string out, err;
    };
    std::unique_ptr<RunningCommand> begin(const std::vector<std::string>& words) {
        return std::make_unique<RunningCommand>(words, environment, [this] { runAgentOnce(); });
    }
    Result run(const std::vector<std::string>& words) {
        auto command = begin(words);
        pressRecordedKey(words);
        const int code = command->wait();
        return {code, command->out, command->err};
    }

    /// If the command records a shortcut, waits until the recording begins and presses a key combination.
    void pressRecordedKey(const std::vector<std::string>& words) {
        const auto has = [&](const char* word) { return std::ranges::find(words, word) != words.end(); };
        if (!has("record") || has("help") || has("--help")) return;
        EXPECT_TRUE(waitUntil([this] { runAgentOnce(); }, [this] { return *shortcuts.isRecording; }));
        desk.desktop.keyboard().press(keyCode::g, modifierFlag::control | modifierFlag::option);
    }

    /// Makes `files` the current folder, to which commands write their files.
    void SetUp() override {
        std::filesystem::current_path(files.path());
        for (const char* home : {"HOME=", "XDG_STATE_HOME="}) environment.push_back(home + state.path().string());
        state.write(kLogFolder + "agent.log", "2024-02-29 12:34:56.789 info: workspace started\n"
                                              "2024-02-29 12:34:57.000 warning: it rains\n");
    }
    void TearDown() override { std::filesystem::current_path("/"); }

    TemporaryFolder files, state;
    std::vector<std::string> environment{"KOVA_SOCKET=" + socketPath(), "LANG=C.UTF-8"};
};

} // namespace kova
