#pragma once
/// \file
/// Marks the library's public API: with hidden visibility, the only symbols a shared build exports.
#if __cplusplus < 202002L
#error "KelControls8 needs C++20: compile with -std=c++20 (a CMake target linking KelControls8::KelControls8 gets it)"
#endif
#if defined(KEL_STATIC_DEFINE)
#define KEL_EXPORT
#else
/// Marks a class or function as part of the public API.
#define KEL_EXPORT __attribute__((visibility("default")))
#endif
