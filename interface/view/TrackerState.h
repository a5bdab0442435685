// The edit state of the whole interface, and every operation of an editor on the song. Keys, mouse, MIDI and scripts
// call the same operations here.
//
// Values that a handler may change at any time exist twice: `pending`, which handlers write, and `frame`, which
// ApplyPending copies once a frame and the paint code reads, so that a frame draws one consistent state. What replaces
// or frees a part of the song is a request that ApplyPending works off with the mixer held. The cursor row is the
// player's row. Interface thread only.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "app/config/Config.h"
#include "app/config/Environment.h"
#include "edit/Editor.h"
#include "engine/SndPlayer.h"
#include "formats/Loaders.h"

namespace vonta {

// Columns of a track.
enum Column : int {
    kColumnNote, kColumnInstrumentHigh, kColumnInstrumentLow, kColumnVolumeHigh, kColumnVolumeLow, kColumnEffect,
    kColumnParamHigh, kColumnParamLow,
};
constexpr int kColumns = 8;
constexpr int kMaxCursorAdd = 32;
constexpr int kRowHeight = 13;                   // pixels of a row of the pattern view
constexpr int kRowsAboveCursor = 13;
constexpr int kItemsOfBlock = 8;

// What the main panel lists.
enum ListKind : int { kListInstruments, kListSynths, kListEffects };
constexpr int kListKinds = 3;
constexpr std::array<int, kListKinds> kListItems{128, 128, 8};

// Which cells an operation works on.
enum class Scope : int { Track, Pattern, Song, Block };

struct Selection {
    bool m_bSelection = false;
    int m_nSelChannelA = 0, m_nSelRowA = 0, m_nSelChannelB = 0, m_nSelRowB = 0;   // A is where it began
    bool operator==(const Selection&) const = default;

    bool Holds(int channel, int row) const;
    int Left() const;                            // the corners in order
    int Top() const;
    int Width() const;                           // channels, 1 or more
    int Height() const;                          // rows
};

struct EditValues {
    int m_nCursorChannel = 0, m_nCursorColumn = 0;
    int m_nFirstChannel = 0;                     // leftmost visible track
    int m_nVisibleChannels = 8;                  // 4, 8, 16, 24 or 32
    int m_nWantedChannels = 0;                   // the same, or 0: as many as the song has, as far as they fit
    bool m_bWideCells = true;                    // volume columns are visible
    bool m_bHexMode = false;
    bool m_bEditMode = false;                    // keys write into the pattern
    Selection selection;
    std::array<int, kListKinds> m_nSelected{1, 1, 1};   // item of each list, from 1
    std::array<int, kListKinds> m_nBlock{};      // block of eight items on show; bit 3 is the bank
    int m_nSample = 0;                           // selected sample of the selected instrument
    int m_nSourceInstrument = 1, m_nSourceSample = 0;   // of the advanced edit screen
    int m_nListScroll = 0;                       // first sample of the list, 0 to 251
    bool operator==(const EditValues&) const = default;
};

// Work that waits for ApplyPending, in the order in which it is done. Slots and numbers count from 0; file names may
// hold directories.
struct PendingRequests {
    bool deleteInstrument = false, deleteSample = false;
    struct { int slot = 0; std::unique_ptr<Instrument> object; std::string fileName; } instrument;
    struct { int slot = 0; std::unique_ptr<SynthPlugin> object; bool remove = false; } synth;
    struct { int instrument = 0, sample = 0; std::unique_ptr<Sample> object; std::string fileName; } sample;
    bool clearEffects = false;
    struct { int slot = 0; std::unique_ptr<EffectSlot> object; bool remove = false; } effect;
    // changed: it is not what the file holds. offeredName: what a save proposes.
    struct { std::unique_ptr<Song> object; std::string fileName, offeredName; bool unknownChunks = false, changed = false; } song;
    bool newPatterns = false, newInstruments = false;   // the Zap's; with clearEffects and a fresh song its four choices
};

// What ApplyPending did that the interface has to answer.
struct Applied {
    bool songParts = false;                      // texts and regions of the song may be gone: end text editing
    bool unknownChunks = false;                  // ask "  NEW Chunks Found!!"
};

class TrackerState {
public:
    TrackerState(SndPlayer& player, Config& config, Environment& environment);

    EditValues pending, frame;
    PendingRequests requests;

