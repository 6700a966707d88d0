// A minimal writer of one-line JSON for the board's state. Not thread-safe;
// one writer per output.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace stbsim {

class CJsonWriter {
public:
    CJsonWriter& Begin(const char* key = nullptr);       // {  (key inside an object)
    CJsonWriter& End();                                  // }
    CJsonWriter& BeginList(const char* key = nullptr);   // [
    CJsonWriter& EndList();                              // ]
    CJsonWriter& Num(const char* key, int64_t v);
    CJsonWriter& Bool(const char* key, bool v);
    CJsonWriter& Str(const char* key, const std::string& v);
    const std::string& Text() const { return m_out; }

private:
    void Key(const char* key);
    std::string m_out;
    std::vector<bool> m_first;  // per open container: nothing written yet
};

std::string JsonEscape(const std::string& s);

}  // namespace stbsim
