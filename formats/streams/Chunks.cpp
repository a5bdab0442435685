#include "formats/streams/Chunks.h"

#include <limits>

namespace vonta {
namespace {

constexpr std::uint16_t kEndType = 0xFFFF;
constexpr std::uint16_t kSmallEndType = 0xFF;
constexpr std::uint32_t kEndId = 0xFFFF0001;
constexpr std::uint16_t kSmallEndId = 0xFF01;

}  // namespace

bool ChunkReader::Next(ChunkHeader& chunk) {
    const std::uint32_t id = in_.U32();
    chunk = {static_cast<std::uint16_t>(id >> 16), static_cast<std::uint16_t>(id & 0xFFFF), in_.U32()};
    return !in_.Truncated() && chunk.type != kEndType;
}

bool ChunkReader::NextSmall(ChunkHeader& chunk) {
    const std::uint16_t id = in_.U16();
    chunk = {static_cast<std::uint16_t>(id >> 8), static_cast<std::uint16_t>(id & 0xFF), in_.U16()};
    return !in_.Truncated() && chunk.type != kSmallEndType;
}

void ChunkReader::SkipUnknown(const ChunkHeader& chunk) {
    unknown_ = true;
    in_.Skip(chunk.length);
}

std::int64_t ChunkWriter::BeginChunk(std::uint32_t id) {
    out_.U32(id);
    const std::int64_t position = out_.Stream().Tell();
    out_.U32(0);
    return position;
}

void ChunkWriter::EndChunk(std::int64_t position) {
    FileStream& stream = out_.Stream();
    const std::int64_t end = stream.Size();
    stream.Seek(position, kFromStart);
    out_.U32(static_cast<std::uint32_t>(end - position - 4));
    stream.Seek(end, kFromStart);
}

std::int64_t ChunkWriter::BeginSmallChunk(std::uint16_t id) {
    out_.U16(id);
    const std::int64_t position = out_.Stream().Tell();
    out_.U16(0);
    return position;
}

void ChunkWriter::EndSmallChunk(std::int64_t position) {
    FileStream& stream = out_.Stream();
    const std::int64_t end = stream.Size();
    const std::int64_t length = end - position - 2;
    if (length > std::numeric_limits<std::uint16_t>::max()) DebugOutput("WARNING: WriteChunkLenghtW > 64k\n");
    stream.Seek(position, kFromStart);
    out_.U16(static_cast<std::uint16_t>(length));
    stream.Seek(end, kFromStart);
}

void ChunkWriter::WriteEnd() {
    out_.U32(kEndId);
    out_.U32(0);
}

void ChunkWriter::WriteSmallEnd() {
    out_.U16(kSmallEndId);
    out_.U16(0);
}

}  // namespace vonta
