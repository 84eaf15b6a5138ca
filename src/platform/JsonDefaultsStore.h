#pragma once

#include "base/Json.h"
#include "ports/DefaultsStore.h"
#include "ports/FileStore.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <string>

namespace corvane {

/// Defaults in one flat JSON object of strings and Booleans; members of other types are kept as they are.
///
/// The file is read once. A change is applied to what the file holds at that moment, under a lock, so that two
/// processes on one file keep each other's keys. No change waits for that lock: while another process holds it, a
/// change counts in this process only. Changes that could not be written are tried again with the next one and, for the
/// last time, when the store goes. That waits for the lock, and after a while does without it: what would be lost for
/// certain is better written.
///
/// The generation before the last write stays beside the file and stands in for it when it is unreadable.
class JsonDefaultsStore final : public DefaultsStore {
public:
    /// How long the end of the store waits for the lock. Another process holds it while two small files are brought to
    /// the disk, which on a busy one may take a second or more.
    static constexpr std::chrono::seconds usualPatience{5};

    /// In bytes. A longer text changes nothing: such texts would make a file together that no reader takes.
    static constexpr std::size_t longestText = std::size_t{256} << 10U;

    /// `files` must outlive the store. The folder of `file` is created with the first change.
    JsonDefaultsStore(FileStore& files, std::filesystem::path file, std::chrono::milliseconds patience = usualPatience);
    JsonDefaultsStore(const JsonDefaultsStore&) = delete;
    JsonDefaultsStore& operator=(const JsonDefaultsStore&) = delete;
    ~JsonDefaultsStore() override;

    std::optional<std::string> string(std::string_view key) const override;
    std::optional<bool> boolean(std::string_view key) const override;
    void setString(std::string_view key, std::string_view value) override;
    void setBoolean(std::string_view key, bool value) override;
    void remove(std::string_view key) override;

private:
    /// What a readable generation held: its bytes and, when those came from the file itself, the right to replace the
    /// previous generation with them.
    struct Generation;

    /// What a save does while another process holds the lock.
    enum class WhenLocked { givesUp, writes };

    std::optional<Generation> readNewest() const;
    void change(std::string_view key, std::optional<Json> value);
    bool keepAsPrevious() const;
    bool save(WhenLocked whenLocked);

    FileStore& files_;
    std::filesystem::path file_;
    std::filesystem::path previous_;
    std::filesystem::path lock_;
    std::chrono::milliseconds patience_;
    Json values_ = Json::object();
    std::map<std::string, std::optional<Json>, std::less<>> unsaved_; // nothing means removed
};

} // namespace corvane
