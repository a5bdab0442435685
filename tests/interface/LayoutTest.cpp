// The tables of the screens, as a designer would look at them with a ruler.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "interface/layout/Layout.h"

namespace vonta {
namespace {

bool IsText(const LayoutItem& item) { return item.look == Look::Label || item.look == Look::Title; }

bool Overlap(const LayoutItem& a, const LayoutItem& b) {
    // The cell of a text is higher than its ink, which stands in rows 3 to 12.
    const auto top = [](const LayoutItem& item) { return item.y + (IsText(item) ? 3 : 0); };
    const auto bottom = [](const LayoutItem& item) { return item.y + (IsText(item) ? 13 : item.height); };
    return a.x < b.x + b.width && b.x < a.x + a.width && top(a) < bottom(b) && top(b) < bottom(a);
}

std::string NameOf(const ScreenLayout& screen, const LayoutItem& item) {
    return std::string(screen.name) + " \"" + std::string(item.caption) + "\" at " + std::to_string(item.x) + ", " +
           std::to_string(item.y);
}

TEST(Layout, NothingOverlapsAndEverythingLiesInItsScreen) {
    for (const ScreenLayout* screen : AllLayouts()) {
        EXPECT_LE(screen->x + screen->width, kPictureWidth) << screen->name;
        EXPECT_LE(screen->y + screen->height, kPictureHeight) << screen->name;
        const int left = screen->OriginX(), top = screen->OriginY();
        for (std::size_t i = 0; i < screen->items.size(); ++i) {
            const LayoutItem& item = screen->items[i];
            EXPECT_TRUE(item.x >= left && item.x + item.width <= left + screen->width) << NameOf(*screen, item);
            EXPECT_TRUE(item.y >= top && item.y + item.height <= top + screen->height) << NameOf(*screen, item);
            if (item.look == Look::Group) continue;
            for (const LayoutItem& other : screen->items.subspan(i + 1))
                EXPECT_FALSE(other.look != Look::Group && Overlap(item, other))
                    << NameOf(*screen, item) << " and " << NameOf(*screen, other);
        }
    }
}

TEST(Layout, CaptionsFitAndControlsAreNamedOnce) {
    std::set<int> bitmaps;
    for (const ScreenLayout* screen : AllLayouts()) {
        EXPECT_TRUE(bitmaps.insert(screen->bitmap).second) << screen->name;
        std::set<int> ids;
        for (const LayoutItem& item : screen->items) {
            EXPECT_TRUE(item.id == kNoControl || ids.insert(item.id).second) << NameOf(*screen, item);
            if (IsText(item)) continue;
            EXPECT_LE(CaptionWidth(item.caption, AdvanceIn(item)), item.width - 2) << NameOf(*screen, item);
        }
    }
}

}  // namespace
}  // namespace vonta
