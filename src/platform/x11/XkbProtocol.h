// Includes xcb's header for the XKEYBOARD extension, in which a member has the name of a C++ keyword.
#pragma once

#include <xcb/xcb.h>

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
