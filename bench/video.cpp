// What a busy frame costs before it is shown: its blits, its text and its lines.
#include "interface/video/Video.h"

#include <benchmark/benchmark.h>

#include <cmath>

#include "interface/video/Font.h"
#include "tests/support/VideoRig.h"

namespace vonta {
namespace {

// The pattern with eight channels, the scopes, both option panels and the list of instruments.
constexpr int kRows = 26, kRowHeight = 13, kPatternY = 248, kScopes = 8, kScopePoints = 80;
constexpr int kButtons = 150, kKeyedPictures = 60;
constexpr const char* kRowText = "C-4 01 64 A0F  ";

struct Frame : VideoRig {
    Font font;
    std::unique_ptr<PackFile> pack;
    int panels, pattern, button, keyed;

    explicit Frame(int bits) : VideoRig(bits) {
        std::vector<std::uint32_t> glyphs;
        for (int y = 0; y < Font::kGlyphs * Font::kHeight; ++y)
            for (int x = 0; x < 8; ++x) glyphs.push_back(x % 5 < 2 && y % Font::kHeight < 10 ? 0xFFFFFF : 0);
        std::vector<std::uint32_t> spots;
        for (unsigned i = 0; i < 24 * 24; ++i) spots.push_back(i % 3 ? 0xFF804020 : 0);
        pack = Pack(test::PackBuilder().Picture("panels", 800, 248, 0x203040).Picture("pattern", 800, 352, 0x101820)
                        .Picture("button", 88, 20, 0x405060).Add("keyed", test::Tga(24, 24, 32, spots))
                        .Add("font", test::Tga(8, Font::kGlyphs * Font::kHeight, 24, glyphs)));
        panels = video.LoadBitmap(pack.get(), "panels");
        pattern = video.LoadBitmap(pack.get(), "pattern");
        button = video.LoadBitmap(pack.get(), "button");
        keyed = video.LoadBitmap(pack.get(), "keyed");
        font.Load(pack.get(), "font", video.Format(), 8, 8);
        int pitch = 0;
        std::uint8_t* back = video.LockBack(pitch);
        font.SetTarget(back, pitch);
        font.SetColour(video.PackRgb(0xC0D0E0));
    }

    void Blits() {
        video.BlitToBack(0, 0, panels);
        video.BlitToBack(0, kPatternY, pattern);
        for (int i = 0; i < kButtons; ++i) video.BlitRect(i * 37 % 712, i * 53 % 580, 0, 0, 88, 20, panels, false);
        for (int i = 0; i < kKeyedPictures; ++i) video.BlitToBack(i * 41 % 776, i * 29 % 576, keyed);
    }
    void Text() {
        for (int row = 0; row < kRows; ++row)
            for (int x = 20; x < 780; x += 120) font.Print(x, kPatternY + row * kRowHeight, kRowText);
        for (int i = 0; i < kButtons; ++i) font.Print(i * 37 % 712, i * 53 % 230, "Caption");
    }
    void Lines() {
        for (int scope = 0; scope < kScopes; ++scope)
            for (int i = 0; i < kScopePoints; ++i)
                video.DrawLine(scope * 42 + i / 2, 160, scope * 42 + i / 2, 160 + static_cast<int>(20 * std::sin(i * 0.2)),
                               video.PackRgb(0x80FF80));
    }
};

template <void (Frame::*... parts)()>
void Paint(benchmark::State& state) {
    Frame frame(static_cast<int>(state.range(0)));
    for (auto _ : state) (..., (frame.*parts)());
}
BENCHMARK(Paint<&Frame::Blits>)->Name("Blits")->ArgName("bits")->Arg(16)->Arg(24)->Arg(32);
BENCHMARK(Paint<&Frame::Text>)->Name("Text")->ArgName("bits")->Arg(16)->Arg(24)->Arg(32);
BENCHMARK(Paint<&Frame::Lines>)->Name("Lines")->ArgName("bits")->Arg(16)->Arg(24)->Arg(32);
BENCHMARK(Paint<&Frame::Blits, &Frame::Text, &Frame::Lines>)->Name("Frame")->ArgName("bits")->Arg(16)->Arg(24)->Arg(32);

}  // namespace
}  // namespace vonta
