#include "settings/SettingsManager.h"

#include <tuple>
#include <utility>

namespace corvane {

SettingsManager::SettingsManager(FileStore& files, const Places& places)
    : files_(files), file_(places.settings() / "settings.json"), settings_(loadSettings())
{
}

AppSettings SettingsManager::loadSettings()
{
    std::ignore = files_.makeFolder(file_.parent_path());
    if (auto settings = files_.read(file_).and_then(decodeSettings))
        return *std::move(settings);
    const AppSettings defaults;
    saveSettings(defaults, file_);
    return defaults;
}

void SettingsManager::updateSettings(AppSettings settings)
{
    if (settings == settings_.value())
        return;
    settings_.set(std::move(settings));
    // An observer may have changed the settings once more: the file gets what is in use now.
    saveSettings(settings_.value(), file_);
}

void SettingsManager::saveSettings(const AppSettings& settings, const std::filesystem::path& file)
{
    std::ignore = files_.makeFolder(file.parent_path());
    if (const auto bytes = encodeSettings(settings))
        std::ignore = files_.write(file, *bytes);
}

} // namespace corvane
