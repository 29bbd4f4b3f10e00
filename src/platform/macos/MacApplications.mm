#include "platform/macos/MacApplications.h"

#include "persistence/PreferenceKeys.h"
#include "platform/macos/Contained.h"
#include "platform/macos/CoreFoundation.h"

#import <AppKit/AppKit.h>

#include <sys/sysctl.h>

#include <algorithm>
#include <array>
#include <utility>

namespace kova::macos {

namespace {

NSRunningApplication* find(pid_t process) {
    return [NSRunningApplication runningApplicationWithProcessIdentifier:process];
}

ApplicationIcon icon(NSImage* image) {
    return {.name = {}, .image = shared((__bridge CFTypeRef)image)};
}

ApplicationActivationPolicy activationPolicy(NSRunningApplication* application) {
    switch (application.activationPolicy) {
    case NSApplicationActivationPolicyRegular:
        return ApplicationActivationPolicy::regular;
    case NSApplicationActivationPolicyAccessory:
        return ApplicationActivationPolicy::accessory;
    case NSApplicationActivationPolicyProhibited:
        return ApplicationActivationPolicy::prohibited;
    }
    return ApplicationActivationPolicy::prohibited;
}

std::optional<std::string> optionalText(NSString* string) {
    if (!string) return std::nullopt;
    return text(string);
}

NSString* hiddenKey() {
    return nsString(preferenceKey::hiddenApplications);
}

} // namespace

MacApplications::~MacApplications() {
    if (hiddenByKova_.empty()) return; // the list that a previous agent stored is kept
    @autoreleasepool {
        for (const pid_t process : hiddenByKova_) [find(process) unhide];
        hiddenByKova_.clear();
        storeHidden();
    }
}

void MacApplications::storeHidden() const {
    NSMutableArray<NSString*>* stored = [NSMutableArray array];
    for (const pid_t process : hiddenByKova_) {
        if (const auto start = processStartIdentity(process)) {
            [stored addObject:nsString(std::to_string(process) + " " + *start)];
        }
    }
    NSUserDefaults* defaults = NSUserDefaults.standardUserDefaults;
    if (stored.count > 0) {
        [defaults setObject:stored forKey:hiddenKey()];
    } else {
        [defaults removeObjectForKey:hiddenKey()];
    }
}

void MacApplications::resolveLeftoverHiddenWindows(LeftoverWindows leftoverWindows) {
    @autoreleasepool {
        for (id each in [NSUserDefaults.standardUserDefaults arrayForKey:hiddenKey()]) {
            if (![each isKindOfClass:NSString.class]) continue;
            const pid_t process = [each intValue]; // the number before the space
            const auto start = processStartIdentity(process);
            if (!start || text(each) != std::to_string(process) + " " + *start) continue;
            NSRunningApplication* application = find(process);
            if (!application.hidden) continue; // the user has shown the application
            if (leftoverWindows == LeftoverWindows::stayHidden) {
                hiddenByKova_.insert(process);
            } else {
                [application unhide];
            }
        }
        storeHidden();
    }
}

bool MacApplications::isHidden(const void* object) const {
    auto* application = (__bridge NSRunningApplication*)object;
    // The system updates this property only while the main run loop runs, so a recent request counts instead.
    const bool isReportedHidden = application.hidden != NO;
    const MutexLock lock(mutex_);
    return requestedHiding_.isHidden(application.processIdentifier, isReportedHidden, queue_.uptime());
}

RunningApplication MacApplications::describe(const void* object) const {
    auto* application = (__bridge NSRunningApplication*)object;
    RunningApplication running;
    running.processIdentifier = application.processIdentifier;
    running.localizedName = optionalText(application.localizedName);
    if (application.bundleIdentifier) running.bundleIdentifier = BundleID(text(application.bundleIdentifier));
    running.bundlePath = text(application.bundleURL.path);
    running.activationPolicy = activationPolicy(application);
    running.isHidden = isHidden(object);
    running.isTerminated = application.terminated != NO;
    running.icon = iconOf(object);
    return running;
}

ApplicationIcon MacApplications::iconOf(const void* object) const {
    auto* application = (__bridge NSRunningApplication*)object;
    const pid_t process = application.processIdentifier;
    {
        const MutexLock lock(mutex_);
        if (const auto kept = icons_.find(process); kept != icons_.end()) return kept->second;
    }
    // The system may read the icon from disk. Meanwhile the lock is not held, so that the main thread never waits for
    // the polling queue.
    auto made = icon(application.icon);
    if (made.isEmpty()) return made;
    const MutexLock lock(mutex_);
    return icons_.try_emplace(process, std::move(made)).first->second;
}

pid_t MacApplications::ownProcessIdentifier() const {
    return NSProcessInfo.processInfo.processIdentifier;
}

std::vector<RunningApplication> MacApplications::runningApplications() const {
    std::vector<RunningApplication> running;
    @autoreleasepool {
        for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
            running.push_back(describe((__bridge const void*)application));
        }
    }
    const MutexLock lock(mutex_);
    std::erase_if(icons_, [&](const auto& kept) {
        return std::ranges::find(running, kept.first, &RunningApplication::processIdentifier) == running.end();
    });
    return running;
}

