// Marks what the shared library exports.
//
// KELSD_BUILDING_LIBRARY is defined while the library itself is compiled, KELSD_STATIC where its objects are
// linked into a program directly (the project's own unit tests).
#pragma once

#if defined(KELSD_STATIC)
#define KELSD_EXPORT
#elif defined(_WIN32)
#if defined(KELSD_BUILDING_LIBRARY)
#define KELSD_EXPORT __declspec(dllexport)
#else
#define KELSD_EXPORT __declspec(dllimport)
#endif
#else
#define KELSD_EXPORT __attribute__((visibility("default")))
#endif
