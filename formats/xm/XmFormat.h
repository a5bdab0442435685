// The layout of an Extended Module: its constants and its records, walked by the reader and by the writer.
// All values are little-endian. The instrument's own format (.xi) shares the records of the instrument.
//
//   header, 336 bytes
//   per pattern: pattern header, 9 bytes; packedSize bytes of cells, rows outer, channels inner
//   per instrument: instrument header, 29 bytes; with samples also the block, 212 bytes, and the rest of `size`;
//       all sample headers, 40 bytes each; then the waves of all samples
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vonta {

constexpr std::string_view kXmSignature = "Extended Module: ";
constexpr std::size_t kXmTextWidth = 20;             // module and tracker name
constexpr std::size_t kXmNameWidth = 22;             // instrument and sample names
constexpr std::size_t kXmHeaderBytes = 336;
constexpr std::uint32_t kXmHeaderSizeAt = 60;        // the header size counts from its own first byte
constexpr std::uint32_t kXmHeaderSize = 276;
constexpr std::uint16_t kXmVersion = 0x0104;
constexpr std::uint32_t kXmPatternHeaderBytes = 9;
constexpr std::uint32_t kXmInstrumentHeaderBytes = 29;   // without samples; the instrument's size counts from its start
constexpr std::uint32_t kXmInstrumentBytes = 241;        // header and block
constexpr std::uint32_t kXmUsualInstrumentBytes = 263;   // what most writers make of it: with 22 reserved bytes
constexpr std::uint32_t kXmSampleHeaderBytes = 40;
constexpr int kXmKeys = 96;
constexpr int kXmEnvelopePoints = 12;

// A cell starts with its note, or with a mask (bit 7 set) of the fields that follow, in this order. No mask: all five.
enum XmMask : std::uint8_t {
    kXmHasNote = 1, kXmHasInstrument = 2, kXmHasVolume = 4, kXmHasEffect = 8, kXmHasParam = 16, kXmPacked = 0x80,
};
constexpr std::size_t kXmMaxCellBytes = 5;
constexpr std::uint8_t kXmNoteOff = 0x61;            // 1 to 96 are notes, 0 is none
constexpr std::uint8_t kXmVolumeFirst = 0x10, kXmVolumeLast = 0x50;   // set volume 0 to 64
constexpr std::uint8_t kXmVolumeCommand = 0x60;      // and above: a command of the volume column

enum XmEnvelopeFlags : std::uint8_t { kXmEnvelopeOn = 1, kXmEnvelopeSustain = 2, kXmEnvelopeLoop = 4 };

constexpr std::uint8_t kXmLoopMask = 3;              // 0 none, 1 forward, 2 ping-pong
constexpr std::uint8_t kXmSixteenBit = 0x10;
constexpr float kXmEightBitScale = 256.0f;           // one step of an 8-bit frame on the scale of the song

struct XmHeader {
    std::string title, tracker;
    std::uint16_t version = kXmVersion;
    std::uint32_t headerSize = kXmHeaderSize;
    std::uint16_t length = 0;                        // positions of the order table in use
    std::uint16_t restart = 0;
    std::uint16_t channels = 0, patterns = 0, instruments = 0;
    std::uint16_t flags = 1;                         // bit 0: linear frequencies
    std::uint16_t tempo = 6, bpm = 125;
    std::array<std::uint8_t, 256> order{};
};

template <class Io, class Header>
void XmHeaderRecord(Io& io, Header& header) {
    io.ConstFixedText(kXmSignature, kXmSignature.size());
    io.FixedText(header.title, kXmTextWidth);
    io.ConstU8(0x1A);
    io.FixedText(header.tracker, kXmTextWidth);
    io.U16(header.version);
    io.U32(header.headerSize);
    io.U16(header.length);
    io.U16(header.restart);
    io.U16(header.channels);
    io.U16(header.patterns);
    io.U16(header.instruments);
    io.U16(header.flags);
    io.U16(header.tempo);
    io.U16(header.bpm);
    io.Bytes(header.order);
}

struct XmPatternHeader {
    std::uint32_t headerSize = kXmPatternHeaderBytes;
    std::uint8_t packing = 0;                        // 0 is the only one there is
    std::uint16_t rows = 64;
    std::uint16_t packedSize = 0;                    // bytes of cells; 0: the pattern is empty
};

template <class Io, class Header>
void XmPatternHeaderRecord(Io& io, Header& header) {
    io.U32(header.headerSize);
    io.U8(header.packing);
    io.U16(header.rows);
    io.U16(header.packedSize);
}

struct XmInstrumentHeader {
    std::uint32_t size = kXmInstrumentHeaderBytes;
    std::string name;
    std::uint16_t numSamples = 0;
};

template <class Io, class Header>
void XmInstrumentHeaderRecord(Io& io, Header& header) {
    io.U32(header.size);
    io.FixedText(header.name, kXmNameWidth);
    io.ConstU8(0);                                   // type: writers leave anything here
    io.U16(header.numSamples);
}

struct XmEnvelope {
    std::array<std::array<std::uint16_t, 2>, kXmEnvelopePoints> points{};   // x, y
    std::uint8_t numPoints = 0;
    std::uint8_t sustain = 0, loopStart = 0, loopEnd = 0;                   // point numbers
    std::uint8_t flags = 0;                                                 // XmEnvelopeFlags
};

// What an instrument with samples has in both formats, 208 bytes. In a module a u32 goes before it, the size of a
// sample header.
struct XmInstrumentBody {
    std::array<std::uint8_t, kXmKeys> samples{};     // of each note
    XmEnvelope volume, pan;
    std::uint16_t fadeOut = 0;
};

template <class Io, class Body>
void XmInstrumentBodyRecord(Io& io, Body& body) {
    io.Bytes(body.samples);
    for (auto* envelope : {&body.volume, &body.pan})
        for (auto& [x, y] : envelope->points) {
            io.U16(x);
            io.U16(y);
        }
    io.U8(body.volume.numPoints);
    io.U8(body.pan.numPoints);
    for (auto* envelope : {&body.volume, &body.pan}) {
        io.U8(envelope->sustain);
        io.U8(envelope->loopStart);
        io.U8(envelope->loopEnd);
    }
    io.U8(body.volume.flags);
    io.U8(body.pan.flags);
    io.Zeros(4);                                     // vibrato: the song has none
    io.U16(body.fadeOut);
}

struct XmSampleHeader {
    std::uint32_t length = 0, loopStart = 0, loopLength = 0;   // bytes
    std::uint8_t volume = 0;                         // 0 to 64
    std::int8_t fineTune = 0;
    std::uint8_t type = 0;                           // kXmLoopMask, kXmSixteenBit
    std::uint8_t panning = 0;
    std::int8_t relativeNote = 0;
    std::string name;
};

template <class Io, class Header>
void XmSampleHeaderRecord(Io& io, Header& header) {
    io.U32(header.length);
    io.U32(header.loopStart);
    io.U32(header.loopLength);
    io.U8(header.volume);
    io.I8(header.fineTune);
    io.U8(header.type);
    io.U8(header.panning);
    io.I8(header.relativeNote);
    io.Zeros(1);
    io.FixedText(header.name, kXmNameWidth);
}

}  // namespace vonta
