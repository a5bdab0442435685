#include "app/config/ConfigText.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <variant>

#include "app/config/Config.h"
#include "app/config/ConfigFile.h"
#include "app/config/ConfigLine.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxLine = 1024;               // characters without the line feed
constexpr std::size_t kMaxText = 999;                // with the longest key a line is then full
constexpr std::int64_t kMaxFileBytes = 1 << 20;      // of a larger file the rest is not looked at

using Texts = std::span<const std::string_view>;
constexpr std::string_view kInterpolations[] = {"NONE", "LINEAR", "CUBIC"};
constexpr std::string_view kPatternChannels[] = {"4", "8", "16", "24", "32", "AUTO"};
constexpr std::string_view kNumberModes[] = {"DEC", "HEX"};
constexpr std::string_view kFullscreenBits[] = {"16", "24", "32"};

// The kinds of value. Base 0 finds out for itself: 0x for hexadecimal, a leading 0 for octal, else decimal.
struct Flag { ConfigFlag bit; };
struct Number { int Config::*field; int base; };
struct RareNumber { int Config::*field; };           // stands in the file only where it is not the default
struct MidiInput {};
struct Real { float Config::*field; };
template <std::size_t count>
struct Numbers { std::array<int, count> Config::*field; };
struct Choice { int Config::*field; Texts texts; };
struct Text { std::string Config::*field; };
struct Directory { ConfigDirectory number; };

using Value = std::variant<Flag, Number, RareNumber, MidiInput, Real, Numbers<kMidiDelays>, Numbers<kWheelModifiers>, Choice, Text,
                           Directory>;

struct Key {
    std::string_view name;
    Value value;
    std::string_view help;                           // a key without one has no line in the header
};

// One row a key, in the order of the file.
constexpr Key kKeys[] = {
    {"FORCE_TO_BLIT", Flag{kForceToBlit},
     "Uses a blit from the backbuffer to the frontbuffer. Else a flip operation is used when posible (fullscreen)"},
    {"HARDWARE_MOUSE", Flag{kHardwareMouse}, "Hardware mouse is used. Else a software emulation."},
    {"FULLSCREEN", Flag{kFullscreen}, "Sets videomode in fullscreen."},
    {"LOADGFX_AT_INIT", Flag{kLoadGfxAtInit},
     "Load all the graphics at init. Else the graphic resources are loaded when needed."},
    {"MULTICHANNEL_RECORD", Flag{kMultichannelRecord}, "Multichannel record"},
    {"MULTICHANNEL_EDIT", Flag{kMultichannelEdit}, "Multichannel edit"},
    {"RECORD_VELOCITY", Flag{kRecordVelocity}, "Record MIDI IN velocity"},
    {"RECORD_NOTEOFFS", Flag{kRecordNoteOffs}, "Record Noteoffs"},
    {"RECORD_TRANSPOSE", Flag{kRecordTranspose}, "Record transpose"},
    {"AUTO_TUNE_SAMPLE", Flag{kAutoTuneSample},
     "Auto tune samples in C-4 notes when a sample is loaded in a empty sample slot"},
    {"SHOW_INSTR_COLORS", Flag{kShowInstrColors}, ""},
    {"NUM_DEVICE", Number{&Config::deviceNumber, 0}, "Number of Sound Device"},
    {"MODE", Number{&Config::mode, 10},
     "Sound Output mode (DirectSound,WaveOut,ASIO,etc). This is platform dependent. "
     "Under Linux (0=SDL fixed latency, 1=SDL configurable latency)"},
    {"AMPLIFICATION", Real{&Config::amplification}, "Hardware output Amplification (floating point value)"},
    {"LATENCY", Number{&Config::latency, 0}, "Latency in ms"},
    {"MIDIOUT_DELAY", Numbers<kMidiDelays>{&Config::midiOutDelay}, "Midi out delay in ms (16 values)"},
    {"INTERPOLATION", Choice{&Config::interpolation, kInterpolations},
     "Type of interpolation. Values are: NONE, LINEAR or CUBIC"},
    {"PATTERN_CHANNELS", Choice{&Config::patternChannels, kPatternChannels},
     "Number of visible channels per pattern. Values are: 4, 8, 16, 24, 32 or AUTO"},
    {"PATTERN_NUM_MODE", Choice{&Config::patternNumberMode, kNumberModes}, "HEX or DEC"},
    {"TICKS_PER_SEC_KEYB", Number{&Config::keyboardTicksPerSecond, 0}, "Keyboard repeat ticks per second"},
    {"TICKS_PER_SEC_MOUSE", Number{&Config::mouseTicksPerSecond, 0}, "Mouse repeat ticks per second "},
    {"TICKS_DELAY_KEYB", Number{&Config::keyboardRepeatDelay, 0}, "Keyboard ticks of delay to repeat"},
    {"TICKS_DELAY_MOUSE", Number{&Config::mouseRepeatDelay, 0}, "Mouse ticks of delay to repeat"},
    {"SAMPLERATE", Number{&Config::sampleRate, 10}, "SampleRate"},
    {"DIRECTORY_MODULE", Directory{kDirModule}, "Default directory for the Module files"},
    {"DIRECTORY_INSTRUMENT", Directory{kDirInstrument}, "Default directory for the Instrument files"},
    {"DIRECTORY_SAMPLE", Directory{kDirSample}, "Default directory for the Sample files"},
    {"DIRECTORY_SYNTH", Directory{kDirSynth}, "Default directory for the Synth files"},
    {"DIRECTORY_FX", Directory{kDirFx}, "Default directory for the FX files"},
    {"DIRECTORY_VISUAL", Directory{kDirVisual}, "Default directory for the Visual files"},
    {"DIRECTORY_GAME", Directory{kDirGame}, "Default directory for the Game files"},
    {"FULLSCREEN_BITS", Choice{&Config::fullscreenBits, kFullscreenBits}, "Bits per pixel in fullscreen mode"},
    {"SKIN", Text{&Config::skin}, "Skin filename (the skin file must be in the \\Skins directory)"},
    {"MOUSE", Numbers<kWheelModifiers>{&Config::mouse}, "Mouse configuration"},
    {"WAIT_TIME", Number{&Config::waitTime, 10}, "Wait time between interface frames update (ms)"},
    {"MIDI_IN", MidiInput{}, "Midi in device number"},
    {"UNDO_MEMORY", RareNumber{&Config::undoMemory}, ""},
    {"KEEP_FORMER_FILES", RareNumber{&Config::formerFiles}, ""},
};

