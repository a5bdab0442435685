// demo_song FILE: writes the demo song.
#include <cstdio>

#include "formats/Loaders.h"
#include "tools/DemoSong.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: demo_song FILE\n", stderr);
        return 2;
    }
    const auto song = vonta::ComposeDemoSong();
    vonta::DiskStream stream;
    if (stream.Open(argv[1], "wb") && vonta::SaveFile(&stream, vonta::SaveMode::Module, *song, {}) == 0) return 0;
    std::fprintf(stderr, "demo_song: %s: %s\n", argv[1], stream.Error().c_str());
    return 1;
}
