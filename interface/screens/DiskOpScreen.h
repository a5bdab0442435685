// The Disk Op: lists a directory by the kind of what is handled, loads what is chosen and saves. The work itself runs
// between two frames, so that the line which tells of it is on the screen meanwhile. DiskSave.cpp, DiskLoad.cpp.
#pragma once

#include <optional>
#include <string>

#include "interface/screens/DiskList.h"
#include "interface/screens/SaveNames.h"
#include "interface/screens/Screen.h"

namespace vonta {

enum class SaveKind : int { None = 0, Song, Instrument, Sample };

class DiskOpScreen final : public Screen {
public:
    DiskOpScreen(TrackerInterface& ui, int group);
    void Init() override;
    void PaintBackground() override;
    void PaintControls() override;
    bool OnWheel(int notches) override;
    std::optional<ListKind> List() const override;       // what is loaded goes into it

    void Toggle();                               // what the option panel's and its own button do
    void ShowKind(FileKind kind);                // and the screen, if it is hidden
    void GoTo(const std::string& directory);     // of the kind on show; the root if it lies outside
    void SetRoot(const std::string& directory);  // what "/" stands for: the user does not get above it
    FileKind Kind() const { return m_nFileKind; }
    const std::string& Directory() const { return m_szListDir; }
    const DiskList& Rows() const { return list_; }

    // Between two frames, when m_bSaveRequested or m_bLoadRequested of the state is set; the caller clears them.
    void SaveNow();
    void LoadNow();
    void LoadDropped(const std::string& path);   // asks for it, by the name's suffix

    // --- Saving: a name, a question if a file has it, a request. DiskSave.cpp
    void SaveSong();
    void SaveInstrument();
    void SaveSample();

    // What the save question offers.
    struct SaveChoice {
        SaveFormat m_nSaveFormat = SaveFormat::Native;
        bool m_bCompress = false;                // sample data as Vorbis, in the native format
        int m_nMixBits = 16;                     // 8, 16 or 32
        int m_nMixRate = 44100;                  // Hz
        bool m_bMixByParts = false;
        void StepRate(int by);                   // to the next usual one, up or down
    };
    SaveChoice& Choice() { return choice_; }

    // --- Buttons.
    void OnKind(ControlRecord& record);
    void OnSave(ControlRecord& record);
    void OnDelete(ControlRecord& record);
    void OnMakeDirectory(ControlRecord& record);
    void OnLoad(ControlRecord& record);
    void OnExit(ControlRecord& record);
    void OnUp(ControlRecord& record);
    void OnShowAll(ControlRecord& record);
    void OnRoot(ControlRecord& record);
    void OnHome(ControlRecord& record);
    void OnScroll(ControlRecord& record);
    bool IsKind(std::int32_t kind) const { return static_cast<int>(m_nFileKind) == kind; }
    bool ShowsAll(std::int32_t) const { return m_bShowAll; }

private:
    void SetKind(FileKind kind);
    void MatchLowerScreen();
    void ReadList();
    void Scroll(int rows);
    int RowAt(const ControlRecord& record) const;        // of the list; -1 past its end
    void PaintList();
    void PaintRow(int row, int y);
    void PaintMark(int visibleRow);
    void PaintName();
    std::string* NameField();                    // of this kind; null if it has none
    std::string PathOf(const std::string& name) const { return m_szListDir + "/" + name; }

    void OnList(ControlRecord& record);
    void OnListDrag(ControlRecord& record);
    void OnSlider(ControlRecord& record);
    void OnName(ControlRecord& record);
    void OnDeleteAnswer(ControlRecord& record);

    // DiskSave.cpp
    void RequestSave(SaveKind kind, FileKind directory, const std::string& name, const std::string& written);
    void OnSaveChosen(ControlRecord& record);
    void OnOverwrite(ControlRecord& record);
    std::string WriteSong();                     // each gives the reason if it could not be done
    std::string MixDown();
    std::string WriteInstrument();
    std::string WriteSample();

    // DiskLoad.cpp
    void RequestLoad(FileKind kind, const std::string& path);
    std::string ReadSong();
    std::string ReadInstrument();
    std::string ReadSample();
    std::string ReadPlugin();
    std::string ReadSkin();

    FileKind m_nFileKind = FileKind::Song;
    std::string root_ = "/";
    DirectoryMemory directories_;
    DiskList list_;
    std::string m_szListDir;                     // on show
    bool m_bShowAll = false;
    bool m_bDirty = true;                        // the list must be read again
    int m_nListScroll = 0;                       // first row on show
    int pressedRow_ = -1, markedRow_ = -1;       // of the list; marked by the right button, for Load and Delete
    std::uint32_t pathScroll_ = 0;               // of the line that shows the directory

    SaveKind m_nSaveKind = SaveKind::None;
    SaveChoice choice_;
    std::string m_szSaveFile;                    // path to be written
    FileKind m_nLoadKind = FileKind::Song;
    std::string m_szChosenFile;                  // path to be loaded
};

}  // namespace vonta
