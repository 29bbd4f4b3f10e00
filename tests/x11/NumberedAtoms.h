// Atoms with invented numbers, for tests without an X server.
#pragma once

#include "platform/x11/ClientWindow.h"

namespace kova::x11 {

inline Atoms numberedAtoms() {
    Atoms atoms;
    for (std::uint8_t i = 0; i < static_cast<std::uint8_t>(Atom::count); ++i)
        atoms.set(static_cast<Atom>(i), 1000U + i);
    return atoms;
}

} // namespace kova::x11
