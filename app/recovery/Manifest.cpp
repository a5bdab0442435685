#include "app/recovery/Manifest.h"

#include <nlohmann/json.hpp>

#include "song/Song.h"

namespace vonta {
namespace {

using nlohmann::json;

constexpr int kVersion = 1;
constexpr int kMaxWaves = kMaxInstruments * kMaxSamples;

// Text of the song need not be UTF-8: bytes from 0x80 on go as code points and come back as bytes.
std::string ToUtf8(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (value < 0x80) text += byte;
        else {
            text += static_cast<char>(0xC0 | value >> 6);
            text += static_cast<char>(0x80 | (value & 0x3F));
        }
    }
    return text;
}

std::string FromUtf8(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead >= 0xC0 && i + 1 < text.size())
            bytes += static_cast<char>((lead & 3) << 6 | (static_cast<unsigned char>(text[++i]) & 0x3F));
        else
            bytes += text[i];
    }
    return bytes;
}

// A name of a file beside the manifest, or nothing.
std::string NameIn(const json& from, const char* key) {
    const auto found = from.find(key);
    const std::string name = found != from.end() && found->is_string() ? found->get<std::string>() : "";
    return name.find('/') == std::string::npos && name != "." && name != ".." ? name : "";
}

template <class Number>
Number NumberIn(const json& from, const char* key) {
    const auto found = from.find(key);
    return found != from.end() && found->is_number_integer() ? found->get<Number>() : Number{};
}

std::string TextIn(const json& from, const char* key) {
    const auto found = from.find(key);
    return found != from.end() && found->is_string() ? FromUtf8(found->get<std::string>()) : "";
}

// The members of a table of objects whose key is a number below `end`.
template <class Take>
void EachPart(const json& from, const char* key, int end, Take take) {
    const auto found = from.find(key);
    if (found == from.end() || !found->is_array()) return;
    for (const json& part : *found) {
        if (!part.is_object() || !part.contains("number")) continue;
        const auto number = NumberIn<std::int64_t>(part, "number");
        if (number >= 0 && number < end) take(static_cast<int>(number), part);
    }
}

std::vector<Manifest::Loop> LoopsIn(const json& part) {
    std::vector<Manifest::Loop> loops;
    EachPart(part, "loops", kMaxSamples, [&](int sample, const json& loop) {
        loops.push_back({sample, NumberIn<std::uint32_t>(loop, "start"), NumberIn<std::uint32_t>(loop, "end"),
                         NumberIn<int>(loop, "type")});
    });
    return loops;
}

json PartsOf(const std::map<int, std::string>& files) {
    json parts = json::array();
    for (const auto& [number, file] : files) parts.push_back({{"number", number}, {"file", file}});
    return parts;
}

json LoopsOf(const Manifest::InstrumentPart& part) {
    json loops = json::array();
    for (const auto& loop : part.loops)
        loops.push_back({{"number", loop.sample}, {"start", loop.start}, {"end", loop.end}, {"type", loop.type}});
    return loops;
}

}  // namespace

std::vector<std::string> Manifest::Files() const {
    std::vector<std::string> files{numbers, base.kept};
    for (const auto& [number, file] : patterns) files.push_back(file);
    for (const auto& [number, part] : instruments) files.push_back(part.file);
    for (const auto& [number, file] : waves) files.push_back(file);
    std::erase(files, "");
    return files;
}

std::string Manifest::Text() const {
    json instrumentParts = json::array();
    for (const auto& [number, part] : instruments)
        instrumentParts.push_back({{"number", number}, {"file", part.file}, {"loops", LoopsOf(part)}});
    const json all{{"version", kVersion},
                   {"song", ToUtf8(song)},
                   {"time", time},
                   {"edits", edits},
                   {"base", {{"path", ToUtf8(base.path)}, {"kept", base.kept}, {"size", base.size}, {"modified", base.modified}}},
                   {"length", length},
                   {"tempo", tempo},
                   {"numbers", numbers},
                   {"patterns", PartsOf(patterns)},
                   {"instruments", instrumentParts},
                   {"waves", PartsOf(waves)}};
    return all.dump(1);
}

std::optional<Manifest> Manifest::Parse(const std::string& text) {
    const json all = json::parse(text, nullptr, false);
    if (!all.is_object() || NumberIn<int>(all, "version") != kVersion) return {};
    Manifest manifest;
    manifest.song = TextIn(all, "song");
    manifest.time = NumberIn<std::int64_t>(all, "time");
    manifest.edits = NumberIn<std::uint64_t>(all, "edits");
    if (const auto base = all.find("base"); base != all.end() && base->is_object())
        manifest.base = {TextIn(*base, "path"), NameIn(*base, "kept"), NumberIn<std::uint64_t>(*base, "size"),
                         NumberIn<std::int64_t>(*base, "modified")};
    manifest.length = NumberIn<std::uint32_t>(all, "length");
    manifest.tempo = NumberIn<std::uint32_t>(all, "tempo");
    manifest.numbers = NameIn(all, "numbers");
    EachPart(all, "patterns", kMaxPatterns,
             [&](int number, const json& part) { manifest.patterns[number] = NameIn(part, "file"); });
    EachPart(all, "instruments", kMaxInstruments, [&](int number, const json& part) {
        manifest.instruments[number] = {NameIn(part, "file"), LoopsIn(part)};
    });
    EachPart(all, "waves", kMaxWaves, [&](int number, const json& part) { manifest.waves[number] = NameIn(part, "file"); });
    return manifest;
}

}  // namespace vonta
