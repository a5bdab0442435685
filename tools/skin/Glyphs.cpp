#include "tools/skin/Glyphs.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace vonta::skin {
namespace {

using NamedGlyphs = std::map<std::string, Glyph>;

[[noreturn]] void Fail(const std::string& file, int line, const std::string& what) {
    throw std::runtime_error(file + ":" + std::to_string(line) + ": " + what);
}

std::vector<std::string> Words(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

// The Latin-1 code of a name that is one UTF-8 character; -1 for a word.
int CodeOf(const std::string& name) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(name[i]); };
    if (name.size() == 1) return byte(0);
    if (name.size() == 2 && (byte(0) & 0xFC) == 0xC0) return (byte(0) & 3) << 6 | (byte(1) & 0x3F);
    return -1;
}

// Reads blocks of glyphs that stand side by side; each glyph stands in the middle of the cell.
NamedGlyphs ReadGlyphs(const std::string& file, int width) {
    std::ifstream in(file);
    if (!in) throw std::runtime_error(file + ": cannot be read");
    NamedGlyphs found;
    std::vector<std::string> names;
    int row = 0, number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        auto words = Words(line);
        if (words.empty() || words[0] == ";") continue;
        if (words[0].front() == '@') {
            row = std::stoi(words[0].substr(1));
            names.assign(words.begin() + 1, words.end());
            continue;
        }
        if (words.size() != names.size() || row >= kGlyphRows) Fail(file, number, "does not fit the block's names");
        for (std::size_t i = 0; i < words.size(); ++i) {
            const int left = (width - static_cast<int>(words[i].size())) / 2;
            if (left < 0) Fail(file, number, "wider than the font");
            Glyph& glyph = found[names[i]];
            glyph.drawn = true;
            for (std::size_t x = 0; x < words[i].size(); ++x)
                if (words[i][x] == '#') glyph.rows[static_cast<std::size_t>(row)] |= 1u << (left + static_cast<int>(x));
        }
        ++row;
    }
    return found;
}

int TopOf(const Glyph& glyph) {
    const auto set = std::find_if(glyph.rows.begin(), glyph.rows.end(), [](std::uint32_t row) { return row != 0; });
    return static_cast<int>(set - glyph.rows.begin());
}

int BottomOf(const Glyph& glyph) {
    const auto set = std::find_if(glyph.rows.rbegin(), glyph.rows.rend(), [](std::uint32_t row) { return row != 0; });
    return kGlyphRows - 1 - static_cast<int>(set - glyph.rows.rbegin());
}

// The accent one row above the letter, or hanging from its foot.
Glyph Compose(const Glyph& base, const Glyph& accent, bool below) {
    Glyph composed = base;
    composed.drawn = true;
    const int height = BottomOf(accent) - TopOf(accent) + 1;
    const int above = std::max(TopOf(base) - 1 - height, 0);
    const int at = below ? BottomOf(base) + 1 : std::min(above, kGlyphRows - height);
    for (int y = 0; y < height; ++y)
        composed.rows[static_cast<std::size_t>(at + y)] |= accent.rows[static_cast<std::size_t>(TopOf(accent) + y)];
    return composed;
}

void ComposeLetters(const std::string& file, NamedGlyphs& glyphs) {
    std::ifstream in(file);
    if (!in) throw std::runtime_error(file + ": cannot be read");
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        const auto words = Words(line);
        if (words.empty() || words[0] == ";") continue;
        if (words.size() != 3) Fail(file, number, "needs a letter, its base and its accent");
        const auto base = glyphs.find(words[1]), accent = glyphs.find(words[2]);
        if (accent == glyphs.end()) Fail(file, number, "no such accent");
        if (words[1] == "space") glyphs[words[0]] = accent->second;
        else if (base != glyphs.end()) glyphs[words[0]] = Compose(base->second, accent->second, words[2] == "cedilla");
    }
}

struct SignRow {
    const char* source;
    char printed;
};
constexpr SignRow kSigns[kSignCount] = {{"empty", '$'}, {"off-left", '*'}, {"off-middle", '+'}, {"off-right", ','}};

void Place(const NamedGlyphs& named, GlyphSet& font) {
    for (const auto& [name, glyph] : named)
        if (const int code = CodeOf(name); code >= 0) font.glyphs[static_cast<std::size_t>(code)] = glyph;
    for (std::size_t i = 0; i < kSignCount; ++i)
        if (const auto sign = named.find(kSigns[i].source); sign != named.end()) font.signs[i] = sign->second;
    font.glyphs[' '].drawn = true;
    font.glyphs[0xA0].drawn = true;   // the blank that does not break
    font.glyphs[0xAD] = font.glyphs['-'];
}

// What a font of notes does not draw shows as the capital.
void UseCapitals(GlyphSet& font) {
    for (std::size_t c = 'a'; c <= 'z'; ++c)
        if (!font.glyphs[c].drawn) font.glyphs[c] = font.glyphs[c - 32];
}

// What the font lacks is taken from another, each stroke one pixel wider.
void UseWidened(GlyphSet& font, const GlyphSet& other) {
    for (std::size_t c = 0; c < font.glyphs.size(); ++c) {
        if (font.glyphs[c].drawn || !other.glyphs[c].drawn) continue;
        font.glyphs[c] = other.glyphs[c];
        for (auto& row : font.glyphs[c].rows) row |= row << 1 & 0xFF;
    }
}

struct FontRow {
    const char* name;
    int width, advance;
};
constexpr FontRow kFonts[kFontCount] = {
    {"StdBig", 8, 8}, {"Std", 8, 8}, {"Small", 7, 7}, {"Mini", 5, 4}, {"Big", 12, 12}, {"Bigger", 28, 28},
};

}  // namespace

const Glyph& GlyphSet::Printed(unsigned char code) const {
    for (std::size_t i = 0; i < kSignCount; ++i)
        if (static_cast<unsigned char>(kSigns[i].printed) == code && signs[i].drawn) return signs[i];
    return glyphs[code];
}

FontSet LoadFonts(const std::string& directory) {
    FontSet fonts;
    for (std::size_t i = 0; i < kFontCount; ++i) {
        auto& font = fonts[i];
        font.name = kFonts[i].name;
        font.width = kFonts[i].width;
        font.advance = kFonts[i].advance;
        auto named = ReadGlyphs(directory + "/" + font.name + ".txt", font.width);
        if (i == kStd || i == kSmall) ComposeLetters(directory + "/latin1.txt", named);
        Place(named, font);
    }
    UseWidened(fonts[kStdBig], fonts[kStd]);
    for (const auto name : {kMini, kBig, kBigger}) UseCapitals(fonts[name]);
    return fonts;
}

}  // namespace vonta::skin
