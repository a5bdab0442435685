#include "app/config/Config.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

#include "app/config/ConfigInstall.h"
#include "app/config/ConfigSettings.h"
#include "app/config/ConfigText.h"
#include "app/config/Environment.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

constexpr const char* kHeader =
    "[ Vonta Tracker Config file ]\n"
    "\n"
    "If a line starts with # means that it's a config option. The config options are:\n"
    "\n"
    "  FORCE_TO_BLIT             Uses a blit from the backbuffer to the frontbuffer. Else a flip operation "
    "is used when posible (fullscreen)\n"
    "  HARDWARE_MOUSE            Hardware mouse is used. Else a software emulation.\n"
    "  FULLSCREEN                Sets videomode in fullscreen.\n"
    "  LOADGFX_AT_INIT           Load all the graphics at init. Else the graphic resources are loaded when needed.\n"
    "  MULTICHANNEL_RECORD       Multichannel record\n"
    "  MULTICHANNEL_EDIT         Multichannel edit\n"
    "  RECORD_VELOCITY           Record MIDI IN velocity\n"
    "  RECORD_NOTEOFFS           Record Noteoffs\n"
    "  RECORD_TRANSPOSE          Record transpose\n"
    "  AUTO_TUNE_SAMPLE          Auto tune samples in C-4 notes when a sample is loaded in a empty sample slot\n"
    "  NUM_DEVICE                Number of Sound Device\n"
    "  MODE                      Sound Output mode (DirectSound,WaveOut,ASIO,etc). This is platform "
    "dependent. Under Linux (0=SDL fixed latency, 1=SDL configurable latency)\n"
    "  AMPLIFICATION             Hardware output Amplification (floating point value)\n"
    "  LATENCY                   Latency in ms\n"
    "  MIDIOUT_DELAY             Midi out delay in ms (16 values)\n"
    "  INTERPOLATION             Type of interpolation. Values are: NONE, LINEAR or CUBIC\n"
    "  PATTERN_CHANNELS          Number of visible channels per pattern. Values are: 4, 8, 16, 24, 32 or AUTO\n"
    "  PATTERN_NUM_MODE          HEX or DEC\n"
    "  TICKS_PER_SEC_KEYB        Keyboard repeat ticks per second\n"
    "  TICKS_PER_SEC_MOUSE       Mouse repeat ticks per second \n"
    "  TICKS_DELAY_KEYB          Keyboard ticks of delay to repeat\n"
    "  TICKS_DELAY_MOUSE         Mouse ticks of delay to repeat\n"
    "  SAMPLERATE                SampleRate\n"
    "  DIRECTORY_MODULE          Default directory for the Module files\n"
    "  DIRECTORY_INSTRUMENT      Default directory for the Instrument files\n"
    "  DIRECTORY_SAMPLE          Default directory for the Sample files\n"
    "  DIRECTORY_SYNTH           Default directory for the Synth files\n"
    "  DIRECTORY_FX              Default directory for the FX files\n"
    "  DIRECTORY_VISUAL          Default directory for the Visual files\n"
    "  DIRECTORY_GAME            Default directory for the Game files\n"
    "  FULLSCREEN_BITS           Bits per pixel in fullscreen mode\n"
    "  SKIN                      Skin filename (the skin file must be in the \\Skins directory)\n"
    "  MOUSE                     Mouse configuration\n"
    "  WAIT_TIME                 Wait time between interface frames update (ms)\n"
    "  MIDI_IN                   Midi in device number\n"
    "  \n"
    "  \n"
    "[ Config Options ]\n"
    "\n";

