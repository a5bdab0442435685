// What every way to run the program has in common: the player, the start directory, and a backup of the song if the
// program fails.
//
// One instance, made and used on the main thread. Only OnCrash may come from the audio side, and Rescue from whoever
// watches that the program ends.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "app/backup/Backups.h"
#include "audio/DeviceWatch.h"
#include "engine/SndPlayer.h"
#include "platform/FaultGuard.h"

namespace vonta {

struct SoundChoice {
    DeviceKind kind = DeviceKind::NoSound;
    int deviceIndex = 0;
    std::uint32_t sampleRate = 44100;                // Hz
};

class PlayerHost : public CrashHandler {
public:
    PlayerHost() = default;
    ~PlayerHost() override { ShutdownPlayer(); }
    PlayerHost(const PlayerHost&) = delete;
    PlayerHost& operator=(const PlayerHost&) = delete;

    // Makes the player; opens the device and turns the mixer on if one is asked for: what needs no real time works
    // without. 0 on success, 1 on failure, which has then been told.
    int StartPlayer(const std::optional<SoundChoice>& sound = {});
    void ShutdownPlayer();

    SndPlayer* GetSndPlayer() const { return m_pSndPlayer.get(); }
    const std::string& GetStartDir() const { return m_szStartDir; }
    void InstallSong(std::unique_ptr<Song> song);
    // Once a frame: a device that has gone is opened anew when it is back. What the user is to be told of it, or null.
    const char* LookAfterDevice();

    // Does a piece of work and returns its result; should it fault, the song is saved and the process ended.
    template <class Work>
    int Guarded(Work work) {
        struct Job {
            Work& work;
            int result;
        } job{work, 0};
        const auto run = [](void* argument) {
            Job& mine = *static_cast<Job*>(argument);
            mine.result = mine.work();
        };
        if (!RunGuarded(run, &job)) CrashBackup(false);
        return job.result;
    }

    // Saves the song beside the configuration and ends the process with status 1. Returns only if a backup is already
    // running. After a fault of the audio side it is that side's thread which comes here.
    void CrashBackup(bool audioFault);
    void OnCrash(int audioFault) override { CrashBackup(audioFault != 0); }
    // The main thread is held by what does not come back: saves the song for it. The status to end with, or nothing while
    // another thread is at it.
    std::optional<int> Rescue();

protected:
    static constexpr const char* kStartingPlayer = "* Starting m_pSndPlayer->..\n";   // of the debug log

    // Whoever gets true saves the song, or has decided that nothing is lost with it, and tells by SetEnd when that is
    // done. Every other one leaves that alone.
    bool ClaimEnd();
    void SetEnd(int status) { endStatus_ = status; }
    void SaveAtEnd();                                // and tells where; of whoever has claimed the end
    // Whether the song is worth it, by what is known on any thread.
    virtual bool HasSongToSave() const { return m_pSndPlayer != nullptr; }
    void CreatePlayer();
    // What a device needs, up to the mixer turned on. 0, or 1 and what was wrong with it.
    int StartSound(void* windowHandle, const SoundChoice& sound, std::string& error);
    // Before the process ends by a crash: what the user sees of it. The audio side may be the one that failed.
    virtual void OnBackup(const std::string& message, bool audioFault) { (void)message, (void)audioFault; }

    std::unique_ptr<SndPlayer> m_pSndPlayer;
    std::optional<DeviceWatch> m_deviceWatch;        // of the player
    std::string m_szStartDir;                        // where the program works from

private:
    static constexpr int kNotYet = -1;

    BackupResult SaveBackup();

    std::atomic<std::int32_t> m_nCrashGuard{0};      // not 0: the end is somebody's already
    std::atomic<std::int32_t> claimedBy_{0};         // the number of that thread
    std::atomic<int> endStatus_{kNotYet};            // of the process, once the song is safe
};

}  // namespace vonta
