#include "platform/macos/MacDiagnostics.h"

#include "platform/macos/CoreFoundation.h"

namespace kova::macos {

std::vector<DiagnosticLine> MacDiagnostics::diagnose() const {
    std::vector<DiagnosticLine> lines;
    @autoreleasepool {
        lines.push_back({"system", DiagnosticVerdict::fine,
                         "macOS, " + text(NSProcessInfo.processInfo.operatingSystemVersionString) + "."});
        if (!NSBundle.mainBundle.bundleIdentifier) {
            lines.push_back({"application", DiagnosticVerdict::note,
                             "The agent does not run from KOVA.app: it opens no URLs and cannot start at login."});
        }
    }
    if (!accessibility_.isProcessTrusted()) {
        lines.push_back({"permission", DiagnosticVerdict::wrong,
                         "KOVA may not move other applications' windows: allow it under System Settings → Privacy & "
                         "Security → Accessibility."});
    }
    for (const pid_t process : accessibility_.silentApplications()) {
        const auto application = applications_.runningApplication(process);
        if (!application) continue;
        lines.push_back({"application that hangs", DiagnosticVerdict::note,
                         application->localizedName.value_or("Process " + std::to_string(process)) +
                             " does not answer; its windows are left alone until it does."});
    }
    return lines;
}

} // namespace kova::macos
