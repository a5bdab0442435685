// The proof that the audio side allocates nothing, takes no lock but the command lock, and makes no system call: this
// program counts every allocation and lock, and plays a song that uses everything in a process that the kernel kills at
// the first call other than to read the clock.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <thread>

#include "midi/DrvMIDIOUTSystem.h"
#include "platform/MidiSender.h"
#include "tests/support/PlayerRig.h"
#include "tests/support/TestDevice.h"
#include "tests/support/TestPlugins.h"

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

thread_local bool g_counting = false;
thread_local int g_allocations = 0, g_locks = 0;

void Count(int& counter) { if (g_counting) ++counter; }

using LockFunction = int (*)(pthread_mutex_t*);
LockFunction RealLock() {
    static const auto real = reinterpret_cast<LockFunction>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    return real;
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) { Count(g_allocations); return __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) { Count(g_allocations); return __libc_calloc(count, size); }
void* realloc(void* old, std::size_t size) { Count(g_allocations); return __libc_realloc(old, size); }
void* aligned_alloc(std::size_t alignment, std::size_t size) { Count(g_allocations); return __libc_memalign(alignment, size); }
void free(void* block) { if (block) Count(g_allocations); __libc_free(block); }
int pthread_mutex_lock(pthread_mutex_t* mutex) { Count(g_locks); return RealLock()(mutex); }
}

