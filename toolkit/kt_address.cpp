// KT::CIpAddress and KT::CMacAddress: text forms. Plain values, no locking.
#include "toolkit/kt_address.h"

#include <cstdio>

namespace KT {
namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::string CIpAddress::ToString() const {
    char text[16];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", (m_ip >> 24) & 0xFFu, (m_ip >> 16) & 0xFFu, (m_ip >> 8) & 0xFFu,
                  m_ip & 0xFFu);
    return text;
}

bool CIpAddress::Set(const std::string& dotted) {
    uint32_t ip = 0;
    std::size_t pos = 0;
    for (int part = 0; part < 4; ++part) {
        if (part > 0) {
            if (pos >= dotted.size() || dotted[pos] != '.') return false;
            ++pos;
        }
        unsigned value = 0;
        std::size_t digits = 0;
        while (pos < dotted.size() && dotted[pos] >= '0' && dotted[pos] <= '9' && digits < 4) {
            value = value * 10 + static_cast<unsigned>(dotted[pos] - '0');
            ++pos;
            ++digits;
        }
        if (digits == 0 || digits > 3 || value > 255) return false;
        ip = (ip << 8) | value;
    }
    if (pos != dotted.size()) return false;
    m_ip = ip;
    return true;
}

bool CMacAddress::Set(const std::string& value) {
    std::array<uint8_t, 6> bytes{};
    if (value.size() == 6) {
        for (std::size_t i = 0; i < 6; ++i) bytes[i] = static_cast<uint8_t>(value[i]);
        m_bytes = bytes;
        return true;
    }
    // "aa:bb:cc:dd:ee:ff": one separator kind throughout, ':' or '-'.
    if (value.size() != 17 || (value[2] != ':' && value[2] != '-')) return false;
    for (std::size_t i = 0; i < 6; ++i) {
        std::size_t at = i * 3;
        if (i > 0 && value[at - 1] != value[2]) return false;
        int hi = HexDigit(value[at]);
        int lo = HexDigit(value[at + 1]);
        if (hi < 0 || lo < 0) return false;
        bytes[i] = static_cast<uint8_t>((hi << 4) | lo);
    }
    m_bytes = bytes;
    return true;
}

std::string CMacAddress::ToString() const {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", m_bytes[0], m_bytes[1], m_bytes[2], m_bytes[3],
                  m_bytes[4], m_bytes[5]);
    return text;
}

}  // namespace KT
