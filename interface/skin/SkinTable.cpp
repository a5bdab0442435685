// Which entry of a skin each bitmap is, and the least version of a skin that has it.
#include <algorithm>
#include <cstdio>

#include "formats/streams/FileStream.h"
#include "interface/skin/Skin.h"

namespace vonta {
namespace {

enum class Kind {
    Single,                                      // the entry's name without its suffix
    Pair,                                        // the picture, then its pressed look, whose name ends in "p"
    Numbered,                                    // two digits behind the name, from 00
    Strip,                                       // frames of one picture, from 1
    Data,                                        // of the data pack
};

struct Row {
    int first, count;                            // numbers of bitmaps
    Kind kind;
    int version;
    const char* name;
};

constexpr int kOurs = 10000;                     // above every version: from the default skin, whatever is chosen
constexpr int kV76 = kSkinVersion076, kV78 = kSkinVersion078, kV81 = kSkinVersion081;

constexpr Row kRows[] = {
    {1, 2, Kind::Pair, kV76, "skin\\BGrounds\\InfoChan"},
    {3, 2, Kind::Pair, kV76, "skin\\BGrounds\\OpLeft"},
    {5, 2, Kind::Pair, kV76, "skin\\BGrounds\\OpRight"},
    {7, 2, Kind::Pair, kV81, "skin\\BGrounds\\InsList"},
    {9, 2, Kind::Pair, kV76, "skin\\BGrounds\\DiskOp"},
    {11, 2, Kind::Pair, kV78, "skin\\BGrounds\\InstrEd"},
    {13, 2, Kind::Pair, kV76, "skin\\BGrounds\\Pattern"},
    {15, 2, Kind::Pair, kV76, "skin\\BGrounds\\Config"},
    {17, 2, Kind::Pair, kV76, "skin\\BGrounds\\SampleEd"},
    {19, 2, Kind::Pair, kV76, "skin\\BGrounds\\About"},
    {21, 2, Kind::Pair, kV78, "skin\\BGrounds\\InstrFlt"},
    {23, 2, Kind::Pair, kV76, "skin\\BGrounds\\CPUScan"},
    {25, 2, Kind::Pair, kV76, "skin\\BGrounds\\Dialog"},
    {27, 2, Kind::Pair, kV76, "skin\\BGrounds\\Help"},
    {29, 2, Kind::Pair, kV76, "skin\\BGrounds\\AdvEdit"},
    {31, 2, Kind::Pair, kV76, "skin\\BGrounds\\SongInfo"},
    {33, 2, Kind::Pair, kV76, "skin\\BGrounds\\FunVis"},
    {35, 2, Kind::Pair, kV76, "skin\\BGrounds\\MultiFX"},
    {37, 2, Kind::Pair, kV76, "skin\\BGrounds\\InsEExt"},
    {39, 2, Kind::Pair, kV76, "skin\\BGrounds\\FunGame"},
    {41, 2, Kind::Pair, kV78, "skin\\BGrounds\\Mixer"},
    {45, 1, Kind::Single, kV76, "skin\\Misc\\loopini"},
    {46, 1, Kind::Single, kV76, "skin\\Misc\\loopfin"},
    {47, 1, Kind::Data, kV76, "data\\aboutgfx"},
    {48, 2, Kind::Pair, kV76, "skin\\BGrounds\\Zap"},
    {50, 1, Kind::Single, kV76, "skin\\Misc\\eloopini"},
    {51, 1, Kind::Single, kV76, "skin\\Misc\\eloopfin"},
    {52, 1, Kind::Single, kV76, "skin\\Misc\\esustain"},
    {53, 1, Kind::Single, kV76, "skin\\Misc\\epoint2"},
    {54, 1, Kind::Single, kV76, "skin\\Misc\\epoint"},
    {55, 1, Kind::Single, kV76, "skin\\BGrounds\\Loading"},
    {56, 2, Kind::Pair, kV76, "skin\\Misc\\PatExt"},
    {58, 2, Kind::Pair, kV76, "skin\\Misc\\PatVolExt"},
    {60, 2, Kind::Pair, kV76, "skin\\BGrounds\\ChanEd"},
    {62, 2, Kind::Pair, kV76, "skin\\Misc\\PatScroll"},
    {64, 2, Kind::Pair, kV76, "skin\\BGrounds\\Save"},
    {66, 2, Kind::Pair, kV76, "skin\\Misc\\RecChnl"},
    {68, 2, Kind::Pair, kV76, "skin\\Misc\\Chmo"},
    {70, 1, Kind::Single, kV76, "skin\\Misc\\Synth"},
    {71, 1, Kind::Single, kV76, "skin\\Misc\\Midi"},
    {72, 1, Kind::Single, kV76, "skin\\Misc\\lineV1"},
    {73, 1, Kind::Single, kV76, "skin\\Misc\\lineV2"},
    {74, 1, Kind::Single, kV76, "skin\\Misc\\lineH1"},
    {75, 1, Kind::Single, kV76, "skin\\Misc\\lineH2"},
    {76, 1, Kind::Single, kV76, "skin\\Misc\\lineH3"},
    {77, 1, Kind::Single, kV78, "skin\\Misc\\blackk"},
    {78, 1, Kind::Single, kV78, "skin\\Misc\\whitek"},
    {79, 1, Kind::Single, kV78, "skin\\Misc\\blackkpress"},
    {80, 1, Kind::Single, kV78, "skin\\Misc\\whitekpress"},
    {81, 1, Kind::Single, kV76, "skin\\Misc\\lineV3"},
    {82, 1, Kind::Single, kV76, "skin\\Misc\\cursor"},
    {83, 32, Kind::Strip, kV78, "skin\\Misc\\chanmut"},
    {120, 1, Kind::Single, kV76, "skin\\Misc\\REC"},
    {190, 1, Kind::Single, kV76, "skin\\Buttons\\C1"},
    {191, 1, Kind::Single, kV78, "skin\\Buttons\\mixdesp1"},
    {192, 1, Kind::Single, kV78, "skin\\Buttons\\mixdesp2"},
    {193, 1, Kind::Single, kV78, "skin\\Buttons\\mixdesp3"},
    {194, 1, Kind::Single, kV76, "skin\\Misc\\lineH4"},
    {195, kKnobPositions, Kind::Numbered, kV78, "skin\\Buttons\\rr\\"},
    {259, kKnobPositions, Kind::Numbered, kV78, "skin\\Buttons\\rg\\"},
    {323, kKnobPositions, Kind::Numbered, kV78, "skin\\Buttons\\rb\\"},
    {387, 2, Kind::Pair, kV81, "skin\\BGrounds\\Console"},
    {389, 2, Kind::Pair, kOurs, "skin\\BGrounds\\Report"},
    {391, 1, Kind::Single, kOurs, "skin\\BGrounds\\Notice"},
};

const Row* FindRow(int number) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [=](const Row& r) { return number >= r.first && number < r.first + r.count; });
    return row == std::end(kRows) ? nullptr : row;
}

