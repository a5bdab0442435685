#include <algorithm>
#include <limits>
#include <type_traits>
#include <vector>

#include "script/binary/VTArray.h"
#include "script/binding/ScriptCall.h"
#include "script/song/Wrappers.h"

namespace vonta {
namespace {

constexpr const char* kBadArray = "Array type invalid, possible bug in script implementation";
constexpr const char* kNoElements = "Array size invalid (zero)";
constexpr const char* kBadSize = "Array size invalid";
constexpr const char* kBadChannels = "Channels parameter out of range";
constexpr const char* kBadLoopStart = "Loop Start value of of range";
constexpr const char* kBadLoopEnd = "Loop End value of of range";
constexpr const char* kEndMoved = "Loop Start bigger than loop end, changing loop End";
constexpr const char* kStartMoved = "Loop End lower than loop start, changing loop Start";

template <class Work>
int WithSample(ScriptCall& call, Work work) { return With<VTSample>(call, kSampleGone, work); }

SongEdit Edit(ScriptCall& call, SongEdit::Frees frees = SongEdit::Frees::Nothing) {
    return SongEdit(SongOf(*call.Self<VTSample>().held), frees);
}

// A new one sounds: at full volume.
int Construct(ScriptCall& call) {
    call.Vm().NoteMemory(sizeof(Sample));
    auto sample = std::make_unique<Sample>();
    sample->volume = kMaxVolume;
    return call.GiveObject(MakeObject<VTSample>(std::make_shared<HeldSample>(std::move(sample))));
}

int GetName(ScriptCall& call) {
    return WithSample(call, [&](const Sample& sample) { return call.GiveText(sample.name); });
}

int SetName(ScriptCall& call) {
    return WithSample(call, [&](Sample& sample) {
        sample.SetName(call.Text(0));
        return 0;
    });
}

template <auto field>
int GetField(ScriptCall& call) {
    return WithSample(call, [&](const Sample& sample) { return call.GiveNumber(sample.*field); });
}

template <auto field>
int SetField(ScriptCall& call) {
    return WithSample(call, [&](Sample& sample) {
        const SongEdit edit = Edit(call);
        sample.*field = static_cast<std::remove_reference_t<decltype(sample.*field)>>(call.Integer(0));
        return 0;
    });
}

// To the scale of 16 bits.
float WaveValue(int type, double value) {
    constexpr double half = 32768.0, full = 65536.0;
    const auto limited = [](double scaled) { return scaled == scaled ? std::clamp(scaled, -half, half - 1) : 0.0; };
    switch (type) {
        case VT_UBYTE: return static_cast<float>((value - 128) * 256);
        case VT_SBYTE: return static_cast<float>(value * 256);
        case VT_UWORD: return static_cast<float>(value - half);
        case VT_SWORD: return static_cast<float>(value);
        case VT_UDWORD: return static_cast<float>((value - half * full) / full);
        case VT_SDWORD: return static_cast<float>(value / full);
        default: return static_cast<float>(limited(value * half));
    }
}

int SetData(ScriptCall& call) {
    return WithSample(call, [&](Sample& sample) {
        const VTArray& array = call.As<VTArray>(0);
        const int channels = call.Integer(1);
        if (array.Size() == 0) return call.Warn(kNoElements);
        if (channels != 1 && channels != 2) return call.Warn(kBadChannels);
        if (!IsNumber(array.Type())) return call.Warn(kBadArray);
        if (array.Size() % channels != 0) return call.Warn(kBadSize);
        call.Vm().NoteMemory(static_cast<std::size_t>(array.Size()) * sizeof(float));
        std::vector<float> values(static_cast<std::size_t>(array.Size()));
        for (int i = 0; i < array.Size(); ++i)
            values[static_cast<std::size_t>(i)] = WaveValue(array.Type(), array.Get(i));
        const SongEdit edit = Edit(call, SongEdit::Frees::Sound);
        sample.SetData(values, channels);
        // What was a loop in the former wave stays inside the new one.
        sample.data->loopEnd = std::min(sample.data->loopEnd, sample.data->count);
        sample.data->loopStart = std::min(sample.data->loopStart, sample.data->loopEnd);
        sample.Validate();
        return 0;
    });
}

int GetLoopType(ScriptCall& call) {
    return WithSample(call, [&](const Sample& sample) {
        const int type = sample.data->loopType;
        return call.GiveNumber(type <= VTSAMPLE_LOOP_PINGPONG ? type : VTSAMPLE_LOOP_NONE);
    });
}

int SetLoopType(ScriptCall& call) {
    return WithSample(call, [&](Sample& sample) {
        const int type = call.Integer(0);
        const SongEdit edit = Edit(call);
        if (type >= VTSAMPLE_LOOP_NONE && type <= VTSAMPLE_LOOP_PINGPONG)
            sample.data->loopType = static_cast<std::uint8_t>(type);
        return 0;
    });
}

template <auto field>
int GetLoop(ScriptCall& call) {
    return WithSample(call, [&](const Sample& sample) {
        return call.GiveNumber((*sample.data).*field / static_cast<std::uint32_t>(sample.Channels()));
    });
}

bool IsFrame(const Sample& sample, int frame) {
    return frame >= 0 && frame < static_cast<std::int64_t>(sample.Count()) / sample.Channels();
}

// Loop points are stored in elements.
std::uint32_t ElementOf(const Sample& sample, int frame) {
    return static_cast<std::uint32_t>(frame) * static_cast<std::uint32_t>(sample.Channels());
}

int SetLoopStart(ScriptCall& call) {
    return WithSample(call, [&](Sample& sample) {
        if (!IsFrame(sample, call.Integer(0))) return call.Warn(kBadLoopStart);
        const SongEdit edit = Edit(call);
        SampleData& data = *sample.data;
        data.loopStart = ElementOf(sample, call.Integer(0));
        if (data.loopStart <= data.loopEnd) return 0;
        data.loopEnd = data.loopStart;
        return call.Warn(kEndMoved);
    });
}

int SetLoopEnd(ScriptCall& call) {
    return WithSample(call, [&](Sample& sample) {
        if (!IsFrame(sample, call.Integer(0))) return call.Warn(kBadLoopEnd);
        const SongEdit edit = Edit(call);
        SampleData& data = *sample.data;
        data.loopEnd = ElementOf(sample, call.Integer(0));
        if (data.loopEnd >= data.loopStart) return 0;
        data.loopStart = data.loopEnd;
        return call.Warn(kStartMoved);
    });
}

constexpr const char* kInit = "VTSAMPLE_LOOP_NONE = 0\nVTSAMPLE_LOOP_FORDWARD = 1\nVTSAMPLE_LOOP_PINGPONG = 2";

constexpr const char* kExample = R"(wave = VTArray(VT_SWORD, 64)
for i = 0, 63 do wave:Set(i, math.mod(i, 32) * 1000 - 16000) end
saw = VTSample()
saw:SetData(wave, 1)
saw:SetLoopType(VTSAMPLE_LOOP_FORDWARD)
saw:SetLoopEnd(63)
)";

}  // namespace

