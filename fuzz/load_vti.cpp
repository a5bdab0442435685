// A native instrument of any bytes: what loads must save, load again, save to the same bytes, and play.
#include "fuzz/SavedForms.h"

namespace {

struct LoaderVTI {
    std::unique_ptr<vonta::Instrument> Load(vonta::FileStream& stream, vonta::LoadReport& report) {
        auto instrument = vonta::LoadInstrumentNative(stream, report);
        if (!instrument) report.Fail("not a native instrument");     // the loader leaves that to the next one
        return instrument;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return vonta::LoadAnyInstrument<LoaderVTI>({data, data + size});
}
