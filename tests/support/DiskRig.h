// The interface with its Disk Op open in a directory of its own, worked with the mouse as a user does.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "interface/layout/DiskOpLayout.h"
#include "interface/layout/QuestionLayouts.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {

struct DiskRig : InterfaceRig {
    explicit DiskRig(std::unique_ptr<Song> song = nullptr, ResourcePacks resources = {})
        : InterfaceRig(std::move(song), std::move(resources)) {
        Frame();
        ui.ShowScreen(kScreenDiskOp);
        Frame();
        Disk().GoTo(directory.Path());
        Frame();
    }
    DiskOpScreen& Disk() { return ui.DiskOp(); }
    void Press(int id) { Click(kDiskOpLayout, id); }
    void PressInSaveQuestion(int id) { PressIn(kSaveLayout, id); }
    void Answer(int id) { PressIn(kDialogLayout, id); }
    bool ClickFile(const std::string& name, bool right = false) {
        for (int row = 0; row < Disk().Rows().Count(); ++row)
            if (Disk().Rows().At(row).name == name) return Click(230, 7 + 14 * row + 5, right), true;
        return false;
    }
    // Small letters as a keyboard sends them: each is a key and a character, all between two frames.
    void TypeKeys(const std::string& letters) {
        for (const char letter : letters) {
            Key(kKeyA + letter - 'a', true);
            Type({letter});
            Key(kKeyA + letter - 'a', false);
        }
        Frame();
    }

private:
    void PressIn(const ScreenLayout& layout, int id) {
        const LayoutItem& item = ItemOf(layout, id);
        Click(layout.x + item.x + item.width / 2, layout.y + item.y + item.height / 2);
    }
};

}  // namespace vonta
