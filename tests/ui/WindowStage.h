// A window of kova-ui that is connected to a complete agent on the simulated desktop, over the agent's real socket. The
// window and the agent run on one thread: `until` lets the agent and the toolkit handle their events alternately. The
// time of the desktop stands still unless a test advances it.
#pragma once

#include "tests/control/AgentStage.h"
#include "ui/client/AgentLink.h"
#include "ui/windows/WindowHost.h"

#include <QImage>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kova::ui::testing {

class WindowStage : public ::testing::Test, public AgentStage {
  protected:
    WindowStage();
    ~WindowStage() override;

    /// Opens the window and waits until it is shown; null, and a failure, if it is not shown.
    HostedWindow* open(const std::string& what, const nlohmann::json& parameters = nlohmann::json::object());
    /// Waits until `holds` returns true; returns false if it does not within ten seconds.
    bool until(const std::function<bool()>& holds);
    /// The control with that object name in a window; null, and a failure, if there is none.
    template <class Control>
    static Control* control(const QWidget* window, const char* objectName) {
        auto* found = window ? window->findChild<Control*>(QString::fromLatin1(objectName)) : nullptr;
        EXPECT_TRUE(found) << "no control " << objectName;
        return found;
    }
    /// Sends a request on another connection and returns the response: {"result"} or {"error"}.
    nlohmann::json ask(const std::string& method, const nlohmann::json& parameters = nlohmann::json::object());

    /// Gives all widgets the palette for the brightness.
    void style(Brightness brightness);
    /// Draws the window at `scale` pixels per point, without a text cursor.
    static QImage picture(QWidget& window, int scale);
    /// Draws the window in light and dark and at scales 1 and 2, and compares these pictures with the golden pictures:
    /// NAME-dark@2.png and so on. Skips the test if the font of the golden pictures is missing.
    void compareWithGoldens(QWidget& window, const std::string& name);

    std::vector<std::string> closedByUser; // windows that the user closed while they were in the agent's list
    AgentLink link;
    Brightness brightness = Brightness::dark;
    IconSource icon; // the source of application icons; if empty, applications have no icons
    WindowHost host;
};

} // namespace kova::ui::testing
