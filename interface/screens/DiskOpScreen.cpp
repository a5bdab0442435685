#include "interface/screens/DiskOpScreen.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "interface/layout/DiskOpLayout.h"
#include "interface/TrackerInterface.h"
#include "interface/screens/ScrolledText.h"
#include "interface/video/Latin1.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;
using Self = DiskOpScreen;

constexpr ControlRow<Self> kRows[] = {
    {kDiskKind, Press<&Self::OnKind>, 0, kOnRelease, &Self::IsKind, kDiskKinds},
    {kDiskSave, Press<&Self::OnSave>},
    {kDiskDelete, Press<&Self::OnDelete>},
    {kDiskMakeDir, Press<&Self::OnMakeDirectory>},
    {kDiskLoad, Press<&Self::OnLoad>},
    {kDiskExit, Press<&Self::OnExit>},
    {kDiskUp, Press<&Self::OnUp>},
    {kDiskAll, Press<&Self::OnShowAll>, 0, kOnRelease, &Self::ShowsAll},
    {kDiskRoot, Press<&Self::OnRoot>},
    {kDiskHome, Press<&Self::OnHome>},
    {kDiskScrollUp, Press<&Self::OnScroll>, -1, kRepeating},
    {kDiskScrollDown, Press<&Self::OnScroll>, 1, kRepeating},
};

constexpr int kFirstRowY = 6, kLastRowY = 243;   // of the list's rows
constexpr int kMarkY = 7;
constexpr int kNameX = 211, kSizeX = 411;
constexpr int kNameCharacters = 24;
constexpr std::size_t kNameInQuestion = 54;      // characters
constexpr int kFullNameLines = 8;                // of the name under the mouse, at most

const LayoutItem& Item(int id) { return ItemOf(kDiskOpLayout, id); }

std::string ShownName(const FileEntry& entry) { return entry.isDirectory ? "\\" + entry.name : entry.name; }

std::string CurrentDirectory() {
    std::error_code failed;
    const fs::path directory = fs::current_path(failed);
    return failed ? "/" : directory.string();
}

bool IsWithin(const std::string& directory, const std::string& root) {
    const fs::path relative = fs::path(directory).lexically_normal().lexically_relative(root);
    return !relative.empty() && *relative.begin() != "..";
}

std::string HomeDirectory() {
    const char* home = std::getenv("HOME");
    return home && *home ? home : "/";
}

}  // namespace

DiskOpScreen::DiskOpScreen(TrackerInterface& ui, int group) : Screen(ui, group), directories_(CurrentDirectory()) {}

// Kinds that the configuration names a directory for begin there.
void DiskOpScreen::Init() {
    for (int kind = 0; kind < kConfigDirectories; ++kind) {
        const std::string& wanted = Settings().directories[static_cast<std::size_t>(kind)];
        std::error_code failed;
        const fs::path directory = fs::canonical(fs::path(Ui().Host().GetStartDir()) / wanted, failed);
        if (!wanted.empty() && !failed) directories_.Keep(static_cast<FileKind>(kind), directory.string());
    }
    directories_.Keep(FileKind::Skin, Ui().Host().GetStartDir() + "/Skins");
}

void DiskOpScreen::OnShown() {
    m_bDirty = true;
    MatchLowerScreen();
}

void DiskOpScreen::ReadList() {
    m_bDirty = false;
    m_nListScroll = 0;
    pressedRow_ = markedRow_ = -1;
    m_szListDir = directories_.Of(m_nFileKind);
    if (list_.Read(m_szListDir, m_nFileKind, m_bShowAll) || m_nFileKind == FileKind::Skin) return TellCut();
    if (!State().m_bDialogOpen) Ui().Tell(m_szListDir + " cannot be read");   // an earlier message stays
    const std::string parent = fs::path(m_szListDir).parent_path().string();
    m_szListDir = IsWithin(parent, root_) && list_.Read(parent, m_nFileKind, m_bShowAll) ? parent : root_;
    if (m_szListDir == root_) list_.Read(root_, m_nFileKind, m_bShowAll);
    directories_.Keep(m_nFileKind, m_szListDir);
}

