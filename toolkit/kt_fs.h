// KT::CFs: small file-system helpers. Any thread.
#pragma once

#include <string>

namespace KT {

class CFs {
public:
    // Removes the file; true on success.
    static bool DelFile(const std::string& path);
    static bool Exists(const std::string& path);
};

}  // namespace KT
