// The arguments the virtual board accepts, as a table: for each function of
// the C API, which argument (a scalar, a pointer, or a word of a record passed
// by pointer, named as the journal names it) may hold which values, and the
// error code of a call that breaks the rule. Pure functions; any thread.
#pragma once

#include <string>
#include <vector>

namespace stbsim {

// One argument of a call as the journal shows it: "mode", "attr" (a pointer),
// "attr.source_type" (a word of the record it points to).
struct CallArg {
    std::string key;
    long long value = 0;  // for a pointer: 0 when NULL, 1 otherwise
};

// One rule: function, argument, what the board takes, and the code it fails with.
struct ArgRule {
    const char* function;
    const char* key;
    enum Kind { kNonNull, kOneOf, kRange } kind;
    std::vector<long long> values;  // kOneOf: the values taken; kRange: {lowest, highest}
    int code;
    const char* accepts;  // "what the board accepts", as the README table says it
};

const std::vector<ArgRule>& ArgRules();

// 0 when every argument of the call is one the board takes; else the code of
// the first broken rule and, in reason, "KEY=VALUE: the board takes ACCEPTS".
int CheckArgs(const std::string& function, const std::vector<CallArg>& args, std::string* reason);

}  // namespace stbsim
