#include "screens/WhatsNewModel.h"

#include "base/Text.h"
#include "screens/DialogStyleSheet.h"
#include "screens/ReleaseNotesPage.h"
#include "settings/SettingsManager.h"
#include "settings/ThemeManager.h"
#include "state/AppState.h"
#include "updates/ReleaseNotes.h"

#include <utility>

namespace corvane {
namespace {

std::string currentTitle(const std::optional<WhatsNewContext>& context)
{
    if (context && context->isSiteListUpdate)
        return context->hasSiteUpdate ? "What's New – Service List" : "Service List – Up to Date";
    if (context && context->isAppUpdate)
        return context->hasAppUpdate ? "What's New – Corvane" : "Release Notes – Corvane";
    return "What's New in Corvane";
}

/// Whether a link that is no address the program can read names a scheme all the same.
bool hasScheme(std::string_view link)
{
    const auto end = link.find_first_of(":/?#");
    return end != std::string_view::npos && link[end] == ':';
}

} // namespace

WhatsNewModel::WhatsNewModel(const Services& services, std::function<void(const WhatsNewContext&)> onUpdate)
    : services_(services), publishing_(services.http), onUpdate_(std::move(onUpdate))
{
}

void WhatsNewModel::appear()
{
    disappear();
    context_ = *services_.appState.activeWhatsNew;
    currentIndex_.set(0);
    page_.set(pageHTML());
}

void WhatsNewModel::disappear()
{
    fetches_.cancel();
    fetching_.clear();
    archiveCache_.clear();
    context_.reset();
}

std::vector<WhatsNewModel::ManifestEntry> WhatsNewModel::manifest() const
{
    std::vector<ManifestEntry> entries{{.title = currentTitle(context_), .archiveURL = std::nullopt}};
    if (context_) {
        for (const auto& [url, title] : context_->archives)
            entries.push_back({.title = title, .archiveURL = url});
    }
    return entries;
}

std::string WhatsNewModel::title() const
{
    const auto index = static_cast<std::size_t>(*currentIndex_);
    const auto entries = manifest();
    return index < entries.size() ? entries[index].title : "What's New";
}

std::optional<std::string> WhatsNewModel::statusLine() const
{
    if (*currentIndex_ != 0)
        return std::nullopt;
    if (context_ && context_->isSiteListUpdate) {
        if (context_->hasSiteUpdate)
            return std::nullopt;
        return "Your service list is already up to date.";
    }
    if (context_ && context_->isAppUpdate && !context_->hasAppUpdate)
        return "Your app is up to date — v" + services_.app.currentAppVersion();
    if (context_ && context_->availableAppVersion)
        return "Version " + *context_->availableAppVersion;
    return "New version available";
}

bool WhatsNewModel::offersUpdate() const
{
    return context_ && ((context_->isSiteListUpdate && context_->hasSiteUpdate) ||
                        (context_->isAppUpdate && context_->hasAppUpdate));
}

bool WhatsNewModel::hasNavigation() const
{
    return context_ && !context_->archives.empty();
}

bool WhatsNewModel::hasOlder() const
{
    return context_ && std::cmp_less(*currentIndex_, context_->archives.size());
}

void WhatsNewModel::showEntry(std::int64_t index)
{
    if (index < 0 || index == *currentIndex_ || !context_ || std::cmp_greater(index, context_->archives.size()))
        return;
    currentIndex_.set(index);
    page_.set(pageHTML());
    if (index == 0 || archiveCache_.contains(index) || !fetching_.insert(index).second)
        return;
    fetches_.start(fetchArchive(index, context_->archives[static_cast<std::size_t>(index) - 1].url));
}

std::string WhatsNewModel::readerStyle() const
{
    return releaseNotesReaderStyle(services_.themeManager.dialogColors(themeName()));
}

bool WhatsNewModel::followsLink(const DocumentLink& link)
{
    const auto url = Url::fromEngine(link.address);
    if (!url)
        return !hasScheme(link.address);
    if (url->isHttp()) {
        services_.appState.pendingLoadURL.set(url);
        close();
        return false;
    }
    if (url->scheme() == "mailto") {
        services_.desktop.open(*url);
        return false;
    }
    return url->scheme() != "javascript";
}

void WhatsNewModel::update()
{
    if (const auto context = context_; context && onUpdate_)
        onUpdate_(*context);
    close();
}

void WhatsNewModel::close()
{
    // Other release notes that have been asked for meanwhile are not this dialog's to close.
    if (*services_.appState.activeWhatsNew == context_)
        services_.appState.activeWhatsNew.set(std::nullopt);
}

std::string WhatsNewModel::currentBody() const
{
    if (*currentIndex_ != 0) {
        const auto cached = archiveCache_.find(*currentIndex_);
        return cached == archiveCache_.end() ? std::string(loadingBody) : cached->second;
    }
    if (context_ && context_->whatsNewHTML && !context_->whatsNewHTML->empty())
        return *context_->whatsNewHTML;
    const auto shipped = services_.resources.read("whatsnew", "html");
    if (!shipped || !isValidUtf8(*shipped))
        return std::string(missingBody);
    return filledReleaseNotes(*shipped, services_.app.currentAppVersion(), services_.app.buildDateText)
        .value_or(std::string(missingBody));
}

std::string WhatsNewModel::pageHTML() const
{
    return releaseNotesPage(currentBody(), services_.themeManager.themeCSS(themeName()));
}

std::string WhatsNewModel::themeName() const
{
    return services_.settingsManager.settings()->DialogTheme;
}

Task<void> WhatsNewModel::fetchArchive(std::int64_t index, Url address)
{
    auto body = co_await publishing_.fetchPage(address.text(), checkTime(services_.clock));
    archiveCache_[index] = body ? *std::move(body) : std::string(failedBody);
    fetching_.erase(index);
    if (index == *currentIndex_)
        page_.set(pageHTML());
}

} // namespace corvane
