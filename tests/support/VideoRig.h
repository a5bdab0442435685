// A video mode that nobody sees, and what it shows.
#pragma once

#include "interface/video/Video.h"
#include "platform/HeadlessWindow.h"
#include "tests/support/PackBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {

struct VideoRig {
    TempDirectory directory;
    HeadlessDisplay display;
    Video video{display};

    explicit VideoRig(int bits) {
        video.SetMode(bits, false, false, 800, 600);
        int pitch = 0;
        std::uint8_t* back = video.LockBack(pitch);
        video.SetTarget(back, pitch);
    }
    std::uint32_t Shown(int x, int y) {
        video.Present();
        return display.PixelAt(x, y);
    }
    std::unique_ptr<PackFile> Pack(const test::PackBuilder& builder, const std::string& name = "p.vts") {
        return std::make_unique<PackFile>(builder.WriteTo(directory.File(name)));
    }
};

}  // namespace vonta
