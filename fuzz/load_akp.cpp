// Any bytes as a keygroup program beside a WAV file named "tone": refused with a reason, or loaded and played.
#include <cstdint>
#include <cstdlib>

#include "formats/LoaderAKP.h"
#include "fuzz/PlayOneSecond.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/WavBuilder.h"

namespace {

const std::string& ProgramPath() {
    static const vonta::TempDirectory directory;
    static const std::string path = [] {
        const auto wav = vonta::test::WavBuilder::SixteenBit({0, 20000, 0, -20000}, 2);
        directory.Write("tone.WAV", wav.With(vonta::test::WavBuilder::Sampler(60, {{0, 2}})).Text());
        return directory.File("x.akp");
    }();
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vonta::MemoryStream stream({data, data + size}, ProgramPath());
    vonta::LoadReport report;
    auto instrument = vonta::LoaderAKP().Load(stream, report);
    if ((instrument == nullptr) == report.error.empty()) std::abort();
    if (!instrument) return 0;
    instrument->Validate();
    vonta::PlayInstrument(std::move(instrument));
    return 0;
}
