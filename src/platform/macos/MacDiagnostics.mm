#include "platform/macos/MacDiagnostics.h"

#include "platform/macos/CoreFoundation.h"
#include "windowing/SystemConflicts.h"

#import <AppKit/AppKit.h>
#import <Carbon/Carbon.h>

namespace kova::macos {

namespace {

/// Reads an on/off setting of the system's window manager. Returns `initial` if the user has never changed it.
bool windowManagerSetting(NSString* key, bool initial) {
    Boolean isValid = false;
    const bool isOn =
        CFPreferencesGetAppBooleanValue((__bridge CFStringRef)key, CFSTR("com.apple.WindowManager"), &isValid) != 0;
    return isValid ? isOn : initial;
}

SystemConflicts systemConflicts() {
    SystemConflicts conflicts;
    conflicts.isSecureInputOn = IsSecureEventInputEnabled() != 0;
    conflicts.isStageManagerOn = windowManagerSetting(@"GloballyEnabled", false);
    if (@available(macOS 15.0, *)) { // the first version of macOS that tiles windows itself
        conflicts.tilesWindowsAtEdges = windowManagerSetting(@"EnableTilingByEdgeDrag", true);
        conflicts.tilesWindowsAtMenuBar = windowManagerSetting(@"EnableTopTilingByEdgeDrag", true);
    }
    conflicts.isVoiceOverOn = NSWorkspace.sharedWorkspace.voiceOverEnabled != NO;
    return conflicts;
}

} // namespace

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
    if (accessibility_.isProcessTrusted() && accessibility_.stalePermission()) {
        lines.push_back({"permission", DiagnosticVerdict::wrong,
                         stalePermissionRemedy(text(NSBundle.mainBundle.bundleIdentifier))});
    }
    for (auto& line : diagnosticLines(systemConflicts())) lines.push_back(std::move(line));
    for (const pid_t process : accessibility_.unresponsiveApplications()) {
        const auto application = applications_.runningApplication(process);
        if (!application) continue;
        lines.push_back({"application that hangs", DiagnosticVerdict::note,
                         application->localizedName.value_or("Process " + std::to_string(process)) +
                             " does not respond; KOVA does not move its windows until it responds again."});
    }
    return lines;
}

} // namespace kova::macos
