#include "app/pack/PackFile.h"

#include <algorithm>
#include <limits>

namespace vonta {
namespace {

constexpr std::uint32_t kHeadBytes = 4, kEntryBytes = PackFile::kNameLength + 8;

std::unique_ptr<FileStream> OpenToRead(const std::string& path) {
    auto file = std::make_unique<DiskStream>();
    if (!file->Open(path, "rb")) return nullptr;
    return file;
}

// Where the first data stands, or 0, with the reason, if an offset or a name does not fit its field.
std::uint32_t PlanPack(const std::vector<PackEntry>& entries, std::string& error) {
    std::uint64_t end = kHeadBytes + std::uint64_t{kEntryBytes} * entries.size();
    const auto start = static_cast<std::uint32_t>(end);
    for (const PackEntry& entry : entries) {
        end += entry.data.size();
        if (entry.name.size() <= PackFile::kNameLength && end <= std::numeric_limits<std::uint32_t>::max()) continue;
        error = "no room in a pack for " + entry.name;
        return 0;
    }
    return start;
}

}  // namespace

PackFile::PackFile(const std::string& path) : PackFile(OpenToRead(path)) {}

PackFile::PackFile(std::unique_ptr<FileStream> file) : file_(std::move(file)) {
    if (file_ && !ReadDirectory()) Close();
}

void PackFile::Close() {
    file_.reset();
    entries_.clear();
    position_ = end_ = 0;
}

bool PackFile::ReadDirectory() {
    Reader in(*file_);
    const std::uint32_t count = in.U32();
    if (in.Truncated() || count > file_->Remaining() / kEntryBytes) return false;
    entries_.resize(count);
    for (Entry& entry : entries_) {
        entry.name = in.FixedText(kNameLength);
        entry.offset = in.U32();
        entry.end = std::uint64_t{entry.offset} + in.U32();
    }
    return !in.Truncated();
}

bool PackFile::Find(std::string_view name) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [wanted = name.substr(0, kNameLength)](const Entry& e) { return e.name == wanted; });
    if (found == entries_.end() || !file_->Seek(found->offset, kFromStart)) return false;
    position_ = found->offset;
    end_ = found->end;
    return true;
}

bool PackFile::Read(void* buffer, std::size_t size) {
    if (!file_) return false;
    // Once past the end it stays there, without wrapping.
    position_ = std::min<std::uint64_t>(position_ + std::min<std::uint64_t>(size, end_ + 1), end_ + 1);
    return position_ <= end_ && (size == 0 || file_->Read(buffer, size, 1) == 1);
}

std::uint32_t PackFile::Remaining() const {
    if (!file_) return 0;
    const std::uint64_t end = std::min(end_, static_cast<std::uint64_t>(file_->Size()));
    return position_ < end ? static_cast<std::uint32_t>(end - position_) : 0;
}

std::string_view PackFile::EntryName(std::size_t index) const {
    return index < entries_.size() ? std::string_view(entries_[index].name) : std::string_view();
}

bool WritePack(const std::string& path, const std::vector<PackEntry>& entries, std::string& error) {
    std::uint32_t offset = PlanPack(entries, error);
    if (offset == 0) return false;
    DiskStream file;
    if (file.Open(path, "wb")) {
        Writer out(file);
        out.U32(static_cast<std::uint32_t>(entries.size()));
        for (const PackEntry& entry : entries) {
            out.FixedText(entry.name, PackFile::kNameLength);
            out.U32(offset);
            out.U32(static_cast<std::uint32_t>(entry.data.size()));
            offset += static_cast<std::uint32_t>(entry.data.size());
        }
        for (const PackEntry& entry : entries)
            if (!entry.data.empty()) file.Write(entry.data.data(), entry.data.size(), 1);
    }
    const bool written = file.Close();
    if (!written) error = file.Error();
    return written;
}

}  // namespace vonta
