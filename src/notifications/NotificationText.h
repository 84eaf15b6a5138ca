#pragma once

#include "base/Url.h"
#include "notifications/PendingNotification.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

// All of this reads text from a server, of any size: the time it takes grows with the length and no faster. A line
// break is "\n", "\r\n" or "\r"; the case of tags does not matter.

/// How many characters of a body a list shows.
inline constexpr std::size_t previewLimit = 90;

/// The title to show; "Notification" for one without.
std::string shownTitle(const PendingNotification& notification);

/// Whether a body is meant as HTML, judged by the tags that it holds.
bool looksLikeHTML(std::string_view text);

/// The text without markup: line breaks for "<br>" and "</p>", nothing for other tags, white space folded.
std::string plainText(std::string_view html);

/// One line of at most `limit` characters (code points), and "…" where more was there.
std::string preview(std::string_view body, std::size_t limit);

/// What is copied of an opened notification, and of a line of the list.
std::string copyText(const PendingNotification& notification);
std::string titleAndPreview(const PendingNotification& notification);

/// A notification's address, trimmed; empty for all but web, mail and store addresses.
std::optional<Url> linkURL(std::string_view text);

/// The notification as a document: HTML as it is, plain text escaped and with its link below. `themeCSS` is the theme's
/// style element, put wherever the body asks for it with "{{THEME_CSS}}", else at the end of the head. A document that
/// would grow past the largest page because of that gets it in fewer places.
std::string bodyHTML(const PendingNotification& notification, std::string_view themeCSS);

} // namespace corvane
