// The part of MacApplications that lists installed applications and starts them.
#include "platform/macos/Contained.h"
#include "platform/macos/CoreFoundation.h"
#include "platform/macos/MacApplications.h"
#include "support/text/Text.h"

#import <AppKit/AppKit.h>

#include <algorithm>

namespace kova::macos {

namespace {

NSArray<NSURL*>* applicationFolders() {
    return [NSFileManager.defaultManager URLsForDirectory:NSAllApplicationsDirectory inDomains:NSAllDomainsMask];
}

/// Reads the Info.plist of the bundle. Does not use NSBundle, which would return old contents after an update.
NSDictionary* information(NSURL* bundle) {
    return CFBridgingRelease(CFBundleCopyInfoDictionaryInDirectory((__bridge CFURLRef)bundle));
}

LaunchableApplication launchable(NSURL* bundle, NSDictionary* information) {
    LaunchableApplication application;
    id identifier = information[(__bridge NSString*)kCFBundleIdentifierKey];
    if ([identifier isKindOfClass:NSString.class]) application.bundleIdentifier = BundleID(text(identifier));
    application.location = text(bundle.path);
    application.identifier = application.bundleIdentifier ? application.bundleIdentifier->text() : application.location;
    NSString* name = [NSFileManager.defaultManager displayNameAtPath:nsString(application.location)];
    application.name = text([name.pathExtension isEqualToString:@"app"] ? name.stringByDeletingPathExtension : name);
    return application;
}

bool isSwitchedOn(NSDictionary* information, NSString* key) {
    id value = information[key];
    const bool isConvertible = [value isKindOfClass:NSNumber.class] || [value isKindOfClass:NSString.class];
    return isConvertible && [value boolValue];
}

/// Whether the Dock shows the application while it runs. Launchers list these applications only.
bool isForLaunchers(NSDictionary* information) {
    return !isSwitchedOn(information, @"LSUIElement") && !isSwitchedOn(information, @"LSBackgroundOnly");
}

} // namespace

std::vector<LaunchableApplication> MacApplications::launchableApplications() const {
    std::vector<LaunchableApplication> found;
    @autoreleasepool {
        const auto options = NSDirectoryEnumerationSkipsHiddenFiles | NSDirectoryEnumerationSkipsPackageDescendants;
        for (NSURL* folder in applicationFolders()) {
            for (NSURL* each in [NSFileManager.defaultManager enumeratorAtURL:folder
                                                   includingPropertiesForKeys:nil
                                                                      options:options
                                                                 errorHandler:nil]) {
                if (![each.pathExtension isEqualToString:@"app"]) continue;
                NSDictionary* known = information(each);
                if (known && isForLaunchers(known)) found.push_back(launchable(each, known));
            }
        }
    }
    // Some of the folders contain others, so an application can be found twice.
    std::ranges::sort(found, {}, &LaunchableApplication::location);
    const auto duplicates = std::ranges::unique(found, {}, &LaunchableApplication::location);
    found.erase(duplicates.begin(), duplicates.end());
    std::ranges::stable_sort(
        found, [](const auto& a, const auto& b) { return localizedCaseInsensitiveCompare(a.name, b.name) < 0; });
    return found;
}

std::optional<LaunchableApplication> MacApplications::launchableApplication(const BundleID& bundleIdentifier) const {
    @autoreleasepool {
        NSURL* bundle =
            [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:nsString(bundleIdentifier.text())];
        if (!bundle) return std::nullopt;
        return launchable(bundle, information(bundle));
    }
}

void MacApplications::launch(const LaunchableApplication& application, LaunchActivation activation,
                             LaunchCompletion completion) {
    @autoreleasepool {
        NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
        configuration.activates = activation == LaunchActivation::activates;
        // The system calls the handler on another thread, perhaps after this object was destroyed.
        auto* queue = &queue_;
        const auto finish = std::make_shared<LaunchCompletion>(lifetime_.guard(std::move(completion)));
        [NSWorkspace.sharedWorkspace openApplicationAtURL:[NSURL fileURLWithPath:nsString(application.location)]
                                            configuration:configuration
                                        completionHandler:^(NSRunningApplication* started, NSError* error) {
                                          contained([&] {
                                              LaunchResult result;
                                              if (started) result.processIdentifier = started.processIdentifier;
                                              if (!started)
                                                  result.error = error ? text(error.localizedDescription)
                                                                       : "It could not be started";
                                              queue->post([finish, result] { (*finish)(result); });
                                          });
                                        }];
    }
}

} // namespace kova::macos
