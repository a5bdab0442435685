#include "interface/screens/ConfigScreen.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "app/config/ConfigSettings.h"
#include "edit/Numbers.h"
#include "interface/layout/ConfigLayout.h"
#include "interface/layout/PatternPictures.h"
#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

using Self = ConfigScreen;

constexpr int kInterpolations = 3;
constexpr std::uint32_t kLightMs = 150;          // after a message
constexpr int kChannelChoices = 6;               // 4 to 32, and as many as the song has

constexpr ControlRow<Self> kRows[] = {
    {kConfigDecimal, Press<&Self::OnNumbers>, 0, kOnRelease, &Self::ShowsNumbers},
    {kConfigHexadecimal, Press<&Self::OnNumbers>, 1, kOnRelease, &Self::ShowsNumbers},
    {kConfigMultiRecord, Press<&Self::OnFlag>, kMultichannelRecord, kOnRelease, &Self::HasFlag},
    {kConfigMultiEdit, Press<&Self::OnFlag>, kMultichannelEdit, kOnRelease, &Self::HasFlag},
    {kConfigVelocity, Press<&Self::OnFlag>, kRecordVelocity, kOnRelease, &Self::HasFlag},
    {kConfigAutoTune, Press<&Self::OnFlag>, kAutoTuneSample, kOnRelease, &Self::HasFlag},
    {kConfigFormerFiles, Press<&Self::OnFormerFiles>, 0, kOnRelease, &Self::KeepsFormerFiles},
    {kConfigSave, Press<&Self::OnSave>},
    {kConfigExit, Press<&Self::OnExit>},
};

std::size_t Index(int value) { return static_cast<std::size_t>(value); }

template <class Ports>
std::string PortText(const Ports& ports, int number) {
    const auto& port = ports[Index(number)];
    return Formatted("%X: %s", static_cast<unsigned>(number), port ? port->GetName().c_str() : "none");
}

}  // namespace

struct ConfigValues {
    struct Row {
        int up, down, field;                     // items of the layout
        void (*step)(Self& screen, int by);      // by: 1 or -1
        std::string (*text)(const Self& screen);
    };
    static const Row kValues[];

    template <int Config::* value, const ConfigRange& range>
    static void StepNumber(Self& screen, int by) {
        int& number = screen.Settings().*value;
        number = range.Clamp(range.Clamp(number) + by);
    }

    template <int Config::* value, const ConfigRange& range>
    static std::string NumberText(const Self& screen) { return Formatted("%02i", range.Clamp(screen.Settings().*value)); }

    static void StepAmplification(Self& screen, int by) {
        const float percent = std::round(screen.MasterVolume() * 100) + static_cast<float>(by);
        screen.Settings().amplification = kAmplificationRange.Clamp(percent / 100);
        SetMasterVolume(screen.State().Edits(), screen.State().Here(), screen.Settings().amplification);
    }
    static std::string AmplificationText(const Self& screen) {
        return Formatted("%03i %%", static_cast<int>(std::lround(screen.MasterVolume() * 100)));
    }

    static void StepLatency(Self& screen, int by) {
        const int latency = screen.Player().GetLatencyMs();
        if (by < 0 && latency <= static_cast<int>(kLatencyRange.low)) return;
        screen.Player().SetLatencyMs(kLatencyRange.Clamp(latency + by));
        screen.latencyStepped_ = true;
    }
    static std::string LatencyText(const Self& screen) { return Formatted("%03i ms", screen.Player().GetLatencyMs()); }

    static void StepInterpolation(Self& screen, int by) {
        int& mode = screen.Settings().interpolation;
        mode = std::clamp(std::clamp(mode, 0, kInterpolations - 1) + by, 0, kInterpolations - 1);
        screen.Player().SetInterpolation(SettingsOf(screen.Settings()).interpolation);
    }
    static std::string InterpolationText(const Self& screen) {
        constexpr const char* kNames[kInterpolations] = {"None", "Linear", "Cubic"};
        return kNames[std::clamp(screen.Settings().interpolation, 0, kInterpolations - 1)];
    }

