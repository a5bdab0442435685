// contact_sheet DATA OUTDIR [BITS]: paints every screen in a typical state, as the program would, and writes a PNG of each and
// all of them on sheets. DATA holds Vonta.dat and Skins/ as the build leaves them; BITS of a pixel are 16, 24 or 32.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "interface/layout/QuestionLayouts.h"
#include "interface/layout/SampleEditorLayout.h"
#include "tests/support/InterfaceRig.h"
#include "tools/DemoSong.h"
#include "tools/skin/Canvas.h"

namespace {

using namespace vonta;

constexpr int kSoundMs = 2600;                   // that a playing scene has played
constexpr int kPosition = 5;                     // of the demo song, where most tracks play
constexpr int kPerRow = 2, kPerSheet = 6, kGap = 8;
constexpr skin::Colour kPaper = 0x808080;

void OpenSlot(InterfaceRig& rig, int slot) { rig.ui.ShowScreen(slot); }

void Play(InterfaceRig& rig, int milliseconds) {
    rig.player.Play(kPlayFromHere);
    for (int at = 0; at < milliseconds; at += InterfaceRig::kFrameMs) {
        rig.Sound(InterfaceRig::kFrameMs);
        rig.Frame();
    }
}

void ShowChannels(InterfaceRig& rig, int channels) {
    rig.state.SetVisibleChannels(channels);
    rig.Frame();
    rig.state.SetRow(16);
}

void Select(InterfaceRig& rig) {
    ShowChannels(rig, 8);
    rig.Frame();
    rig.state.SelectionStart(120, 13 * 9);
    rig.state.SelectionExtend(390, 13 * 20, false);
}

void Record(InterfaceRig& rig) {
    ShowChannels(rig, 8);
    rig.state.pending.m_bEditMode = true;
    for (const int channel : {1, 2, 4}) rig.state.MarkChannel(channel, true);
    rig.Frame();
    rig.state.CursorRight();
}

// A directory with something of each kind, for the list of files.
void FillDirectory(InterfaceRig& rig) {
    for (const std::string name : {"Ambient", "Drums", "Voices"})
        std::filesystem::create_directory(rig.directory.Path() / name);
    for (const std::string name :
         {"evening train.vtm", "first light.xm", "harbour.vtm", "kitchen radio.mod", "night bus.vtm"})
        std::ofstream(rig.directory.Path() / name) << std::string(4096 + 977 * name.size(), '.');
}

// A tone that swells and falls, with a loop and a selection.
void EditSample(InterfaceRig& rig, std::uint32_t frames, int channels) {
    {
        const MixerPause pause(rig.player);
        Sample& sample = *rig.player.GetSong().Find({0, 0});
        const auto values = sample.Allocate(frames * static_cast<std::uint32_t>(channels), channels);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double part = static_cast<double>(i) / static_cast<double>(values.size());
            const double side = i % 2 == 0 ? 1 : 0.6, turns = static_cast<double>(i) * 0.013;
            values[i] = static_cast<float>(30000 * side * std::sin(part * 3.1416) * std::sin(turns) * std::cos(19 * part));
        }
        sample.data->loopType = VTSAMPLE_LOOP_FORDWARD;
        sample.data->loopStart = sample.data->count / 3 / 2 * 2;
        sample.data->loopEnd = sample.data->count / 4 * 3 / 2 * 2;
        sample.selStart = static_cast<std::int32_t>(sample.data->count / 8 * 3 / 2 * 2);
        sample.selEnd = static_cast<std::int32_t>(sample.data->count / 8 * 5 / 2 * 2);
        sample.selActive = frames > 1;
        sample.Validate();
    }
    rig.state.SelectItem(kListInstruments, 1);
    rig.state.pending.m_nSample = 0;
    OpenSlot(rig, kScreenSampleEditor);
    rig.Frame();
}

void ZoomIn(InterfaceRig& rig) {
    rig.MouseTo(270, 380);
    for (int i = 0; i < 11; ++i) {
        rig.input.OnWheel(1);
        rig.Frame();
    }
}

void EditClone(InterfaceRig& rig) {
    EditSample(rig, 44100, 1);
    {
        const MixerPause pause(rig.player);
        auto clone = std::make_unique<Sample>();
        clone->MakeClone();
        rig.player.GetSong().GetInstrument(0)->SetSample(1, std::move(clone), 1);
        rig.player.GetSong().LinkSample(0, 1, 0, 0);
    }
    rig.state.pending.m_nSample = 1;
}

void Resample(InterfaceRig& rig) {
    EditSample(rig, 5000000, 2);
    rig.Click(kSampleEditorLayout, kSmpResample);
    for (int i = 0; i < 8; ++i) rig.Frame();
}

struct Scene {
    const char* name;
    void (*set)(InterfaceRig& rig);
};

