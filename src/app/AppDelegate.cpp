#include "app/AppDelegate.h"

#include "support/Log.h"

namespace kova {

AppDelegate::AppDelegate(const WorkspaceServices& services) :
    preferences_(services.preferences), workspace_(services) {}

AppDelegate::~AppDelegate() {
    stopWorkspace();
}

void AppDelegate::startWorkspace() {
    if (workspaceIsStarted_) return;
    workspaceIsStarted_ = true;
    workspace_.start(false);
    log(LogLevel::note, "workspace started");
}

void AppDelegate::stopWorkspace() {
    if (!workspaceIsStarted_) return;
    workspace_.stop();
    preferences_.synchronize();
    workspaceIsStarted_ = false;
    log(LogLevel::note, "workspace stopped");
}

} // namespace kova
