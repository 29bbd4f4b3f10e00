#include "app/AppDelegate.h"

#include "support/Log.h"

namespace kova {

AppDelegate::AppDelegate(const WorkspaceServices& services, const HandServices& hand) :
    preferences_(services.preferences), queue_(services.queue), hand_(hand), workspace_(services) {}

AppDelegate::~AppDelegate() {
    stopWorkspace();
}

void AppDelegate::startWorkspace() {
    if (workspaceIsStarted_) return;
    workspaceIsStarted_ = true;
    workspace_.start(false);
    if (hand_.dividerHandles) dividerWindows_.emplace(workspace_, *hand_.dividerHandles, queue_);
    if (hand_.pointer) windowDrags_.emplace(workspace_, *hand_.pointer, queue_).installMonitor();
    log(LogLevel::note, "workspace started");
}

void AppDelegate::stopWorkspace() {
    if (!workspaceIsStarted_) return;
    // What the hand still holds goes back first.
    windowDrags_.reset();
    dividerWindows_.reset();
    workspace_.stop();
    preferences_.synchronize();
    workspaceIsStarted_ = false;
    log(LogLevel::note, "workspace stopped");
}

} // namespace kova