constexpr Scene kScenes[] = {
    {"start", [](InterfaceRig&) {}},
    {"playing", [](InterfaceRig& rig) { ShowChannels(rig, 8); Play(rig, kSoundMs); }},
    {"playing-all", [](InterfaceRig& rig) { Play(rig, kSoundMs); }},
    {"recording", Record},
    {"selection", Select},
    {"channels-4", [](InterfaceRig& rig) { ShowChannels(rig, 4); }},
    {"channels-16", [](InterfaceRig& rig) { ShowChannels(rig, 16); }},
    {"channels-24", [](InterfaceRig& rig) { ShowChannels(rig, 24); }},
    {"channels-32", [](InterfaceRig& rig) { ShowChannels(rig, 32); }},
    {"disk-op", [](InterfaceRig& rig) { FillDirectory(rig); OpenSlot(rig, kScreenDiskOp); }},
    {"advanced-edit", [](InterfaceRig& rig) { OpenSlot(rig, kScreenAdvancedEdit); }},
    {"config", [](InterfaceRig& rig) { OpenSlot(rig, kScreenConfig); }},
    {"help", [](InterfaceRig& rig) { OpenSlot(rig, kScreenHelp); }},
    {"song-info", [](InterfaceRig& rig) { OpenSlot(rig, kScreenSongInfo); }},
    {"cpu-scan", [](InterfaceRig& rig) { OpenSlot(rig, kScreenCpuScan); Play(rig, kSoundMs); }},
    {"about", [](InterfaceRig& rig) { OpenSlot(rig, kScreenAbout); Play(rig, kSoundMs); }},
    {"visual", [](InterfaceRig& rig) { OpenSlot(rig, kScreenVisual); }},
    {"game", [](InterfaceRig& rig) { OpenSlot(rig, kScreenGame); }},
    {"question", [](InterfaceRig& rig) { rig.ui.AskToQuit(); }},
    {"zap", [](InterfaceRig& rig) { rig.ui.AskForZap(); }},
    {"save", [](InterfaceRig& rig) { rig.ui.Ask("", {}, {}, DialogMode::Save); }},
    {"message", [](InterfaceRig& rig) { rig.ui.Tell("night bus.vtm could not be loaded"); }},
    {"instrument", [](InterfaceRig& rig) { OpenSlot(rig, kScreenInstrumentEditor); }},
    {"sample", [](InterfaceRig& rig) { EditSample(rig, 44100, 1); }},
    {"sample-playing", [](InterfaceRig& rig) {
         EditSample(rig, 10 * 60 * 44100, 2);
         rig.Click(kSampleEditorLayout, kSmpPlay);
         rig.Sound(300);
     }},
    {"sample-zoomed", [](InterfaceRig& rig) {
         EditSample(rig, 44100, 2);
         ZoomIn(rig);
     }},
    {"sample-short", [](InterfaceRig& rig) { EditSample(rig, 300, 2); }},
    {"sample-one-frame", [](InterfaceRig& rig) { EditSample(rig, 1, 1); }},
    {"sample-empty", [](InterfaceRig& rig) { EditSample(rig, 0, 1); }},
    {"sample-none", [](InterfaceRig& rig) {
         rig.state.SelectItem(kListInstruments, 120);
         OpenSlot(rig, kScreenSampleEditor);
     }},
    {"sample-clone", EditClone},
    {"sample-resampling", Resample},
    {"mixer", [](InterfaceRig& rig) { OpenSlot(rig, kScreenMixer); }},
    {"multifx", [](InterfaceRig& rig) { OpenSlot(rig, kScreenMultiFx); }},
    {"track-editor", [](InterfaceRig& rig) { OpenSlot(rig, kScreenTrackEditor); }},
};

ResourcePacks OpenPacks(const std::string& data) {
    ResourcePacks packs;
    packs.m_pDataPack = std::make_unique<PackFile>(data + "/Vonta.dat");
    packs.m_pDefaultSkin = std::make_unique<PackFile>(data + "/Skins/Default.vts");
    packs.m_pSkin = std::make_unique<PackFile>(data + "/Skins/Default.vts");
    packs.m_nSkinVersion = GetSkinVersion(data + "/Skins/Default.vts");
    if (!packs.m_pDataPack->IsOpen() || !packs.m_pDefaultSkin->IsOpen())
        throw std::runtime_error(data + ": no packs there");
    return packs;
}

skin::Canvas Photograph(const std::string& data, int bits, const Scene& scene) {
    InterfaceRig rig(ComposeDemoSong(), OpenPacks(data), bits);
    rig.Frame();
    rig.state.ChangePosition(kPosition);
    rig.Frame();
    scene.set(rig);
    rig.Frame();
    rig.Frame();
    skin::Canvas picture(kPictureWidth, kPictureHeight);
    for (int y = 0; y < kPictureHeight; ++y)
        for (int x = 0; x < kPictureWidth; ++x) picture.Pixel(x, y, rig.display.PixelAt(x, y));
    return picture;
}

void PutOnSheet(skin::Canvas& sheet, const skin::Canvas& picture, int place) {
    sheet.Draw(picture, kGap + place % kPerRow * (kPictureWidth + kGap), kGap + place / kPerRow * (kPictureHeight + kGap));
}

void Develop(const std::string& data, const std::string& out, int bits) {
    const int rows = kPerSheet / kPerRow;
    int place = 0, number = 0;
    skin::Canvas sheet(kGap + kPerRow * (kPictureWidth + kGap), kGap + rows * (kPictureHeight + kGap), kPaper);
    const auto finish = [&] {
        if (place > 0) sheet.WritePng(out + "/sheet-" + std::to_string(++number) + ".png");
        sheet.Fill(0, 0, sheet.Width(), sheet.Height(), kPaper);
        place = 0;
    };
    for (const Scene& scene : kScenes) {
        skin::Canvas picture = Photograph(data, bits, scene);
        picture.WritePng(out + "/" + scene.name + ".png");
        PutOnSheet(sheet, picture, place++);
        if (place == kPerSheet) finish();
    }
    finish();
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 3 && argc != 4) {
        std::fputs("usage: contact_sheet DATA OUTDIR [BITS]\n", stderr);
        return 2;
    }
    std::filesystem::create_directories(argv[2]);
    Develop(std::filesystem::absolute(argv[1]), std::filesystem::absolute(argv[2]),
            argc == 4 ? std::atoi(argv[3]) : 32);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "contact_sheet: %s\n", failure.what());
    return 1;
}
