// Builds without an MPEG-TS prober: only scenario files can be read.
#include "sim/stream_source.h"

namespace stbsim {

const IStreamSource* TransportStreamSource() { return nullptr; }

}  // namespace stbsim