constexpr const char* kDefaultOptions =
    "#HARDWARE_MOUSE \n#FULLSCREEN \n#AUTO_TUNE_SAMPLE \n#SHOW_INSTR_COLORS \n"
    "#NUM_DEVICE 0 \n#MODE 2 \n#AMPLIFICATION 0.800000\n#LATENCY 100 \n"
    "#MIDIOUT_DELAY 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n"
    "#INTERPOLATION \"LINEAR\" \n#PATTERN_CHANNELS \"AUTO\" \n#PATTERN_NUM_MODE \"DEC\" \n"
    "#TICKS_PER_SEC_KEYB 25 \n#TICKS_PER_SEC_MOUSE 25 \n#TICKS_DELAY_KEYB 7 \n#TICKS_DELAY_MOUSE 7 \n"
    "#SAMPLERATE 44100 \n#DIRECTORY_MODULE \"\" \n#DIRECTORY_INSTRUMENT \"\" \n#DIRECTORY_SAMPLE \"\" \n"
    "#DIRECTORY_SYNTH \"\" \n#DIRECTORY_FX \"\" \n#DIRECTORY_VISUAL \"\" \n#DIRECTORY_GAME \"\" \n"
    "#FULLSCREEN_BITS \"32\" \n#SKIN \"\" \n#MOUSE 1 2 0 3 \n#WAIT_TIME 10 \n#MIDI_IN 0 \n";

Config Read(std::string_view text) {
    Config config;
    ReadConfigText(text, config);
    return config;
}

// No field has its default.
Config Unusual() {
    Config config;
    config.flags = ~kDefaultFlags & 0x7FF;
    config.deviceNumber = 3;
    config.mode = -5;
    config.amplification = 0.123456f;
    config.latency = 2147483647;
    config.midiInput = 15;
    for (int i = 0; i < kMidiDelays; ++i) config.midiOutDelay[static_cast<std::size_t>(i)] = 500 - i;
    config.interpolation = 2;
    config.patternChannels = 3;
    config.patternNumberMode = 1;
    config.keyTable[5] = {kGroupCursorMoves, kKeyNumpadPlus, true, false, true, false, true, "Jump to line 0"};
    config.mouseTicksPerSecond = 50;
    config.keyboardTicksPerSecond = 1;
    config.mouseRepeatDelay = 0;
    config.keyboardRepeatDelay = 8;
    config.sampleRate = 96000;
    config.directories = {"/home/me/my songs", "", "#SKIN x", "C:\\synths\\", " ", "\xC3\xA9t\xC3\xA9\r", "\t"};
    config.skin = "My Skin.vts";
    config.fullscreenBits = 0;
    config.mouse = {3, 0, 1, 2};
    config.waitTime = -1;
    config.undoMemory = 1000;
    return config;
}

TEST(ConfigText, OfTheDefaultsIsTheHeaderAndALineForEachKey) {
    EXPECT_EQ(ConfigText({}), std::string(kHeader) + kDefaultOptions);
}

TEST(ConfigText, ReadsNumbersInTheBaseOfTheirKey) {
    const struct {
        const char* line;
        int Config::*field;
        int value;
    } cases[] = {
        {"#LATENCY 0x20", &Config::latency, 32},        {"#LATENCY 010", &Config::latency, 8},
        {"#LATENCY", &Config::latency, 0},              {"#LATENCY -7", &Config::latency, -7},
        {"#LATENCY 12abc", &Config::latency, 12},       {"#LATENCY abc", &Config::latency, 0},
        {"LATENCY 5", &Config::latency, 100},           {"", &Config::latency, 100},
        {"# LATENCY 5", &Config::latency, 100},         {"##LATENCY 5", &Config::latency, 100},
        {"#latency 5", &Config::latency, 100},          {"#LATENC 5", &Config::latency, 100},
        {"  \t #LATENCY \t 5", &Config::latency, 5},    {"#LATENCY 5\n#LATENCY 6", &Config::latency, 6},
        {"#LATENCY 99999999999999999999", &Config::latency, 2147483647},
        {"#LATENCY -99999999999", &Config::latency, -2147483647 - 1},
        {"#SAMPLERATE 010", &Config::sampleRate, 10},   {"#MODE 0x10", &Config::mode, 0},
        {"#MODE", &Config::mode, -1},                   {"#MIDI_IN 15", &Config::midiInput, 15},
        {"#MIDI_IN 16", &Config::midiInput, 0},         {"#MIDI_IN -1", &Config::midiInput, 0},
        {"#MIDI_IN", &Config::midiInput, 0},            {"#INTERPOLATION \"CUBIC\"", &Config::interpolation, 2},
        {"#INTERPOLATION NONE", &Config::interpolation, 0},
        {"#INTERPOLATION \"SINC\"", &Config::interpolation, 1},
        {"#INTERPOLATION \"\"", &Config::interpolation, 1},
        {"#INTERPOLATION", &Config::interpolation, 1},
        {"#INTERPOLATION \"CUBIC\"\n#INTERPOLATION \"cubic\"", &Config::interpolation, 2},
        {"#PATTERN_CHANNELS \"16\"", &Config::patternChannels, 2},
    };
    for (const auto& row : cases) EXPECT_EQ(Read(row.line).*row.field, row.value) << row.line;
}

