#include "formats/xm/XmPatterns.h"

#include <algorithm>
#include <bit>
#include <vector>

#include "formats/ForeignEffects.h"
#include "formats/streams/Record.h"
#include "formats/xm/XmInstrument.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

// A full pattern has more cells than the 16 bits of its size can tell: the size then counts from 65536.
constexpr std::size_t kSizeWrap = 65536;

struct XmCell {
    std::uint8_t note = 0, instrument = 0, volume = 0, effect = 0, param = 0;
};

Cell ConvertCell(const XmCell& from) {
    Cell cell;
    if (from.note != 0) cell.note = from.note == kXmNoteOff ? kNoteOff : static_cast<std::uint8_t>(from.note - 1);
    cell.instrument = from.instrument;
    if (from.volume >= kXmVolumeFirst && from.volume <= kXmVolumeLast)
        cell.volume = static_cast<std::uint16_t>((from.volume - kXmVolumeFirst) * 2);
    else if (from.volume >= kXmVolumeCommand)
        cell.volume = static_cast<std::uint16_t>(from.volume | kVolumeCommand);
    cell.effect = from.effect > kLastForeignEffect ? std::uint8_t{0} : from.effect;
    cell.param = SongParam(cell.effect, from.param);
    return cell;
}

// Takes cells from a block of bytes. False when the block ends before the cell does.
class CellReader {
public:
    explicit CellReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool Next(XmCell& cell) {
        if (at_ >= bytes_.size()) return false;
        int fields = kXmHasNote | kXmHasInstrument | kXmHasVolume | kXmHasEffect | kXmHasParam;
        std::size_t from = at_;
        if (bytes_[at_] & kXmPacked) fields &= bytes_[from++];
        const auto count = static_cast<std::size_t>(std::popcount(static_cast<unsigned>(fields)));
        if (count > bytes_.size() - from) return false;
        const std::uint8_t* field = bytes_.data() + from;
        cell.note = fields & kXmHasNote ? *field++ : std::uint8_t{0};
        cell.instrument = fields & kXmHasInstrument ? *field++ : std::uint8_t{0};
        cell.volume = fields & kXmHasVolume ? *field++ : std::uint8_t{0};
        cell.effect = fields & kXmHasEffect ? *field++ : std::uint8_t{0};
        cell.param = fields & kXmHasParam ? *field++ : std::uint8_t{0};
        at_ = from + count;
        return true;
    }
    std::size_t Consumed() const { return at_; }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

struct Decoded {
    std::size_t consumed = 0;
    bool complete = false;
};

// Without a pattern it only measures.
Decoded DecodeCells(std::span<const std::uint8_t> bytes, int rows, int channels, Pattern* pattern) {
    CellReader reader(bytes);
    for (int row = 0; row < rows; ++row)
        for (int channel = 0; channel < channels; ++channel) {
            XmCell cell;
            if (!reader.Next(cell)) return {reader.Consumed(), false};
            if (pattern && channel < kTracks)
                pattern->tracks[static_cast<std::size_t>(channel)].cells[static_cast<std::size_t>(row)] =
                    ConvertCell(cell);
        }
    return {reader.Consumed(), true};
}

class PatternReader {
public:
    PatternReader(Reader& in, const XmHeader& header, Song& song, LoadReport& report)
        : in_(in), header_(header), song_(song), report_(report) {}

