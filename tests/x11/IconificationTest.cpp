// Requests to minimize and to restore a window overlap with each other and with the server's events.
#include "platform/x11/Iconification.h"

#include <gtest/gtest.h>

#include <string>

namespace kova::x11 {
namespace {

using MappingChange = Iconification::MappingChange;
using Stage = Iconification::Stage;

/// Each letter is one step, a tenth of a second after the previous step. Requests: `l` minimize, `o` restore once
/// minimized, `b` restore while mapped, `B` restore while unmapped, `g` cancel restoring; `x` changes the window
/// manager. Events: `m` mapped, `u` unmapped. Without a window manager: `d` schedules unmapping, `s` sends that as
/// request 100, `M` and `U` are events from before that request, `a` adopts an unmapped window.
struct Steps {
    Iconification window;
    MappingChange change = MappingChange::none;
    Seconds now{10};

    explicit Steps(const std::string& steps, bool isManaged) {
        for (const char step : steps) {
            now += Seconds(0.1);
            take(step, isManaged);
        }
    }
    void take(char step, bool isManaged) {
        const auto mapping = [&](bool isMapped, std::uint32_t sequence) {
            change = isManaged ? window.mappingChangedUnderManager(isMapped)
                               : window.mappingChangedWithoutManager(isMapped, sequence);
        };
        switch (step) {
        case 'l':
            return window.noteMinimizeRequest(now);
        case 'o':
            return window.restoreOnceMinimized();
        case 'b':
            return window.noteRestoreRequest(now, false);
        case 'B':
            return window.noteRestoreRequest(now, true);
        case 'g':
            return window.cancelRestore();
        case 'x':
            return window.forgetRequests();
        case 'd':
            return void(window.scheduleUnmap(now));
        case 's':
            return window.unmapSent(100);
        case 'a':
            return window.adoptUnmapped();
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
        MappingChange change;
        bool wasUnmapped, mayStillMinimize, isRestoreRequested;
    };
    const Case cases[] = {
        {"", Stage::idle, MappingChange::none, false, false, false},
        {"um", Stage::idle, MappingChange::none, true, false, false}, // the user minimizes and restores it
        {"l", Stage::minimizing, MappingChange::none, false, true, false},
        {"lu", Stage::minimizing, MappingChange::minimized, true, true, false},
        {"lub", Stage::restoring, MappingChange::minimized, true, false, true},
        {"luBm", Stage::restoring, MappingChange::none, true, false, true},
        {"luBml", Stage::minimizing, MappingChange::none, false, true, false},
        {"luBlm", Stage::minimizing, MappingChange::none, false, true, false}, // mapped late, by the earlier request
        {"luBlu", Stage::minimizing, MappingChange::minimized, false, true,
         false}, // unmapped before the map event arrived
        {"luBlmu", Stage::minimizing, MappingChange::minimized, true, true, false},
        {"lo", Stage::minimizingThenRestoring, MappingChange::none, false, true, false},
        {"lou", Stage::minimizingThenRestoring, MappingChange::restoreDue, true, true, false},
        {"louB", Stage::restoring, MappingChange::restoreDue, true, false, true},
        {"lol", Stage::minimizing, MappingChange::none, false, true, false},
        {"loul", Stage::minimizing, MappingChange::restoreDue, false, true,
         false}, // minimizing requested again before the restore
        {"lolu", Stage::minimizing, MappingChange::minimized, true, true, false},
        {"log", Stage::minimizing, MappingChange::none, false, true, false},
        {"lox", Stage::idle, MappingChange::none, false, false, false},
    };
    for (const Case& each : cases) {
        const Steps walk(each.steps, true);
        EXPECT_EQ(walk.window.stage(), each.stage) << each.steps;
        EXPECT_EQ(walk.change, each.change) << each.steps;
        EXPECT_EQ(walk.window.wasUnmapped(), each.wasUnmapped) << each.steps;
        EXPECT_EQ(walk.window.mayStillMinimize(walk.now), each.mayStillMinimize) << each.steps;
        EXPECT_FALSE(walk.window.mayStillMinimize(walk.now + Seconds(10))) << each.steps;
        EXPECT_EQ(walk.window.isRestoreRequested(), each.isRestoreRequested) << each.steps;
        const Seconds last = walk.now - Seconds(std::string(each.steps).ends_with('B') ? 0 : 1);
        EXPECT_EQ(walk.window.countsAsRestored(last + Seconds(0.04)), each.isRestoreRequested) << each.steps;
        EXPECT_FALSE(walk.window.countsAsRestored(walk.now + Seconds(0.1))) << each.steps;
    }
}

TEST(Iconification, WithoutAWindowManagerDistinguishesUnmapsByKovaFromUnmapsByTheProgram) {
    struct Case {
        const char* steps;
        bool isUnmapRequested;
        MappingChange change;
    };
    const Case cases[] = {
        {"u", false, MappingChange::withdrawn},
        {"m", false, MappingChange::none},
        {"d", true, MappingChange::none},
        {"dm", true, MappingChange::none}, // a map event from before: unmapping is still due
        {"dsu", true, MappingChange::none},
        {"dsM", true, MappingChange::none},
        {"dsm", false, MappingChange::restored},
        {"dsum", false, MappingChange::restored},
        {"dsuB", false, MappingChange::none},
        {"dsBu", false, MappingChange::none}, // restoring requested before the unmap event arrived
        {"dsBum", false, MappingChange::none},
        {"dsuBmu", false, MappingChange::withdrawn},
        {"db", false, MappingChange::none},
        {"dbd", true, MappingChange::none},
        {"a", true, MappingChange::none},
        {"am", false, MappingChange::restored},
        {"dsx", false, MappingChange::none},
        {"dsxu", false, MappingChange::withdrawn},
    };
    for (const Case& each : cases) {
        const Steps walk(each.steps, false);
        EXPECT_EQ(walk.window.isUnmapRequested(), each.isUnmapRequested) << each.steps;
        EXPECT_EQ(walk.change, each.change) << each.steps;
    }
}

} // namespace
} // namespace kova::x11