TEST(ConfigText, ReadsTheAmplification) {
    const std::pair<const char*, float> cases[] = {
        {"0.5", 0.5f},  {"+.25", 0.25f}, {"1e-1", 0.1f}, {"-1", -1.0f},  {"", 0.0f},
        {"loud", 0.0f}, {"0,5", 0.0f},   {"nan", 0.8f},  {"-inf", 0.8f}, {"1e99", 0.8f},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Read(std::string("#AMPLIFICATION ") + text).amplification, value) << text;
}

TEST(ConfigText, FlagsAreOnIfTheyHaveALine) {
    EXPECT_EQ(Read("").flags, 0u);
    EXPECT_EQ(Read("FULLSCREEN\n FULLSCREEN #FULLSCREEN\n").flags, 0u);
    EXPECT_EQ(Read("#FULLSCREEN off\n  #RECORD_NOTEOFFS\n#FLAGS 7\n#FULLSCREEN").flags, kFullscreen | kRecordNoteOffs);
}

TEST(ConfigText, ReadsTextsWithAndWithoutQuotes) {
    const std::pair<const char*, const char*> cases[] = {
        {"#SKIN \"My Skin.vts\" ", "My Skin.vts"}, {"#SKIN My Skin.vts", "My"}, {"#SKIN \"a\"b\" c", "a"},
        {"#SKIN \"  a \"", "  a "},                {"#SKIN \"open end", "open end"}, {"#SKIN \"", ""},
        {"#SKIN a\n#SKIN \"\"", ""},               {"#SKIN \"a\"\r\n", "a"},        {"#SKIN a\r", "a"},
    };
    for (const auto& [line, value] : cases) EXPECT_EQ(Read(line).skin, value) << line;
}

TEST(ConfigText, ListsThatAreShortAreFilledUp) {
    EXPECT_EQ(Read("#MOUSE 3 2").mouse, (std::array<int, 4>{3, 2, -1, -1}));
    const Config config = Read("#MIDIOUT_DELAY 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17");
    EXPECT_EQ(config.midiOutDelay[0], 1);
    EXPECT_EQ(config.midiOutDelay[15], 16);
}

TEST(ConfigText, OfALongLineTheFirst1024CharactersCount) {
    const std::string pad(1024 - 10, ' ');
    EXPECT_EQ(Read(pad + "#LATENCY 56\n#MODE 4").latency, 5);
    EXPECT_EQ(Read("#SKIN \"" + std::string(3000, 'x')).skin.size(), 1024u - 7);
    EXPECT_EQ(Read(std::string(1024, ' ') + "#LATENCY 5").latency, 100);
}

TEST(ConfigText, WhatNoLineCanHoldIsSavedAsEmpty) {
    Config config;
    config.latency = 5;
    for (const std::string& bad : {std::string("a\"b"), std::string("a\n#LATENCY 9"), std::string(1000, 'x')}) {
        config.skin = bad;
        const Config read = Read(ConfigText(config));
        EXPECT_EQ(read.skin, "");
        EXPECT_EQ(read.latency, 5);
    }
    config.skin = "";
    config.directories[kDirInstrument] = std::string(999, 'x');   // the line has 1024 characters
    EXPECT_EQ(Read(ConfigText(config)), config);
}

// What was read from anything can be saved and read again, and the program can work with it.
void ExpectSound(std::string_view text) {
    const Config config = Read(text);
    const std::string saved = ConfigText(config);
    EXPECT_EQ(ConfigText(Read(saved)), saved);
    const Settings settings = SettingsOf(config);
    EXPECT_TRUE(settings.masterAmp >= 0 && settings.masterAmp <= 1);
    EXPECT_GE(settings.latencyMs, 2);
}

