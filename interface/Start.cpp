#include <algorithm>

#include "app/config/ConfigSettings.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr int kVisualWidth = 320, kVisualHeight = 240;
constexpr int kGameWidth = 506, kGameHeight = 242;
constexpr int kProgressX = 5, kProgressY = 585, kProgressStep = 10, kProgressWidth = 780;   // pixels
constexpr std::uint32_t kCurtainWait = 4000;     // milliseconds that the opening picture stands
constexpr std::uint32_t kCurtainPace = 20;       // milliseconds; the way is the square of their count
constexpr int kFadeEnd = 2 * kPictureWidth;      // the way on which the curtain closes and the silence after it

int CurtainWay(std::uint32_t milliseconds) {
    const std::uint32_t steps = std::min<std::uint32_t>(milliseconds / kCurtainPace, kPictureWidth);
    return static_cast<int>(steps * steps);
}

}  // namespace

int TrackerInterface::Start(bool firstRun) {
    if (firstRun)
        for (const auto& screen : m_screens) screen->Init();
    if (StartVideo() != 0) return 1;
    LoadLoadingScreen();
    fonts_.Load(packs_.m_pDefaultSkin.get(), video_.Format());
    progressUnit_ = video_.LoadBitmap(packs_.m_pDataPack.get(), "data\\rect.tga");
    if (state_.Settings().Has(kLoadGfxAtInit)) {
        skin_.SetProgress([this] { AdvanceLoading(); });
        skin_.LoadAll(true);
    }
    skin_.BuildPiano();
    AdvanceLoading();
    skin_.LoadColours();
    for (Font* font : fonts_.All()) font->SetColour(skin_.Colours().m_colText);
    fonts_.m_fontStd.SetColour(skin_.Colours().m_colHighlight);
    AdvanceLoading();
    visualSurface_ = video_.CreateEmpty(kVisualWidth, kVisualHeight);
    gameSurface_ = video_.CreateEmpty(kGameWidth, kGameHeight);
    if (firstRun) {
        AdvanceLoading();
        state_.ApplyConfig(host_.GetStartDir());
    }
    if (m_bSoftwareMouse) mousePicture_ = video_.LoadBitmap(packs_.m_pDataPack.get(), "data\\mouse.tga");
    return 0;
}

int TrackerInterface::StartVideo() {
    const Config& config = state_.Settings();
    const bool fullscreen = config.Has(kFullscreen);
    m_bSoftwareMouse = !config.Has(kHardwareMouse);
    state_.pending.m_bHexMode = config.patternNumberMode != 0;
    ReleaseSurfaces();
    const int bits = fullscreen ? SettingsOf(config).colourDepth : video_.DesktopBits();
    return video_.SetMode(bits, config.Has(kForceToBlit), fullscreen, kPictureWidth, kPictureHeight);
}

// All slots go with the mode; what is needed is loaded again.
void TrackerInterface::ReleaseSurfaces() {
    video_.ShutdownSurfaces();
    skin_.Forget();
    regions_.Clear();
    regions_.ReleaseCapture();
    loadingLeft_ = loadingRight_ = progressUnit_ = mousePicture_ = visualSurface_ = gameSurface_ = Video::kNoSlot;
}

void TrackerInterface::LoadLoadingScreen() {
    constexpr const char* kPicture = "data\\loading.tga";
    progress_ = 0;
    loadingLeft_ = video_.LoadBitmap(packs_.m_pDataPack.get(), kPicture);
    loadingRight_ = video_.LoadBitmap(packs_.m_pDataPack.get(), kPicture);
    video_.Clear(0);
    video_.Present();
}

void TrackerInterface::AdvanceLoading() {
    video_.BlitToBack(0, 0, loadingLeft_);
    if (state_.Settings().Has(kLoadGfxAtInit))
        for (int i = 0; i < progress_; ++i) video_.BlitToBack(kProgressX + kProgressStep * i, kProgressY, progressUnit_);
    video_.Present();
    if (kProgressStep * progress_ < kProgressWidth) ++progress_;
}

// The two copies of the picture slide apart and show the interface in the gap.
void TrackerInterface::BlitCurtain(int open) {
    video_.BlitPart(open, 0, kPictureWidth - open, kPictureHeight, loadingLeft_, false);
    video_.BlitColumns(0, 0, open, kPictureWidth - open, loadingRight_);
    video_.Present();
}

void TrackerInterface::RunCurtain(const std::function<bool()>& pump) {
    for (const int number : {1, 2, 3, 4, 5, 6, 7, 8, 13, 14}) skin_.LoadSkinBitmap(number);
    const std::uint32_t start = Now();
    for (int open = 0; open < kPictureWidth && !state_.m_bQuit;) {
        const std::uint32_t passed = Now() - start;
        open = passed > kCurtainWait ? CurtainWay(passed - kCurtainWait) : 0;
        Paint();
        BlitCurtain(std::min(open, kPictureWidth));
        if (!pump()) break;
        input_.Poll();
        input_.PollMouse();
        const bool touched = input_.EventCount() > 0 || input_.Left() || input_.Right();
        input_.EndEvents();
        if (touched) break;
    }
}

void TrackerInterface::FadeOut(const std::function<void()>& pump) {
    SndPlayer& player = state_.Player();
    const float volume = state_.CurrentSong().masterVolume;
    const std::uint32_t start = Now();
    for (int way = 0; way < kFadeEnd;) {
        way = CurtainWay(Now() - start);
        const int open = std::clamp(kPictureWidth - way, 0, kPictureWidth - 1);
        player.SetMasterVolume(volume * static_cast<float>(open) / static_cast<float>(kPictureWidth));
        Paint();
        BlitCurtain(open);
        pump();
    }
}

}  // namespace vonta
