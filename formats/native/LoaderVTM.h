// Reads native modules of every version into a fresh song.
#pragma once

#include <memory>

#include "formats/Loaders.h"

namespace vonta {

class LoaderNative final : public ModuleLoader {
public:
    std::unique_ptr<Song> Load(FileStream& stream, LoadReport& report) override;   // closes the stream
    bool Check(FileStream& stream) override;
    bool HasUnknownChunks() const override { return unknownChunk_; }

private:
    bool unknownChunk_ = false;
};

}  // namespace vonta