TEST(ConfigText, OfAnyPrefixAndWithAnyByteFlippedIsRead) {
    const std::string text = ConfigText(Unusual());
    for (std::size_t i = text.find("\n#"); i < text.size(); ++i) {
        ExpectSound(text.substr(0, i));
        for (const int flip : {0x01, 0x20, 0x80, 0xFF}) {
            std::string damaged = text;
            damaged[i] = static_cast<char>(damaged[i] ^ flip);
            ExpectSound(damaged);
        }
    }
}

TEST(ConfigText, OfNoiseIsRead) {
    std::mt19937 random(1);
    for (int round = 0; round < 50; ++round) {
        std::string noise(5000, '\0');
        for (char& byte : noise) byte = static_cast<char>(random());
        ExpectSound("#LATENCY " + noise + "\n#MIDIOUT_DELAY " + noise);
    }
}

TEST(Config, SavedAndLoadedIsEqual) {
    const TempDirectory directory;
    for (const Config& config : {Config(), Unusual()}) {
        ASSERT_EQ(config.Save(directory.File("Vonta.cfg"), directory.File("Keyb.cfg")), 0);
        Config loaded;
        ASSERT_EQ(loaded.Load(directory.File("Vonta.cfg"), directory.File("Keyb.cfg")), 0);
        EXPECT_EQ(loaded, config);
    }
}

TEST(Config, LoadFailsIfAFileIsMissingAndReadsTheBindingsOnlyBehindTheText) {
    const TempDirectory directory;
    const std::string text = directory.File("Vonta.cfg"), keys = directory.File("Keyb.cfg");
    ASSERT_TRUE(SaveKeyTable(keys, Unusual().keyTable));
    Config config;
    EXPECT_EQ(config.Load(text, keys), 1);
    EXPECT_EQ(config, Config());
    directory.Write("Vonta.cfg", "#LATENCY 5\n");
    EXPECT_EQ(config.Load(text, directory.File("none")), 1);
    EXPECT_EQ(config.Load(directory.Path().string(), keys), 1);
    EXPECT_EQ(config.latency, 5);
    EXPECT_EQ(config.keyTable, DefaultKeyTable());
}

TEST(Config, SaveThatFailsIsToldAndLeavesTheBindings) {
    const TempDirectory directory;
    std::filesystem::create_symlink("/dev/full", directory.File("Vonta.cfg"));
    directory.Write("Keyb.cfg", "mine");
    EXPECT_EQ(Unusual().Save(directory.File("Vonta.cfg"), directory.File("Keyb.cfg")), 1);
    EXPECT_EQ(Unusual().Save(directory.File("none/Vonta.cfg"), directory.File("Keyb.cfg")), 1);
    EXPECT_EQ(directory.Text("Keyb.cfg"), "mine");
    EXPECT_EQ(directory.List().size(), 2u);
}

TEST(Config, LoadsTheHeadOfAHugeFile) {
    const TempDirectory directory;
    for (const char* name : {"Vonta.cfg", "Keyb.cfg"})
        std::filesystem::resize_file(directory.Write(name, "#LATENCY 5\n"), std::uintmax_t{1} << 34);
    Config config;
    EXPECT_EQ(config.Load(directory.File("Vonta.cfg"), directory.File("Keyb.cfg")), 0);
    EXPECT_EQ(config.latency, 5);
}

TEST(Settings, TurnIndicesIntoWhatTheyStandFor) {
    Config config;
    const std::pair<int, DeviceKind> modes[] = {
        {0, DeviceKind::DirectSoundPrimary}, {1, DeviceKind::DirectSoundSecondary}, {2, DeviceKind::WaveOut},
        {3, DeviceKind::NoSound},            {4, DeviceKind::DiskWritter},          {5, DeviceKind::Asio},
        {6, DeviceKind::DirectSoundPrimary}, {-1, DeviceKind::DirectSoundPrimary}};
    for (const auto& [mode, kind] : modes) {
        config.mode = mode;
        EXPECT_EQ(SettingsOf(config).deviceKind, kind) << mode;
    }
    const std::pair<int, bool> channels[] = {{4, true}, {8, true}, {16, false}, {24, false}, {32, false}, {0, true}};
    for (int i = 0; i < 6; ++i) {
        config.patternChannels = i;
        const Settings settings = SettingsOf(config);
        EXPECT_EQ(std::pair(settings.visibleChannels, settings.wideCells), channels[i]);
    }
    for (int i = 0; i < 3; ++i) {
        config.interpolation = config.fullscreenBits = i;
        EXPECT_EQ(static_cast<int>(SettingsOf(config).interpolation), i + 1);
        EXPECT_EQ(SettingsOf(config).colourDepth, 16 + 8 * i);
    }
}