std::string NameOf(const Row& row, int index) {
    std::string name = row.name;
    if (row.kind == Kind::Pair && index == 1) name += 'p';
    if (row.kind == Kind::Numbered) name += {static_cast<char>('0' + index / 10), static_cast<char>('0' + index % 10)};
    return name + ".tga";
}

struct Marker {
    std::string_view name;                       // of the first entry
    int version;
};

constexpr Marker kMarkers[] = {
    {"skin\\Version076w", kV76}, {"skin\\Version078", kV78}, {"skin\\Version081", kV81}};
constexpr std::int64_t kFirstName = 4;           // where it stands in the file

}  // namespace

BitmapEntry EntryOfBitmap(int number) {
    const Row* row = FindRow(number);
    if (!row) return {};
    const int index = number - row->first;
    return {NameOf(*row, index), row->kind == Kind::Strip ? index + 1 : 0, row->kind == Kind::Data};
}

int BitmapVersion(int number) {
    const Row* row = FindRow(number);
    return row ? row->version : 0;
}

int GetSkinVersion(const std::string& path) {
    DiskStream file;
    if (!file.Open(path, "rb") || !file.Seek(kFirstName, kFromStart)) return kNoSkinVersion;
    const std::string first = Reader(file).FixedText(PackFile::kNameLength);
    for (const Marker& marker : kMarkers)
        if (first.starts_with(marker.name)) return marker.version;
    return kNoSkinVersion;
}

}  // namespace vonta
