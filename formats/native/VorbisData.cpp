#include "formats/native/VorbisData.h"

#include <ogg/ogg.h>
#include <vorbis/codec.h>
#include <vorbis/vorbisenc.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "formats/native/VorbisSetup.h"

namespace vonta {
namespace {

constexpr long kStreamRate = 44100;                  // Hz
constexpr float kQuality = 0.5f;
constexpr int kSerialNumber = 1;                     // fixed, so that a song saved twice gives the same bytes
constexpr std::size_t kEncodeFrames = 1024;
constexpr float kToUnit = 1.0f / 32768.0f;
constexpr double kFromUnit = 32767.0;
constexpr double kLowest = -32768.0, kHighest = 32767.0;
constexpr std::size_t kFeedBytes = 4096;
constexpr std::size_t kTakeFloats = 4096;                    // decoded at a time, all channels together
constexpr int kHeaderPackets = 3, kSetupPacket = 2;

// The encoder's objects, set up and cleared together.
class Encoder {
public:
    explicit Encoder(int channels) {
        vorbis_info_init(&info_);
        vorbis_comment_init(&comment_);
        ready_ = vorbis_encode_init_vbr(&info_, channels, kStreamRate, kQuality) == 0 &&
                 vorbis_analysis_init(&state_, &info_) == 0;
        if (!ready_) return;
        vorbis_block_init(&state_, &block_);
        ogg_stream_init(&stream_, kSerialNumber);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() {
        if (ready_) {
            ogg_stream_clear(&stream_);
            vorbis_block_clear(&block_);
            vorbis_dsp_clear(&state_);
        }
        vorbis_comment_clear(&comment_);
        vorbis_info_clear(&info_);
    }

    bool Ready() const { return ready_; }

    void Headers() {
        ogg_packet identification, comment, setup;
        vorbis_analysis_headerout(&state_, &comment_, &identification, &comment, &setup);
        for (ogg_packet* packet : {&identification, &comment, &setup}) ogg_stream_packetin(&stream_, packet);
        for (ogg_page page; ogg_stream_flush(&stream_, &page) != 0;) Append(page);
    }

    void Frames(std::span<const float> part, std::size_t channels) {
        const std::size_t frames = part.size() / channels;
        float** buffers = vorbis_analysis_buffer(&state_, static_cast<int>(frames));
        for (std::size_t i = 0; i < part.size(); ++i) buffers[i % channels][i / channels] = part[i] * kToUnit;
        Wrote(static_cast<int>(frames));
    }

    void Finish() { Wrote(0); }

    std::vector<std::uint8_t> Take() { return std::move(bytes_); }

private:
    void Wrote(int frames) {
        vorbis_analysis_wrote(&state_, frames);
        while (vorbis_analysis_blockout(&state_, &block_) == 1) {
            vorbis_analysis(&block_, nullptr);
            vorbis_bitrate_addblock(&block_);
            for (ogg_packet packet; vorbis_bitrate_flushpacket(&state_, &packet) != 0;) Packet(packet);
        }
    }

    void Packet(ogg_packet& packet) {
        ogg_stream_packetin(&stream_, &packet);
        for (ogg_page page; ogg_stream_pageout(&stream_, &page) != 0;) Append(page);
    }

    void Append(const ogg_page& page) {
        bytes_.insert(bytes_.end(), page.header, page.header + page.header_len);
        bytes_.insert(bytes_.end(), page.body, page.body + page.body_len);
    }

    vorbis_info info_;
    vorbis_comment comment_;
    vorbis_dsp_state state_;
    vorbis_block block_;
    ogg_stream_state stream_;
    bool ready_ = false;
    std::vector<std::uint8_t> bytes_;
};

// The packets of the first logical stream in a block of bytes.
class PacketReader {
public:
    explicit PacketReader(std::span<const std::uint8_t> packed) : packed_(packed) {
        ogg_sync_init(&sync_);
        vorbis_info_init(&info_);
        vorbis_comment_init(&comment_);
    }
    PacketReader(const PacketReader&) = delete;
    PacketReader& operator=(const PacketReader&) = delete;
    ~PacketReader() {
        vorbis_comment_clear(&comment_);
        vorbis_info_clear(&info_);
        if (started_) ogg_stream_clear(&stream_);
        ogg_sync_clear(&sync_);
    }

    vorbis_info& Info() { return info_; }

    // Reads the three headers; false if this is no Vorbis stream of one or two channels.
    bool Open() {
        ogg_packet packet;
        for (int i = 0; i < kHeaderPackets; ++i) {
            if (!Next(packet) || (i == kSetupPacket && !HasModestCodebooks(packet))) return false;
            if (vorbis_synthesis_headerin(&info_, &comment_, &packet) != 0) return false;
        }
        return info_.channels == 1 || info_.channels == 2;
    }

    // The packet is good until the next call. Damaged parts are passed over.
    bool Next(ogg_packet& packet) {
        for (;;) {
            if (ended_) return false;
            const int got = started_ ? ogg_stream_packetout(&stream_, &packet) : 0;
            if (got > 0) {
                ended_ = packet.e_o_s != 0;
                return true;
            }
            if (got == 0 && !NextPage()) return false;
        }
    }

private:
    bool NextPage() {
        ogg_page page;
        for (int got; (got = ogg_sync_pageout(&sync_, &page)) != 1;)
            if (got == 0 && !Feed()) return false;
        if (!started_) started_ = ogg_stream_init(&stream_, ogg_page_serialno(&page)) == 0;
        if (started_) ogg_stream_pagein(&stream_, &page);   // one of another stream is refused there
        return started_;
    }