    // What the interface and the application share.
    bool m_bQuit = false;
    bool m_bDialogOpen = false;
    bool m_bEditorOpen = false;                  // a plug-in's window replaces the interface
    bool m_bSaveRequested = false, m_bLoadRequested = false;   // worked at the frame's end
    std::string m_szRequestedFile;               // of such a request, as the frame shows it meanwhile
    int m_nCursorAdd = 1;                        // rows to advance after an entry, 0 to 32
    int m_nOctaveOffset = 0;                     // semitones, -48 to 24
    bool m_bSolo = false;                        // only the selected instrument sounds
    bool m_bSoloChannel = false;
    bool m_bSelStart = false, m_bSelExtend = false;
    int m_nRowUpsPending = 0, m_nRowDownsPending = 0;
    std::array<bool, kTracks> m_marks{};         // channels of multichannel entry
    int m_nNextMarked = -1;
    struct { std::uint16_t instrument = 0, effect = 0, param = 0, volume = 0; } m_cell;   // under the cursor
    // Where the player stands, as of this frame: what the paint code reads, while the player runs on.
    int m_nCursorRow = 0, m_nPatternNumber = 0, m_nOrderPosition = 0;
    const Pattern* m_pPattern = nullptr;         // on view; never null after the first ApplyPending
    std::string m_szSongName, m_szInstrumentName, m_szSampleName;   // file names of the Disk Op

    // Hands the configuration to the player and the pending values, and reads Env.cfg of the start directory. Once, when
    // the interface stands. ApplyConfig.cpp
    void ApplyConfig(const std::string& startDirectory);
    // Once a frame, before anything is painted.
    Applied ApplyPending();

    // Whether the song would be lost with the program. SongChanged.cpp
    bool IsChanged() const;
    void MarkSaved();
    void MarkChanged() { markedChanged_ = true; }

    SndPlayer& Player() const { return player_; }
    Song& CurrentSong() const { return player_.GetSong(); }
    Editor& Edits() { return edits_; }
    Config& Settings() const { return config_; }
    const Environment& Kept() const { return environment_; }

    // --- Cursor. CursorMoves.cpp
    int CursorRow() const;                       // of the player
    int PatternNumber() const;                   // on view
    int OrderPosition() const;
    const Pattern& ShownPattern() const;         // the shared empty one if the number has none
    int PatternRows() const;
    void SetRow(int row);                        // limited to the pattern
    void MoveRow(int rows, bool wrap);
    void Advance(int rows);
    void AdvanceUnlessPlaying();                 // by m_nCursorAdd
    void NextTrack();
    void PrevTrack(bool keepColumnRule);
    void CursorLeft();
    void CursorRight();
    void JumpToTrack(int track);
    void SetVisibleChannels(int wanted);         // 0, 4, 8, 16, 24, 32: into pending
    int SongChannels() const;

    // --- Selection. Selection.cpp. Positions are pixels from the corner (0, 248) of the pattern view, for keys and
    // mouse alike: the cursor row begins at y = 169.
    void SelectionStart(int x, int y);
    void SelectionExtend(int x, int y, bool autoscroll);
    void SelectionOff();

    // --- Entry. Entry.cpp. Each makes the pattern first if the number on view has none.
    Pattern* EnsureOwnPattern();                 // null if it cannot be made: then nothing is written
    int WriteNote(int note, bool multichannel, int& row, bool fromMidi);   // the track
    int EnterDigit(int digit);                   // 1: the key is not for us (note column), 0: taken
    void EnterNoteOff();
    void SetCellVolume(int row, int track, std::uint16_t volume);
    void DeleteAtCursor();                       // by the column: action 9
    void ClearAtCursor(bool noteAndInstrument, bool volume, bool effect);   // actions 135 to 137
    void InsertCell();
    void InsertLine();
    void DeleteBack();
    void DeleteLine();
    void WriteMacro(int macro);                  // 0 to 9
    void ReadMacro(int macro);                   // the caller saves the environment
    void MarkChannel(int channel, bool marked);

    // --- Clipboards. Clipboards.cpp
    void CutTrack();
    void CopyTrack();
    void PasteTrack();
    void CutPattern();
    void CopyPattern();
    void PastePattern();
    void CutBlock();                             // nothing without a selection, as the next
    void CopyBlock();
    void PasteBlock();                           // at the cursor, cut off at the pattern's end