constexpr std::size_t kHelpColumn = 26;              // width of the names in the header
constexpr std::string_view kHeaderTop =
    "[ Vonta Tracker Config file ]\n\n"
    "If a line starts with # means that it's a config option. The config options are:\n\n";
constexpr std::string_view kHeaderEnd = "  \n  \n[ Config Options ]\n\n";

void ReadValue(const Flag& flag, ConfigLine&, Config& config) { config.flags |= flag.bit; }

void ReadValue(const Number& number, ConfigLine& line, Config& config) {
    config.*number.field = line.Integer(number.base);
}

void ReadValue(const RareNumber& number, ConfigLine& line, Config& config) { config.*number.field = line.Integer(10); }

void ReadValue(const MidiInput&, ConfigLine& line, Config& config) {
    const int input = line.Integer(10);
    config.midiInput = input < 0 || input > kMaxMidiInput ? 0 : input;
}

void ReadValue(const Real& real, ConfigLine& line, Config& config) {
    config.*real.field = line.Real(config.*real.field);
}

template <std::size_t count>
void ReadValue(const Numbers<count>& numbers, ConfigLine& line, Config& config) {
    for (int& field : config.*numbers.field) field = line.Integer(10);
}

void ReadValue(const Choice& choice, ConfigLine& line, Config& config) {
    const auto found = std::find(choice.texts.begin(), choice.texts.end(), line.Quoted());
    if (found != choice.texts.end()) config.*choice.field = static_cast<int>(found - choice.texts.begin());
}

void ReadValue(const Text& text, ConfigLine& line, Config& config) { config.*text.field = line.Quoted(); }

void ReadValue(const Directory& directory, ConfigLine& line, Config& config) {
    config.directories[directory.number] = line.Quoted();
}

