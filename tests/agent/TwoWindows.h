// A session with an agent, two windows and a layout of two tiles. Each test runs with and without a window manager.
#pragma once

#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <string>

namespace kova::testing {

class TwoWindows : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        if (isManaged()) server_.startManager();
        left_ = client_.open({.title = "Left"});
        right_ = client_.open({.title = "Right", .frame = makeRect(700, 60, 400, 300)});
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
        ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 2; }));
        ASSERT_EQ(session_.kova({"layout", "select", "jarvis.dual-split"}).exitCode, 0);
    }
    bool isManaged() const { return GetParam() == Manager::openbox; }

    PrivateServer server_{"1280x800"};
    Session session_{server_.folder(), server_.displayName()};
    TestClient client_{server_.displayName(), "Drawing", static_cast<std::uint32_t>(getpid())};
    xcb_window_t left_ = 0, right_ = 0;
};

} // namespace kova::testing
