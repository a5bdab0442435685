// The six bitmap fonts. A font keeps for each of 256 characters the runs of its set pixels, so that text is a handful
// of fills. Texts are UTF-8; what is no valid sequence is taken as Latin-1 byte by byte.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "interface/video/Video.h"

namespace vonta {

class PackFile;

class Font {
public:
    static constexpr int kGlyphs = 256, kHeight = 16;   // rows of a character

    // width of the glyph image, advance from character to character, both in pixels. False if the image cannot be read.
    bool Load(PackFile* pack, const std::string& name, const PixelFormat& format, int width, int advance);

    void SetTarget(std::uint8_t* address, int pitch) { address_ = address; pitch_ = pitch; }   // 800 by 600
    void SetColour(std::uint32_t colour) { colour_ = colour; }
    void Mute(bool on) { muted_ = on; }
    int Advance() const { return advance_; }
    int WidthOf(std::string_view text) const;    // pixels

    // What would leave the target is cut off.
    void Print(int x, int y, std::string_view text) const { PrintColoured(x, y, colour_, text); }   // with a shadow
    void PrintColoured(int x, int y, std::uint32_t colour, std::string_view text) const;   // no shadow with colour 0
    void PrintClipped(int x, int y, int maxChars, std::string_view text, std::uint32_t colour = 0) const;   // 0: default
    // Moves back and forth if longer than maxChars. state: the direction in the high bit, then 26 bits start index; the
    // rest counts calls.
    void PrintScrolling(int x, int y, std::uint32_t& state, int maxChars, std::string_view text) const;

private:
    struct Run {
        std::uint8_t row = 0, column = 0, length = 0;
    };
    static void AddRuns(std::vector<Run>& runs, int row, const std::uint8_t* pixels, int columns);
    void Draw(int x, int y, std::uint32_t colour, std::string_view text) const;
    template <int bytes>
    void DrawGlyph(const std::vector<Run>& runs, int x, int y, std::uint32_t colour) const;

    std::array<std::vector<Run>, kGlyphs> glyphs_;
    std::uint8_t* address_ = nullptr;
    int pitch_ = 0, advance_ = 0, bitsPerPixel_ = 32;
    std::uint32_t colour_ = 0xFFFFFF;
    bool muted_ = false;
};

struct Fonts {
    Font m_fontStdBig, m_fontStd, m_fontSmall, m_fontMini, m_fontBig, m_fontBigger;

    std::array<Font*, 6> All() {
        return {&m_fontStdBig, &m_fontStd, &m_fontSmall, &m_fontMini, &m_fontBig, &m_fontBigger};
    }
    bool Load(PackFile* defaultSkin, const PixelFormat& format);
    void SetTarget(std::uint8_t* address, int pitch);
    void Mute(bool on);
};

}  // namespace vonta
