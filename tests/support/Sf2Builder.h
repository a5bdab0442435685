// Builds SoundFont banks byte by byte.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/ByteBuilder.h"

namespace vonta::test {

struct Sf2SampleRecipe {
    std::string name = "sample";
    std::vector<int> wave = {};
    unsigned loopStart = 0, loopEnd = 0;                 // frames of the sample
    unsigned rate = 44100, pitch = 60, type = 1;
};

using Sf2Generators = std::vector<std::pair<unsigned, int>>;   // number, amount
constexpr unsigned kSf2Delay = 33, kSf2Attack = 34, kSf2Hold = 35, kSf2Sustain = 37, kSf2Release = 38,
                   kSf2Instrument = 41, kSf2Keys = 43, kSf2Velocities = 44, kSf2Coarse = 51, kSf2Sample = 53,
                   kSf2Modes = 54, kSf2Scale = 56;
constexpr int Sf2Range(int low, int high) { return low | high << 8; }

struct Sf2Builder {
    std::string name = "bank";
    std::vector<Sf2SampleRecipe> samples;
    std::vector<std::vector<Sf2Generators>> instruments; // zones of each
    std::vector<Sf2Generators> presetZones;
    unsigned gap = 4;                                    // frames of silence between samples

    static Sf2Builder Small() {
        Sf2Builder bank;
        bank.samples = {{"first", {0, 1000, -1000, 32767, -32768}, 1, 4}, {"second", {1, 2, 3}, 0, 0, 22050, 72, 4}};
        bank.instruments = {{{{kSf2Keys, Sf2Range(0, 59)}, {kSf2Modes, 1}, {kSf2Sample, 0}},
                             {{kSf2Keys, Sf2Range(60, 127)}, {kSf2Coarse, 2}, {kSf2Sample, 1}}}};
        bank.presetZones = {{{kSf2Instrument, 0}}};
        return bank;
    }

    std::vector<std::uint8_t> Build() const {
        ByteBuilder lists;
        lists.Bytes(List("INFO", ByteBuilder().Bytes(Part("INAM", ByteBuilder().EndedText(name)))));
        lists.Bytes(List("sdta", ByteBuilder().Bytes(Part("smpl", Wave()))));
        lists.Bytes(List("pdta", Presets()));
        return ByteBuilder().Text("RIFF").U32(static_cast<unsigned>(lists.bytes.size() + 4)).Text("sfbk")
            .Bytes(lists.bytes).bytes;
    }
    std::string Text() const {
        const auto bytes = Build();
        return {bytes.begin(), bytes.end()};
    }

private:
    static std::vector<std::uint8_t> Part(std::string_view tag, const ByteBuilder& body) {
        return ByteBuilder().Text(tag).U32(static_cast<unsigned>(body.bytes.size())).Bytes(body.bytes).bytes;
    }
    static std::vector<std::uint8_t> List(std::string_view type, const ByteBuilder& parts) {
        return Part("LIST", ByteBuilder().Text(type).Bytes(parts.bytes));
    }
    ByteBuilder Wave() const {
        ByteBuilder wave;
        for (const auto& sample : samples) {
            for (const int value : sample.wave) wave.U16(static_cast<unsigned>(value));
            wave.Zeros(2 * gap);
        }
        return wave;
    }
    ByteBuilder Presets() const {
        ByteBuilder presetGenerators, heads, bags, generators, out;
        for (const auto& zone : presetZones) AddGenerators(presetGenerators, zone);
        unsigned bag = 0;
        for (const auto& zones : instruments) {
            heads.FixedText("instrument", 20).U16(bag);
            for (const auto& zone : zones) {
                bags.U16(static_cast<unsigned>(generators.bytes.size() / 4)).U16(0);
                AddGenerators(generators, zone);
                ++bag;
            }
        }
        heads.FixedText("EOI", 20).U16(bag);
        bags.U16(static_cast<unsigned>(generators.bytes.size() / 4)).U16(0);
        for (const auto& [tag, body] : {std::pair("phdr", ByteBuilder().Zeros(76)), {"pbag", ByteBuilder().Zeros(8)},
                                        {"pmod", ByteBuilder().Zeros(10)}, {"pgen", presetGenerators}, {"inst", heads},
                                        {"ibag", bags}, {"imod", ByteBuilder().Zeros(10)}, {"igen", generators},
                                        {"shdr", Headers()}})
            out.Bytes(Part(tag, body));
        return out;
    }
    static void AddGenerators(ByteBuilder& out, const Sf2Generators& zone) {
        for (const auto& [number, amount] : zone) out.U16(number).U16(static_cast<unsigned>(amount));
    }
    ByteBuilder Headers() const {
        ByteBuilder out;
        unsigned start = 0;
        for (const auto& sample : samples) {
            const unsigned end = start + static_cast<unsigned>(sample.wave.size());
            out.FixedText(sample.name, 20).U32(start).U32(end).U32(start + sample.loopStart);
            out.U32(start + sample.loopEnd).U32(sample.rate).U8(sample.pitch).U8(0).U16(0).U16(sample.type);
            start = end + gap;
        }
        out.FixedText("EOS", 46);
        return out;
    }
};

}  // namespace vonta::test