void DiskOpScreen::TellCut() {
    if (list_.IsCut() && !State().m_bDialogOpen)
        Ui().Tell(Formatted("This directory holds more than %zu entries. Not all of them are listed.", DiskList::kMaxExamined));
}

void DiskOpScreen::PaintBackground() {
    if (m_bDirty) ReadList();
    if (!Regions().IsHolding()) pressedRow_ = -1;
    PaintLayout(kDiskOpLayout);
}

void DiskOpScreen::PaintControls() {
    if (!HasPainted()) return;
    DeclareButtons(this, kDiskOpLayout, kRows);
    PaintList();
    PaintName();
    const LayoutItem& path = Item(kDiskPath);
    Text().m_fontStd.PrintScrolling(path.x + 4, path.y, pathScroll_, kNameCharacters, m_szListDir);
}

void DiskOpScreen::PaintList() {
    const FullName name = NameUnderMouse();
    const int end = std::min(list_.Count(), m_nListScroll + kDiskRows);
    for (int row = m_nListScroll; row < end; ++row)
        if (!name.Covers(row - m_nListScroll)) PaintRow(row, kFirstRowY + (row - m_nListScroll) * kDiskRowHeight);
    PaintFullName(name);

    const LayoutItem& recess = Item(kDiskList);
    ControlRecord record;
    record.events = kOnLeftPress | kOnLeftHeld | kOnRelease | kOnRightPress;
    Regions().AddRegion(recess.x, recess.y, recess.x + recess.width - 1, recess.y + recess.height - 1,
                        Bind<&DiskOpScreen::OnList>(this), Bind<&DiskOpScreen::OnListDrag>(this), record);
    const LayoutItem& slider = Item(kDiskScroll);
    Regions().VSlider({slider.x, slider.y, slider.x + slider.width - 1, slider.y + slider.height - 1,
                       std::max(list_.Count() - kDiskRows, 0) + 1, 0, m_nListScroll},
                      Bind<&DiskOpScreen::OnSlider>(this), Bind<&DiskOpScreen::OnSlider>(this), Look());
}

void DiskOpScreen::PaintRow(int row, int y) {
    const FileEntry& entry = list_.At(row);
    if (row == pressedRow_ || row == markedRow_) PaintMark(row - m_nListScroll);
    Text().m_fontStd.Print(kNameX, y, ShortName(ShownName(entry)));
    Text().m_fontStd.Print(kSizeX, y, entry.isDirectory ? "     <DIR>"
                                          : Formatted("%10llu", static_cast<unsigned long long>(entry.size)));
}

// Nothing for a name that its row shows whole.
DiskOpScreen::FullName DiskOpScreen::NameUnderMouse() const {
    const LayoutItem& recess = Item(kDiskList);
    const int x = Ui().Keys().MouseX() - recess.x, y = Ui().Keys().MouseY() - recess.y;
    if (x < 0 || x >= recess.width || y < 0 || y >= recess.height || Regions().IsHolding() || State().m_bDialogOpen) return {};
    const int row = RowAt(y);
    const std::string name = row < 0 ? std::string() : ShownName(list_.At(row));
    if (CountCharacters(name) <= kNameCharacters) return {};
    FullName full;
    full.lines = BreakLines(name, (recess.x + recess.width - kNameX) / Text().m_fontStd.Advance());
    if (full.lines.size() > kFullNameLines) full.lines.resize(kFullNameLines);
    full.first = std::min(row - m_nListScroll, kDiskRows - static_cast<int>(full.lines.size()));
    return full;
}

