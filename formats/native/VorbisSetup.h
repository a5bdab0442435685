// A look at a Vorbis setup header before the decoder gets it. The decoder believes what the header claims of
// its codebooks and takes memory and stack for it, hundreds of megabytes for a few bytes.
#pragma once

#include <ogg/ogg.h>

namespace vonta {

// Whether the codebooks of a setup packet are as large as encoders make them, and no larger.
bool HasModestCodebooks(const ogg_packet& setup);

}  // namespace vonta