    bool Feed() {
        const auto piece = packed_.first(std::min(kFeedBytes, packed_.size()));
        if (piece.empty()) return false;
        char* buffer = ogg_sync_buffer(&sync_, static_cast<long>(piece.size()));
        if (buffer == nullptr) return false;
        std::memcpy(buffer, piece.data(), piece.size());
        packed_ = packed_.subspan(piece.size());
        return ogg_sync_wrote(&sync_, static_cast<long>(piece.size())) == 0;
    }

    std::span<const std::uint8_t> packed_;           // what has not been fed
    ogg_sync_state sync_;
    ogg_stream_state stream_;
    vorbis_info info_;
    vorbis_comment comment_;
    bool started_ = false, ended_ = false;
};

// The decoder's objects behind a stream whose headers are read.
class Synthesis {
public:
    explicit Synthesis(vorbis_info& info) {
        ready_ = vorbis_synthesis_init(&state_, &info) == 0;
        if (ready_) vorbis_block_init(&state_, &block_);
    }
    Synthesis(const Synthesis&) = delete;
    Synthesis& operator=(const Synthesis&) = delete;
    ~Synthesis() {
        if (ready_) vorbis_block_clear(&block_);
        vorbis_dsp_clear(&state_);
    }

    bool Ready() const { return ready_; }
    void Put(ogg_packet& packet) {
        if (vorbis_synthesis(&block_, &packet) == 0) vorbis_synthesis_blockin(&state_, &block_);
    }
    int Get(float**& planes) { return vorbis_synthesis_pcmout(&state_, &planes); }
    void Taken(int frames) { vorbis_synthesis_read(&state_, frames); }

private:
    vorbis_dsp_state state_;
    vorbis_block block_;
    bool ready_ = false;
};

float FromUnit(float value) {
    if (std::isnan(value)) return 0.0f;              // damaged streams can decode to it
    return static_cast<float>(std::clamp(std::trunc(value * kFromUnit), kLowest, kHighest));
}

// Fills a part of the wave with the frames that stand at the head of the planes.
void StoreFrames(float** planes, int planeCount, std::span<float> part, std::size_t channels) {
    const auto lastPlane = static_cast<std::size_t>(planeCount) - 1;
    for (std::size_t c = 0; c < channels; ++c) {
        const float* plane = planes[std::min(c, lastPlane)];
        for (std::size_t i = c; i < part.size(); i += channels) part[i] = FromUnit(*plane++);
    }
}

// Hands on what the stream decodes to, piece by piece, until take(planes, their number, frames) takes none of it.
template <class Take>
void Unpack(std::span<const std::uint8_t> packed, Take take) {
    PacketReader packets(packed);
    if (!packets.Open()) return;
    Synthesis synthesis(packets.Info());
    if (!synthesis.Ready()) return;
    for (ogg_packet packet; packets.Next(packet);) {
        synthesis.Put(packet);
        float** planes = nullptr;
        for (int frames; (frames = synthesis.Get(planes)) > 0;) {
            const std::size_t taken = take(planes, packets.Info().channels, static_cast<std::size_t>(frames));
            if (taken == 0) return;
            synthesis.Taken(static_cast<int>(taken));
        }
    }
}

}  // namespace

std::vector<std::uint8_t> EncodeVorbis(std::span<const float> wave, int channels) {
    Encoder encoder(channels);
    if (!encoder.Ready()) return {};
    const auto width = static_cast<std::size_t>(channels);
    encoder.Headers();
    for (std::size_t at = 0; at < wave.size(); at += kEncodeFrames * width)
        encoder.Frames(wave.subspan(at, std::min(kEncodeFrames * width, wave.size() - at)), width);
    encoder.Finish();
    return encoder.Take();
}

std::uint64_t MeasureVorbis(std::span<const std::uint8_t> packed) {
    PacketReader packets(packed);
    if (!packets.Open()) return 0;
    std::uint64_t frames = 0;
    long former = 0;                                 // a block gives a quarter of itself and of the one before
    for (ogg_packet packet; packets.Next(packet);) {
        const long size = vorbis_packet_blocksize(&packets.Info(), &packet);
        if (size > 0) {
            if (former > 0) frames += static_cast<std::uint64_t>(former / 4 + size / 4);
            former = size;
        }
        if (packet.e_o_s && packet.granulepos >= 0)
            frames = std::min(frames, static_cast<std::uint64_t>(packet.granulepos));
    }
    return frames;
}

std::uint64_t CountVorbis(std::span<const std::uint8_t> packed) {
    std::uint64_t frames = 0;
    Unpack(packed, [&](float**, int, std::size_t part) {
        frames += part;
        return part;
    });
    return frames;
}

std::size_t DecodeVorbis(std::span<const std::uint8_t> packed, int channels, std::span<float> wave) {
    const auto width = static_cast<std::size_t>(channels);
    std::size_t stored = 0;
    Unpack(packed, [&](float** planes, int planeCount, std::size_t part) {
        const std::size_t taken = std::min({part, kTakeFloats / width, (wave.size() - stored) / width});
        StoreFrames(planes, planeCount, wave.subspan(stored, taken * width), width);
        stored += taken * width;
        return taken;
    });
    return stored;
}

}  // namespace vonta
