// Plays 64 channels on the JACK server for some minutes and counts what came too late. See measure-latency.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "audio/CreateDevice.h"
#include "tests/support/JackRecorder.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/Tone.h"

namespace {

constexpr std::size_t kTakeSeconds = 5;            // recorded and looked at in one go

// Every channel holds the same filtered sine: their sum is a sine too, in which a gap shows.
std::unique_ptr<vonta::Song> SixtyFourChannels() {
    vonta::SongBuilder builder;
    builder.Channels(vonta::kTracks).Pattern(1, 64).Pattern(0, 64).Order({0, 1}).Restart(1);
    builder.SampleInstrument(0, vonta::SineWave(4096, 1, 400.0f), 1, {vonta::VTSAMPLE_LOOP_FORDWARD, 0, 4096});
    builder.Edit().GetInstrument(0)->filterOn = 1;
    for (int track = 0; track < vonta::kTracks; ++track) builder.Note(0, track, 48, 1);
    return builder.Build();
}

}  // namespace

// latency_probe MINUTES
int main(int argc, char** argv) {
    const double minutes = argc == 2 ? std::strtod(argv[1], nullptr) : 0;
    vonta::SndPlayer player(vonta::CreateDevice);
    if (minutes <= 0 || player.StartSound(nullptr, static_cast<int>(vonta::DeviceKind::Asio), 0, nullptr, 44100) != 0) {
        std::fprintf(stderr, "usage: latency_probe MINUTES, with a JACK server running\n");
        return 2;
    }
    player.SetSong(SixtyFourChannels());
    player.SetMixerOn(true);
    player.Play(0);
    const std::size_t rate = player.GetMixer().sampleRate, take = kTakeSeconds * rate;
    vonta::JackRecorder recorder({"Vonta Tracker:Output 1 left"}, take);
    recorder.Record(rate);                         // until the notes have begun
    int gaps = 0;
    float quietest = 1;
    const std::uint32_t before = player.GetDevice()->GetUnderruns();
    for (double recorded = 0; recorded < minutes * 60; recorded += kTakeSeconds) {
        recorder.Record(take);
        const vonta::Tone tone = vonta::MeasureTone(recorder.Track(0), static_cast<double>(rate));
        gaps += tone.gaps;
        quietest = std::min(quietest, tone.peak);
    }
    const std::uint32_t underruns = player.GetDevice()->GetUnderruns() - before;
    std::printf("%.1f minutes at %zu Hz: %u xruns, %d gaps, lowest peak %.4f\n", minutes, rate, underruns, gaps,
                static_cast<double>(quietest));
    return underruns || gaps || quietest < 0.001f;
}
