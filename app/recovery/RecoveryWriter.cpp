#include "app/recovery/RecoveryWriter.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <utility>

#include "formats/native/SaverVTM.h"
#include "formats/streams/FileStream.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLockName = "lock";

std::string WriteBytes(const std::string& path, const void* bytes, std::size_t count) {
    DiskStream stream;
    const bool written = stream.Open(path, "wb") && stream.Write(bytes, 1, count) == count && stream.Close();
    return written ? "" : stream.Error();
}

// Aside first: a copy that was cut short is no base.
std::string CopyBase(const std::string& from, const std::string& directory) {
    std::error_code failed;
    const fs::path part = fs::path(directory) / "base-part";
    fs::copy_file(from, part, fs::copy_options::overwrite_existing, failed);
    if (!failed) fs::rename(part, fs::path(directory) / Manifest::kBaseName, failed);
    return failed ? failed.message() : "";
}

}  // namespace

RecoveryWriter::RecoveryWriter(std::string directory)
    : directory_(std::move(directory)), thread_([this] { Run(); }) {}

RecoveryWriter::~RecoveryWriter() {
    {
        const std::lock_guard guard(lock_);
        quit_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

bool RecoveryWriter::IsBusy() const {
    const std::lock_guard guard(lock_);
    return busy_;
}

void RecoveryWriter::Write(RecoveryBatch batch) {
    {
        const std::lock_guard guard(lock_);
        next_ = std::move(batch);
        busy_ = true;
    }
    wake_.notify_one();
}

void RecoveryWriter::Finish() {
    std::unique_lock guard(lock_);
    idle_.wait(guard, [this] { return !busy_; });
}

std::string RecoveryWriter::Error() const {
    const std::lock_guard guard(lock_);
    return error_;
}

void RecoveryWriter::Run() {
    std::unique_lock guard(lock_);
    for (;;) {
        wake_.wait(guard, [this] { return next_ || quit_; });
        if (!next_) return;
        RecoveryBatch batch = std::move(*next_);
        next_.reset();
        guard.unlock();
        std::string error;
        try {
            error = WriteBatch(batch);
        } catch (const std::exception& failure) {
            error = failure.what();
        }
        batch = {};                              // a wave that nobody else has any more goes here, outside the lock
        guard.lock();
        error_ = std::move(error);
        busy_ = false;
        idle_.notify_all();
    }
}

// The manifest goes last, and what it does not name after it: whenever the power fails, one whole state is there.
std::string RecoveryWriter::WriteBatch(RecoveryBatch& batch) {
    if (!batch.manifest) {
        std::error_code none;
        fs::remove(fs::path(directory_) / Manifest::kFileName, none);
        RemoveAllBut({});
        return {};
    }
    for (const auto& file : batch.files)
        if (std::string error = WriteFile(file); !error.empty()) return error;
    Manifest& manifest = *batch.manifest;
    if (!batch.copyBaseFrom.empty() && CopyBase(batch.copyBaseFrom, directory_).empty())
        manifest.base.kept = Manifest::kBaseName;    // else the file that the user knows has to do
    const std::string text = manifest.Text();
    if (std::string error = WriteBytes(directory_ + "/" + Manifest::kFileName, text.data(), text.size()); !error.empty())
        return error;
    RemoveAllBut(manifest.Files());
    return {};
}

std::string RecoveryWriter::WriteFile(const RecoveryBatch::File& file) const {
    const std::string path = directory_ + "/" + file.name;
    if (!file.wave) return WriteBytes(path, file.bytes.data(), file.bytes.size());
    DiskStream stream;
    const ModulePart part{.instrument = file.instrument, .waves = true};
    const bool written = stream.Open(path, "wb") && SaveModulePart(stream, *file.wave, part) == 0 && stream.Close();
    return written ? "" : stream.Error();
}

void RecoveryWriter::RemoveAllBut(const std::vector<std::string>& names) const {
    std::error_code none;
    std::vector<fs::path> gone;
    for (fs::directory_iterator at(directory_, none), end; !none && at != end; at.increment(none)) {
        const std::string name = at->path().filename().string();
        const bool kept = name == kLockName || name == Manifest::kFileName || name == Manifest::kBaseName ||
                          std::ranges::find(names, name) != names.end();
        if (!kept) gone.push_back(at->path());
    }
    for (const fs::path& path : gone) fs::remove(path, none);
}

}  // namespace vonta