    // --- Whole ranges. RangeEdit.cpp
    void Transpose(Scope scope, bool selectedInstrumentOnly, int semitones);
    void ReplaceInstrument(Scope scope);         // source by selected
    void ScaleFade();                            // over the selection
    void ExpandPattern();
    void ShrinkPattern();

    // --- Song numbers. SongEdit.cpp
    void ChangePosition(int by);                 // to its first row
    void ChangePatternAtPosition(int by);
    void ChangeShownPattern(int by);
    void InsertPosition();
    void DeletePosition();
    void ChangeLength(int by);
    void ChangeRestart(int by);
    void ChangeBpm(int by);
    void ChangeTempo(int by);
    void ChangeCursorAdd(int by);                // wraps between 0 and 32
    void ChangeRows(int by);
    void ChangeChannels(int by);                 // 2 or -2; 2 to 64; kills what is cut off
    std::unique_ptr<Song> MakeFreshSong() const; // empty, at the configured amplification
    void NewSong();                              // a request, as the next three: the Zap
    void ClearPatterns();
    void ClearInstruments();
    void ClearEffects();

    // --- Instruments and samples. InstrumentEdit.cpp. Each holds the mixer and stops the notes.
    Instrument* SelectedInstrument() const;      // null if the slot is empty
    Sample* SelectedSample() const;
    Instrument& EnsureInstrument(int slot);      // with one empty sample, if the slot is empty
    Sample& EnsureSample(int instrument, int sample);
    void CopyInstrument();                       // source over selected
    void ExchangeInstruments();
    void DeleteInstrument();                     // the selected one, as below
    void CopySample();
    void ExchangeSamples();
    void DeleteSample();
    void SelectItem(ListKind list, int item);    // from 1, limited
    void SetBlock(ListKind list, int block);     // keeps the bank bit
    void ToggleBank(ListKind list);

    // --- Playing. Transport.cpp
    void Play(std::uint8_t flags, bool record = false);   // leaves or enters record mode first
    void StopOrRecord();                         // action 2
    void StopSong();                             // the Stop button
    void PlayCell();                             // action 54
    void PlayRow();                              // action 55
    void ToggleSolo();
    void ToggleSoloChannel();
    void ToggleMute(int channel);
    void ToggleSoloOf(int channel);              // mutes all others, or none if they are

private:
    struct Place { int channel, row; };

    // CursorMoves.cpp
    void LimitCursor();

    // Selection.cpp
    Place PlaceAt(int x, int y) const;
    void ScrollToSelect(Place at);
    void SelectByKeys();

    // Entry.cpp
    template <class Edit> void EditCursorCell(Edit edit);
    int NextMarked(int from) const;
    void ValidateNextMarked();
    template <class Shift> void ShiftTracks(int first, int end, Shift shift);

    // Clipboards.cpp
    void CopyBlockCells(bool cut);

    // RangeEdit.cpp
    template <class Edit> void EditCells(Scope scope, Edit edit);

    // InstrumentEdit.cpp
    void InstallInstrument(int slot, std::unique_ptr<Instrument> instrument);
    void InstallSample(int instrument, int sample, std::unique_ptr<Sample> object);

    // Transport.cpp
    void MuteChannel(int channel, bool on);

    // ApplyPending.cpp, in this order.
    void ApplyDeletes();
    void ApplyInstrument();
    void ApplySynth();
    void ApplySample();
    void ApplyEffects();
    void ApplySong();
    void ApplyZaps();
    void ApplySoloChannel();
    void TakeFrame();

    SndPlayer& player_;
    Config& config_;
    Environment& environment_;
    Editor edits_{player_};
    Applied applied_;                            // since the last ApplyPending
    bool markedChanged_ = false;
    std::uint64_t savedFingerprint_ = 0;         // of the song as it was saved

    std::unique_ptr<Pattern> patternClipboard_, blockClipboard_;
    std::unique_ptr<Track> trackClipboard_;
    bool patternCopied_ = false, trackCopied_ = false;
    int blockWidth_ = 0, blockHeight_ = 0;       // of the last copy
    int scrollCountdown_ = 10;                   // calls of SelectionExtend until the view moves sideways
    int soloChannel_ = -1;                       // that sounds alone, as of the last frame; -1 none
};

}  // namespace vonta
