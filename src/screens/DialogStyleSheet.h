#pragma once

#include "settings/DialogThemeColors.h"

#include <string>

namespace corvane {

/// The style sheet, in the toolkit's CSS, that gives the dialogs their theme: every rule begins with the class
/// "themed-dialog". The label of a filled button is black or white, whichever is easier to read on it.
std::string dialogStyleSheet(const DialogThemeColors& colors);

/// Whether dark text stands on a light background.
bool isLightTheme(const DialogThemeColors& colors);

/// The reader's style sheets of the two kinds of documents that a dialog shows on its own background: they keep the
/// text readable there whatever the desktop's colour scheme is.
std::string releaseNotesReaderStyle(const DialogThemeColors& colors);
std::string notificationReaderStyle(const DialogThemeColors& colors);

} // namespace corvane
