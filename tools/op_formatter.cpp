// Text and JSON lines for frames seen on the line. Pure formatting.
#include "tools/op_formatter.h"

#include <cmath>
#include <cstdio>
#include <ctime>

#include <nlohmann/json.hpp>

#include "output/uhd_vid_format.h"
#include "protocol/c_index.h"
#include "protocol/op_value_names.h"
#include "toolkit/kt_address.h"

namespace avhost {

namespace {

std::string Number(long long v) { return std::to_string(v); }
std::string UNumber(unsigned long long v) { return std::to_string(v); }

bool Printable(const std::vector<unsigned char>& bytes) {
    if (bytes.empty()) return false;
    for (unsigned char b : bytes) {
        if (b < 0x20 || b > 0x7E) return false;
    }
    return true;
}

const char* KindText(LineFrame::Kind kind) {
    switch (kind) {
        case LineFrame::kBadFrame: return "decode failed";
        case LineFrame::kStray: return "stray bytes";
        case LineFrame::kIncomplete: return "incomplete frame";
        default: return "";
    }
}

std::string TimeText(const char* fmt, double t) {
    char buf[32];
    snprintf(buf, sizeof buf, fmt, t);
    return buf;
}

}  // namespace

std::string JsonString(const std::string& text) { return nlohmann::json(ToUtf8(text)).dump(); }

// Length of the UTF-8 sequence starting at i, 0 when it is not valid UTF-8.
static size_t Utf8Length(const std::string& s, size_t i) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    size_t n = c < 0x80 ? 1 : (c & 0xE0) == 0xC0 ? 2 : (c & 0xF0) == 0xE0 ? 3 : (c & 0xF8) == 0xF0 ? 4 : 0;
    if (n == 0 || i + n > s.size() || (n == 2 && c < 0xC2) || (n == 4 && c > 0xF4)) return 0;
    for (size_t k = 1; k < n; ++k) {
        if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return 0;
    }
    const unsigned char c1 = static_cast<unsigned char>(s[i + 1 < s.size() ? i + 1 : i]);
    if ((n == 3 && c == 0xE0 && c1 < 0xA0) || (n == 3 && c == 0xED && c1 >= 0xA0) ||
        (n == 4 && c == 0xF0 && c1 < 0x90) || (n == 4 && c == 0xF4 && c1 >= 0x90))
        return 0;  // overlong forms, surrogates, beyond U+10FFFF
    return n;
}

