#include "screens/ReleaseNotesPage.h"

namespace corvane {
namespace {

constexpr std::string_view headStart = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="UTF-8">
<meta name="viewport" content="width=device-width, initial-scale=1.0">
)";

constexpr std::string_view headEnd = R"(
<style>
  body {
    font-family: -apple-system, 'Helvetica Neue', sans-serif;
    margin: 0; padding: 12px 16px;
    background: linear-gradient(135deg, var(--bg-1, transparent), var(--bg-2, transparent));
    color: var(--text, #1d1d1f);
  }
  a { color: var(--link, #0071e3); }
  @media (prefers-color-scheme: dark) {
    body { color: #f5f5f7; }
    .whatsnew .item { border-left-color: #0a84ff; }
    .whatsnew h2 { color: #ebebf5; }
    .whatsnew .intro, .whatsnew .item-desc, .whatsnew .closing { color: #aeaeb2; }
    .whatsnew .badge-feat { background: #1c3a5c; color: #5ac8fa; }
    .whatsnew .badge-enh  { background: #1a3a2a; color: #30d158; }
    .whatsnew .badge-fix  { background: #3a2510; color: #ff9f0a; }
  }
</style>
</head>
<body>
)";

constexpr std::string_view bodyEnd = "\n</body>\n</html>";

} // namespace

std::string releaseNotesPage(std::string_view body, std::string_view themeCSS)
{
    std::string page(headStart);
    return page.append(themeCSS).append(headEnd).append(body).append(bodyEnd);
}

} // namespace corvane
