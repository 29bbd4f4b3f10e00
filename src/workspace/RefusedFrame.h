// A frame that a window did not take.
#pragma once

#include "support/Geometry.h"

namespace kova {

/// Both frames are in window-service space.
struct RefusedFrame {
    CGRect wanted{};
    CGRect actual{}; // the frame that the window kept
    int attempts = 0;
    bool isUnseen = true;    // no poll has seen the window since the request
    bool isAccepted = false; // the window had this frame when the agent started; there was no request
};

} // namespace kova