const ScriptClass& VTSampleClass() {
    const Parameter frame = Number("frame");
    static const ScriptClass scriptClass(
        "VTSample",
        {"A sample. The globals VTSAMPLE_LOOP_NONE, VTSAMPLE_LOOP_FORDWARD and VTSAMPLE_LOOP_PINGPONG, 0 to 2, number "
         "the kinds of loop. Loop points count frames, from 0. Every method warns \"This sample does not exist\" if it has "
         "gone.",
         kExample, kInit},
        {"VTSample", {}, "VTSample", "A new one, without sound, at full volume.", Construct},
        {
            {"GetName", {}, "string", "Its name.", GetName},
            {"SetName", {Text("name")}, nullptr, "Sets it, at most 255 bytes.", SetName},
            {"SetData", {Object("wave", "VTArray"), Number("channels")}, nullptr,
             "Takes the numbers of the array as its sound, of 1 channel or of 2 in turn. Whole numbers count by what "
             "their type can hold; VT_FLOAT and VT_DOUBLE from -1 to 1.",
             SetData, {kNoElements, kBadChannels, kBadArray, kBadSize}},
            {"GetVolume", {}, "number", "Its volume.", GetField<&Sample::volume>},
            {"SetVolume", {Number("volume", 0, kMaxVolume, "Volume parameter out of range")}, nullptr, "Sets it.",
             SetField<&Sample::volume>},
            {"GetPanning", {}, "number", "Where it stands: 0 left, 128 centre, 255 right.", GetField<&Sample::panning>},
            {"SetPanning", {Number("panning", 0, 255, "Panning parameter out of range")}, nullptr, "Sets it.",
             SetField<&Sample::panning>},
            {"GetFineTune", {}, "number", "Its tuning, in 128ths of a semitone.", GetField<&Sample::fineTune>},
            {"SetFineTune", {Number("fineTune", -128, 127, "FineTune parameter out of range")}, nullptr, "Sets it.",
             SetField<&Sample::fineTune>},
            {"GetToneRel", {}, "number", "How many semitones higher it plays than its key.",
             GetField<&Sample::toneRel>},
            {"SetToneRel", {Number("toneRel", -48, 71, "ToneRel parameter out of range")}, nullptr, "Sets it.",
             SetField<&Sample::toneRel>},
            {"GetLoopType", {}, "number", "The kind of its loop.", GetLoopType},
            {"SetLoopType", {Number("type")}, nullptr, "Sets it; any other number does nothing.", SetLoopType},
            {"GetLoopStart", {}, "number", "The first frame of the loop.", GetLoop<&SampleData::loopStart>},
            {"SetLoopStart", {frame}, nullptr, "Sets it. A loop that ends before it then ends there.", SetLoopStart,
             {kBadLoopStart, kEndMoved}},
            {"GetLoopEnd", {}, "number", "The frame behind the loop.", GetLoop<&SampleData::loopEnd>},
            {"SetLoopEnd", {frame}, nullptr, "Sets it. A loop that starts behind it then starts there.", SetLoopEnd,
             {kBadLoopEnd, kStartMoved}},
        });
    return scriptClass;
}

}  // namespace vonta