// In the place of its row and, as far as it is longer, of those below; at the list's end of those above.
void DiskOpScreen::PaintFullName(const FullName& name) {
    if (name.lines.empty()) return;
    const LayoutItem& recess = Item(kDiskList);
    const int y = kMarkY + name.first * kDiskRowHeight, height = static_cast<int>(name.lines.size()) * kDiskRowHeight;
    if (Regions().IsBlitMode()) {
        const std::uint32_t colour = Pictures().Colours().m_colSelection;
        Surfaces().FillBack({recess.x + 1, y - 1, recess.width - 2, height + 1}, Surfaces().Dimmed(colour, 8));
        Surfaces().FillBack({recess.x + 2, y, recess.width - 4, height - 1}, Surfaces().Dimmed(colour, 3));
    }
    for (std::size_t line = 0; line < name.lines.size(); ++line)
        Text().m_fontStd.Print(kNameX, y - 1 + static_cast<int>(line) * kDiskRowHeight, name.lines[line]);
}

void DiskOpScreen::PaintMark(int visibleRow) {
    if (!Regions().IsBlitMode()) return;
    const LayoutItem& recess = Item(kDiskList);
    const int y = kMarkY + visibleRow * kDiskRowHeight;
    const int height = std::min(kDiskRowHeight, recess.y + recess.height - y);
    Surfaces().BlitRect(recess.x, y, Look().originX, Look().originY, recess.width, height,
                        static_cast<int>(Look().surface), false);
}

std::string* DiskOpScreen::NameField() {
    switch (m_nFileKind) {
    case FileKind::Song: return &State().m_szSongName;
    case FileKind::Instrument: return &State().m_szInstrumentName;
    case FileKind::Sample: return &State().m_szSampleName;
    default: return nullptr;
    }
}

void DiskOpScreen::PaintName() {
    std::string* name = NameField();
    if (!name) return;
    const LayoutItem& field = Item(kDiskName);
    ControlRecord record;
    record.events = kOnLeftPress | kOnRightPress;
    Regions().TextField(field.x, field.y, field.x + field.width - 1, field.y + field.height - 1, *name,
                        Bind<&DiskOpScreen::OnName>(this), {}, record);
    Text().m_fontStd.PrintClipped(field.x + 4, field.y, kNameCharacters, *name);
}

void DiskOpScreen::Scroll(int rows) {
    m_nListScroll = std::clamp(m_nListScroll + rows, 0, std::max(list_.Count() - kDiskRows, 0));
}

bool DiskOpScreen::OnWheel(int notches) {
    Scroll(-std::clamp(notches, -100, 100));
    return true;
}

std::optional<ListKind> DiskOpScreen::List() const {
    switch (m_nFileKind) {
    case FileKind::Instrument:
    case FileKind::Sample: return kListInstruments;
    case FileKind::Synth: return kListSynths;
    case FileKind::Effect: return kListEffects;
    default: return {};
    }
}

int DiskOpScreen::RowAt(const ControlRecord& record) const { return RowAt(record.y); }

int DiskOpScreen::RowAt(int y) const {
    const int visible = (y + Item(kDiskList).y - kMarkY) / kDiskRowHeight;
    const int row = m_nListScroll + std::clamp(visible, 0, kDiskRows - 1);
    return row < list_.Count() ? row : -1;
}

// The left button opens a directory or loads a file when it is let go in the row where it was pressed. The right one
// marks a file, and takes over its name.
void DiskOpScreen::OnList(ControlRecord& record) {
    const int row = RowAt(record);
    if (record.rightPressed) {
        markedRow_ = row >= 0 && !list_.At(row).isDirectory ? row : -1;
        if (std::string* name = NameField(); name && markedRow_ >= 0) *name = list_.At(markedRow_).name;
        return;
    }
    if (record.leftPressed) pressedRow_ = row;
    if (!record.released || !record.leftHeld || row < 0 || row != pressedRow_) return;
    const FileEntry& entry = list_.At(row);
    if (!entry.isDirectory) RequestLoad(m_nFileKind, PathOf(entry.name));
    else if (entry.name == "..") GoTo(fs::path(m_szListDir).parent_path().string());
    else GoTo((fs::path(m_szListDir) / entry.name).string());
}

void DiskOpScreen::OnListDrag(ControlRecord& record) {
    const int y = record.y + Item(kDiskList).y;
    if (y < kFirstRowY) Scroll(-1);
    else if (y > kLastRowY) Scroll(1);
}

