// Builds WAV files byte by byte, also such as no program would write.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ByteBuilder.h"

namespace vonta::test {

struct WavBuilder {
    struct Chunk {
        std::string tag;
        std::vector<std::uint8_t> body;
        std::optional<unsigned> size = std::nullopt;     // told instead of the body's
    };

    std::string riff = "RIFF", form = "WAVE";
    unsigned tag = 1, channels = 1, rate = 44100, bits = 16;
    unsigned formatExtra = 0;                            // bytes behind the known fields
    std::vector<Chunk> chunks;                           // behind the format

    static WavBuilder EightBit(std::vector<std::uint8_t> data, unsigned channels = 1) {
        WavBuilder wav;
        wav.bits = 8;
        wav.channels = channels;
        return wav.With({"data", std::move(data)});
    }
    static WavBuilder SixteenBit(const std::vector<int>& values, unsigned channels = 1) {
        WavBuilder wav;
        wav.channels = channels;
        ByteBuilder data;
        for (const int value : values) data.U16(static_cast<unsigned>(value));
        return wav.With({"data", data.bytes});
    }
    // A "smpl" chunk with these loops, in frames.
    static Chunk Sampler(unsigned baseNote, const std::vector<std::pair<unsigned, unsigned>>& loops) {
        ByteBuilder body;
        body.Zeros(12).U32(baseNote).Zeros(12).U32(static_cast<unsigned>(loops.size())).U32(0);
        for (const auto& [start, end] : loops) body.Zeros(8).U32(start).U32(end).Zeros(8);
        return {"smpl", body.bytes};
    }
    WavBuilder With(Chunk chunk) const {
        WavBuilder more = *this;
        more.chunks.push_back(std::move(chunk));
        return more;
    }
    WavBuilder Before(Chunk chunk) const {
        WavBuilder more = *this;
        more.chunks.insert(more.chunks.begin(), std::move(chunk));
        return more;
    }

    std::vector<std::uint8_t> Build() const {
        ByteBuilder out;
        out.Text(riff).U32(0).Text(form).Text("fmt ").U32(16 + formatExtra);
        out.U16(tag).U16(channels).U32(rate).U32(rate * channels * bits / 8).U16(channels * bits / 8).U16(bits);
        out.Zeros(formatExtra);
        for (const auto& chunk : chunks)
            out.Text(chunk.tag).U32(chunk.size.value_or(static_cast<unsigned>(chunk.body.size()))).Bytes(chunk.body);
        return out.bytes;
    }
    std::string Text() const {
        const auto bytes = Build();
        return {bytes.begin(), bytes.end()};
    }
};

}  // namespace vonta::test
