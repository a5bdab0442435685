// Builds Extended Modules byte by byte, also such as no tracker would write.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/ByteBuilder.h"

namespace vonta::test {

struct XmSampleRecipe {
    std::string name = "sample";
    std::vector<std::uint8_t> wave = {};                  // in the delta code of the format
    unsigned loopStart = 0, loopLength = 0;          // bytes
    unsigned volume = 64, fineTune = 0, type = 0, panning = 128, relativeNote = 0;
    std::optional<unsigned> length = std::nullopt;                  // told instead of the wave's
};

struct XmInstrumentRecipe {
    std::string name = "instrument";
    std::vector<XmSampleRecipe> samples = {};
    std::vector<std::uint8_t> keyMap = std::vector<std::uint8_t>(96);
    std::vector<std::pair<unsigned, unsigned>> volumePoints = {{0, 64}, {10, 32}}, panPoints = {{0, 32}};
    unsigned volumeType = 0, panType = 0;            // bit 0 on, bit 1 sustain, bit 2 loop
    unsigned volumeSustain = 0, volumeLoopStart = 0, volumeLoopEnd = 0;
    unsigned panSustain = 0, panLoopStart = 0, panLoopEnd = 0;
    unsigned fadeOut = 0;
    unsigned reserved = 22;                          // bytes behind the known fields
    unsigned sampleHeaderSize = 40;
    std::optional<unsigned> size = std::nullopt, numSamples = std::nullopt;        // told instead of the true ones
};

struct XmPatternRecipe {
    unsigned rows = 64;
    std::vector<std::uint8_t> cells = {};
    unsigned headerSize = 9, packing = 0;
    std::optional<unsigned> packedSize = std::nullopt;
};

struct XmBuilder {
    std::string title = "title";
    unsigned headerSize = 276, length = 1, restart = 0, channels = 2, tempo = 6, bpm = 125;
    std::optional<unsigned> numPatterns, numInstruments;
    std::vector<std::uint8_t> order = std::vector<std::uint8_t>(256);
    std::vector<XmPatternRecipe> patterns;
    std::vector<XmInstrumentRecipe> instruments;

    // A small file in which every kind of record occurs.
    static XmBuilder Small() {
        XmBuilder xm;
        xm.patterns = {{4, {49, 1, 0x50, 0, 0, 0x81, 50, 0x80, 0x9E, 1, 0x10, 1, 2, 0x80, 0x80, 0x80, 0x81, 97}},
                       {2, {}}};
        XmInstrumentRecipe instrument;
        instrument.samples = {{.name = "eight", .wave = {1, 1, 254, 3}, .loopStart = 1, .loopLength = 2, .type = 1},
                              {.name = "sixteen", .wave = {0, 1, 0, 1, 255, 255}, .type = 16}};
        instrument.volumeType = 7;
        XmInstrumentRecipe silent;
        silent.name = "silent";
        silent.reserved = 4;
        xm.instruments = {silent, instrument};
        return xm;
    }

    std::vector<std::uint8_t> Build() const {
        ByteBuilder out;
        out.Text("Extended Module: ").FixedText(title, 20).U8(0x1A).FixedText("a test", 20).U16(0x0104);
        out.U32(headerSize).U16(length).U16(restart).U16(channels);
        out.U16(numPatterns.value_or(static_cast<unsigned>(patterns.size())));
        out.U16(numInstruments.value_or(static_cast<unsigned>(instruments.size())));
        out.U16(1).U16(tempo).U16(bpm).Bytes(order);
        for (const auto& pattern : patterns) AddPattern(out, pattern);
        for (const auto& instrument : instruments) AddInstrument(out, instrument);
        return out.bytes;
    }

    // What an instrument has in common with a file of its own.
    static void AddBody(ByteBuilder& out, const XmInstrumentRecipe& it) {
        out.Bytes(it.keyMap);
        AddPoints(out, it.volumePoints);
        AddPoints(out, it.panPoints);
        out.U8(static_cast<unsigned>(it.volumePoints.size())).U8(static_cast<unsigned>(it.panPoints.size()));
        out.U8(it.volumeSustain).U8(it.volumeLoopStart).U8(it.volumeLoopEnd);
        out.U8(it.panSustain).U8(it.panLoopStart).U8(it.panLoopEnd);
        out.U8(it.volumeType).U8(it.panType).Zeros(4).U16(it.fadeOut);
    }
    static void AddSamples(ByteBuilder& out, const XmInstrumentRecipe& it) {
        for (const auto& sample : it.samples) {
            out.U32(sample.length.value_or(static_cast<unsigned>(sample.wave.size())));
            out.U32(sample.loopStart).U32(sample.loopLength).U8(sample.volume).U8(sample.fineTune);
            out.U8(sample.type).U8(sample.panning).U8(sample.relativeNote).U8(0).FixedText(sample.name, 22);
            out.Zeros(it.sampleHeaderSize > 40 ? it.sampleHeaderSize - 40 : 0);
        }
        for (const auto& sample : it.samples) out.Bytes(sample.wave);
    }

private:
    static void AddPattern(ByteBuilder& out, const XmPatternRecipe& pattern) {
        out.U32(pattern.headerSize).U8(pattern.packing).U16(pattern.rows);
        out.U16(pattern.packedSize.value_or(static_cast<unsigned>(pattern.cells.size())));
        if (pattern.headerSize > 9 && pattern.headerSize < 100) out.Zeros(pattern.headerSize - 9);
        out.Bytes(pattern.cells);
    }
    static void AddPoints(ByteBuilder& out, const std::vector<std::pair<unsigned, unsigned>>& points) {
        for (const auto& [x, y] : points) out.U16(x).U16(y);
        out.Zeros(48 - 4 * points.size());
    }
    static void AddInstrument(ByteBuilder& out, const XmInstrumentRecipe& it) {
        const bool has = !it.samples.empty() || it.numSamples.value_or(0) != 0;
        out.U32(it.size.value_or((has ? 241 : 29) + it.reserved)).FixedText(it.name, 22).U8(0);
        out.U16(it.numSamples.value_or(static_cast<unsigned>(it.samples.size())));
        if (has) AddBody(out.U32(it.sampleHeaderSize), it);
        out.Zeros(it.reserved);
        AddSamples(out, it);
    }
};

}  // namespace vonta::test