namespace vonta {
namespace {

constexpr int kBlocks = 400;

// Every effect and column command over all tracks, layers, envelopes, filters, bands, buses, sends and routings, slots of
// all shapes, synths, and all output pairs.
std::unique_ptr<Song> EverySound() {
    SongBuilder builder;
    builder.Channels(64).Tempo(3);
    std::uint32_t random = 3;
    const auto next = [&random](std::uint32_t below) { return ((random = random * 1664525u + 1013904223u) >> 8) % below; };
    for (int i = 0; i < 20; ++i) {
        builder.SineInstrument(i, 600, {static_cast<LoopType>(i % 3), 20, 500}, 1 + i % 2);
        Instrument& instrument = *builder.Edit().GetInstrument(i);
        instrument.AddSample(MakeSample(SineWave(200)));
        if (i % 4 == 0) for (int key = 0; key < kKeys; ++key) instrument.AddKeySample(key, 1, 0, 127);
        for (auto kind : {EnvelopeKind::Volume, EnvelopeKind::Pan, EnvelopeKind::Cutoff, EnvelopeKind::Resonance})
            instrument.GetEnvelopes(kind)[static_cast<std::size_t>(i % 8)].enabled = 1;
        instrument.filterOn = 1;
        instrument.filterType = i % 9;
        instrument.eq[static_cast<std::size_t>(i % 3)].on = 1;
        instrument.busMask[static_cast<std::size_t>(i % 4)] = 1;
        instrument.groupOutput = static_cast<std::uint8_t>(i % kOutputPairs);
        instrument.newNoteAction = i % 2;
        instrument.cutoffLfoWave = i % 6;
        instrument.fadeOut = 300;
        for (std::size_t send = 0; send < 8; ++send) instrument.sends[send].on = 1;
        instrument.midi.enabled = i % 5 == 0;
        instrument.useSynth = 1;
        instrument.midi.sendBank = instrument.midi.sendPan = instrument.midi.sendVolume = 1;
    }
    for (int row = 0; row < 64; ++row)
        for (int track = 0; track < 64; ++track) {
            const int effect = static_cast<int>(next(21));
            const bool leaves = effect == 11 || effect == 13 || effect == 15;
            builder.Note(row, track, next(3) ? kNoNote : static_cast<int>(next(96)), static_cast<int>(next(21)),
                         next(2) ? kNoVolume : static_cast<int>(0x8000 | next(256)), effect,
                         leaves ? 0x21 : static_cast<int>(next(256)));
        }
    Song& song = builder.Edit();
    for (std::size_t slot = 0; slot < kEffectSlots; ++slot) {
        auto effect = std::make_unique<test::TestEffect>();
        effect->stereoIn = slot % 2;
        effect->stereoOut = slot % 3 == 0;
        effect->tail = 0.1f;
        effect->quiet = true;
        song.fxSlots[slot] = std::move(effect);
        song.fxRouting[slot].enabled.fill(1);
    }
    for (std::size_t b = 0; b < kBuses; ++b) {
        song.buses[b].active = 1;
        song.buses[b].sendEnabled.fill(1);
        song.SetSynth(static_cast<int>(b), std::make_unique<test::TestSynth>());
        song.synths[b]->busEnable.fill(1);
    }
    return builder.Build();
}

struct Counts { int allocations = 0, locks = 0; };

template <class Work>
Counts CountDuring(Work work) {
    g_allocations = g_locks = 0;
    g_counting = true;
    work();
    g_counting = false;
    return {g_allocations, g_locks};
}

TEST(RealTime, RenderAllocatesAndLocksNothing) {
    PlayerRig rig(EverySound());
    for (const int block : {1024, 37, 2048}) {
        const Counts counts = CountDuring([&] { for (int i = 0; i < kBlocks; ++i) rig.player.Render(block); });
        EXPECT_EQ(counts.allocations, 0);
        EXPECT_EQ(counts.locks, 0);
    }
    int sounding = 0;
    for (int track = 0; track < kTracks; ++track) sounding += rig.Track(track).Sounding();
    EXPECT_GT(sounding, 16);
}

TEST(RealTime, TheBlockCycleTakesTheCommandLockOnceAndNoOther) {
    auto owned = std::make_unique<TestDevice>();
    TestDevice& device = *owned;
    SndPlayer player;
    ASSERT_EQ(player.StartSound(nullptr, 2, 0, nullptr, 44100, std::move(owned)), 0);
    player.SetSong(EverySound());
    player.SetMixerOn(true);
    device.record = false;
    device.timer.Fire();
    for (int i = 0; i < kBlocks; ++i) {
        player.Play(kPlayFromHere);
        player.QueueNote(48, 1, 100);
        player.MuteInstrument(i % 20, i % 2);
        if (i % 50 == 49) player.Stop(0, 1);
        device.position = (device.position + 4000) % device.ringBytes;
        const Counts counts = CountDuring([&] { device.timer.Fire(); });
        ASSERT_EQ(counts.allocations, 0);
        ASSERT_EQ(counts.locks, 1);
    }
}

// A port of the system as it is behind the audio side: a sender with its thread.
TEST(RealTime, SendingToAMidiPortAllocatesAndLocksNothing) {
    struct Port final : MidiOutPort {
        std::atomic<int> written{0};
        MidiSender sender{[this](std::uint32_t) { ++written; }};
        bool Send(std::uint32_t message) override { return sender.Send(message); }
    };
    struct Service final : MidiService {
        Port* opened = nullptr;
        int OutputCount() const override { return 1; }
        int InputCount() const override { return 0; }
        std::string OutputName(int) const override { return "Port"; }
        std::string InputName(int) const override { return {}; }
        std::unique_ptr<MidiOutPort> OpenOutput(int) override {
            auto port = std::make_unique<Port>();
            opened = port.get();
            return port;
        }
        std::unique_ptr<MidiInPort> OpenInput(int, MidiInListener&) override { return nullptr; }
    };
    const auto service = std::make_shared<Service>();
    DrvMIDIOUTSystem output(service);
    ASSERT_EQ(output.Open(0), 0);
    const Counts counts = CountDuring([&] {
        for (std::uint32_t now = 0; now < kBlocks; ++now) {
            output.NoteOn(60, 0, 100, now);
            output.ControlChange(0, 7, 100, now);
            output.NoteOff(60, 0, now);
            output.Flush(now);
        }
    });
    EXPECT_EQ(counts.allocations, 0);
    EXPECT_EQ(counts.locks, 0);
    while (service->opened->written < 3 * kBlocks) std::this_thread::yield();
}

// From here on the kernel kills the process at any call but these; the clock needs one where the machine has no faster
// way to it.
bool ForbidSystemCalls() {
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clock_gettime, 3, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_write, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof rules / sizeof rules[0], rules};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

// In a process of its own, which ends with the result that it writes.
TEST(RealTime, RenderMakesNoSystemCall) {
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        PlayerRig rig(EverySound());
        rig.player.Render(1024);
        char done = 0;
        if (ForbidSystemCalls()) {
            for (int i = 0; i < kBlocks; ++i) rig.player.Render(1024);
            done = 1;
        }
        const auto written = write(channel[1], &done, 1);
        syscall(SYS_exit, written == 1 ? 0 : 1);
    }
    close(channel[1]);
    char done = 0;
    EXPECT_EQ(read(channel[0], &done, 1), 1) << "killed at a system call";
    EXPECT_EQ(done, 1);
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
}

}  // namespace
}  // namespace vonta