std::string Show(int number) { return std::to_string(number) + ' '; }

std::string Show(std::string_view text) {
    const bool fits = text.size() <= kMaxText && text.find_first_of("\"\n") == std::string_view::npos;
    if (!fits) DebugOutput("*warning: a text that no line can hold is not saved\n");
    return '"' + std::string(fits ? text : "") + "\" ";
}

std::string Show(const Flag&, const Config&) { return {}; }
std::string Show(const Number& number, const Config& config) { return Show(config.*number.field); }
std::string Show(const RareNumber& number, const Config& config) { return Show(config.*number.field); }
std::string Show(const MidiInput&, const Config& config) { return Show(config.midiInput); }

std::string Show(const Real& real, const Config& config) {
    char text[64];                                   // the largest float has 39 digits before the point
    const auto end = std::to_chars(text, text + sizeof text, config.*real.field, std::chars_format::fixed, 6);
    return {text, end.ptr};
}

template <std::size_t count>
std::string Show(const Numbers<count>& numbers, const Config& config) {
    std::string shown;
    for (const int field : config.*numbers.field) shown += Show(field);
    return shown;
}

std::string Show(const Choice& choice, const Config& config) {
    const int last = static_cast<int>(choice.texts.size()) - 1;
    return Show(choice.texts[static_cast<std::size_t>(std::clamp(config.*choice.field, 0, last))]);
}

std::string Show(const Text& text, const Config& config) { return Show(config.*text.field); }
std::string Show(const Directory& directory, const Config& config) {
    return Show(config.directories[directory.number]);
}

void ReadLine(std::string_view text, Config& config) {
    ConfigLine line(text.substr(0, kMaxLine));
    const std::string_view name = line.Token();
    if (!name.starts_with('#')) return;
    const auto key = std::find_if(std::begin(kKeys), std::end(kKeys),
                                  [&name](const Key& row) { return row.name == name.substr(1); });
    if (key == std::end(kKeys)) return;
    std::visit([&](const auto& value) { ReadValue(value, line, config); }, key->value);
}

std::string Header() {
    std::string text(kHeaderTop);
    for (const Key& key : kKeys) {
        if (key.help.empty()) continue;
        text.append("  ").append(key.name).append(kHelpColumn - key.name.size(), ' ').append(key.help).append("\n");
    }
    return text.append(kHeaderEnd);
}

// Nothing for a flag that is off, and for a rare number that is the usual one.
std::string LineOf(const Key& key, const Config& config) {
    if (const Flag* flag = std::get_if<Flag>(&key.value); flag && !config.Has(flag->bit)) return {};
    const RareNumber* rare = std::get_if<RareNumber>(&key.value);
    if (rare && config.*rare->field == Config{}.*rare->field) return {};
    const std::string shown = std::visit([&](const auto& value) { return Show(value, config); }, key.value);
    return '#' + std::string(key.name) + ' ' + shown + '\n';
}

}  // namespace

void ReadConfigText(std::string_view text, Config& config) {
    config.flags = 0;                                // what the file does not name is off, or as usual
    for (const Key& key : kKeys)
        if (const RareNumber* rare = std::get_if<RareNumber>(&key.value)) config.*rare->field = Config{}.*rare->field;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        ReadLine(line, config);
    }
}

std::string ConfigText(const Config& config) {
    std::string text = Header();
    for (const Key& key : kKeys) text += LineOf(key, config);
    return text;
}

bool LoadConfigText(const std::string& path, Config& config) {
    return ReadConfigFile(path, [&](FileStream& stream) {
        std::string text(static_cast<std::size_t>(std::min(stream.Size(), kMaxFileBytes)), '\0');
        text.resize(stream.Read(text.data(), 1, text.size()));
        ReadConfigText(text, config);
    });
}

void WriteConfigText(FileStream& stream, const Config& config) {
    const std::string text = ConfigText(config);
    stream.Write(text.data(), 1, text.size());
}

bool SaveConfigText(const std::string& path, const Config& config) {
    return WriteConfigFile(path, [&](FileStream& stream) { WriteConfigText(stream, config); });
}

}  // namespace vonta
