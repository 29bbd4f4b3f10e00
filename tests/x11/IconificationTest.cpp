// Requests to hide and to show a window overtake each other and the server's events.
#include "platform/x11/Iconification.h"

#include <gtest/gtest.h>

#include <string>

namespace kova::x11 {
namespace {

using News = Iconification::News;
using Stage = Iconification::Stage;

/// Each letter is one step, a tenth of a second after the previous one: `l` requests to iconify, `o` to restore once it
/// is iconified, `b` to restore while mapped, `B` while unmapped, `g` gives up restoring, `x` is another manager; `m`
/// and `u` are events that it was mapped and unmapped. Without a manager `d` unmaps it with the next requests, `s`
/// sends that as request 100, and `M` and `U` are events from before that request.
struct Walk {
    Iconification window;
    News news = News::none;
    Seconds now{10};

    explicit Walk(const std::string& steps, bool isManaged) {
        for (const char step : steps) {
            now += Seconds(0.1);
            take(step, isManaged);
        }
    }
    void take(char step, bool isManaged) {
        const auto mapping = [&](bool isMapped, std::uint32_t sequence) {
            news = isManaged ? window.mappedByManager(isMapped) : window.mappedByServer(isMapped, sequence);
        };
        switch (step) {
        case 'l':
            return window.leave(now);
        case 'o':
            return window.returnOnceGone();
        case 'b':
            return window.comeBack(now, false);
        case 'B':
            return window.comeBack(now, true);
        case 'g':
            return window.stopReturning();
        case 'x':
            return window.forgetRequests();
        case 'd':
            return void(window.leaveWithNextRequests(now));
        case 's':
            return window.unmapSent(100);
        case 'a':
            return window.adoptAway();
        case 'm':
            return mapping(true, 101);
        case 'u':
            return mapping(false, 101);
        case 'M':
            return mapping(true, 99);
        case 'U':
            return mapping(false, 99);
        default:
            FAIL() << step;
        }
    }
};

TEST(Iconification, FollowsTheLastRequestUnderAWindowManager) {
    struct Case {
        const char* steps;
        Stage stage;
        News news;
        bool hasLeft, mayStillLeave, mayComeBack;
    };
    const Case cases[] = {
        {"", Stage::atRest, News::none, false, false, false},
        {"um", Stage::atRest, News::none, true, false, false}, // by hand
        {"l", Stage::leaving, News::none, false, true, false},
        {"lu", Stage::leaving, News::left, true, true, false},
        {"lub", Stage::back, News::left, true, false, true},
        {"luBm", Stage::back, News::none, true, false, true},
        {"luBml", Stage::leaving, News::none, false, true, false},
        {"luBlm", Stage::leaving, News::none, false, true, false}, // mapped late, by the request before
        {"luBlu", Stage::leaving, News::left, false, true, false}, // and unmapped before that came
        {"luBlmu", Stage::leaving, News::left, true, true, false},
        {"lo", Stage::leavingToReturn, News::none, false, true, false},
        {"lou", Stage::leavingToReturn, News::returns, true, true, false},
        {"louB", Stage::back, News::returns, true, false, true},
        {"lol", Stage::leaving, News::none, false, true, false},
        {"loul", Stage::leaving, News::returns, false, true, false}, // asked to leave again before it was brought back
        {"lolu", Stage::leaving, News::left, true, true, false},
        {"log", Stage::leaving, News::none, false, true, false},
        {"lox", Stage::atRest, News::none, false, false, false},
    };
    for (const Case& each : cases) {
        const Walk walk(each.steps, true);
        EXPECT_EQ(walk.window.stage(), each.stage) << each.steps;
        EXPECT_EQ(walk.news, each.news) << each.steps;
        EXPECT_EQ(walk.window.hasLeft(), each.hasLeft) << each.steps;
        EXPECT_EQ(walk.window.mayStillLeave(walk.now), each.mayStillLeave) << each.steps;
        EXPECT_FALSE(walk.window.mayStillLeave(walk.now + Seconds(10))) << each.steps;
        EXPECT_EQ(walk.window.mayComeBack(), each.mayComeBack) << each.steps;
        const Seconds last = walk.now - Seconds(std::string(each.steps).ends_with('B') ? 0 : 1);
        EXPECT_EQ(walk.window.isBelievedBack(last + Seconds(0.04)), each.mayComeBack) << each.steps;
        EXPECT_FALSE(walk.window.isBelievedBack(walk.now + Seconds(0.1))) << each.steps;
    }
}

TEST(Iconification, DistinguishesOwnUnmapsFromThoseOfTheProgramWithoutAManager) {
    struct Case {
        const char* steps;
        bool isPutAway;
        News news;
    };
    const Case cases[] = {
        {"u", false, News::withdrawn},
        {"m", false, News::none},
        {"d", true, News::none},
        {"dm", true, News::none}, // of before: it is about to be unmapped
        {"dsu", true, News::none},
        {"dsM", true, News::none},
        {"dsm", false, News::cameBack},
        {"dsum", false, News::cameBack},
        {"dsuB", false, News::none},
        {"dsBu", false, News::none}, // requested to return before its own unmapping was reported
        {"dsBum", false, News::none},
        {"dsuBmu", false, News::withdrawn},
        {"db", false, News::none},
        {"dbd", true, News::none},
        {"a", true, News::none},
        {"am", false, News::cameBack},
        {"dsx", false, News::none},
        {"dsxu", false, News::withdrawn},
    };
    for (const Case& each : cases) {
        const Walk walk(each.steps, false);
        EXPECT_EQ(walk.window.isPutAway(), each.isPutAway) << each.steps;
        EXPECT_EQ(walk.news, each.news) << each.steps;
    }
}

} // namespace
} // namespace kova::x11
