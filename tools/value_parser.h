// Parsing of what a person types for an operation: "NAME=VALUE[@INDEX]", values
// by the dictionary's value type, video format codes as text ("1920x1080p50",
// "720x576i25/4:3"), and hex byte strings. Pure functions; any thread. Each
// returns false and a one-line message in error on bad input.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "protocol/c_op_ss_data.h"
#include "protocol/ss_op.h"
#include "tools/op_catalog.h"

namespace avhost {

using Bytes = std::vector<unsigned char>;

// A decimal integer with an optional sign, or 0x/0X and hex digits.
struct ParsedInteger {
    bool negative = false;
    bool hex = false;
    unsigned long long magnitude = 0;
};
bool ParseInteger(const std::string& text, ParsedInteger& out);

// The two's complement bit pattern of text for an integer value type, range
// checked: unsigned types take 0..max; signed types take min..max in decimal,
// and any bit pattern of their width in hex (0xFF is -1 for VT_INT8).
bool ParseIntegerForType(const std::string& text, DataVarType_e type, unsigned long long& pattern,
                         std::string& error);

// A video format code from "WxH<scan><rate>[/<aspect>]" (scan i, p or psf; rate
// 23.98 23.976 24 25 29.97 30 50 59.94 60; aspect 1:1 4:3 16:9 2.21:1 1.9:1, ':'
// or 'x') or from the display form "1920x1080p 16x9 50.00fps". Without an aspect
// the SD sizes take 4:3 and every larger size 16:9.
bool ParseFormatCode(const std::string& text, uint32_t& code, std::string& error);

// Sets op's value from text by the entry's value type (format codes also as text).
bool ParseValue(const COpSsData& entry, const std::string& text, SsOp& op, std::string& error);

// Sets op's index from text (an integer that fits the entry's index field).
bool ParseIndex(const COpSsData& entry, const std::string& text, SsOp& op, std::string& error);

// "NAME[=VALUE][@INDEX]" split into its parts. The index is taken from the last
// '@' only when an integer follows it, so text values may hold '@'.
struct Assignment {
    std::string name;
    bool hasValue = false;
    std::string value;
    bool hasIndex = false;
    std::string index;
};
Assignment SplitAssignment(const std::string& text);

// Looks the name up; on failure error says so (with a spelling hint if one fits).
const COpSsData* LookUpName(const OpCatalog& catalog, const std::string& name, std::string& error);

// "NAME=VALUE[@INDEX]" as a complete data operation (type 0, index 0 by default).
bool ParseAssignment(const OpCatalog& catalog, const std::string& text, SsOp& op, std::string& error);

// The apply trigger: type 6, opId 0, no index and no data (image 06 00 00 00 00).
SsOp MakeApplyOp();

// Hex bytes: pairs of hex digits, optionally "0x"-prefixed, separated by blanks,
// commas or colons, or run together ("0F0005"). At least one byte.
bool ParseHexBytes(const std::string& text, Bytes& out, std::string& error);

}  // namespace avhost
