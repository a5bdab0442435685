// Waves packed as Vorbis: what goes in comes out near enough, and nothing comes out beyond what was asked for.
#include <gtest/gtest.h>

#include <cmath>

#include "formats/native/VorbisData.h"
#include "tests/support/OggPackets.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

double MeanError(const std::vector<float>& a, const std::vector<float>& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
    return a.empty() ? 0 : sum / static_cast<double>(a.size());
}

std::vector<float> Decode(const std::vector<std::uint8_t>& packed, int channels, std::size_t count) {
    std::vector<float> wave(count, -1.0f);
    wave.resize(DecodeVorbis(packed, channels, wave));
    return wave;
}

TEST(Vorbis, WavesOfAnyLengthComeBackWholeAndNear) {
    for (const int channels : {1, 2})
        for (const std::uint32_t frames : {1u, 2u, 63u, 1023u, 1024u, 1025u, 2048u, 50000u}) {
            SCOPED_TRACE(testing::Message() << frames << " frames, " << channels << " channels");
            const auto wave = SineWave(frames, channels);
            const auto packed = EncodeVorbis(wave, channels);
            const auto back = Decode(packed, channels, wave.size());
            ASSERT_EQ(back.size(), wave.size());
            EXPECT_EQ(MeasureVorbis(packed), frames);    // its end says so, whatever the packets hold
            EXPECT_EQ(CountVorbis(packed), frames);
            if (frames > 1000) {
                EXPECT_LT(MeanError(wave, back), 300);   // of an amplitude of 16384
            }
        }
}

TEST(Vorbis, TheStreamNamesItsChannelsAndTheFixedRate) {
    for (const unsigned channels : {1u, 2u}) {
        const auto packed = EncodeVorbis(SineWave(100, static_cast<int>(channels)), static_cast<int>(channels));
        ASSERT_GT(packed.size(), 58u);
        const std::size_t identification = 28;       // behind a page header with one segment
        EXPECT_EQ(std::string(packed.begin(), packed.begin() + 4), "OggS");
        EXPECT_EQ(std::string(packed.begin() + 29, packed.begin() + 35), "vorbis");
        EXPECT_EQ(packed[identification + 11], channels);
        EXPECT_EQ(packed[identification + 12] | packed[identification + 13] << 8, 44100);
    }
}

TEST(Vorbis, TheSameWaveGivesTheSameBytes) {
    const auto wave = SineWave(5000, 2);
    EXPECT_EQ(EncodeVorbis(wave, 2), EncodeVorbis(wave, 2));
}

TEST(Vorbis, DecodingStopsAtTheEndOfTheWave) {
    const auto packed = EncodeVorbis(SineWave(9000, 2), 2);
    const auto whole = Decode(packed, 2, 18000);
    for (const std::size_t count : {0u, 2u, 3u, 4096u, 4098u, 17999u}) {
        std::vector<float> wave(count + 16, -1.0f);
        const std::size_t stored = DecodeVorbis(packed, 2, std::span(wave).first(count));
        ASSERT_EQ(stored, count / 2 * 2);
        EXPECT_TRUE(
            std::equal(wave.begin(), wave.begin() + static_cast<std::ptrdiff_t>(stored), whole.begin()));
        for (std::size_t i = stored; i < wave.size(); ++i) ASSERT_EQ(wave[i], -1.0f) << i;
    }
}

TEST(Vorbis, ValuesStayInTheRangeOfSixteenBits) {
    std::vector<float> square;
    for (int i = 0; i < 8000; ++i) square.push_back(i / 50 % 2 ? 60000.0f : -60000.0f);
    for (const float value : Decode(EncodeVorbis(square, 1), 1, square.size())) {
        ASSERT_GE(value, -32768.0f);
        ASSERT_LE(value, 32767.0f);
        ASSERT_EQ(value, std::trunc(value));
    }
}