    XmPatternsEnd Read(int index) {
        XmPatternHeader header;
        RecordReader record(in_);
        XmPatternHeaderRecord(record, header);
        if (in_.Truncated()) return TellCut(index);
        if (!CheckHeader(index, header)) return XmPatternsEnd::Damaged;
        if (index >= kMaxPatterns)
            return in_.Stream().Seek(header.packedSize, kFromHere) ? XmPatternsEnd::Whole : TellCut(index);
        auto pattern = std::make_unique<Pattern>();
        pattern->SetNumRows(header.rows);
        const bool whole = header.packedSize == 0 || ReadCells(index, header, *pattern);
        song_.AddPattern(std::move(pattern));
        return whole ? XmPatternsEnd::Whole : TellCut(index);
    }

private:
    bool CheckHeader(int index, const XmPatternHeader& header) {
        if (header.packing != 0) {
            DebugOutput("* ERROR (corrupted module) pattern(%i) invalid packed type\n", index);
            report_.Fail("pattern %i has an unknown packing type", index);
            return false;
        }
        if (header.rows > kMaxRows) {
            DebugOutput("* ERROR (corrupted module) pattern(%i) invalid lenght\n", index);
            report_.Fail("pattern %i has %i rows, more than %i", index, header.rows, kMaxRows);
            return false;
        }
        if (header.headerSize > kXmPatternHeaderBytes && header.headerSize <= kXmMaxRecordBytes)
            in_.Skip(std::min<std::int64_t>(header.headerSize - kXmPatternHeaderBytes, in_.Remaining()));
        return true;
    }

    // Leaves the stream behind the pattern: where the packed size puts the next one, unless that lies beyond the file.
    // False if the file ends before the cells do; those that are there are kept.
    bool ReadCells(int index, const XmPatternHeader& header, Pattern& pattern) {
        const std::int64_t start = in_.Stream().Tell();
        const bool whole = in_.Remaining() >= header.packedSize;
        auto decoded = DecodeCells(Peek(header.packedSize), header.rows, header_.channels, &pattern);
        std::int64_t size = whole ? header.packedSize : static_cast<std::int64_t>(decoded.consumed);
        if (!decoded.complete) {
            const auto bytes = Peek(header.packedSize + kSizeWrap);
            decoded = DecodeCells(bytes, header.rows, header_.channels, nullptr);
            if (decoded.complete && decoded.consumed == header.packedSize + kSizeWrap) {
                DecodeCells(bytes, header.rows, header_.channels, &pattern);
                size = static_cast<std::int64_t>(decoded.consumed);
            } else if (whole) {
                report_.Add("Pattern %i holds less than its rows: the others are empty.", index);
            } else {
                return false;
            }
        }
        return in_.Stream().Seek(start + size, kFromStart);
    }

    // The bytes at the position, which stays; fewer at the end of the file.
    std::span<const std::uint8_t> Peek(std::size_t size) {
        block_.resize(size);
        const std::int64_t start = in_.Stream().Tell();
        const std::size_t got = in_.Stream().Read(block_.data(), 1, size);
        in_.Stream().Seek(start, kFromStart);
        return {block_.data(), got};
    }

    XmPatternsEnd TellCut(int index) {
        report_.Add("The file ends in pattern %i: what follows is missing, and so are all instruments.", index);
        return XmPatternsEnd::Cut;
    }

    Reader& in_;
    const XmHeader& header_;
    Song& song_;
    LoadReport& report_;
    std::vector<std::uint8_t> block_;
};

}  // namespace

XmPatternsEnd ReadXmPatterns(Reader& in, const XmHeader& header, Song& song, LoadReport& report) {
    PatternReader reader(in, header, song, report);
    for (int i = 0; i < header.patterns; ++i) {
        DebugOutput("\t\t- loading pattern... %i\n", i);
        if (const XmPatternsEnd end = reader.Read(i); end != XmPatternsEnd::Whole) return end;
    }
    if (header.patterns > kMaxPatterns)
        report.Add("The file has %i patterns: the last %i are dropped.", header.patterns,
                   header.patterns - kMaxPatterns);
    if (header.channels > kTracks)
        report.Add("The file has %i channels: the last %i are dropped.", header.channels, header.channels - kTracks);
    DebugOutput("\t- all patterns ok\n");
    return XmPatternsEnd::Whole;
}

bool IsXmPatternHere(FileStream& stream) {
    const std::int64_t start = stream.Tell();
    Reader in(stream);
    RecordReader record(in);
    XmPatternHeader header;
    XmPatternHeaderRecord(record, header);
    stream.Seek(start, kFromStart);
    return !in.Truncated() && header.headerSize >= kXmPatternHeaderBytes &&
           header.headerSize <= kXmMaxRecordBytes && header.packing == 0 && header.rows <= kMaxRows;
}

}  // namespace vonta
