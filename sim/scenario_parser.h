// Reads the virtual board's scenario files: a line-based description of the
// incoming stream (services, video and audio streams, timed format changes).
// The grammar is documented in sim/README.md. Pure functions; any thread.
#pragma once

#include <string>

#include "sim/stream_model.h"

namespace stbsim {

// Parses a whole scenario. On failure returns false, leaves *out unchanged and
// sets *error to "line N: what is wrong".
bool ParseScenario(const std::string& text, StreamInput* out, std::string* error);

// Parses the arguments of a change ("pid=0x100 width=3840 height=2160") into
// c->pid and c->assignments, checking every key and value on a default stream.
bool ParseChangeArgs(const std::string& args, bool video, TimedChange* c, std::string* error);

// Applies a change to the stream it names (or the first of its kind).
// False, with *error set, if no such stream exists or a value is invalid.
bool ApplyChange(StreamInput& in, const TimedChange& c, std::string* error);

}  // namespace stbsim
