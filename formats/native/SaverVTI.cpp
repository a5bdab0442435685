#include "formats/native/SaverVTI.h"

#include "formats/native/NativeLoad.h"
#include "formats/native/NativeLosses.h"
#include "formats/native/VtiFormat.h"

namespace vonta {
namespace {

// A clone goes out with the wave that it plays.
void WriteSample(ChunkWriter& chunks, int number, const Sample& sample, WavePacking& packing) {
    chunks.Chunk(kSampleChunk.Id(), [&] {
        RecordWriter io(chunks.Out());
        io.U8(number);
        SampleRecord(io, sample);
        WriteWave(chunks, sample, packing);
        chunks.WriteEnd();
    });
}

void WriteEnvelope(ChunkWriter& chunks, const EnvelopePlace& place, const Envelope& envelope) {
    chunks.Chunk(kEnvelopeChunk.Id(), [&] {
        RecordWriter io(chunks.Out());
        EnvelopePlaceRecord(io, place, kEnvelopeChunk.newest);
        EnvelopeRecord(io, envelope, kEnvelopeChunk.newest);
    });
}

void WriteEnvelopes(ChunkWriter& chunks, const Instrument& instrument) {
    for (std::uint8_t alternative = 0; alternative < kEnvelopeAlternatives; ++alternative)
        for (std::uint8_t kind = 0; kind < kEnvelopeKinds; ++kind)
            WriteEnvelope(chunks, {alternative, static_cast<std::uint8_t>(kind + kFirstEnvelopeKind)},
                          instrument.GetEnvelopes(static_cast<EnvelopeKind>(kind))[alternative]);
}

void WriteSynth(ChunkWriter& chunks, const Instrument& instrument) {
    if (!instrument.synth && instrument.missingSynth.empty()) return;
    chunks.Chunk(kSynthChunk.Id(), [&] {
        RecordWriter io(chunks.Out());
        if (const SynthPlugin* synth = instrument.synth.get())
            InstrumentSynthRecord(io, InstrumentSynth{synth->GetPath(), GetParameters(*synth)});
        else
            io.Bytes(instrument.missingSynth);
    });
}

}  // namespace

void WriteInstrumentBody(ChunkWriter& chunks, const Instrument& instrument, WavePacking& packing) {
    RecordWriter io(chunks.Out());
    InstrumentRecord(io, instrument, kInstrumentVersion);
    ColorRecord(io, instrument);
    for (int number = 0; number < kMaxSamples; ++number)
        if (const Sample* sample = instrument.GetSample(number)) WriteSample(chunks, number, *sample, packing);
    WriteEnvelopes(chunks, instrument);
    WriteSynth(chunks, instrument);
    chunks.WriteEnd();
}

int SaveInstrument(FileStream& stream, const Instrument& instrument) {
    ChunkWriter chunks(stream);
    chunks.Out().FixedText(kWrittenMagic.bytes, kWrittenMagic.bytes.size());
    WavePacking plain;
    WriteInstrumentBody(chunks, instrument, plain);
    return stream.Error().empty() ? 0 : 1;
}

int SaveInstrument(const std::string& path, const Instrument& instrument, LoadReport* report) {
    DiskStream stream;
    const bool written = stream.Open(path, "wb") && SaveInstrument(stream, instrument) == 0 && stream.Close();
    if (report && written) ReportNativeLosses(instrument, *report);
    if (report && !written) report->Fail("%s", stream.Error().c_str());
    return written ? 0 : 1;
}

}  // namespace vonta
