// Keygroup programs of a sampler. The program names its samples; their waves lie beside it as WAV files.
#pragma once

#include "formats/Loaders.h"
#include "formats/streams/Riff.h"

namespace vonta {

class LoaderAKP final : public InstrumentLoader {
public:
    std::unique_ptr<Instrument> Load(const std::string& path, LoadReport& report) override;
    std::unique_ptr<Instrument> Load(FileStream& stream, LoadReport& report);
    bool Check(const std::string& path) override;
};

}  // namespace vonta