std::optional<RunningApplication> MacApplications::runningApplication(pid_t processIdentifier) const {
    @autoreleasepool {
        NSRunningApplication* application = find(processIdentifier);
        if (!application) return std::nullopt;
        return describe((__bridge const void*)application);
    }
}

std::optional<pid_t> MacApplications::frontmostApplication() const {
    @autoreleasepool {
        NSRunningApplication* application = NSWorkspace.sharedWorkspace.menuBarOwningApplication;
        if (!application) return std::nullopt;
        return application.processIdentifier;
    }
}

std::optional<std::string> MacApplications::processStartIdentity(pid_t processIdentifier) const {
    // NSRunningApplication has the launch date only of applications that were launched with the system's launch
    // services.
    std::array<int, 4> name{CTL_KERN, KERN_PROC, KERN_PROC_PID, processIdentifier};
    kinfo_proc process{};
    std::size_t size = sizeof process;
    const int error = sysctl(name.data(), static_cast<u_int>(name.size()), &process, &size, nullptr, 0);
    if (error != 0 || size < sizeof process) return std::nullopt; // nothing is written if there is no such process
    const timeval begun = process.kp_proc.p_starttime;
    return std::to_string(begun.tv_sec) + "." + std::to_string(begun.tv_usec);
}

ApplicationIcon MacApplications::iconForFile(const std::string& path) const {
    @autoreleasepool {
        return icon([NSWorkspace.sharedWorkspace iconForFile:nsString(path)]);
    }
}

ApplicationIcon MacApplications::systemSymbolIcon(const std::string& name) const {
    @autoreleasepool {
        return icon([NSImage imageWithSystemSymbolName:nsString(name) accessibilityDescription:nil]);
    }
}

void MacApplications::hide(pid_t processIdentifier) {
    @autoreleasepool {
        NSRunningApplication* application = find(processIdentifier);
        // An application that the user has hidden stays hidden when the agent ends.
        if (!application || isHidden((__bridge const void*)application)) return;
        if (![application hide]) return;
        {
            const MutexLock lock(mutex_);
            requestedHiding_.hide(processIdentifier, queue_.uptime());
        }
        hiddenByKova_.insert(processIdentifier);
        storeHidden();
    }
}

void MacApplications::unhide(pid_t processIdentifier) {
    @autoreleasepool {
        if (hiddenByKova_.erase(processIdentifier) > 0) storeHidden();
        if (![find(processIdentifier) unhide]) return;
        const MutexLock lock(mutex_);
        requestedHiding_.show(processIdentifier, queue_.uptime());
    }
}

void MacApplications::activate(pid_t processIdentifier) {
    @autoreleasepool {
        [find(processIdentifier) activateWithOptions:NSApplicationActivationOptions(0)];
        // Since macOS 14 the system may ignore this call unless KOVA is active, so the attribute is written, too.
        const AttributeWrite frontmost{AccessibilityAttribute::frontmost, true};
        accessibility_.writeAttributes(accessibility_.applicationElement(processIdentifier), {&frontmost, 1});
    }
}

bool MacApplications::terminate(pid_t processIdentifier) {
    if (processIdentifier == ownProcessIdentifier()) return false;
    @autoreleasepool {
        return [find(processIdentifier) terminate] != NO;
    }
}

std::optional<std::string> MacApplications::forceTerminate(pid_t processIdentifier) {
    if (processIdentifier == ownProcessIdentifier()) return "it is KOVA itself";
    @autoreleasepool {
        NSRunningApplication* application = find(processIdentifier);
        if (!application) return "it does not run any more";
        if ([application forceTerminate]) return std::nullopt;
        return "the system does not let KOVA end it";
    }
}

} // namespace kova::macos
