#include "ui/InstallerDownloadView.h"

#include "ui/Accessible.h"
#include "ui/PageFocus.h"

#include <cmath>
#include <string>
#include <variant>

#include <fmt/format.h>

namespace corvane {
namespace {

constexpr int panelPadding = 24;
constexpr int barWidth = 280;

} // namespace

InstallerDownloadView::InstallerDownloadView(InstallerDownloadModel& model, Gtk::Window& mainWindow,
                                             WindowMonitor& windows)
    : model_(model), mainWindow_(mainWindow), windows_(windows)
{
    add_css_class("download-shade");
    buildPanel();
    observations_.push_back(
        model_.progress().bind([this](const InstallerDownloadModel::Progress& progress) { showProgress(progress); }));
    observations_.push_back(model_.isDownloadingDMG().bind([this](bool isRunning) { showRunning(isRunning); }));
    observations_.push_back(model_.dmgDownloadOutcome().bind(
        [this](const std::optional<DMGDownloadOutcome>& outcome) { showOutcome(outcome); }));
}

void InstallerDownloadView::buildPanel()
{
    const std::string text(InstallerDownloadModel::progressText);
    panel_.append(*Gtk::make_managed<Gtk::Label>(text));
    bar_.set_show_text(true);
    bar_.set_size_request(barWidth, -1);
    setAccessibleName(bar_, text);
    panel_.append(bar_);
    sizes_.add_css_class("caption");
    sizes_.add_css_class("numeric");
    panel_.append(sizes_);
    cancel_.set_halign(Gtk::Align::CENTER);
    cancel_.signal_clicked().connect([this] { model_.cancel(); });
    panel_.append(cancel_);

    auto* padded = Gtk::make_managed<Gtk::Box>();
    padded->add_css_class("download-panel");
    panel_.set_margin(panelPadding);
    padded->append(panel_);
    padded->set_halign(Gtk::Align::CENTER);
    padded->set_valign(Gtk::Align::CENTER);
    padded->set_hexpand(true);
    append(*padded);
}

void InstallerDownloadView::showRunning(bool isRunning)
{
    const bool hadFocus = cancel_.has_focus();
    set_visible(isRunning);
    if (isRunning)
        cancel_.grab_focus();
    else if (hadFocus)
        focusPage(*this);
}

void InstallerDownloadView::showProgress(const InstallerDownloadModel::Progress& progress)
{
    if (progress.fraction) {
        bar_.set_fraction(*progress.fraction);
        bar_.set_text(fmt::format("{} %", std::lround(std::floor(*progress.fraction * 100))));
    } else {
        bar_.pulse();
        bar_.set_text(" ");
    }
    sizes_.set_text(progress.sizes.empty() ? " " : progress.sizes);
}

void InstallerDownloadView::showOutcome(const std::optional<DMGDownloadOutcome>& outcome)
{
    alert_.reset();
    if (!outcome)
        return;
    MessageDialog::Content content{.heading = "Update Ready to Install",
                                   .body = "Corvane will quit so you can drag the new version into Applications.",
                                   .acceptLabel = "Quit & Install",
                                   .cancelLabel = "Later"};
    const auto* error = std::get_if<DMGDownloadOutcome::Error>(&outcome->result);
    if (error != nullptr)
        content = {.heading = "Download failed", .body = error->text};
    alert_ = std::make_unique<MessageDialog>(mainWindow_, windows_, content,
                                             [this, isReady = error == nullptr](MessageDialog::Answer answer) {
                                                 if (isReady && answer == MessageDialog::Answer::accept)
                                                     model_.quitAndInstall();
                                                 model_.dismissOutcome();
                                             });
}

} // namespace corvane
