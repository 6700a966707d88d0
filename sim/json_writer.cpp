// One-line JSON output of the board's state.
#include "sim/json_writer.h"

namespace stbsim {

namespace {

// Length of the UTF-8 sequence at s[i], or 0 when the bytes there are not one
// (overlong forms, surrogates and code points above U+10FFFF are not).
size_t Utf8Length(const std::string& s, size_t i) {
    const auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
    const unsigned char c = byte(i);
    if (c < 0x80) return 1;
    size_t n = (c & 0xE0) == 0xC0 ? 2 : (c & 0xF0) == 0xE0 ? 3 : (c & 0xF8) == 0xF0 ? 4 : 0;
    if (n == 0 || i + n > s.size()) return 0;
    uint32_t cp = c & (0x7F >> n);
    for (size_t k = 1; k < n; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (byte(i + k) & 0x3F);
    }
    static const uint32_t kMin[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < kMin[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return n;
}

}  // namespace

std::string ToUtf8(const std::string& s) {
    std::string out;
    for (size_t i = 0; i < s.size();) {
        const size_t n = Utf8Length(s, i);
        if (n) {
            out.append(s, i, n);
            i += n;
            continue;
        }
        const unsigned char c = static_cast<unsigned char>(s[i++]);
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
    return out;
}

CJsonWriter::CJsonWriter() : m_root(nullptr) {}

CJsonWriter& CJsonWriter::Put(const char* key, nlohmann::ordered_json v) {
    if (m_open.empty()) {
        m_root = std::move(v);
        return *this;
    }
    nlohmann::ordered_json& parent = *m_open.back();
    if (parent.is_array()) parent.push_back(std::move(v));
    else parent[ToUtf8(key ? key : "")] = std::move(v);
    return *this;
}

CJsonWriter& CJsonWriter::Begin(const char* key) {
    Put(key, nlohmann::ordered_json::object());
    nlohmann::ordered_json& parent = m_open.empty() ? m_root : *m_open.back();
    m_open.push_back(m_open.empty() ? &m_root : parent.is_array() ? &parent.back() : &parent[ToUtf8(key ? key : "")]);
    return *this;
}

CJsonWriter& CJsonWriter::End() {
    if (!m_open.empty()) m_open.pop_back();
    return *this;
}

CJsonWriter& CJsonWriter::BeginList(const char* key) {
    Put(key, nlohmann::ordered_json::array());
    nlohmann::ordered_json& parent = m_open.empty() ? m_root : *m_open.back();
    m_open.push_back(m_open.empty() ? &m_root : parent.is_array() ? &parent.back() : &parent[ToUtf8(key ? key : "")]);
    return *this;
}

CJsonWriter& CJsonWriter::EndList() { return End(); }

CJsonWriter& CJsonWriter::Num(const char* key, int64_t v) { return Put(key, v); }

CJsonWriter& CJsonWriter::Bool(const char* key, bool v) { return Put(key, v); }

CJsonWriter& CJsonWriter::Str(const char* key, const std::string& v) { return Put(key, ToUtf8(v)); }

std::string CJsonWriter::Text() const {
    return m_root.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace stbsim
