// The wall between the system's callbacks and our code: nothing that is thrown, in either language, gets into the
// system's frames, which could not be unwound. Objective-C++ only.
#pragma once

#include "platform/macos/CoreFoundation.h"
#include "support/Log.h"

#include <exception>
#include <string>

namespace kova::macos {

/// Runs the body of a callback of the system. What it throws is logged, and the callback is over.
template <class Body>
void contained(Body&& body) noexcept {
    @autoreleasepool {
        @try {
            try {
                body();
            } catch (const std::exception& thrown) {
                log(LogLevel::error, std::string("a callback was given up: ") + thrown.what());
            }
        } @catch (NSException* thrown) {
            log(LogLevel::error, "a callback was given up: " + text(thrown.reason));
        } @catch (...) {
            log(LogLevel::error, "a callback was given up");
        }
    }
}

} // namespace kova::macos
