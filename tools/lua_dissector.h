// LuaDissector: the Wireshark dissector of the serial line, written as a Lua
// script from the daemon's own operation dictionary and the value names table
// (no second copy of either). `avhost dissector > stbav.lua`; the committed
// tools/stbav.lua is its output and a test keeps the two equal. Pure; any thread.
#pragma once

#include <string>

#include "tools/op_catalog.h"

namespace avhost {

std::string LuaDissector(const OpCatalog& catalog);

}  // namespace avhost
