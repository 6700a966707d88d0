// ThreadNames: the names of this process's threads as the kernel shows them
// (/proc/self/task/*/comm), for tests that check which threads run. Sanitizer
// runtimes start helper threads of their own, so count by name. Any thread.
#pragma once

#include <dirent.h>

#include <fstream>
#include <set>
#include <string>

namespace stbav_test {

inline std::multiset<std::string> ThreadNames() {
    std::multiset<std::string> names;
    if (DIR* dir = opendir("/proc/self/task")) {
        while (dirent* e = readdir(dir)) {
            if (e->d_name[0] == '.') continue;
            std::ifstream comm(std::string("/proc/self/task/") + e->d_name + "/comm");
            std::string name;
            std::getline(comm, name);
            names.insert(name);
        }
        closedir(dir);
    }
    return names;
}

}  // namespace stbav_test
