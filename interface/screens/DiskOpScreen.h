// The Disk Op: lists a directory by the kind of what is handled, loads what is chosen and saves. The work itself runs
// between two frames, so that the line which tells of it is on the screen meanwhile. DiskSave.cpp, DiskLoad.cpp.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "interface/screens/DiskList.h"
#include "interface/screens/SaveNames.h"
#include "interface/screens/Screen.h"

namespace vonta {

struct LoadReport;

enum class SaveKind : int { None = 0, Song, Instrument, Sample };

class DiskOpScreen final : public Screen {
public:
    DiskOpScreen(TrackerInterface& ui, int group);
    void Init() override;
    void PaintBackground() override;
    void PaintControls() override;
    void OnShown() override;                             // files come and go meanwhile
    bool OnWheel(int notches) override;
    std::optional<ListKind> List() const override;       // what is loaded goes into it

    void ShowKind(FileKind kind);                // and the screen, if it is hidden
    void GoTo(const std::string& directory);     // of the kind on show; the root if it lies outside
    void SetRoot(const std::string& directory);  // what "/" stands for: the user does not get above it
    FileKind Kind() const { return m_nFileKind; }
    const std::string& Directory() const { return m_szListDir; }
    const DiskList& Rows() const { return list_; }

    // Between two frames: the save or the load that the last one has told of.
    void WorkNow();
    void LoadDropped(const std::string& path);   // asks for it, by the name's suffix
    // A backup comes back as a song that is not saved and has no file: the backup is none to save over.
    void LoadBackup(const std::string& path);
    void TakeRecovered(std::unique_ptr<Song> song, const LoadReport& report);    // counts as changed

    // --- Saving: a name, a question if a file has it, a request. DiskSave.cpp
    void AskForSong();                           // the save question
    void SaveSong();                             // under the name in the field, in the format of the choice
    void OnSongExchanged();                      // by undo or redo: the next save goes where the user says
    void SavePresent();                          // over the song's own file; asks for a name if it has none
    void SaveAndGoOn(ControlCallback goOn);      // the same; goOn is called when the song is safe
    void SaveInstrument();
    void SaveSample();
    std::string SongLabel() const;               // the present song, as a question names it in few letters

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
    void TellCut();
    void Scroll(int rows);
    int RowAt(const ControlRecord& record) const;        // of the list; -1 past its end
    int RowAt(int y) const;                      // pixels below the list's upper edge
    void PaintList();
    void PaintRow(int row, int y);
    // A name that is longer than its row, over rows of the list that count from the first on show.
    struct FullName {
        std::vector<std::string> lines;
        int first = 0;
        bool Covers(int visibleRow) const {
            return visibleRow >= first && visibleRow < first + static_cast<int>(lines.size());
        }
    };
    FullName NameUnderMouse() const;
    void PaintFullName(const FullName& name);
    void PaintMark(int visibleRow);
    void PaintName();
    std::string* NameField();                    // of this kind; null if it has none
    std::string PathOf(const std::string& name) const { return m_szListDir + "/" + name; }

    void OnList(ControlRecord& record);
    void OnListDrag(ControlRecord& record);
    void OnSlider(ControlRecord& record);
    void OnName(ControlRecord& record);
    void OnDeleteAnswer(ControlRecord& record);

    // DiskSave.cpp. What came of a save: done, and what could not be kept; or the reason why not, empty if the user
    // stopped it.
    struct Outcome {
        bool done = false;
        std::string error;
        std::vector<std::string> lost;
    };
    void BeginSong(ControlCallback goOn);
    bool HasOwnFile() const;
    void RequestSave(SaveKind kind, FileKind directory, const std::string& name, const std::string& written);
    void OnSaveChosen(ControlRecord& record);
    void OnSaveDeclined(ControlRecord& record);
    void OnOverwrite(ControlRecord& record);
    void SaveNow();
    void TellOutcome(const Outcome& outcome);
    Outcome WriteSong();
    Outcome MixDown();
    Outcome WriteInstrument();
    Outcome WriteSample();

    // DiskLoad.cpp
    void RequestLoad(FileKind kind, const std::string& path);
    void OnLoadMayGo(ControlRecord& record);
    void LoadNow();
    void TellLoaded(const LoadReport& report);
    std::string ReadSong();                      // each gives the reason if it could not be done
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
    SaveFormat savedFormat_ = SaveFormat::Native;    // of the save that is asked for
    std::string nameBefore_;                     // what the song's field held when the save question opened
    ControlCallback goOn_;                       // after the save that is asked for
    bool isWhole_ = true;                        // the song's file holds nothing that was dropped or repaired on load
    std::string m_szSaveFile;                    // path to be written
    FileKind m_nLoadKind = FileKind::Song;
    std::string m_szChosenFile;                  // path to be loaded
    bool isBackup_ = false;
};

}  // namespace vonta
