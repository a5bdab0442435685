// Builds modules of 31 instruments byte by byte, also such as no tracker would write.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tests/support/ByteBuilder.h"

namespace vonta::test {

struct ModSampleRecipe {
    std::string name = {};
    std::vector<std::uint8_t> wave = {};
    unsigned words = 0;                              // told in the record, whatever the wave is
    unsigned fineTune = 0, volume = 64;
    unsigned loopStart = 0, loopLength = 1;          // words
};

struct ModBuilder {
    std::string title = "title", tag = "M.K.";
    std::vector<ModSampleRecipe> samples;              // the others are empty
    unsigned length = 1, restart = 127;
    std::vector<std::uint8_t> orders = {0};
    std::vector<std::vector<std::uint8_t>> patterns = {{}};   // cells; what is missing is zeros
    int channels = 4;                                // of the patterns, whatever the tag says

    // A small file in which every kind of record occurs.
    static ModBuilder Small() {
        ModBuilder mod;
        mod.samples = {{.name = "first", .wave = {1, 2, 0x80, 0x7F}, .words = 2, .loopLength = 2},
                       {.name = "second", .wave = {9, 9}, .words = 1, .fineTune = 15, .volume = 32}};
        mod.orders = {1, 0};
        mod.length = 2;
        mod.patterns = {{0x03, 0x58, 0x1C, 0x40}, {0x00, 0x71, 0x2F, 0x06}};
        return mod;
    }

    std::vector<std::uint8_t> Build() const {
        ByteBuilder out;
        out.FixedText(title, 20);
        for (std::size_t i = 0; i < 31; ++i) AddRecord(out, i < samples.size() ? samples[i] : ModSampleRecipe{});
        out.U8(length).U8(restart).Bytes(orders).Zeros(128 - orders.size()).FixedText(tag, 4);
        for (const auto& cells : patterns)
            out.Bytes(cells).Zeros(static_cast<std::size_t>(64 * channels * 4) - cells.size());
        for (const auto& sample : samples) out.Bytes(sample.wave);
        return out.bytes;
    }

private:
    static void AddWord(ByteBuilder& out, unsigned value) { out.U8(value >> 8).U8(value & 0xFF); }
    static void AddRecord(ByteBuilder& out, const ModSampleRecipe& sample) {
        out.FixedText(sample.name, 22);
        AddWord(out, sample.words);
        out.U8(sample.fineTune).U8(sample.volume);
        AddWord(out, sample.loopStart);
        AddWord(out, sample.loopLength);
    }
};

}  // namespace vonta::test