    static std::string MidiInText(const Self& screen) {
        return PortText(screen.Player().GetMixer().midiIn, SettingsOf(screen.Settings()).midiInput);
    }

    static void StepOutput(Self& screen, int by) { screen.output_ = std::clamp(screen.output_ + by, 0, kMidiDelays - 1); }
    static std::string OutputText(const Self& screen) {
        return PortText(screen.Player().GetMixer().midiOut, screen.output_);
    }

    static void StepDelay(Self& screen, int by) {
        int& delay = screen.Settings().midiOutDelay[Index(screen.output_)];
        delay = kMidiDelayRange.Clamp(kMidiDelayRange.Clamp(delay) + by);
        DrvMIDIOUT* output = screen.Player().GetMixer().midiOut[Index(screen.output_)].get();
        if (output) output->SetDelay(static_cast<std::uint32_t>(delay));
    }
    static std::string DelayText(const Self& screen) {
        return Formatted("%03i ms", kMidiDelayRange.Clamp(screen.Settings().midiOutDelay[Index(screen.output_)]));
    }

    static void StepChannels(Self& screen, int by) {
        int& choice = screen.Settings().patternChannels;
        choice = std::clamp(std::clamp(choice, 0, kChannelChoices - 1) + by, 0, kChannelChoices - 1);
        screen.State().SetVisibleChannels(SettingsOf(screen.Settings()).visibleChannels);
    }
    static std::string ChannelsText(const Self& screen) {
        const int channels = SettingsOf(screen.Settings()).visibleChannels;
        return channels == 0 ? "Auto" : Formatted("%02i", channels);
    }
};

const ConfigValues::Row ConfigValues::kValues[] = {
    {kConfigAmplificationUp, kConfigAmplificationDown, kConfigAmplification, StepAmplification, AmplificationText},
    {kConfigLatencyUp, kConfigLatencyDown, kConfigLatency, StepLatency, LatencyText},
    {kConfigInterpolationUp, kConfigInterpolationDown, kConfigInterpolation, StepInterpolation, InterpolationText},
    {kConfigMidiInUp, kConfigMidiInDown, kConfigMidiIn, StepNumber<&Config::midiInput, kMidiInputRange>, MidiInText},
    {kConfigMidiOutUp, kConfigMidiOutDown, kConfigMidiOut, StepOutput, OutputText},
    {kConfigMidiDelayUp, kConfigMidiDelayDown, kConfigMidiDelay, StepDelay, DelayText},
    {kConfigChannelsUp, kConfigChannelsDown, kConfigChannels, StepChannels, ChannelsText},
    {kConfigKeyRateUp, kConfigKeyRateDown, kConfigKeyRate,
     StepNumber<&Config::keyboardTicksPerSecond, kTicksPerSecondRange>,
     NumberText<&Config::keyboardTicksPerSecond, kTicksPerSecondRange>},
    {kConfigKeyDelayUp, kConfigKeyDelayDown, kConfigKeyDelay,
     StepNumber<&Config::keyboardRepeatDelay, kRepeatDelayRange>,
     NumberText<&Config::keyboardRepeatDelay, kRepeatDelayRange>},
    {kConfigMouseRateUp, kConfigMouseRateDown, kConfigMouseRate,
     StepNumber<&Config::mouseTicksPerSecond, kTicksPerSecondRange>,
     NumberText<&Config::mouseTicksPerSecond, kTicksPerSecondRange>},
    {kConfigMouseDelayUp, kConfigMouseDelayDown, kConfigMouseDelay,
     StepNumber<&Config::mouseRepeatDelay, kRepeatDelayRange>,
     NumberText<&Config::mouseRepeatDelay, kRepeatDelayRange>},
};

void ConfigScreen::PaintBackground() {
    PaintLayout(kConfigLayout);
    TakeLatency();
    const Mixer& mixer = Player().GetMixer();
    PaintLight(kConfigMidiInLight, mixer.midiIn[Index(SettingsOf(Settings()).midiInput)].get());
    PaintLight(kConfigMidiOutLight, mixer.midiOut[Index(output_)].get());
}

