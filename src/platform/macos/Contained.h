// Stops exceptions of C++ and of Objective-C before they reach the system's stack frames, which cannot be unwound.
// Objective-C++ only.
#pragma once

#include "platform/macos/CoreFoundation.h"
#include "support/Log.h"

#include <exception>
#include <string>

namespace kova::macos {

/// Runs the body of a callback of the system. An exception ends the callback and is logged.
template <class Body>
void contained(Body&& body) noexcept {
    @autoreleasepool {
        @try {
            try {
                body();
            } catch (const std::exception& thrown) {
                log(LogLevel::error, std::string("a callback ended with an exception: ") + thrown.what());
            }
        } @catch (NSException* thrown) {
            log(LogLevel::error, "a callback ended with an exception: " + text(thrown.reason));
        } @catch (...) {
            log(LogLevel::error, "a callback ended with an exception");
        }
    }
}

} // namespace kova::macos
