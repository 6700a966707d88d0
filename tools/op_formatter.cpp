// Text and JSON lines for frames seen on the line. Pure formatting.
#include "tools/op_formatter.h"

#include <cstdio>

#include "output/uhd_vid_format.h"
#include "protocol/c_index.h"
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

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    char buf[8];
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20 || c > 0x7E) {
            snprintf(buf, sizeof buf, "\\u%04x", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

std::string QuotedText(const std::string& text) {
    std::string out = "\"";
    char buf[8];
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
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

std::string OpFormatter::Text(double t, char dir, const LineFrame& frame) const {
    return TimeText("%8.3f", t) + " " + dir + " " + Describe(frame);
}

std::string OpFormatter::Json(double t, char dir, const LineFrame& frame) const {
    std::string out = "{\"t\":" + TimeText("%.3f", t) + ",\"dir\":\"" + dir + "\"";
    if (frame.kind != LineFrame::kOp)
        return out + ",\"error\":" + JsonString(KindText(frame.kind)) + ",\"bytes\":" +
               JsonString(HexString(frame.line)) + "}";
    const SsOp& op = frame.op;
    const COpSsData* entry = m_catalog.FindById(op.GetOpId());
    const bool apply = op.GetOpType() == OP_TYPE_APPLY_CONFIG && op.GetDataLength() == 0;
    out += ",\"op\":" + (apply ? std::string("\"apply\"") : entry ? JsonString(entry->GetName()) : "null");
    out += ",\"opId\":" + UNumber(op.GetOpId()) + ",\"opType\":" + Number(op.GetOpType());
    if (apply) return out + "}";
    out += ",\"type\":" + (entry ? JsonString(OpCatalog::TypeName(entry->GetDataType())) : "null");
    unsigned long long index = 0;
    out += ",\"index\":" + (IndexOf(op, index) ? UNumber(index) : "null");
    Value v = ValueOf(op, entry);
    out += ",\"value\":" + v.json;
    if (!v.format.empty()) out += ",\"text\":" + JsonString(v.format);
    return out + "}";
}

}  // namespace avhost
