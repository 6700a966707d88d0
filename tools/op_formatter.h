// OpFormatter: how the host tool shows what went over the line: one text line or
// one JSON object per frame, with the operation's name, index and value read by
// the dictionary's value type (format codes also as text). Read-only after
// construction; any thread.
//
// Text:  "   1.234 < videoWidth[0] = 1920"
//        "   1.300 < videooutputCurrentOutputFormat[0] = 0x630D0000 (1920x1080p 16x9 50.00fps)"
//        "   1.400 > apply"
//        "   1.500 < decode failed: 0F 01 10"
// JSON:  {"t":1.234,"dir":"<","op":"videoWidth","opId":271,"opType":0,"type":"VT_UINT16","index":0,"value":1920}
#pragma once

#include <string>

#include "tools/line_decoder.h"
#include "tools/op_catalog.h"

namespace avhost {

class OpFormatter {
public:
    explicit OpFormatter(const OpCatalog& catalog) : m_catalog(catalog) {}

    // One line without line end; t in seconds, dir '>' (host to daemon) or '<'.
    std::string Text(double t, char dir, const LineFrame& frame) const;
    std::string Json(double t, char dir, const LineFrame& frame) const;
    // The text line's part after time and direction ("videoWidth[0] = 1920").
    std::string Describe(const LineFrame& frame) const;
    std::string Describe(const SsOp& op) const;
    // The value as one would type it (number, true/false, unquoted text, format
    // code number); empty when the value does not fit its type.
    std::string PlainValue(const SsOp& op) const;
    // The index field's value; false for an operation without (or with an odd) index.
    bool IndexOf(const SsOp& op, unsigned long long& index) const;

private:
    struct Value {
        std::string text;    // for the text line
        std::string json;    // a JSON value
        std::string plain;   // see PlainValue
        std::string format;  // format-code text, or empty
    };
    Value ValueOf(const SsOp& op, const COpSsData* entry) const;
    std::string NameOf(const SsOp& op, const COpSsData* entry) const;

    const OpCatalog& m_catalog;
};

// A JSON string literal (quotes and escapes); bytes above 0x7E as \u00XX.
std::string JsonString(const std::string& text);
// A C-style quoted text: \" \\ \n \t and \xNN for other unprintable bytes.
std::string QuotedText(const std::string& text);

}  // namespace avhost
