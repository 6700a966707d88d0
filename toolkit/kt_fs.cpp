// KT::CFs: thin wrappers over unlink() and stat(). Any thread.
#include "toolkit/kt_fs.h"

#include <sys/stat.h>
#include <unistd.h>

namespace KT {

bool CFs::DelFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

bool CFs::Exists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0;
}

}  // namespace KT
