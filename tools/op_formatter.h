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
//        {"t":1.234,"dir":"<","op":"videoFrameRate",...,"value":3,"meaning":"25 fps"}
// CSV:   t,dir,op,opId,opType,type,index,value,meaning,error (CsvHeader), one row per frame
// Enumerated values carry their meaning from protocol/op_value_names. JSON text
// is always valid UTF-8: bytes that are not UTF-8 are taken as Latin-1.
// With UTC on, times show as absolute UTC with microseconds (text and CSV in
// place of the seconds, JSON as an extra "utc" key).
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tools/line_decoder.h"
#include "tools/op_catalog.h"

namespace avhost {

class OpFormatter {
public:
    enum Style { kText, kJson, kCsv };
    struct Output {
        Style style = kText;
        bool utc = false;
        double epochAtZero = 0;  // seconds since 1970 at t = 0 (for utc)
    };

    explicit OpFormatter(const OpCatalog& catalog) : m_catalog(catalog) {}
    OpFormatter(const OpCatalog& catalog, Output output) : m_catalog(catalog), m_output(output) {}

    const OpCatalog& Catalog() const { return m_catalog; }
    // One line in the chosen style, without line end.
    std::string Line(double t, char dir, const LineFrame& frame) const;
    std::string Csv(double t, char dir, const LineFrame& frame) const;
    static std::string CsvHeader();
    // The meaning of an enumerated value ("25 fps"), or "".
    std::string Meaning(const SsOp& op) const;

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

    std::string TimeField(double t, const char* secondsFormat) const;

    const OpCatalog& m_catalog;
    Output m_output;
};

// Which frames a listing shows: --only and --skip by operation name ("apply"
// for the trigger, "error" for frames that are no operation).
class FrameFilter {
public:
    // False with error for a name that is neither in the dictionary nor one of the two above.
    bool Set(const OpCatalog& catalog, const std::vector<std::string>& only, const std::vector<std::string>& skip,
             std::string& error);
    bool Shows(const OpCatalog& catalog, const LineFrame& frame) const;

private:
    std::set<std::string> m_only;
    std::set<std::string> m_skip;
};

// The frame's name for filters and tables: the operation's name, "apply",
// "#<opId>" for an unknown opId, "error" for a frame that is no operation.
std::string FrameName(const OpCatalog& catalog, const LineFrame& frame);
// The bytes as UTF-8: valid UTF-8 as is, otherwise every byte as Latin-1.
std::string ToUtf8(const std::string& bytes);
// Seconds since 1970 as "2024-05-01T12:00:00.123456Z".
std::string UtcText(double epochSeconds);

// A JSON string literal of the text made UTF-8 (see ToUtf8).
std::string JsonString(const std::string& text);
// A C-style quoted text: \" \\ \n \t and \xNN for other unprintable bytes.
std::string QuotedText(const std::string& text);

}  // namespace avhost
