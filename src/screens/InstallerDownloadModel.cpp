#include "screens/InstallerDownloadModel.h"

#include "updates/DMGDownloadHelper.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace corvane {
namespace {

/// In decimal units; each ends where it would round to a thousand.
std::string inUnits(std::uint64_t bytes)
{
    const auto count = static_cast<double>(bytes);
    if (bytes < 999'500)
        return fmt::format("{:.0f} kB", count / 1e3);
    if (bytes < 999'950'000)
        return fmt::format("{:.1f} MB", count / 1e6);
    return fmt::format("{:.1f} GB", count / 1e9);
}

} // namespace

InstallerDownloadModel::InstallerDownloadModel(DMGDownloadHelper& helper) : helper_(helper) {}

void InstallerDownloadModel::start(const Url& url, const std::optional<std::string>& sha256)
{
    if (*isDownloadingDMG_)
        return;
    step_.reset();
    progress_.set({});
    dmgDownloadOutcome_.set(std::nullopt);
    isDownloadingDMG_.set(true);
    downloads_.start(download(url, sha256));
}

Task<void> InstallerDownloadModel::download(Url url, std::optional<std::string> sha256)
{
    auto stored = co_await helper_.download(std::move(url), std::move(sha256),
                                            [this](const DownloadProgress& progress) { advance(progress); });
    isDownloadingDMG_.set(false);
    if (stored)
        dmgDownloadOutcome_.set(DMGDownloadOutcome{DMGDownloadOutcome::Success{*std::move(stored)}});
    else
        dmgDownloadOutcome_.set(DMGDownloadOutcome{DMGDownloadOutcome::Error{std::move(stored.error().message)}});
}

void InstallerDownloadModel::advance(const DownloadProgress& progress)
{
    const auto [received, announced] = progress;
    if (received == 0)
        return;
    const auto total = announced.value_or(0);
    const auto fraction = static_cast<double>(received) / static_cast<double>(std::max<std::uint64_t>(total, 1));
    const auto step = total == 0 ? received >> 20U : static_cast<std::uint64_t>(fraction * 100);
    if (std::exchange(step_, step) == step)
        return;
    if (total == 0)
        progress_.set({.fraction = std::nullopt, .sizes = inUnits(received)});
    else
        progress_.set(
            {.fraction = std::min(fraction, 1.0), .sizes = fmt::format("{} of {}", inUnits(received), inUnits(total))});
}

void InstallerDownloadModel::cancel()
{
    if (!*isDownloadingDMG_) // Also when the download itself is just saying that it has ended.
        return;
    downloads_.cancel();
    isDownloadingDMG_.set(false);
}

void InstallerDownloadModel::quitAndInstall()
{
    const auto outcome = *dmgDownloadOutcome_;
    dismissOutcome();
    if (const auto* success = outcome ? std::get_if<DMGDownloadOutcome::Success>(&outcome->result) : nullptr)
        helper_.openInstallerAndQuit(success->file);
}

void InstallerDownloadModel::dismissOutcome()
{
    dmgDownloadOutcome_.set(std::nullopt);
}

} // namespace corvane
