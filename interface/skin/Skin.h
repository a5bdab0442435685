// The pictures and colours of the interface, named by number, each loaded at its first use from the skin that may have
// it: the chosen one, or the default one for what an older skin cannot know.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "app/pack/PackFile.h"

namespace vonta {

class Video;

constexpr int kBitmaps = 512;
constexpr int kSkinVersion076 = 7600, kSkinVersion078 = 7800, kSkinVersion081 = 8100, kNoSkinVersion = -1;
constexpr const char* kDefaultSkinName = "Default.vts";

// Numbers that code names. The whole table is in SkinTable.cpp; the rest are written in the layouts.
enum Bitmap : int {
    kBitmapAboutPicture = 47, kBitmapSlider = 190, kBitmapRedKnob = 195, kBitmapGreenKnob = 259,
    kBitmapBlueKnob = 323, kBitmapRecording = 120, kBitmapCursor = 82,
};
constexpr int kKnobPositions = 64;

// The mark of a muted channel: bitmap kBitmapMutedWhole - 1 + n is the picture n times narrower, and so fits a cell of a
// row of n channels (1 to 32).
constexpr int kBitmapMutedWhole = 83, kMutedStrips = 32;

// "skin\BGrounds\OpLeft.tga"; empty for a number that the table does not list. strip: the frame of Video::LoadStrip,
// 1 to 32, or 0.
struct BitmapEntry {
    std::string name;
    int strip = 0;
    bool fromDataPack = false;
};
BitmapEntry EntryOfBitmap(int number);
int BitmapVersion(int number);                   // least skin version that has it; 0: always from the default skin

int GetSkinVersion(const std::string& path);     // kNoSkinVersion if it cannot be opened or has no marker

struct SkinColours {                             // packed for the present mode
    std::uint32_t m_colText = 0, m_colHighlight = 0, m_colDim = 0, m_colLines = 0, m_colPoints = 0, m_colSelection = 0;
};

// The packs, owned by the application.
struct ResourcePacks {
    std::unique_ptr<PackFile> m_pDataPack, m_pDefaultSkin, m_pSkin;
    int m_nSkinVersion = kNoSkinVersion;
};

class Skin {
public:
    Skin(Video& video, ResourcePacks& packs) : video_(video), packs_(packs) {}

    PackFile* SkinForBitmap(int number) const;
    // The slot of the bitmap, loaded if need be; kNoSlot for a number without one.
    int LoadSkinBitmap(int number, bool showProgress = false);
    void SetProgress(std::function<void()> advance) { advance_ = std::move(advance); }   // of the loading screen
    void LoadAll(bool showProgress);
    void LoadColours();
    const SkinColours& Colours() const { return colours_; }
    void Forget();                               // the video mode is gone: all bitmaps are loaded anew

    // Another skin file takes over; false if it cannot be opened, and then nothing changes. The caller notes the name.
    bool SetSkin(const std::string& path);
    void BuildPiano();                           // on the surface of bitmap 11
    void BuildPendingPiano();

private:
    Video& video_;
    ResourcePacks& packs_;
    std::array<int, kBitmaps> slots_{};          // slot plus one; 0 not loaded
    SkinColours colours_;
    std::function<void()> advance_;
    bool pianoPending_ = true;
};

}  // namespace vonta
