#include "formats/instruments/Sf2Zone.h"

#include <algorithm>
#include <cmath>

#include "formats/instruments/AttackEnvelope.h"

namespace vonta {
namespace {

constexpr double kTicksPerSecond = 50.0;
constexpr float kPerOctave = 1.0f / 1200;            // timecents
constexpr double kLongestRelease = 10.0;             // seconds that count
constexpr double kLeastFadeOut = 80.0;
constexpr int kAfterZone = -1;                       // of attack, sustain and release, until a generator tells

using Take = void (*)(Sf2Zone& zone, std::uint16_t amount);

template <int Sf2Zone::*field>
void TakeSigned(Sf2Zone& zone, std::uint16_t amount) { zone.*field = static_cast<std::int16_t>(amount); }

template <int Sf2Zone::*field>
void TakeUnsigned(Sf2Zone& zone, std::uint16_t amount) { zone.*field = amount; }

template <int Sf2Zone::*field>
void TakeLowByte(Sf2Zone& zone, std::uint16_t amount) { zone.*field = amount & 0xFF; }

template <int Sf2Zone::*low, int Sf2Zone::*high>
void TakeRange(Sf2Zone& zone, std::uint16_t amount) {
    zone.*low = amount & 0xFF;
    zone.*high = amount >> 8;
}

void TakeSampleModes(Sf2Zone& zone, std::uint16_t amount) {
    if ((amount & 1) != 0) zone.loop = true;         // 1: always, 3: until the key is released
}

struct GeneratorRow {
    std::uint16_t generator;
    Take take;
};
constexpr GeneratorRow kGenerators[] = {
    {33, TakeSigned<&Sf2Zone::delay>},
    {34, TakeSigned<&Sf2Zone::attack>},
    {35, TakeSigned<&Sf2Zone::hold>},
    {37, TakeSigned<&Sf2Zone::sustain>},
    {38, TakeSigned<&Sf2Zone::release>},
    {41, TakeUnsigned<&Sf2Zone::instrument>},
    {43, TakeRange<&Sf2Zone::lowKey, &Sf2Zone::highKey>},
    {44, TakeRange<&Sf2Zone::lowVelocity, &Sf2Zone::highVelocity>},
    {51, TakeSigned<&Sf2Zone::coarseTune>},
    {53, TakeLowByte<&Sf2Zone::sample>},
    {54, TakeSampleModes},
    {56, TakeSigned<&Sf2Zone::scaleTuning>},
};

double Seconds(int timecents) { return std::exp2(timecents * static_cast<double>(kPerOctave)); }

double Ticks(int timecents) { return kTicksPerSecond * Seconds(timecents); }

}  // namespace

void Sf2Zone::Take(std::uint16_t generator, std::uint16_t amount) {
    const auto row = std::ranges::find(kGenerators, generator, &GeneratorRow::generator);
    if (row != std::end(kGenerators)) row->take(*this, amount);
}

void Sf2Zone::StartNext() {
    const Sf2Zone last = *this;
    *this = {};
    delay = last.delay;
    hold = last.hold;
    scaleTuning = last.scaleTuning;
    attack = sustain = release = kAfterZone;
}

void SetVolumeCourse(Instrument& instrument, const Sf2Zone& zone) {
    SetAttackEnvelope(instrument.volumeEnvelopes[0],
                      {{{0, 0}, {Ticks(zone.delay), 0}, {Ticks(zone.attack), 64},
                        {zone.sustain == 0 ? 0 : Ticks(zone.hold), 64}}});
    const double release = std::clamp(Seconds(zone.release), 0.0, kLongestRelease) / kLongestRelease;
    const double fadeOut = std::pow(1.0 - release, 4) * kMaxFadeOut;
    instrument.fadeOut = static_cast<std::uint16_t>(std::max(fadeOut, kLeastFadeOut));
}

}  // namespace vonta
