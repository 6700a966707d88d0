// KT::CEnvBlock: reads a file of "name=value" lines (blank lines and lines
// starting with '#' are skipped; blanks around name and value are trimmed; a
// line without '=' is ignored; the value is kept as written, quotes included;
// a later line wins). Read once at construction; then read-only, so any thread.
#pragma once

#include <map>
#include <string>

namespace KT {

class CEnvBlock {
public:
    explicit CEnvBlock(const std::string& path);
    // False when the file could not be read.
    bool IsLoaded() const { return m_loaded; }
    // The value of name, or def when the file or the name is missing.
    std::string Get(const std::string& name, const std::string& def) const;

private:
    bool m_loaded = false;
    std::map<std::string, std::string> m_values;
};

}  // namespace KT
