// The packets of an Ogg stream, to be changed and put together again.
#pragma once

#include <ogg/ogg.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace vonta::test {

using OggBytes = std::vector<std::uint8_t>;

inline std::vector<OggBytes> SplitOgg(const OggBytes& stream) {
    std::vector<OggBytes> packets;
    ogg_sync_state sync;
    ogg_stream_state state;
    ogg_sync_init(&sync);
    std::memcpy(ogg_sync_buffer(&sync, static_cast<long>(stream.size())), stream.data(), stream.size());
    ogg_sync_wrote(&sync, static_cast<long>(stream.size()));
    ogg_page page;
    for (bool first = true; ogg_sync_pageout(&sync, &page) == 1; first = false) {
        if (first) ogg_stream_init(&state, ogg_page_serialno(&page));
        ogg_stream_pagein(&state, &page);
        for (ogg_packet packet; ogg_stream_packetout(&state, &packet) == 1;)
            packets.emplace_back(packet.packet, packet.packet + packet.bytes);
    }
    ogg_stream_clear(&state);
    ogg_sync_clear(&sync);
    return packets;
}

inline OggBytes JoinOgg(std::vector<OggBytes> packets) {
    OggBytes bytes;
    ogg_stream_state state;
    ogg_stream_init(&state, 7);
    ogg_page page;
    const auto append = [&] {
        bytes.insert(bytes.end(), page.header, page.header + page.header_len);
        bytes.insert(bytes.end(), page.body, page.body + page.body_len);
    };
    for (std::size_t i = 0; i < packets.size(); ++i) {
        ogg_packet packet{packets[i].data(),   static_cast<long>(packets[i].size()), i == 0, 0, -1,
                          static_cast<long>(i)};
        ogg_stream_packetin(&state, &packet);
        while (ogg_stream_pageout(&state, &page) != 0) append();
    }
    while (ogg_stream_flush(&state, &page) != 0) append();
    ogg_stream_clear(&state);
    return bytes;
}

}  // namespace vonta::test
