// Where the virtual board's input comes from: a file named by STBSIM_STREAM or
// by the control socket's "stream FILE". Each kind of file has a source that
// recognises it and fills the input model; scenario files are always known, a
// prober of real MPEG-TS files can be added beside them. Any thread.
#pragma once

#include <string>

#include "sim/stream_model.h"

namespace stbsim {

class IStreamSource {
public:
    virtual ~IStreamSource() = default;
    // True if this source reads such a file; head is its first bytes (up to 188).
    virtual bool Recognises(const std::string& path, const std::string& head) const = 0;
    // Fills *out from the file; false with *error set on failure (*out unchanged).
    virtual bool Load(const std::string& path, StreamInput* out, std::string* error) const = 0;
};

// The prober of MPEG-TS files, or nullptr when this build has none.
const IStreamSource* TransportStreamSource();

// Loads a file through the first source that recognises it. On failure returns
// false with *error naming the file and the reason.
bool LoadStreamInput(const std::string& path, StreamInput* out, std::string* error);

}  // namespace stbsim
