// KT::CEnvBlock: the file is read and parsed once, in the constructor.
#include "toolkit/kt_env_block.h"

#include <fstream>

namespace KT {
namespace {

std::string Trim(const std::string& s) {
    const char* blanks = " \t\r\n\f\v";
    std::string::size_type first = s.find_first_not_of(blanks);
    if (first == std::string::npos) return std::string();
    std::string::size_type last = s.find_last_not_of(blanks);
    return s.substr(first, last - first + 1);
}

}  // namespace

CEnvBlock::CEnvBlock(const std::string& path) {
    std::ifstream in(path);
    if (!in) return;
    m_loaded = true;
    std::string line;
    while (std::getline(in, line)) {
        std::string text = Trim(line);
        if (text.empty() || text[0] == '#') continue;
        std::string::size_type eq = text.find('=');
        if (eq == std::string::npos) continue;  // not "name=value": ignored
        std::string name = Trim(text.substr(0, eq));
        if (name.empty()) continue;
        m_values[name] = Trim(text.substr(eq + 1));  // a later line wins
    }
}

std::string CEnvBlock::Get(const std::string& name, const std::string& def) const {
    auto it = m_values.find(name);
    return it == m_values.end() ? def : it->second;
}

}  // namespace KT
