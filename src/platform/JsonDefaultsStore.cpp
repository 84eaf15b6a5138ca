#include "platform/JsonDefaultsStore.h"

#include "base/Text.h"
#include "platform/FileDescriptor.h"
#include "platform/TemporaryFile.h"

#include <chrono>
#include <cstdio>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace corvane {
namespace {

/// Holds the lock that all processes share, until it goes, unless another process has it for longer than `patience`.
/// Where no lock file can be made there is nothing to share.
class FileLock {
public:
    FileLock(const std::filesystem::path& file, std::chrono::milliseconds patience)
        : file_(file, O_RDWR | O_CREAT | O_NOFOLLOW, 0600), isTaken_(isHeldElsewhere())
    {
        using SteadyClock = std::chrono::steady_clock;
        const auto end = SteadyClock::now() + patience;
        while (isTaken_ && SteadyClock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            isTaken_ = isHeldElsewhere();
        }
    }

    bool isTaken() const { return isTaken_; }

private:
    /// Takes the lock, unless another process has it.
    bool isHeldElsewhere() const
    {
        return file_ && ::flock(file_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    }

    FileDescriptor file_; // closing it unlocks
    bool isTaken_;
};

std::filesystem::path beside(const std::filesystem::path& file, const char* suffix)
{
    return std::filesystem::path(file) += suffix;
}

} // namespace

struct JsonDefaultsStore::Generation {
    Json values;
    std::string bytes;
    bool isCurrent;
};

JsonDefaultsStore::JsonDefaultsStore(FileStore& files, std::filesystem::path file, std::chrono::milliseconds patience)
    : files_(files), file_(std::move(file)), previous_(beside(file_, ".previous")), lock_(beside(file_, ".lock")),
      patience_(patience)
{
    if (auto newest = readNewest())
        values_ = std::move(newest->values);
}

JsonDefaultsStore::~JsonDefaultsStore()
{
    if (!unsaved_.empty())
        save(WhenLocked::writes);
}

std::optional<std::string> JsonDefaultsStore::string(std::string_view key) const
{
    const auto* text = textOf(member(values_, key));
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<bool> JsonDefaultsStore::boolean(std::string_view key) const
{
    const auto* value = member(values_, key);
    if (value == nullptr || !value->is_boolean())
        return std::nullopt;
    return value->get<bool>();
}

void JsonDefaultsStore::setString(std::string_view key, std::string_view value)
{
    if (value.size() <= longestText)
        change(key, Json(repairedUtf8(value)));
}

void JsonDefaultsStore::setBoolean(std::string_view key, bool value)
{
    change(key, Json(value));
}

void JsonDefaultsStore::remove(std::string_view key)
{
    change(key, std::nullopt);
}

std::optional<JsonDefaultsStore::Generation> JsonDefaultsStore::readNewest() const
{
    if (!files_.exists(file_))
        return std::nullopt; // a user who removed the file wants to begin anew
    for (const auto* file : {&file_, &previous_}) {
        auto bytes = files_.read(*file);
        auto values = bytes ? parseJson(*bytes) : std::nullopt;
        if (values && values->is_object())
            return Generation{std::move(*values), std::move(*bytes), file == &file_};
    }
    return std::nullopt;
}

void JsonDefaultsStore::change(std::string_view key, std::optional<Json> value)
{
    unsaved_.insert_or_assign(repairedUtf8(key), std::move(value));
    if (save(WhenLocked::givesUp))
        unsaved_.clear();
}

/// Gives the file's bytes the previous generation's name as well, which costs no copy. False where the folder or the
/// file system does not allow that, and for a symbolic link: its target may lie where it can only be rewritten in
/// place, and both generations with it.
bool JsonDefaultsStore::keepAsPrevious() const
{
    std::error_code error;
    if (std::filesystem::is_symlink(file_, error) || error)
        return false;
    const auto fresh = temporaryName(file_.parent_path());
    const bool isKept = ::linkat(AT_FDCWD, file_.c_str(), AT_FDCWD, fresh.c_str(), 0) == 0 &&
                        ::rename(fresh.c_str(), previous_.c_str()) == 0;
    ::unlink(fresh.c_str()); // Renaming does nothing where both names are the same file.
    return isKept;
}

bool JsonDefaultsStore::save(WhenLocked whenLocked)
{
    const bool hasFolder = files_.makeFolder(file_.parent_path()).has_value();
    const FileLock lock(lock_, whenLocked == WhenLocked::givesUp ? std::chrono::milliseconds(0) : patience_);
    auto newest = readNewest();
    // What this run knows already is newer than the generation before.
    if (newest && (newest->isCurrent || values_.empty()))
        values_ = std::move(newest->values);
    for (const auto& [key, value] : unsaved_) {
        if (value)
            values_[key] = *value;
        else
            values_.erase(key);
    }
    if (lock.isTaken() && whenLocked == WhenLocked::givesUp)
        return false;

    const auto bytes = compactJson(values_);
    if (bytes.size() > FileStore::largestFile)
        return false; // No reader would take it.
    const bool isCurrent = newest && newest->isCurrent;
    if (isCurrent && newest->bytes == bytes)
        return true;
    // A broken file must not become the generation that stands in for it.
    if (isCurrent && !keepAsPrevious())
        static_cast<void>(files_.write(previous_, newest->bytes));
    return hasFolder && files_.write(file_, bytes).has_value();
}

} // namespace corvane