void DiskOpScreen::OnSlider(ControlRecord& record) {
    const int last = list_.Count() - kDiskRows;
    if (last > 0) m_nListScroll = static_cast<int>(static_cast<float>(last) * std::clamp(record.relY, 0.0f, 1.0f));
}

void DiskOpScreen::OnScroll(ControlRecord& record) { Scroll(record.param); }

void DiskOpScreen::OnName(ControlRecord&) {
    std::string* name = NameField();
    if (!name) return;
    *name = WithoutSuffix(*name, m_nFileKind);
    Ui().StartTextEdit(*name);
}

// The skins have but one directory.
void DiskOpScreen::GoTo(const std::string& directory) {
    if (m_nFileKind == FileKind::Skin) return;
    directories_.Keep(m_nFileKind, IsWithin(directory, root_) ? directory : root_);
    m_bDirty = true;
}

void DiskOpScreen::SetRoot(const std::string& directory) {
    root_ = directory;
    GoTo(directories_.Of(m_nFileKind));
}

void DiskOpScreen::OnUp(ControlRecord&) { GoTo(fs::path(m_szListDir).parent_path().string()); }
void DiskOpScreen::OnRoot(ControlRecord&) { GoTo(root_); }
void DiskOpScreen::OnHome(ControlRecord&) { GoTo(HomeDirectory()); }

void DiskOpScreen::OnShowAll(ControlRecord&) {
    m_bShowAll = !m_bShowAll;
    m_bDirty = true;
}

void DiskOpScreen::SetKind(FileKind kind) {
    Ui().StopTextEdit();                         // of another kind's name
    m_nFileKind = kind;
    m_bDirty = true;
    MatchLowerScreen();
}

// Synths and effects are loaded into the list of the screen below.
void DiskOpScreen::MatchLowerScreen() {
    if (m_nFileKind == FileKind::Synth && Ui().IsVisible(kScreenMultiFx)) Ui().ShowScreen(kScreenSynth);
    else if (m_nFileKind == FileKind::Effect && Ui().IsVisible(kScreenSynth)) Ui().ShowScreen(kScreenMultiFx);
}

void DiskOpScreen::ShowKind(FileKind kind) {
    SetKind(kind);
    Ui().ShowOnly(kScreenDiskOp);
}

void DiskOpScreen::OnKind(ControlRecord& record) {
    SetKind(static_cast<FileKind>(std::clamp(record.param, 0, kFileKinds - 1)));
}

void DiskOpScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenDiskOp); }

void DiskOpScreen::OnLoad(ControlRecord&) {
    if (markedRow_ >= 0) RequestLoad(m_nFileKind, PathOf(list_.At(markedRow_).name));
    else Ui().Tell("Click on a file to load it.");
}

void DiskOpScreen::OnDelete(ControlRecord&) {
    if (markedRow_ >= 0) Ui().AskWithCare("Delete file??\n" + ShortName(list_.At(markedRow_).name, kNameInQuestion), Bind<&DiskOpScreen::OnDeleteAnswer>(this));
    else Ui().Tell("Mark the file with the right button first.");
}

void DiskOpScreen::OnDeleteAnswer(ControlRecord&) {
    if (markedRow_ < 0) return;
    const std::string name = list_.At(markedRow_).name;
    std::error_code failed;
    if (!fs::remove(PathOf(name), failed) || failed) Ui().Tell(ShortName(name) + " could not be deleted: " + failed.message());
    m_bDirty = true;
}

void DiskOpScreen::OnMakeDirectory(ControlRecord&) {
    const std::string* name = NameField();
    if (!name || name->empty() || name->find('/') != std::string::npos) {
        Ui().Tell("Type the directory's name into the field of the file name first.");
        return;
    }
    std::error_code failed;
    if (!fs::create_directory(PathOf(*name), failed)) {
        Ui().Tell(ShortName(*name) + " could not be made: " + (failed ? failed.message() : "it exists"));
        return;
    }
    GoTo(PathOf(*name));
}

}  // namespace vonta
