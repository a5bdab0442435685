// Builds keygroup programs byte by byte.
#pragma once

#include <string>
#include <vector>

#include "tests/support/ByteBuilder.h"

namespace vonta::test {

struct AkpZoneRecipe {
    std::string name = "tone";
    int lowVelocity = 0, highVelocity = 127, fine = 0, semitones = 0, pan = 0, playback = 0;
    unsigned keyTracking = 1;
};

struct AkpKeygroupRecipe {
    int lowKey = 0, highKey = 127, semitones = 0, fine = 0;
    int attack = 0, decay = 0, release = 0;
    std::vector<AkpZoneRecipe> zones = {{}};
    bool zonesFirst = false;                             // before the keys are known
    int secondAttack = -1;                               // of another "env " chunk
};

struct AkpBuilder {
    std::vector<AkpKeygroupRecipe> keygroups = {{}};

    std::vector<std::uint8_t> Build() const {
        ByteBuilder out;
        out.Text("RIFF").U32(0).Text("APRG").Bytes(Part("prg ", ByteBuilder().Zeros(6)));
        for (const auto& group : keygroups) out.Bytes(Part("kgrp", Keygroup(group)));
        return out.bytes;
    }
    std::string Text() const {
        const auto bytes = Build();
        return {bytes.begin(), bytes.end()};
    }

private:
    static std::vector<std::uint8_t> Part(std::string_view tag, const ByteBuilder& body) {
        return ByteBuilder().Text(tag).U32(static_cast<unsigned>(body.bytes.size())).Bytes(body.bytes).bytes;
    }
    static ByteBuilder Envelope(int attack, int decay, int release) {
        return ByteBuilder().Zeros(1).U8(Byte(attack)).Zeros(1).U8(Byte(decay)).U8(Byte(release)).Zeros(13);
    }
    static ByteBuilder Keygroup(const AkpKeygroupRecipe& group) {
        ByteBuilder zones, out;
        for (const auto& zone : group.zones) zones.Bytes(Part("zone", Zone(zone)));
        if (group.zonesFirst) out.Bytes(zones.bytes);
        out.Bytes(Part("kloc", ByteBuilder().Zeros(4).U8(Byte(group.lowKey)).U8(Byte(group.highKey))
                                   .U8(Byte(group.semitones)).U8(Byte(group.fine)).Zeros(8)));
        out.Bytes(Part("env ", Envelope(group.attack, group.decay, group.release)));
        if (group.secondAttack >= 0) out.Bytes(Part("env ", Envelope(group.secondAttack, 0, 0)));
        if (!group.zonesFirst) out.Bytes(zones.bytes);
        return out;
    }
    static ByteBuilder Zone(const AkpZoneRecipe& zone) {
        return ByteBuilder().Zeros(2).FixedText(zone.name, 20).Zeros(12).U8(Byte(zone.lowVelocity))
            .U8(Byte(zone.highVelocity)).U8(Byte(zone.fine)).U8(Byte(zone.semitones)).Zeros(1).U8(Byte(zone.pan))
            .U8(Byte(zone.playback)).Zeros(2).U8(zone.keyTracking).Zeros(2);
    }
    static unsigned Byte(int value) { return static_cast<std::uint8_t>(value); }
};

}  // namespace vonta::test
