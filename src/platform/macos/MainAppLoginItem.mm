#include "platform/macos/MainAppLoginItem.h"

#include "platform/macos/CoreFoundation.h"

#import <ServiceManagement/ServiceManagement.h>

namespace kova::macos {

namespace {

std::optional<std::string> failure(BOOL isDone, NSError* error) {
    if (isDone) return std::nullopt;
    return error ? text(error.localizedDescription) : "The system gave no reason";
}

} // namespace

LaunchAtLoginStatus MainAppLoginItem::status() const {
    switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusNotRegistered:
        return LaunchAtLoginStatus::notRegistered;
    case SMAppServiceStatusEnabled:
        return LaunchAtLoginStatus::enabled;
    case SMAppServiceStatusRequiresApproval:
        return LaunchAtLoginStatus::requiresApproval;
    case SMAppServiceStatusNotFound:
        return LaunchAtLoginStatus::notFound;
    }
    return LaunchAtLoginStatus::notFound;
}

std::optional<std::string> MainAppLoginItem::registerAtLogin() {
    @autoreleasepool {
        NSError* error = nil;
        const BOOL isDone = [SMAppService.mainAppService registerAndReturnError:&error];
        return failure(isDone, error);
    }
}

std::optional<std::string> MainAppLoginItem::unregisterAtLogin() {
    @autoreleasepool {
        NSError* error = nil;
        const BOOL isDone = [SMAppService.mainAppService unregisterAndReturnError:&error];
        return failure(isDone, error);
    }
}

} // namespace kova::macos
