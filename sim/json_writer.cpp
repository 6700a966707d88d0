// One-line JSON output.
#include "sim/json_writer.h"

#include <cstdio>

namespace stbsim {

std::string JsonEscape(const std::string& s) {
    std::string out;
    for (unsigned char c : s) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20) {
            char buf[8];
            snprintf(buf, sizeof buf, "\\u%04x", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

void CJsonWriter::Key(const char* key) {
    if (!m_first.empty()) {
        if (!m_first.back()) m_out += ',';
        m_first.back() = false;
    }
    if (key) m_out += "\"" + JsonEscape(key) + "\":";
}

CJsonWriter& CJsonWriter::Begin(const char* key) {
    Key(key);
    m_out += '{';
    m_first.push_back(true);
    return *this;
}

CJsonWriter& CJsonWriter::End() {
    m_out += '}';
    m_first.pop_back();
    return *this;
}

CJsonWriter& CJsonWriter::BeginList(const char* key) {
    Key(key);
    m_out += '[';
    m_first.push_back(true);
    return *this;
}

CJsonWriter& CJsonWriter::EndList() {
    m_out += ']';
    m_first.pop_back();
    return *this;
}

CJsonWriter& CJsonWriter::Num(const char* key, int64_t v) {
    Key(key);
    m_out += std::to_string(v);
    return *this;
}

CJsonWriter& CJsonWriter::Bool(const char* key, bool v) {
    Key(key);
    m_out += v ? "true" : "false";
    return *this;
}

CJsonWriter& CJsonWriter::Str(const char* key, const std::string& v) {
    Key(key);
    m_out += "\"" + JsonEscape(v) + "\"";
    return *this;
}

}  // namespace stbsim
