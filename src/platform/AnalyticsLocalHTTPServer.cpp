#include "platform/AnalyticsLocalHTTPServer.h"

#include "platform/GLibHandle.h"

#include <atomic>
#include <future>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace corvane {
namespace {

using Outcome = std::expected<Url, LoopbackFailure>;

/// The system keeps 15 characters of a thread's name.
const char* threadName()
{
    static constexpr std::string_view label = AnalyticsLocalHTTPServer::queueLabel;
    return label.substr(label.rfind('.') + 1).data();
}

std::string answerWith(std::string_view html)
{
    return fmt::format("HTTP/1.1 200 OK\r\n"
                       "Content-Type: text/html; charset=utf-8\r\n"
                       "Content-Length: {}\r\n"
                       "Connection: close\r\n"
                       "Cache-Control: no-store\r\n"
                       "\r\n"
                       "{}",
                       html.size(), html);
}

} // namespace

/// One run of the server: the thread, from its start to its end. The destructor waits for it.
class AnalyticsLocalHTTPServer::Queue {
public:
    /// `started` runs once in the main loop when the outcome is there, never after this object's end.
    Queue(const AnalyticsLocalHTTPServer& server, std::string answer, GSourceFunc started, gpointer data)
        : address_(server.address_), limits_(server.limits_), answer_(std::move(answer))
    {
        g_source_set_priority(started_.get(), G_PRIORITY_DEFAULT);
        g_source_set_callback(started_.get(), started, data, nullptr);
        GErrorSlot error;
        thread_ = g_thread_try_new(threadName(), run, this, error.out());
        if (thread_ == nullptr) {
            tell(std::unexpected(LoopbackFailure{
                .domain = g_quark_to_string(error->domain), .code = error->code, .description = error->message}));
        }
    }
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;
    ~Queue()
    {
        isStopping_ = true;
        g_main_context_wakeup(context_.get());
        if (thread_ != nullptr)
            g_thread_join(thread_);
        g_source_destroy(started_.get());
    }

    /// To be asked once, by `started`.
    Outcome outcome() { return outcome_.get_future().get(); }

private:
    static gpointer run(gpointer self)
    {
        auto& queue = *static_cast<Queue*>(self);
        g_main_context_push_thread_default(queue.context_.get());
        queue.serve();
        // What was cancelled just now reports back.
        while (g_main_context_iteration(queue.context_.get(), FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(queue.context_.get());
        return nullptr;
    }

    void serve()
    {
        OnePageListener listener(answer_, limits_);
        const auto port = listener.listen(address_);
        tell(port ? pageAddress(*port) : std::unexpected(port.error()));
        while (port && !isStopping_)
            g_main_context_iteration(context_.get(), TRUE);
    }

    void tell(Outcome outcome)
    {
        outcome_.set_value(std::move(outcome));
        g_source_attach(started_.get(), mainContext_.get());
    }

    const std::string address_;
    const OnePageListener::Limits limits_;
    const std::string answer_;
    const GMainContextPtr mainContext_{g_main_context_ref(g_main_context_default())};
    const GMainContextPtr context_{g_main_context_new()};
    const std::unique_ptr<GSource, FreeWith<g_source_unref>> started_{g_idle_source_new()};
    std::promise<Outcome> outcome_;
    std::atomic<bool> isStopping_ = false;
    GThread* thread_ = nullptr; // null when it could not be started
};

AnalyticsLocalHTTPServer::AnalyticsLocalHTTPServer(std::string address, OnePageListener::Limits limits)
    : address_(std::move(address)), limits_(limits)
{
}

AnalyticsLocalHTTPServer::~AnalyticsLocalHTTPServer() = default;

void AnalyticsLocalHTTPServer::startServer(std::string html, Completion completion)
{
    stopServer();
    completion_ = std::move(completion);
    const auto start = [](gpointer self) -> gboolean {
        static_cast<AnalyticsLocalHTTPServer*>(self)->started();
        return G_SOURCE_REMOVE;
    };
    queue_ = std::make_unique<Queue>(*this, answerWith(html), start, this);
}

void AnalyticsLocalHTTPServer::stopServer()
{
    queue_.reset();
    completion_ = nullptr;
}

void AnalyticsLocalHTTPServer::started()
{
    const auto completion = std::exchange(completion_, nullptr);
    const auto outcome = queue_->outcome();
    if (completion)
        completion(outcome); // last: it may start, stop or destroy this server
}

Outcome AnalyticsLocalHTTPServer::pageAddress(std::uint16_t port)
{
    auto address = Url::parse(fmt::format("http://127.0.0.1:{}/analytics.html", port));
    if (port == 0 || !address) {
        return std::unexpected(
            LoopbackFailure{.domain = "AnalyticsLocalHTTPServer", .code = 2, .description = "Invalid listener port"});
    }
    return std::move(*address);
}

} // namespace corvane
