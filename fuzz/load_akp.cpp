// Any bytes as a keygroup program beside a WAV file named "tone".
#include "formats/instruments/LoaderAKP.h"
#include "fuzz/SavedForms.h"
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
    return vonta::LoadAnyInstrument<vonta::LoaderAKP>({data, data + size}, ProgramPath());
}
