// Writer of the board's one-line JSON state, over nlohmann-json: containers are
// opened and closed in order as the text would read. Strings are made valid
// UTF-8 first (bytes that are not UTF-8 are read as Latin-1), so any service
// name gives valid JSON. Not thread-safe; one writer per output.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace stbsim {

class CJsonWriter {
public:
    CJsonWriter();
    CJsonWriter& Begin(const char* key = nullptr);       // {  (key inside an object)
    CJsonWriter& End();                                  // }
    CJsonWriter& BeginList(const char* key = nullptr);   // [
    CJsonWriter& EndList();                              // ]
    CJsonWriter& Num(const char* key, int64_t v);
    CJsonWriter& Bool(const char* key, bool v);
    CJsonWriter& Str(const char* key, const std::string& v);
    // The document as one line of JSON.
    std::string Text() const;

private:
    CJsonWriter& Put(const char* key, nlohmann::ordered_json v);
    nlohmann::ordered_json m_root;
    std::vector<nlohmann::ordered_json*> m_open;  // the containers being written, innermost last
};

// s with every byte sequence that is not UTF-8 read as Latin-1 (one byte, one character).
std::string ToUtf8(const std::string& s);

}  // namespace stbsim
