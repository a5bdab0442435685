#include <gtest/gtest.h>

#include "formats/Loaders.h"
#include "tests/support/RealSongs.h"

namespace vonta {
namespace {

TEST(RealSongs, EveryExtendedModuleLoadsWithoutComplaint) {
    const auto paths = RealSongs(".xm");
    if (paths.empty()) GTEST_SKIP() << "tools/fetch-songs has laid none into build/songs";
    for (const auto& path : paths) {
        SCOPED_TRACE(path);
        LoadReport report;
        bool unknown = false;
        const auto song = LoadModule(path, unknown, report);
        ASSERT_TRUE(song) << report.error;
        for (const auto& line : report.lines) ADD_FAILURE() << line;
        EXPECT_GT(song->CountSamples(), 0);
    }
}

}  // namespace
}  // namespace vonta
