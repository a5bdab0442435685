// Writes a recovery directory on a thread of its own, so that no frame waits for a disk.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/recovery/Manifest.h"
#include "song/Song.h"

namespace vonta {

// One state of the song: what changed since the one before.
struct RecoveryBatch {
    struct File {
        std::string name;
        std::vector<std::uint8_t> bytes;         // a part that was written to memory,
        std::unique_ptr<Song> wave;              // or a song that holds one sample, whose wave it shares
        int instrument = 0;                      // where in that song
    };

    std::vector<File> files;
    std::optional<Manifest> manifest;            // none: nothing is left to recover, the directory is emptied
    std::string copyBaseFrom;                    // a base that could not be linked is copied from here
};

class RecoveryWriter {
public:
    explicit RecoveryWriter(std::string directory);
    ~RecoveryWriter();                           // finishes what it is at
    RecoveryWriter(const RecoveryWriter&) = delete;
    RecoveryWriter& operator=(const RecoveryWriter&) = delete;

    bool IsBusy() const;
    void Write(RecoveryBatch batch);             // only while it is not busy
    void Finish();                               // waits until it is not busy
    // Why the last batch could not be written; empty if it was. The manifest on the disk is the former one then.
    std::string Error() const;

private:
    void Run();
    std::string WriteBatch(RecoveryBatch& batch);
    std::string WriteFile(const RecoveryBatch::File& file) const;
    void RemoveAllBut(const std::vector<std::string>& names) const;

    std::string directory_;
    mutable std::mutex lock_;
    std::condition_variable wake_, idle_;
    std::optional<RecoveryBatch> next_;
    bool busy_ = false, quit_ = false;
    std::string error_;
    std::thread thread_;                         // last: it uses the others
};

}  // namespace vonta