std::string ToUtf8(const std::string& bytes) {
    size_t i = 0;
    while (i < bytes.size()) {
        size_t n = Utf8Length(bytes, i);
        if (n == 0) break;
        i += n;
    }
    if (i == bytes.size()) return bytes;
    std::string out;
    for (unsigned char c : bytes) {
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::string UtcText(double epochSeconds) {
    const double whole = std::floor(epochSeconds);
    long long micros = std::llround((epochSeconds - whole) * 1e6);
    time_t secs = static_cast<time_t>(whole);
    if (micros >= 1000000) {
        micros -= 1000000;
        ++secs;
    }
    tm parts{};
    gmtime_r(&secs, &parts);
    char buf[96];
    snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d.%06lldZ", parts.tm_year + 1900, parts.tm_mon + 1,
             parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec, micros);
    return buf;
}

std::string QuotedText(const std::string& text) {
    std::string out = "\"";
    char buf[8];
    for (size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const size_t sequence = c >= 0xC2 ? Utf8Length(text, i) : 0;
        if (sequence > 1) {  // a UTF-8 character ("Café ТВ") shows as itself
            out += text.substr(i, sequence);
            i += sequence - 1;
        } else if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c < 0x20 || c > 0x7E) {
            snprintf(buf, sizeof buf, "\\x%02X", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

bool OpFormatter::IndexOf(const SsOp& op, unsigned long long& index) const {
    const std::vector<unsigned char> stream = op.GetIndexList();
    if (stream.empty()) return false;
    const COpSsData* entry = m_catalog.FindById(op.GetOpId());
    if (entry != nullptr) {
        CIndex decoded(stream, entry->GetIndex().GetIndexTypeList());
        unsigned value = 0;
        if (decoded.Deserialize() && decoded.GetIndex(0, value)) {
            index = value;
            return true;
        }
    }
    if (stream.size() > 8) return false;
    // An index of an unknown operation or an odd shape: its bytes, most significant first.
    index = 0;
    for (unsigned char b : stream) index = (index << 8) | b;
    return true;
}

// The value by the entry's type when its length fits the type; otherwise the
// bytes as text (status texts travel under numeric types) or as hex.
OpFormatter::Value OpFormatter::ValueOf(const SsOp& op, const COpSsData* entry) const {
    Value v;
    const std::vector<unsigned char> data = op.GetRawData();
    const DataVarType_e type = entry != nullptr ? entry->GetDataType() : VT_STRING;
    const bool fits = entry != nullptr && OpCatalog::ValueSize(type) == data.size();
    auto num = [&v](const std::string& n) { v.text = v.json = v.plain = n; };
    if (fits) {
        switch (type) {
            case VT_INT8: { char c = 0; op.GetData(type, c); num(Number(static_cast<signed char>(c))); return v; }
            case VT_UINT8: { unsigned char c = 0; op.GetData(type, c); num(Number(c)); return v; }
            case VT_INT16: { short s = 0; op.GetData(type, s); num(Number(s)); return v; }
            case VT_UINT16: { unsigned short s = 0; op.GetData(type, s); num(Number(s)); return v; }
            case VT_INT32: { int i = 0; op.GetData(type, i); num(Number(i)); return v; }
            case VT_INT64: { long long i = 0; op.GetData(type, i); num(Number(i)); return v; }
            case VT_UINT64: { unsigned long long i = 0; op.GetData(type, i); num(UNumber(i)); return v; }
            case VT_BOOL: { bool b = false; op.GetData(type, b); num(b ? "true" : "false"); return v; }
            case VT_IP: {
                KT::CIpAddress ip;
                op.GetData(type, ip);
                v.text = v.plain = ip.ToString();
                v.json = JsonString(v.plain);
                return v;
            }
            case VT_UINT32: {
                unsigned u = 0;
                op.GetData(type, u);
                num(UNumber(u));
                if (OpCatalog::IsFormatCode(op.GetOpId())) {
                    char hex[16];
                    snprintf(hex, sizeof hex, "0x%08X", u);
                    v.format = UhdVidFormat(u).GetFormatString();
                    v.text = std::string(hex) + " (" + v.format + ")";
                }
                return v;
            }
            default: break;
        }
    }
    const std::string text(data.begin(), data.end());
    if (type == VT_STRING || type == VT_MAC || Printable(data)) {
        v.text = QuotedText(text);
        v.json = JsonString(text);
        v.plain = text;
    } else {
        v.text = "[" + HexString(data) + "]";
        v.json = data.empty() ? "null" : JsonString(HexString(data));
    }
    return v;
}

std::string OpFormatter::NameOf(const SsOp& op, const COpSsData* entry) const {
    return entry != nullptr ? entry->GetName() : "#" + std::to_string(op.GetOpId());
}

std::string OpFormatter::Describe(const SsOp& op) const {
    if (op.GetOpType() == OP_TYPE_APPLY_CONFIG && op.GetDataLength() == 0) return "apply";
    const COpSsData* entry = m_catalog.FindById(op.GetOpId());
    std::string out = NameOf(op, entry);
    unsigned long long index = 0;
    if (IndexOf(op, index)) out += "[" + UNumber(index) + "]";
    else if (op.GetIndexCount() > 0) out += "[" + HexString(op.GetIndexList()) + "]";
    out += " = " + ValueOf(op, entry).text;
    const std::string meaning = Meaning(op);
    if (!meaning.empty()) out += " (" + meaning + ")";
    if (op.GetOpType() != OP_TYPE_DATA) out += " (op type " + Number(op.GetOpType()) + ")";
    return out;
}

std::string OpFormatter::Describe(const LineFrame& frame) const {
    if (frame.kind == LineFrame::kOp) return Describe(frame.op);
    return std::string(KindText(frame.kind)) + ": " + HexString(frame.line);
}

std::string OpFormatter::PlainValue(const SsOp& op) const {
    return ValueOf(op, m_catalog.FindById(op.GetOpId())).plain;
}

std::string OpFormatter::Meaning(const SsOp& op) const {
    const COpSsData* entry = m_catalog.FindById(op.GetOpId());
    if (entry == nullptr || op.GetOpType() != OP_TYPE_DATA) return "";
    const std::string plain = ValueOf(op, entry).plain;
    char* end = nullptr;
    const long long value = std::strtoll(plain.c_str(), &end, 10);
    if (plain.empty() || *end != '\0') return "";
    const char* name = op_value_names::NameOf(entry->GetName(), value);
    return name != nullptr ? name : "";
}

std::string OpFormatter::TimeField(double t, const char* secondsFormat) const {
    return m_output.utc ? UtcText(m_output.epochAtZero + t) : TimeText(secondsFormat, t);
}

std::string OpFormatter::Line(double t, char dir, const LineFrame& frame) const {
    switch (m_output.style) {
        case kJson: return Json(t, dir, frame);
        case kCsv: return Csv(t, dir, frame);
        default: return Text(t, dir, frame);
    }
}

std::string OpFormatter::Text(double t, char dir, const LineFrame& frame) const {
    return TimeField(t, "%8.3f") + " " + dir + " " + Describe(frame);
}

std::string OpFormatter::Json(double t, char dir, const LineFrame& frame) const {
    nlohmann::ordered_json j;
    j["dir"] = std::string(1, dir);
    if (m_output.utc) j["utc"] = UtcText(m_output.epochAtZero + t);
    if (frame.kind != LineFrame::kOp) {
        j["error"] = KindText(frame.kind);
        j["bytes"] = HexString(frame.line);
    } else {
        const SsOp& op = frame.op;
        const COpSsData* entry = m_catalog.FindById(op.GetOpId());
        const bool apply = op.GetOpType() == OP_TYPE_APPLY_CONFIG && op.GetDataLength() == 0;
        j["op"] = apply ? nlohmann::ordered_json("apply") : entry ? nlohmann::ordered_json(entry->GetName()) : nullptr;
        j["opId"] = op.GetOpId();
        j["opType"] = static_cast<int>(op.GetOpType());
        if (!apply) {
            j["type"] = entry ? nlohmann::ordered_json(OpCatalog::TypeName(entry->GetDataType())) : nullptr;
            unsigned long long index = 0;
            j["index"] = IndexOf(op, index) ? nlohmann::ordered_json(index) : nullptr;
            const Value v = ValueOf(op, entry);
            j["value"] = nlohmann::ordered_json::parse(v.json.empty() ? "null" : v.json);
            const std::string meaning = Meaning(op);
            if (!meaning.empty()) j["meaning"] = meaning;
            if (!v.format.empty()) j["text"] = v.format;
        }
    }
    // "t" first and with three decimals, as the text lines show it.
    return "{\"t\":" + TimeText("%.3f", t) + "," + j.dump().substr(1);
}

std::string OpFormatter::CsvHeader() { return "t,dir,op,opId,opType,type,index,value,meaning,error"; }

// One CSV field: quoted when it holds a comma, quote or line end.
static std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string out = "\"";
    for (char c : text) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

std::string OpFormatter::Csv(double t, char dir, const LineFrame& frame) const {
    std::vector<std::string> f(10);
    f[0] = TimeField(t, "%.3f");
    f[1] = std::string(1, dir);
    if (frame.kind != LineFrame::kOp) {
        f[7] = HexString(frame.line);
        f[9] = KindText(frame.kind);
    } else {
        const SsOp& op = frame.op;
        const COpSsData* entry = m_catalog.FindById(op.GetOpId());
        const bool apply = op.GetOpType() == OP_TYPE_APPLY_CONFIG && op.GetDataLength() == 0;
        f[2] = apply ? "apply" : NameOf(op, entry);
        f[3] = UNumber(op.GetOpId());
        f[4] = Number(op.GetOpType());
        if (!apply) {
            f[5] = entry ? OpCatalog::TypeName(entry->GetDataType()) : "";
            unsigned long long index = 0;
            if (IndexOf(op, index)) f[6] = UNumber(index);
            const Value v = ValueOf(op, entry);
            f[7] = ToUtf8(v.plain.empty() && !v.text.empty() ? v.text : v.plain);
            f[8] = v.format.empty() ? Meaning(op) : v.format;
        }
    }
    std::string out;
    for (size_t i = 0; i < f.size(); ++i) out += (i ? "," : "") + CsvField(f[i]);
    return out;
}

std::string FrameName(const OpCatalog& catalog, const LineFrame& frame) {
    if (frame.kind != LineFrame::kOp) return "error";
    if (frame.op.GetOpType() == OP_TYPE_APPLY_CONFIG && frame.op.GetDataLength() == 0) return "apply";
    const COpSsData* entry = catalog.FindById(frame.op.GetOpId());
    return entry != nullptr ? entry->GetName() : "#" + std::to_string(frame.op.GetOpId());
}

bool FrameFilter::Set(const OpCatalog& catalog, const std::vector<std::string>& only,
                      const std::vector<std::string>& skip, std::string& error) {
    for (const auto* list : {&only, &skip}) {
        for (const std::string& name : *list) {
            if (name == "apply" || name == "error" || catalog.FindByName(name) != nullptr) continue;
            error = "unknown operation name \"" + name + "\" in --" + (list == &only ? "only" : "skip");
            return false;
        }
    }
    m_only.insert(only.begin(), only.end());
    m_skip.insert(skip.begin(), skip.end());
    return true;
}

bool FrameFilter::Shows(const OpCatalog& catalog, const LineFrame& frame) const {
    const std::string name = FrameName(catalog, frame);
    if (!m_only.empty() && m_only.count(name) == 0) return false;
    return m_skip.count(name) == 0;
}

}  // namespace avhost