TEST(Settings, AreInTheirRangesWhateverTheFileSays) {
    const struct {
        const char* text;
        int latency, delay, rate, repeat, wait, sampleRate;
        float amp;
        WheelAction wheel;
    } cases[] = {
        {"#LATENCY\n#MIDIOUT_DELAY\n#TICKS_PER_SEC_KEYB 0\n#TICKS_DELAY_KEYB -1\n#WAIT_TIME\n#SAMPLERATE\n"
         "#AMPLIFICATION -1\n#MOUSE", 2, 0, 1, 0, 0, 44100, 0.0f, kWheelNothing},
        {"#LATENCY 999999999\n#MIDIOUT_DELAY 501\n#TICKS_PER_SEC_KEYB 51\n#TICKS_DELAY_KEYB 51\n#WAIT_TIME 99999\n"
         "#SAMPLERATE 999999999\n#AMPLIFICATION 180000\n#MOUSE 4", 60000, 500, 50, 50, 1000, 44100, 1.0f,
         kWheelNothing},
        {"#LATENCY 40\n#MIDIOUT_DELAY 20\n#TICKS_PER_SEC_KEYB 30\n#TICKS_DELAY_KEYB 5\n#WAIT_TIME 20\n"
         "#SAMPLERATE 48000\n#AMPLIFICATION 0.5\n#MOUSE 3", 40, 20, 30, 5, 20, 48000, 0.5f, kWheelInstrument},
    };
    for (const auto& row : cases) {
        const Settings settings = SettingsOf(Read(row.text));
        EXPECT_EQ(settings.latencyMs, row.latency);
        EXPECT_EQ(settings.midiOutDelayMs[0], static_cast<std::uint32_t>(row.delay));
        EXPECT_EQ(settings.keyboard, (KeyRepeat{row.rate, row.repeat}));
        EXPECT_EQ(settings.waitMs, row.wait);
        EXPECT_EQ(settings.sampleRate, static_cast<std::uint32_t>(row.sampleRate));
        EXPECT_EQ(settings.masterAmp, row.amp);
        EXPECT_EQ(settings.wheel[0], row.wheel);
    }
}

TEST(ConfigInstall, FillsAFreshDirectoryWithTheDefaults) {
    const TempDirectory directory;
    std::string error;
    ASSERT_TRUE(InstallConfigFiles(directory.Path().string(), error)) << error;
    Config config = Unusual();
    EXPECT_EQ(config.Load(directory.File("Vonta.cfg"), directory.File("Keyb.cfg")), 0);
    Config fresh;
    fresh.flags &= ~std::uint32_t{kFullscreen};      // in a window
    EXPECT_EQ(config, fresh);
    Environment environment;
    environment.macros[0].effect = 3;
    EXPECT_TRUE(LoadEnvironment(directory.File("Env.cfg"), environment));
    EXPECT_EQ(environment, Environment());
}

TEST(ConfigInstall, NeverReplacesWhatIsThereAndTellsWhatFails) {
    const TempDirectory directory;
    directory.Write("Vonta.cfg", "mine");
    std::filesystem::create_symlink("elsewhere", directory.File("Keyb.cfg"));
    std::string error;
    EXPECT_TRUE(InstallConfigFiles(directory.Path().string(), error));
    EXPECT_EQ(directory.Text("Vonta.cfg"), "mine");
    EXPECT_FALSE(std::filesystem::exists(directory.File("elsewhere")));
    EXPECT_EQ(directory.Text("Env.cfg").size(), 1852u);
    EXPECT_FALSE(InstallConfigFiles(directory.File("none"), error));
    EXPECT_NE(error.find("none/Vonta.cfg: "), std::string::npos) << error;
}

}  // namespace
}  // namespace vonta
