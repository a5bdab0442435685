// A sound device that a test plays by hand: it sets ring, position and host state, and finds out what was written.
// Its timer is null, or one that ticks only when the test says so.
#pragma once

#include <cstdint>
#include <vector>

#include "audio/DrvSound.h"

namespace vonta {

// Runs when told to, on the thread that tells it.
class ManualTimer final : public MultimediaTimer {
public:
    void Init(TickHandler* handler, int period) override { handler_ = handler; periodMs = period; }
    void Start(int period) override {
        ++starts;
        if (!running_) periodMs = period;
        running_ = true;
    }
    void Stop() override { running_ = false; }
    bool IsRunning() const override { return running_; }

    // One tick, if the timer runs.
    void Fire() {
        if (running_ && handler_->OnTick()) running_ = false;
    }

    int periodMs = 0, starts = 0;

private:
    TickHandler* handler_ = nullptr;
    bool running_ = false;
};

class TestDevice final : public DrvSound {
public:
    // What a WriteBlock call carried; the frames of pair 0, interleaved.
    struct Block {
        int frames = 0;
        std::uint32_t byteOffset = 0;
        std::vector<float> values;
    };

    // Set by the test before or between ticks.
    std::uint32_t ringBytes = 0x10000, position = 0, latency = 0;
    bool hasTimer = true;
    bool record = true;                            // keep what WriteBlock is given
    int initResult = 1;
    bool synced = false, syncPlaying = false;
    float syncTempo = 0;
    double syncTime = 0;
    int syncTimeUsable = 1;
    std::uint32_t syncSampleRate = 0;

    // Found by the test.
    ManualTimer timer;
    std::vector<Block> blocks;
    int shutdowns = 0, syncTimeReleases = 0;

    int Init(void*, int, int, Mixer&, TickHandler* tickHandler) override {
        timer.Init(tickHandler, kTimerPeriodMs);
        return initResult;
    }
    void WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) override {
        if (record) blocks.push_back({frames, byteOffset, {outputs[0], outputs[0] + 2 * frames}});
    }
    int GetPosition(std::uint32_t* bytes) override { *bytes = position; return 1; }
    std::uint32_t GetBufferSize() const override { return ringBytes; }
    std::uint8_t GetNumDevices() override { return 1; }
    std::string GetDeviceName(int) override { return "Test"; }
    std::string GetCurrentDeviceName() override { return "Test"; }
    std::uint32_t SetLatency(std::uint32_t bytes) override { return latency = bytes; }
    std::uint32_t GetLatency() const override { return latency; }
    void Shutdown() override { ++shutdowns; }
    double GetSyncTime() override { return syncTime; }
    int ReleaseSyncTime() override { ++syncTimeReleases; return syncTimeUsable; }
    float GetSyncTempo() override { return syncTempo; }
    bool IsSynced() override { return synced; }
    bool IsSyncPlaying() override { return syncPlaying; }
    std::uint32_t GetSyncSampleRate() override { return syncSampleRate; }
    MultimediaTimer* GetTimer() override { return hasTimer ? &timer : nullptr; }
};

}  // namespace vonta
