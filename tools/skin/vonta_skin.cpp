// vonta_skin SOURCES OUTDIR: draws the pictures of the program and packs them as OUTDIR/Vonta.dat and
// OUTDIR/Skins/Default.vts, and the icons beside them. SOURCES holds fonts/ and help/.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "tools/skin/Packs.h"
#include "tools/skin/Splash.h"

namespace {

using namespace vonta;

void Write(const std::string& path, const std::vector<PackEntry>& entries) {
    std::string error;
    if (!WritePack(path, entries, error)) throw std::runtime_error(path + ": " + error);
}

void Build(const std::string& sources, const std::string& out) {
    const skin::FontSet fonts = skin::LoadFonts(sources + "/fonts");
    std::filesystem::create_directories(out + "/Skins");
    std::filesystem::create_directories(out + "/icon");
    Write(out + "/Vonta.dat", skin::DataEntries(fonts, sources + "/help"));
    Write(out + "/Skins/Default.vts", skin::SkinEntries(fonts));
    for (const int size : {48, 128}) skin::PaintIcon(size).WritePng(out + "/icon/vonta-" + std::to_string(size) + ".png");
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 3) {
        std::fputs("usage: vonta_skin SOURCES OUTDIR\n", stderr);
        return 2;
    }
    Build(argv[1], argv[2]);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "vonta_skin: %s\n", failure.what());
    return 1;
}
