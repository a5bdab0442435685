// Any bytes as a WAV file and as a raw one: refused with a reason; or a sample of whole frames that came from them, which
// plays, and which a WAV file and an instrument hold.
#include "formats/samples/LoaderRaw.h"
#include "formats/samples/LoaderWAV.h"
#include "fuzz/SavedForms.h"

namespace {

using namespace vonta;

void RequireWavSurvives(const Sample& sample) {
    MemoryStream stream;
    Require(SaveSample(stream, sample));
    stream.Seek(0, kFromStart);
    LoadReport report;
    const auto again = LoaderWAV().Load(stream, report);
    Require(again && again->Channels() == sample.Channels() && again->Count() == sample.Count());
    Require(std::equal(sample.Wave(), sample.Wave() + sample.Count(), again->Wave()));
}

template <class Loader>
void Load(const std::uint8_t* data, std::size_t size) {
    MemoryStream stream({data, data + size});
    LoadReport report;
    Loader loader;
    auto sample = loader.Load(stream, report);
    Require((sample == nullptr) != report.error.empty());
    if (!sample) return;
    Require(sample->Count() <= size && sample->Count() % static_cast<unsigned>(sample->Channels()) == 0);
    Require(sample->IsSixteenBit());
    RequireWavSurvives(*sample);
    if (loader.GetSampleRate() != 0) TuneSample(*sample, loader.GetSampleRate());
    SetLoopPoints(*sample, loader.GetLoopStart(), loader.GetLoopEnd());
    auto instrument = std::make_unique<Instrument>();
    instrument->SetSample(0, std::move(sample), 1);
    instrument->Validate();
    RequireInstrumentSurvives(*instrument);
    PlayInstrument(std::move(instrument));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Load<LoaderWAV>(data, size);
    Load<LoaderRaw>(data, size);
    return 0;
}
