#include <algorithm>

#include "platform/Shared.h"
#include "script/binding/ScriptCall.h"
#include "script/song/Wrappers.h"

namespace vonta {
namespace {

constexpr const char* kBadKey = "Key parameter out of range";
constexpr const char* kBadSampleNumber = "SampleNumber parameter out of range";
constexpr const char* kBadFadeOut = "FadeOut parameter out of range";
constexpr std::size_t kInstrumentBytes = sizeof(Instrument);

template <class Work>
int WithInstrument(ScriptCall& call, Work work) { return With<VTInstrument>(call, kInstrumentGone, work); }

HeldInstrument& Held(ScriptCall& call) { return *call.Self<VTInstrument>().held; }

// A new one plays its first sample on every key.
int Construct(ScriptCall& call) {
    call.Vm().NoteMemory(kInstrumentBytes);
    auto instrument = std::make_unique<Instrument>();
    instrument->MapAllKeys();
    return call.GiveObject(MakeObject<VTInstrument>(std::make_shared<HeldInstrument>(std::move(instrument))));
}

int GetName(ScriptCall& call) {
    return WithInstrument(call, [&](const Instrument& instrument) { return call.GiveText(instrument.name); });
}

int SetName(ScriptCall& call) {
    return WithInstrument(call, [&](Instrument& instrument) {
        instrument.SetName(call.Text(0));
        return 0;
    });
}

int ExistSample(ScriptCall& call) {
    return WithInstrument(call, [&](const Instrument& instrument) {
        return call.GiveTruth(instrument.GetSample(call.Integer(0)));
    });
}

int GetSample(ScriptCall& call) {
    return WithInstrument(call, [&](const Instrument& instrument) {
        Sample* const sample = instrument.GetSample(call.Integer(0));
        if (!sample) return call.Warn(kSampleGone);
        auto held = std::make_shared<HeldSample>(call.Self<VTInstrument>().held, sample);
        return call.GiveObject(MakeObject<VTSample>(std::move(held)));
    });
}

// One that belongs to an instrument already stays there, and this one gets a copy.
int SetSample(ScriptCall& call) {
    HeldSample& held = *call.As<VTSample>(1).held;
    return WithInstrument(call, [&](Instrument& instrument) {
        const int number = call.Integer(0);
        Sample* const sample = held.Find();
        if (!sample) return call.Warn(kSampleGone);
        if (instrument.GetSample(number) == sample) return 0;
        std::unique_ptr<Sample> stored;
        if (held.owned) {
            held.instrument = call.Self<VTInstrument>().held;
            stored = std::move(held.owned);
        } else {
            call.Vm().NoteMemory(std::size_t{sample->Count()} * sizeof(float));
            stored = sample->Duplicate();
        }
        std::unique_ptr<Sample> former;              // destroyed when the player goes on
        const SongEdit edit(SongOf(Held(call)), SongEdit::Frees::Sound);
        former = instrument.SetSample(number, std::move(stored), 1);
        instrument.numSamples = std::max(instrument.numSamples, number + 1);
        return 0;
    });
}

int GetKeySample(ScriptCall& call) {
    return WithInstrument(call, [&](const Instrument& instrument) {
        return call.GiveNumber(std::max(instrument.GetKeySample(call.Integer(0), 0, kFullVelocity), 0));
    });
}

int SetKeySample(ScriptCall& call) {
    return WithInstrument(call, [&](Instrument& instrument) {
        const SongEdit edit(SongOf(Held(call)));
        instrument.SetKeySample(call.Integer(0), call.Integer(1), 0, kFullVelocity);
        return 0;
    });
}

int GetFadeOut(ScriptCall& call) {
    return WithInstrument(call, [&](const Instrument& instrument) { return call.GiveNumber(instrument.fadeOut); });
}

int SetFadeOut(ScriptCall& call) {
    return WithInstrument(call, [&](Instrument& instrument) {
        const SongEdit edit(SongOf(Held(call)));
        instrument.fadeOut = static_cast<std::uint16_t>(call.Integer(0));
        return 0;
    });
}

constexpr const char* kExample = R"(bass = VTInstrument()
bass:SetName("bass")
bass:SetSample(0, VTSample())
for key = 48, 127 do bass:SetKeybSampleNum(key, 1) end
)";

}  // namespace

const ScriptClass& VTInstrumentClass() {
    const Parameter sample = Number("index", 0, kMaxSamples - 1, kBadIndex), key = Number("key", 0, kKeys - 1, kBadKey);
    static const ScriptClass scriptClass(
        "VTInstrument",
        {"An instrument: up to 256 samples, and which of them each key plays. Every method warns \"This instrument "
         "does not exist\" if it has gone.",
         kExample},
        {"VTInstrument", {}, "VTInstrument", "A new one, without samples, whose keys all play sample 0.", Construct},
        {
            {"GetName", {}, "string", "Its name.", GetName},
            {"SetName", {Text("name")}, nullptr, "Sets it, at most 255 bytes.", SetName},
            {"ExistSample", {sample}, "boolean", "Whether there is a sample.", ExistSample},
            {"GetSample", {sample}, "VTSample", "A sample.", GetSample, {kSampleGone}},
            {"SetSample", {sample, Object("sample", "VTSample")}, nullptr,
             "Puts a sample in its place. One that is in an instrument already is copied.", SetSample, {kSampleGone}},
            {"GetKeybSampleNum", {key}, "number", "Which sample the key plays.", GetKeySample},
            {"SetKeybSampleNum", {key, Number("sample", 0, kMaxSamples - 2, kBadSampleNumber)}, nullptr,
             "Sets which.", SetKeySample},
            {"GetFadeOut", {}, "number", "How fast a note that has ended fades.", GetFadeOut},
            {"SetFadeOut", {Number("fadeOut", 0, kMaxFadeOut, kBadFadeOut)}, nullptr, "Sets it.", SetFadeOut},
        });
    return scriptClass;
}

}  // namespace vonta
