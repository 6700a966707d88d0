// Value, index, format-code and hex parsing for the host tool. Pure functions.
#include "tools/value_parser.h"

#include <strings.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "output/uhd_vid_format.h"
#include "protocol/c_index.h"
#include "toolkit/kt_address.h"

namespace avhost {

namespace {

bool IsDigits(const std::string& s, bool hex) {
    if (s.empty()) return false;
    for (char c : s) {
        if (!(hex ? std::isxdigit(static_cast<unsigned char>(c)) : std::isdigit(static_cast<unsigned char>(c))))
            return false;
    }
    return true;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// Width in bits and signedness of the integer value types; false for the others.
bool IntegerShape(DataVarType_e type, unsigned& bits, bool& isSigned) {
    switch (type) {
        case VT_INT8: bits = 8; isSigned = true; return true;
        case VT_UINT8: bits = 8; isSigned = false; return true;
        case VT_INT16: bits = 16; isSigned = true; return true;
        case VT_UINT16: bits = 16; isSigned = false; return true;
        case VT_INT32: bits = 32; isSigned = true; return true;
        case VT_UINT32: bits = 32; isSigned = false; return true;
        case VT_INT64: bits = 64; isSigned = true; return true;
        case VT_UINT64: bits = 64; isSigned = false; return true;
        default: return false;
    }
}

unsigned long long MaxPattern(unsigned bits) { return bits == 64 ? ~0ULL : (1ULL << bits) - 1; }

// "0..255", or "-128..127, or 0x0..0xFF" for a signed type.
std::string RangeText(unsigned bits, bool isSigned) {
    if (!isSigned) return "0.." + std::to_string(MaxPattern(bits));
    unsigned long long half = 1ULL << (bits - 1);
    char hexMax[24];
    snprintf(hexMax, sizeof hexMax, "0x%llX", MaxPattern(bits));
    return "-" + std::to_string(half) + ".." + std::to_string(half - 1) + ", or 0x0.." + hexMax;
}

// Text for a format-code entry that is not a number: "1920x1080p50" but not "0x630D0000".
bool LooksLikeFormatText(const std::string& text) {
    bool hexNumber = text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    return !hexNumber && text.find_first_of("xX") != std::string::npos;
}

bool ParseBool(const std::string& text, bool& value) {
    if (text == "1" || strcasecmp(text.c_str(), "true") == 0) value = true;
    else if (text == "0" || strcasecmp(text.c_str(), "false") == 0) value = false;
    else return false;
    return true;
}

struct RateName {
    double fps;
    VideoFormatBase::FrameRate_e rate;
};
const RateName kRates[] = {
    {23.976, VideoFormatBase::FRAME_RATE_23_98}, {24, VideoFormatBase::FRAME_RATE_24},
    {25, VideoFormatBase::FRAME_RATE_25},        {29.97, VideoFormatBase::FRAME_RATE_29_97},
    {30, VideoFormatBase::FRAME_RATE_30},        {50, VideoFormatBase::FRAME_RATE_50},
    {59.94, VideoFormatBase::FRAME_RATE_59_94},  {60, VideoFormatBase::FRAME_RATE_60},
};

bool ParseRate(const std::string& text, VideoFormatBase::FrameRate_e& rate) {
    if (text.empty() || !(std::isdigit(static_cast<unsigned char>(text[0])))) return false;
    char* end = nullptr;
    double fps = std::strtod(text.c_str(), &end);
    if (*end != '\0') return false;
    for (const RateName& r : kRates) {
        if (std::fabs(fps - r.fps) < 0.006) {
            rate = r.rate;
            return true;
        }
    }
    return false;
}

bool ParseAspect(std::string text, VideoFormatBase::AspectRatio_e& aspect) {
    for (char& c : text) c = c == 'x' || c == 'X' ? ':' : c;
    static const char* const kNames[] = {"1:1", "4:3", "16:9", "2.21:1", "1.9:1"};
    for (unsigned i = 0; i < 5; ++i) {
        if (text == kNames[i]) {
            aspect = static_cast<VideoFormatBase::AspectRatio_e>(i + 1);
            return true;
        }
    }
    return false;
}

bool ParseScan(const std::string& text, VideoFormatBase::ScanType_e& scan) {
    if (text == "i") scan = VideoFormatBase::SCAN_TYPE_INTERLACED;
    else if (text == "p") scan = VideoFormatBase::SCAN_TYPE_PROGRESSIVE;
    else if (strcasecmp(text.c_str(), "psf") == 0) scan = VideoFormatBase::SCAN_TYPE_PSF;
    else return false;
    return true;
}

bool ParseSize(const std::string& w, const std::string& h, VideoFormatBase::Resolution_e& res) {
    static const struct {
        const char* w;
        const char* h;
        VideoFormatBase::Resolution_e res;
    } kSizes[] = {
        {"720", "480", VideoFormatBase::RESOLUTION_720X480},     {"720", "576", VideoFormatBase::RESOLUTION_720X576},
        {"1280", "720", VideoFormatBase::RESOLUTION_1280X720},   {"1920", "1080", VideoFormatBase::RESOLUTION_1920X1080},
        {"3840", "2160", VideoFormatBase::RESOLUTION_3840X2160}, {"4096", "2160", VideoFormatBase::RESOLUTION_4096X2160},
    };
    for (const auto& s : kSizes) {
        if (w == s.w && h == s.h) {
            res = s.res;
            return true;
        }
    }
    return false;
}

// "1920x1080p" or "1920x1080p50": size, scan and whatever follows the scan letters.
bool SplitSizeScan(const std::string& text, std::string& w, std::string& h, std::string& scan, std::string& rest) {
    size_t x = text.find_first_of("xX");
    if (x == std::string::npos) return false;
    w = text.substr(0, x);
    size_t hEnd = text.find_first_not_of("0123456789", x + 1);
    if (hEnd == std::string::npos) return false;
    h = text.substr(x + 1, hEnd - x - 1);
    size_t scanEnd = text.find_first_of("0123456789", hEnd);
    if (scanEnd == std::string::npos) scanEnd = text.size();
    scan = text.substr(hEnd, scanEnd - hEnd);
    rest = text.substr(scanEnd);
    return IsDigits(w, false) && IsDigits(h, false);
}

// Both spellings broken into the four attribute texts.
bool SplitFormatText(const std::string& text, std::string parts[5]) {
    std::string sizeScan, rate, aspect;
    size_t space = text.find(' ');
    if (space != std::string::npos) {  // display form: "1920x1080p 16x9 50.00fps"
        size_t space2 = text.find(' ', space + 1);
        if (space2 == std::string::npos) return false;
        sizeScan = text.substr(0, space);
        aspect = text.substr(space + 1, space2 - space - 1);
        rate = text.substr(space2 + 1);
        if (rate.size() < 4 || strcasecmp(rate.c_str() + rate.size() - 3, "fps") != 0) return false;
        rate.resize(rate.size() - 3);
        std::string rest;
        if (!SplitSizeScan(sizeScan, parts[0], parts[1], parts[2], rest) || !rest.empty()) return false;
    } else {  // compact form: "1920x1080p50/16:9"
        size_t slash = text.find('/');
        std::string head = text.substr(0, slash);
        if (slash != std::string::npos) aspect = text.substr(slash + 1);
        if (!SplitSizeScan(head, parts[0], parts[1], parts[2], rate)) return false;
    }
    parts[3] = rate;
    parts[4] = aspect;
    return true;
}

}  // namespace

bool ParseInteger(const std::string& text, ParsedInteger& out) {
    std::string s = text;
    ParsedInteger v;
    if (!s.empty() && (s[0] == '-' || s[0] == '+')) {
        v.negative = s[0] == '-';
        s.erase(0, 1);
    }
    if (s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
        v.hex = true;
        s.erase(0, 2);
    }
    if (!IsDigits(s, v.hex)) return false;
    errno = 0;
    v.magnitude = std::strtoull(s.c_str(), nullptr, v.hex ? 16 : 10);
    if (errno == ERANGE) return false;
    out = v;
    return true;
}

bool ParseIntegerForType(const std::string& text, DataVarType_e type, unsigned long long& pattern,
                         std::string& error) {
    unsigned bits = 0;
    bool isSigned = false;
    if (!IntegerShape(type, bits, isSigned)) {
        error = OpCatalog::TypeName(type) + " is not an integer type";
        return false;
    }
    ParsedInteger v;
    if (!ParseInteger(text, v)) {
        error = "malformed value " + Quoted(text) + " for " + OpCatalog::TypeName(type);
        return false;
    }
    const unsigned long long umax = MaxPattern(bits);
    const unsigned long long half = 1ULL << (bits - 1);
    bool ok;
    if (!isSigned || v.hex) ok = !v.negative && v.magnitude <= umax;
    else ok = v.negative ? v.magnitude <= half : v.magnitude < half;
    if (!ok) {
        error = "value " + text + " out of range for " + OpCatalog::TypeName(type) + " (" +
                RangeText(bits, isSigned) + ")";
        return false;
    }
    pattern = v.negative ? (~v.magnitude + 1) & umax : v.magnitude;
    return true;
}

bool ParseFormatCode(const std::string& text, uint32_t& code, std::string& error) {
    std::string p[5];
    VideoFormatBase::Resolution_e res;
    VideoFormatBase::ScanType_e scan;
    VideoFormatBase::FrameRate_e rate;
    VideoFormatBase::AspectRatio_e aspect;
    error = "malformed video format " + Quoted(text) + " (e.g. 1920x1080p50, 720x576i25/4:3)";
    if (!SplitFormatText(text, p)) return false;
    if (!ParseSize(p[0], p[1], res)) {
        error = "unknown picture size " + p[0] + "x" + p[1] +
                " (720x480 720x576 1280x720 1920x1080 3840x2160 4096x2160)";
        return false;
    }
    if (!ParseScan(p[2], scan)) {
        error = "unknown scan type " + Quoted(p[2]) + " (i, p or psf)";
        return false;
    }
    if (!ParseRate(p[3], rate)) {
        error = "unknown frame rate " + Quoted(p[3]) + " (23.98 24 25 29.97 30 50 59.94 60)";
        return false;
    }
    const bool sd = res == VideoFormatBase::RESOLUTION_720X480 || res == VideoFormatBase::RESOLUTION_720X576;
    aspect = sd ? VideoFormatBase::ASPECT_RATIO_4X3 : VideoFormatBase::ASPECT_RATIO_16X9;
    if (!p[4].empty() && !ParseAspect(p[4], aspect)) {
        error = "unknown aspect ratio " + Quoted(p[4]) + " (1:1 4:3 16:9 2.21:1 1.9:1)";
        return false;
    }
    code = UhdVidFormat(res, scan, aspect, rate).GetId();
    error.clear();
    return true;
}

bool ParseValue(const COpSsData& entry, const std::string& text, SsOp& op, std::string& error) {
    const DataVarType_e type = entry.GetDataType();
    std::string why;
    unsigned long long pattern = 0;
    bool flag = false;
    switch (type) {
        case VT_STRING: return op.SetSsOpData(text, VT_STRING);
        case VT_MAC: op.SetDataU8(text); return true;
        case VT_BOOL:
            if (!ParseBool(text, flag)) {
                why = "malformed value " + Quoted(text) + " for VT_BOOL (0, 1, true or false)";
                break;
            }
            return op.SetSsOpData(flag ? 1 : 0, VT_BOOL);
        case VT_IP: {
            KT::CIpAddress ip;
            if (!ip.Set(text)) break;
            op.SetDataU32(ip.GetIpInt());
            return true;
        }
        default:
            if (OpCatalog::IsFormatCode(entry.GetOpId()) && LooksLikeFormatText(text)) {
                uint32_t code = 0;
                if (!ParseFormatCode(text, code, why)) break;
                op.SetDataU32(code);
                return true;
            }
            if (ParseIntegerForType(text, type, pattern, why)) return op.SetSsOpData(pattern, type);
            break;
    }
    if (why.empty()) why = "malformed value " + Quoted(text) + " for " + OpCatalog::TypeName(type);
    error = entry.GetName() + ": " + why;
    return false;
}

bool ParseIndex(const COpSsData& entry, const std::string& text, SsOp& op, std::string& error) {
    CIndex index(entry.GetIndex());
    std::vector<DataVarType_e> types = index.GetIndexTypeList();
    const DataVarType_e fieldType = types.empty() ? VT_UINT8 : types[0];
    unsigned long long value = 0;
    std::string why;
    if (!ParseIntegerForType(text, fieldType, value, why)) {
        error = entry.GetName() + ": bad index " + Quoted(text) + " (" +
                RangeText(CIndex::GetIndexSize(fieldType) * 8, false) + ")";
        return false;
    }
    index.SetIndex(0, static_cast<unsigned>(value));
    index.Serialize();
    op.SetIndexList(index.GetIndexStream());
    return true;
}

Assignment SplitAssignment(const std::string& text) {
    Assignment a;
    size_t eq = text.find('=');
    std::string rest = text;
    if (eq != std::string::npos) {
        a.name = text.substr(0, eq);
        rest = text.substr(eq + 1);
        a.hasValue = true;
    }
    size_t at = rest.rfind('@');
    ParsedInteger ignored;
    if (at != std::string::npos && ParseInteger(rest.substr(at + 1), ignored)) {
        a.hasIndex = true;
        a.index = rest.substr(at + 1);
        rest.resize(at);
    }
    if (a.hasValue) a.value = rest;
    else a.name = rest;
    return a;
}

const COpSsData* LookUpName(const OpCatalog& catalog, const std::string& name, std::string& error) {
    const COpSsData* entry = catalog.FindByName(name);
    if (entry != nullptr) return entry;
    error = "unknown operation name " + Quoted(name);
    std::string hint = catalog.SuggestName(name);
    if (!hint.empty()) error += " (did you mean " + hint + "?)";
    error += "; 'avhost list' shows the dictionary";
    return nullptr;
}

bool ParseAssignment(const OpCatalog& catalog, const std::string& text, SsOp& op, std::string& error) {
    Assignment a = SplitAssignment(text);
    if (!a.hasValue) {
        error = "expected NAME=VALUE[@INDEX], got " + Quoted(text);
        return false;
    }
    const COpSsData* entry = LookUpName(catalog, a.name, error);
    if (entry == nullptr) return false;
    op = SsOp(OP_TYPE_DATA, entry->GetOpId());
    if (!ParseValue(*entry, a.value, op, error)) return false;
    return ParseIndex(*entry, a.hasIndex ? a.index : "0", op, error);
}

SsOp MakeApplyOp() { return SsOp(OP_TYPE_APPLY_CONFIG, 0); }

bool ParseHexBytes(const std::string& text, Bytes& out, std::string& error) {
    Bytes bytes;
    std::string digits;
    auto flush = [&]() {
        if (digits.size() % 2 != 0) return false;
        for (size_t i = 0; i < digits.size(); i += 2)
            bytes.push_back(static_cast<unsigned char>(std::strtoul(digits.substr(i, 2).c_str(), nullptr, 16)));
        digits.clear();
        return true;
    };
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '0' && i + 1 < text.size() && (text[i + 1] == 'x' || text[i + 1] == 'X') && digits.empty()) {
            ++i;
        } else if (std::isxdigit(c)) {
            digits.push_back(static_cast<char>(c));
        } else if (std::isspace(c) || c == ',' || c == ':') {
            if (!flush()) break;
        } else {
            error = "not a hex byte string: unexpected '" + std::string(1, static_cast<char>(c)) + "'";
            return false;
        }
    }
    if (!flush()) {
        error = "not a hex byte string: odd number of hex digits";
        return false;
    }
    if (bytes.empty()) {
        error = "no bytes given";
        return false;
    }
    out = bytes;
    return true;
}

}  // namespace avhost
