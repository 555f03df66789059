#pragma once
// Marks the library's public API: with hidden visibility, the only symbols a shared build exports.
#if defined(KEL_STATIC_DEFINE)
#define KEL_EXPORT
#else
#define KEL_EXPORT __attribute__((visibility("default")))
#endif
