// SoundFont 2 banks. A bank becomes one instrument: the samples of the whole bank, up to 256, and the zones of its
// first instrument. Modulators, filters, LFOs and most generators are passed over.
#pragma once

#include "formats/Loaders.h"
#include "formats/streams/Riff.h"

namespace vonta {

class LoaderSF2 final : public InstrumentLoader {
public:
    std::unique_ptr<Instrument> Load(const std::string& path, LoadReport& report) override;
    std::unique_ptr<Instrument> Load(FileStream& stream, LoadReport& report);
    bool Check(const std::string& path) override;
};

}  // namespace vonta