TEST(Vorbis, CutAndForeignStreamsGiveWhatTheyHold) {
    const auto packed = EncodeVorbis(SineWave(20000), 1);
    std::size_t former = 0;
    for (std::size_t size = 0; size < packed.size(); size += 97) {
        const auto cut = std::span(packed).first(size);
        std::vector<float> wave(20000);
        const std::size_t stored = DecodeVorbis(cut, 1, wave);
        EXPECT_GE(stored, former);                   // a longer part never holds less
        EXPECT_GE(MeasureVorbis(cut), stored);
        former = stored;
    }
    const std::vector<std::uint8_t> noise(5000, 0x4F);
    EXPECT_EQ(MeasureVorbis(noise), 0u);
    EXPECT_EQ(Decode(noise, 1, 100).size(), 0u);
}

TEST(Vorbis, AStreamOfOtherChannelsFillsTheWaveAllTheSame) {
    const auto mono = SineWave(3000);
    const auto wide = Decode(EncodeVorbis(mono, 1), 2, 6000);
    ASSERT_EQ(wide.size(), 6000u);
    for (std::size_t i = 0; i < wide.size(); i += 2) ASSERT_EQ(wide[i], wide[i + 1]);
    EXPECT_EQ(Decode(EncodeVorbis(SineWave(3000, 2), 2), 1, 3000).size(), 3000u);
    const auto triple = EncodeVorbis(SineWave(3000, 3), 3);
    EXPECT_EQ(MeasureVorbis(triple), 0u);
    EXPECT_EQ(Decode(triple, 2, 3000).size(), 0u);
}

// Fields of a header as Vorbis packs them.
class SetupBuilder {
public:
    SetupBuilder() {
        oggpack_writeinit(&bits_);
        for (const char c : std::string("\x05vorbis")) Add(static_cast<unsigned char>(c), 8);
    }
    ~SetupBuilder() { oggpack_writeclear(&bits_); }
    SetupBuilder(const SetupBuilder&) = delete;
    SetupBuilder& operator=(const SetupBuilder&) = delete;
    SetupBuilder& Add(unsigned long value, int width) {
        oggpack_write(&bits_, value, width);
        return *this;
    }
    test::OggBytes Packet() {
        const unsigned char* bytes = oggpack_get_buffer(&bits_);
        return {bytes, bytes + oggpack_bytes(&bits_)};
    }

private:
    oggpack_buffer bits_;
};

// A header with one codebook and the least of everything else.
test::OggBytes SetupOf(SetupBuilder& books) {
    books.Add(0, 6).Add(0, 16);                                      // a time domain, as the format wants one
    books.Add(0, 6).Add(1, 16).Add(0, 5).Add(0, 2).Add(4, 4);        // a floor without partitions
    books.Add(0, 6).Add(0, 16).Add(0, 24).Add(16, 24).Add(7, 24).Add(0, 6).Add(0, 8).Add(0, 4);   // a residue
    books.Add(0, 6).Add(0, 16).Add(0, 4).Add(0, 24);                 // a mapping
    books.Add(0, 6).Add(0, 1).Add(0, 32).Add(0, 8);                  // a mode
    return books.Add(1, 1).Packet();
}

// A few bytes claim a book of so many entries; the decoder would put its tree on the stack.
TEST(Vorbis, CodebooksThatOverwhelmTheDecoderAreRefused) {
    auto packets = test::SplitOgg(EncodeVorbis(SineWave(3000), 1));
    ASSERT_GT(packets.size(), 3u);
    EXPECT_EQ(Decode(test::JoinOgg(packets), 1, 1000).size(), 1000u);
    for (const int bits : {4, 22}) {
        SetupBuilder book;
        book.Add(0, 8).Add(0x564342, 24).Add(1, 16).Add(1ul << bits, 24);
        book.Add(1, 1).Add(static_cast<unsigned long>(bits) - 1, 5).Add(1ul << bits, bits + 1).Add(0, 4);
        packets[2] = SetupOf(book);
        const auto packed = test::JoinOgg(packets);
        EXPECT_EQ(MeasureVorbis(packed) > 0, bits == 4);
        EXPECT_EQ(Decode(packed, 1, 1000).size() > 0, bits == 4);
    }
}

}  // namespace
}  // namespace vonta
