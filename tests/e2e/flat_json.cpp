// FlatJson of the e2e support (tests/e2e/e2e_support.h), over nlohmann-json; in
// a file of its own so that only the tests that read JSON compile the library.
// Test thread only.
#include <cstdlib>
#include <map>
#include <string>

#include <nlohmann/json.hpp>

#include "tests/e2e/e2e_support.h"

namespace e2e {

namespace {

// Every scalar of v under its dotted path: strings unquoted, the rest as JSON writes them.
void Flatten(const nlohmann::json& v, const std::string& path, std::map<std::string, std::string>& out) {
    const auto join = [&](const std::string& key) { return path.empty() ? key : path + "." + key; };
    if (v.is_object()) {
        for (auto it = v.begin(); it != v.end(); ++it) Flatten(it.value(), join(it.key()), out);
    } else if (v.is_array()) {
        for (size_t i = 0; i < v.size(); ++i) Flatten(v[i], join(std::to_string(i)), out);
    } else {
        out[path] = v.is_string() ? v.get<std::string>() : v.dump();
    }
}

}  // namespace

bool FlatJson::Parse(const std::string& text) {
    m_Values.clear();
    // No exceptions: text that is not one JSON value (or not UTF-8) gives a discarded value.
    const nlohmann::json doc = nlohmann::json::parse(text, nullptr, false);
    if (doc.is_discarded()) return false;
    Flatten(doc, "", m_Values);
    return true;
}

std::string FlatJson::Get(const std::string& path) const {
    auto it = m_Values.find(path);
    return it == m_Values.end() ? std::string() : it->second;
}

long long FlatJson::Num(const std::string& path, long long def) const {
    auto it = m_Values.find(path);
    if (it == m_Values.end() || it->second.empty()) return def;
    char* end = nullptr;
    long long v = std::strtoll(it->second.c_str(), &end, 10);
    return *end == '\0' ? v : def;
}

}  // namespace e2e
