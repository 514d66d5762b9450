// Marks what the shared library exports.
//
// What crosses its boundary: texts, lists and function objects of the standard library, by value, so that
// either side frees what the other has allocated. Both are therefore built with the same compiler, standard
// library and kind of run-time library (MSVC: both with /MD, or both with /MDd). On Windows an application
// must not replace the global operators new and delete, which it would do for itself alone.
//
// Exceptions don't cross it: what can fail returns an SResult. For lack of memory alone a record or a service
// type lets out std::bad_alloc; the functions of the facades turn that into a result, too.
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
