// The version, in one place: the build reads it from here.
#pragma once

// A macro, so that it can be part of a text known at compile time.
#define KOVA_VERSION "0.1.0"
