#include "formats/streams/Riff.h"

#include <algorithm>

namespace vonta {

RiffHead ReadRiffHead(Reader& in) {
    RiffHead head;
    head.tag = in.FixedText(kRiffTagBytes);
    in.U32();
    head.form = in.FixedText(kRiffTagBytes);
    return head;
}

bool IsRiff(FileStream& stream, std::string_view form) {
    Reader in(stream);
    const RiffHead head = ReadRiffHead(in);
    return head.tag == kRiffTag && head.form == form;
}

bool IsRiff(const std::string& path, std::string_view form) {
    DiskStream stream;
    return stream.Open(path, "rb") && IsRiff(stream, form);
}

bool NextRiffChunk(Reader& in, std::int64_t end, RiffChunk& chunk) {
    FileStream& stream = in.Stream();
    end = std::min(end, stream.Size());
    if (end - stream.Tell() < kRiffChunkHeadBytes) return false;
    chunk.tag = in.FixedText(kRiffTagBytes);
    chunk.size = in.U32();
    chunk.body = stream.Tell();
    chunk.end = std::min(chunk.body + chunk.size, end);
    return true;
}

void LeaveRiffChunk(Reader& in, const RiffChunk& chunk) {
    FileStream& stream = in.Stream();
    stream.Seek(chunk.end, kFromStart);
    if (chunk.size % 2 == 0 || stream.Remaining() == 0) return;
    if (in.U8() != 0) stream.Seek(chunk.end, kFromStart);   // no tag begins with a NUL
}

}  // namespace vonta
