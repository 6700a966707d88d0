// KT::Endian: conversion between host order and big-endian (network) order for
// 16, 32 and 64-bit values, written with shifts so it is right on any host.
#pragma once

#include <cstdint>
#include <type_traits>

namespace KT {
namespace Endian {

// Bytes of v as they must lie in memory for big-endian order, whatever the host.
// The shifts work on the unsigned type of the same size, so signed values are fine.
template <typename T>
inline T HostToBig(T v) {
    using U = typename std::make_unsigned<T>::type;
    const U u = static_cast<U>(v);
    T out = 0;
    unsigned char* p = reinterpret_cast<unsigned char*>(&out);
    for (unsigned i = 0; i < sizeof(T); ++i) p[i] = static_cast<unsigned char>(u >> (8 * (sizeof(T) - 1 - i)));
    return out;
}

template <typename T>
inline T BigToHost(T v) {
    using U = typename std::make_unsigned<T>::type;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(&v);
    U out = 0;
    for (unsigned i = 0; i < sizeof(T); ++i) out = static_cast<U>((out << 8) | p[i]);
    return static_cast<T>(out);
}

inline uint16_t LoadBig16(const unsigned char* p) { return static_cast<uint16_t>((p[0] << 8) | p[1]); }
inline uint32_t LoadBig32(const unsigned char* p) {
    return (uint32_t(p[0]) << 24) | (uint32_t(p[1]) << 16) | (uint32_t(p[2]) << 8) | uint32_t(p[3]);
}
inline void StoreBig16(unsigned char* p, uint16_t v) {
    p[0] = static_cast<unsigned char>(v >> 8);
    p[1] = static_cast<unsigned char>(v);
}
inline void StoreBig32(unsigned char* p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<unsigned char>(v >> (24 - 8 * i));
}

}  // namespace Endian
}  // namespace KT
