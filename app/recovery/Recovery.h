// Keeps what the user has done since the last save on the disk, so that work survives any end of the program: power
// loss, kill -9, a crash of the desktop.
//
// Look is called once a frame. A second after a change what has changed is written, part by part: a note never costs
// more than its pattern, and waves are written by another thread. At most five seconds of edits are ever missing. The
// base is the file that the song came from, kept by a hard link, so that a load costs nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "app/recovery/Manifest.h"
#include "app/recovery/RecoveryWriter.h"
#include "edit/Editor.h"
#include "platform/FileLock.h"

namespace vonta {

class Recovery {
public:
    static constexpr const char* kFolder = "Recovery";           // in the start directory
    static constexpr std::uint32_t kDelayMs = 1000;              // from a change to its writing
    static constexpr std::uint32_t kRetryMs = 30000;             // after a write that failed
    static constexpr std::uint32_t kSliceMs = 4;                 // of a frame, at most, but for the last part begun

    explicit Recovery(std::string startDirectory) : startDirectory_(std::move(startDirectory)) {}
    ~Recovery();                                 // what is written stays

    void Look(Editor& editor, std::uint32_t now);                // milliseconds, which wrap
    // The song needs no recovery: it was saved, given up by the user, or put into a backup. Nothing is left.
    void Discard();
    // What the user is to be told once: that nothing can be kept, and why. Empty if all is well.
    std::string TakeMessage() { return std::exchange(message_, {}); }
    const std::string& Directory() const { return directory_; }  // of this instance; empty before it wrote anything

private:
    bool MakeDirectory(std::string& error);
    void Restart(const BaseFile& base);
    void LookAtUnchanged(Editor& editor);
    void TakeBase(const Song& song);
    void Gather(const Editor& editor);
    bool WriteParts(Editor& editor);             // true when all that is pending has been put into the batch
    void HandOver(const Song& song);
    void TakeResult(std::uint32_t now);
    std::string PartName(const std::string& what);

    void AddNumbers(const Song& song);
    void AddPattern(const Song& song, int number);
    void AddInstrument(const Song& song, int slot);
    void AddWave(const Song& song, int instrument, int sample);

    std::string startDirectory_, directory_;
    FileLock lock_;
    std::unique_ptr<RecoveryWriter> writer_;
    Manifest manifest_;                          // as it will be written next
    Touched touched_, work_;                     // changed; and of it, what the batch in the making still lacks
    bool gathering_ = false, written_ = false;   // written_: there is a manifest on the disk
    bool waiting_ = false;                       // for the writer
    RecoveryBatch batch_;
    std::uint64_t baseState_ = Journal::kNever, seenState_ = 0;  // of the journal
    std::uint64_t generation_ = 0;
    std::uint32_t firstChange_ = 0, failedAt_ = 0;
    bool failing_ = false, baseless_ = true;     // baseless_: nothing of the song is on the disk
    std::string message_;
};

}  // namespace vonta
