// KT::CIpAddress (IPv4 as a 32-bit number, most significant byte first in the
// dotted form) and KT::CMacAddress (six bytes). Plain values; no locking.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace KT {

class CIpAddress {
public:
    CIpAddress() = default;
    void SetIpInt(uint32_t ip) { m_ip = ip; }
    uint32_t GetIpInt() const { return m_ip; }
    // "a.b.c.d"
    std::string ToString() const;
    // Parses "a.b.c.d" (each part 0 to 255, digits only); false (unchanged) on a
    // malformed text.
    bool Set(const std::string& dotted);

private:
    uint32_t m_ip = 0;
};

class CMacAddress {
public:
    CMacAddress() = default;
    // Accepts six raw bytes, or the text "aa:bb:cc:dd:ee:ff" (':' or '-'); false
    // (unchanged) otherwise.
    bool Set(const std::string& value);
    const std::array<uint8_t, 6>& Bytes() const { return m_bytes; }
    // "aa:bb:cc:dd:ee:ff", lower-case hex.
    std::string ToString() const;

private:
    std::array<uint8_t, 6> m_bytes{};
};

}  // namespace KT