// What the device makes of a wish, which it may do as late as in its next block. The one that stands in for a device that
// could not be had is not asked.
void ConfigScreen::TakeLatency() {
    if (latencyStepped_ && Ui().Host().HasSoundDevice()) Settings().latency = Player().GetLatencyMs();
}

template <class Port>
void ConfigScreen::PaintLight(int id, const Port* port) {
    const std::uint32_t last = port ? port->GetLastTime() : 0;
    const bool active = last != 0 && Milliseconds() - last < kLightMs;
    const LayoutItem& light = ItemOf(kConfigLayout, id);
    Surfaces().BlitToBack(light.x + 2, light.y + 2, Pictures().LoadSkinBitmap(active ? kPictureActive : kPictureIdle));
}

void ConfigScreen::PaintControls() {
    if (!HasPainted()) return;
    DeclareButtons(this, kConfigLayout, kRows);
    ControlRecord record;
    record.events = kRepeating;
    for (int row = 0; row < static_cast<int>(std::size(ConfigValues::kValues)); ++row) {
        const ConfigValues::Row& value = ConfigValues::kValues[row];
        record.param = row;
        DeclareButton(ItemOf(kConfigLayout, value.up), Bind<&ConfigScreen::OnStep>(this), record, false);
        record.param = -row - 1;
        DeclareButton(ItemOf(kConfigLayout, value.down), Bind<&ConfigScreen::OnStep>(this), record, false);
        PrintField(value.field, value.text(*this));
    }
    PrintField(kConfigDevice, DeviceText());
    PrintField(kConfigRate, Formatted("%u Hz", Player().GetMixer().sampleRate));
    PrintField(kConfigSkin, Settings().skin.empty() ? kDefaultSkinName : Settings().skin);
    PrintField(kConfigDirectory, Ui().Host().GetStartDir());
}

void ConfigScreen::PrintField(int id, const std::string& text) {
    const LayoutItem& field = ItemOf(kConfigLayout, id);
    Text().m_fontStd.PrintClipped(field.x + 4, field.y, (field.width - 8) / 8, text);
}

float ConfigScreen::MasterVolume() const {
    constexpr float kMost = 9.99f;               // a file's may be any
    return std::clamp(CurrentSong().masterVolume, 0.0f, kMost);
}

std::string ConfigScreen::DeviceText() const {
    if (!Ui().Host().HasSoundDevice()) return "None could be opened: nothing sounds. See MODE in Vonta.cfg";
    DrvSound* device = Player().GetDevice();
    const std::string name = device ? device->GetCurrentDeviceName() : std::string();
    return name.empty() ? "Silent" : name;
}

void ConfigScreen::OnStep(ControlRecord& record) {
    const bool down = record.param < 0;
    const int row = down ? -record.param - 1 : record.param;
    ConfigValues::kValues[row].step(*this, down ? -1 : 1);
}

void ConfigScreen::OnNumbers(ControlRecord& record) {
    Settings().patternNumberMode = record.param;
    State().pending.m_bHexMode = record.param != 0;
}

void ConfigScreen::OnFormerFiles(ControlRecord&) { Settings().formerFiles = Settings().formerFiles == 0 ? 1 : 0; }
bool ConfigScreen::KeepsFormerFiles(std::int32_t) const { return Settings().formerFiles != 0; }

void ConfigScreen::OnFlag(ControlRecord& record) { Settings().flags ^= static_cast<std::uint32_t>(record.param); }

// What is shown is what is kept, also of a song that came with an amplification of its own.
void ConfigScreen::OnSave(ControlRecord&) {
    Settings().amplification = kAmplificationRange.Clamp(MasterVolume());
    Ui().Host().SaveConfig();
}

void ConfigScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenConfig); }

bool ConfigScreen::ShowsNumbers(std::int32_t mode) const { return State().pending.m_bHexMode == (mode != 0); }

bool ConfigScreen::HasFlag(std::int32_t flag) const { return (Settings().flags & static_cast<std::uint32_t>(flag)) != 0; }

}  // namespace vonta
