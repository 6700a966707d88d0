// Whether this build runs under AddressSanitizer or ThreadSanitizer, as gcc and
// clang each say it (gcc defines __SANITIZE_*__, clang answers __has_feature).
// A compile-time constant; no thread of its own.
#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define STBAV_SANITIZER_BUILD 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define STBAV_SANITIZER_BUILD 1
#endif
#endif
#ifndef STBAV_SANITIZER_BUILD
#define STBAV_SANITIZER_BUILD 0
#endif
