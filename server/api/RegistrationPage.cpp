#include "api/RegistrationPage.h"

#include "pages/registrationCss.h"
#include "pages/registrationHtml.h"
#include "pages/registrationJs.h"
#include "publishing/ContentType.h"

namespace corvane::server {
namespace {

constexpr const char* policy = "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
                               "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

void addDocument(Router& router, const char* path, const char* text)
{
    router.add("GET", path, [path, text](const HttpRequest&) {
        return HttpAnswer::text(contentTypeOf(path), text)
            .with("Cache-Control", "no-cache")
            .with("Content-Security-Policy", policy)
            .with("X-Frame-Options", "DENY");
    });
}

} // namespace

void RegistrationPage::addTo(Router& router)
{
    addDocument(router, "/registration.html", pages::registrationHtml);
    addDocument(router, "/registration.css", pages::registrationCss);
    addDocument(router, "/registration.js", pages::registrationJs);
}

} // namespace corvane::server
