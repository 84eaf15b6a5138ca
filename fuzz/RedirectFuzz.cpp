#include "Target.h"
#include "base/Json.h"
#include "catalogue/SiteDocument.h"
#include "catalogue/SiteListFetcher.h"
#include "support/ManualClock.h"
#include "support/RunTask.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

namespace corvane::fuzz {
namespace {

constexpr std::string_view catalogue = R"([{"service":"A","url":"https://a.example/","description":"a"}])";

/// A publishing server whose usual catalogue is the first document, and which has the second everywhere else.
class Publisher {
public:
    Publisher(std::string_view first, std::string_view second)
    {
        http.respond = [this, first, second](const HttpRequest&) {
            return HttpResponse{.status = 200, .body = std::string(http.requests().size() == 1 ? first : second)};
        };
    }

    Result<SiteListFetcher::PublishedList> fetch()
    {
        return testing::resultOf(fetcher.fetchSites(std::nullopt)).value();
    }

    /// Fetches what stands beside a catalogue at `address`.
    void fetchRest(const std::string& address)
    {
        testing::resultOf(fetcher.fetchWhatsNewHTML(address, checkTime(clock)));
        testing::resultOf(fetcher.fetchArchives(address, checkTime(clock)));
    }

    testing::ScriptedHttpClient http;
    testing::ManualClock clock;
    SiteListFetcher fetcher{http, clock, testing::endpointsAt()};
};

std::optional<std::string> addressIn(std::string_view bytes)
{
    const auto document = parseJson(bytes);
    const auto* text = document ? textOf(member(*document, "source_url")) : nullptr;
    return text == nullptr || text->empty() ? std::nullopt : std::optional(*text);
}

} // namespace

void readInput(std::string_view bytes)
{
    Publisher publisher(bytes, catalogue);
    const auto list = publisher.fetch();
    const auto& requests = publisher.http.requests();
    const auto elsewhere = addressIn(bytes);
    if (!elsewhere) {
        require(requests.size() == 1, "a document that names no address is the last");
        require(list.has_value() == decodeSites(bytes).has_value(), "it is the catalogue, if any");
        require(list || list.error().message == "Remote sites.json could not be parsed.", "or it is unreadable");
        return;
    }
    const auto wanted = Url::parse(cacheBusted(*elsewhere, checkTime(publisher.clock)));
    require(requests.size() == (wanted ? 2 : 1), "an address that a document names is asked once");
    require(list.has_value() == wanted.has_value(), "the catalogue comes from there");
    if (!list)
        return;
    require(requests[1].url == *wanted && list->address == *elsewhere, "the address is the one that was named");
    require(list->document == catalogue && list->sites.size() == 1, "the catalogue is the one found there");
    publisher.fetchRest(list->address);

    Publisher circle(bytes, bytes);
    require(!circle.fetch() && circle.http.requests().size() == 2, "nobody is led in a circle");
}

} // namespace corvane::fuzz
