#include "catalogue/PublishingClient.h"

#include "base/Text.h"
#include "catalogue/ArchiveIndex.h"

#include <utility>

namespace corvane {

Task<std::optional<std::string>> PublishingClient::fetch(std::string address, CheckTime time, BodyLimit limit) const
{
    const auto url = Url::parse(cacheBusted(address, time));
    if (!url)
        co_return std::nullopt;
    auto answer = co_await http_.send({.url = *url, .limit = limit});
    if (!answer)
        co_return std::nullopt;
    co_return std::move(answer->body);
}

Task<std::optional<std::string>> PublishingClient::fetchPage(std::string address, CheckTime time) const
{
    auto page = co_await fetch(std::move(address), time, BodyLimit::page);
    if (!page || page->empty() || !isValidUtf8(*page))
        co_return std::nullopt;
    co_return page;
}

Task<std::vector<ArchiveEntry>> PublishingClient::fetchArchives(std::string folder, CheckTime time) const
{
    const auto index = co_await fetch(folder + "index.json", time, BodyLimit::json);
    if (!index)
        co_return std::vector<ArchiveEntry>();
    co_return decodeArchiveIndex(*index, folder);
}

} // namespace corvane
