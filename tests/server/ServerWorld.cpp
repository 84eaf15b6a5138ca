#include "server/ServerWorld.h"

#include "base/Text.h"

#include <libsoup/soup.h>

namespace corvane::server::testing {
namespace {

Database open(const TemporaryFolder& folder)
{
    return Database::open(folder.path() / "server.db", Database::Opening::createWhenMissing).value();
}

struct Exchange {
    bool isDone = false;
    GBytes* body = nullptr;
};

void onAnswer(GObject* client, GAsyncResult* result, void* data)
{
    auto& exchange = *static_cast<Exchange*>(data);
    exchange.body = soup_session_send_and_read_finish(SOUP_SESSION(client), result, nullptr);
    exchange.isDone = true;
}

Reply replyOf(SoupMessage* message, GBytes* body)
{
    Reply reply;
    if (body == nullptr)
        return reply;
    reply.status = soup_message_get_status(message);
    soup_message_headers_foreach(
        soup_message_get_response_headers(message),
        [](const char* name, const char* value, void* headers) {
            (*static_cast<std::map<std::string, std::string>*>(headers))[lowercased(name)] = value;
        },
        &reply.headers);
    gsize size = 0;
    if (const auto* bytes = static_cast<const char*>(g_bytes_get_data(body, &size)))
        reply.body.assign(bytes, size);
    g_bytes_unref(body);
    return reply;
}

} // namespace

ServerWorld::ServerWorld() : database_(open(data_)), server_(open(data_), publish_.path(), now())
{
    address_ = server_.listen(0, std::nullopt).value();
}

Now ServerWorld::now()
{
    return [this] { return std::chrono::floor<std::chrono::seconds>(clock_.now()); };
}

Reply ServerWorld::send(const std::string& method, const std::string& path, const std::string& body,
                        const Headers& headers)
{
    SoupSession* client = soup_session_new();
    SoupMessage* message = soup_message_new(method.c_str(), (origin() + path).c_str());
    soup_message_add_flags(message, SOUP_MESSAGE_NO_REDIRECT);
    for (const auto& [name, value] : headers)
        soup_message_headers_replace(soup_message_get_request_headers(message), name.c_str(), value.c_str());
    if (!body.empty()) {
        GBytes* bytes = g_bytes_new(body.data(), body.size());
        soup_message_set_request_body_from_bytes(message, nullptr, bytes);
        g_bytes_unref(bytes);
    }
    Exchange exchange;
    soup_session_send_and_read_async(client, message, G_PRIORITY_DEFAULT, nullptr, onAnswer, &exchange);
    while (!exchange.isDone)
        g_main_context_iteration(nullptr, TRUE);
    auto reply = replyOf(message, exchange.body);
    g_object_unref(message);
    g_object_unref(client);
    return reply;
}

Reply ServerWorld::post(const std::string& path, const Json& body, Headers headers)
{
    headers.emplace("Content-Type", "application/json");
    return send("POST", path, compactJson(body), headers);
}

void ServerWorld::registerDevice(const std::string& id)
{
    const auto reply =
        post("/api/devices/register",
             {{"installId", id}, {"platform", "macos"}, {"product", "corvane"}, {"appVersion", "0.75.0"}});
    EXPECT_EQ(reply.status, 200U) << reply.body;
}

ServerWorld::Owner ServerWorld::makeProfile(const std::string& name)
{
    const auto reply = post("/api/profiles", {{"name", name}});
    EXPECT_EQ(reply.status, 201U) << reply.body;
    const auto cookie = reply.headers.at("set-cookie");
    return {{{"Cookie", cookie.substr(0, cookie.find(';'))}}, reply.json().value("bindingToken", "")};
}

Reply ServerWorld::bind(const std::string& token, const std::string& id)
{
    return post("/api/devices/bind", {{"installId", id}, {"platform", "macos"}, {"bindingToken", token}});
}

Json ServerWorld::pending(const std::string& id)
{
    const auto reply = get("/api/notifications/pending?installId=" + id);
    EXPECT_EQ(reply.status, 200U) << reply.body;
    return reply.json().value("notifications", Json());
}

} // namespace corvane::server::testing
