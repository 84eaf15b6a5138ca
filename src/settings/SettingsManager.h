#pragma once

#include "base/Published.h"
#include "ports/FileStore.h"
#include "ports/Places.h"
#include "settings/AppSettings.h"

#include <filesystem>

namespace corvane {

/// Holds the settings in use and keeps them in their file. The file is read once, at creation; it is written when it
/// could not be read and whenever the settings change. No failure is reported: settings that could not be written hold
/// for the rest of this run. Main thread only.
class SettingsManager {
public:
    /// The file store must outlive this object.
    SettingsManager(FileStore& files, const Places& places);

    /// The record in the file; without a readable one the defaults, which are then written in its place.
    AppSettings loadSettings();

    /// Makes `settings` the record in use and writes it; an equal record does nothing at all.
    void updateSettings(AppSettings settings);

    /// Writes a record to `file`, creating the folder where it is missing.
    void saveSettings(const AppSettings& settings, const std::filesystem::path& file);

    std::filesystem::path settingsFileURL() const { return file_; }

    const Published<AppSettings>& settings() const { return settings_; }

private:
    FileStore& files_;
    std::filesystem::path file_;
    Published<AppSettings> settings_;
};

} // namespace corvane
