#include "support/ScriptedHttpClient.h"

#include <algorithm>
#include <optional>

namespace corvane::testing {

class ScriptedHttpClient::UntilAnswered {
public:
    UntilAnswered(ScriptedHttpClient& client, std::size_t index) : client_(client), index_(index) {}
    UntilAnswered(const UntilAnswered&) = delete;
    UntilAnswered& operator=(const UntilAnswered&) = delete;
    ~UntilAnswered() { std::erase(client_.waiting_, this); }

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter)
    {
        waiter_ = waiter;
        client_.waiting_.push_back(this);
    }
    Answer await_resume() { return std::move(*answer_); }

    std::size_t index() const { return index_; }
    void resume(Answer answer)
    {
        answer_ = std::move(answer);
        waiter_.resume();
    }

private:
    ScriptedHttpClient& client_;
    std::size_t index_;
    std::coroutine_handle<> waiter_;
    std::optional<Answer> answer_;
};

Task<ScriptedHttpClient::Answer> ScriptedHttpClient::send(HttpRequest request)
{
    const auto index = requests_.size();
    requests_.push_back(std::move(request));
    if (respond)
        co_return respond(requests_[index]);
    auto answer = co_await UntilAnswered(*this, index);
    co_return answer;
}

Task<Result<int>> ScriptedHttpClient::download(Url url, ByteSink* sink, DownloadObserver observer)
{
    HttpRequest request{.url = std::move(url)};
    const auto answer = co_await send(std::move(request));
    if (!answer)
        co_return std::unexpected(answer.error());
    const std::string_view body = answer->body;
    DownloadProgress progress{.total = body.size()};
    for (const auto piece : {body.substr(0, body.size() / 2), body.substr(body.size() / 2)}) {
        if (!answer->isSuccess() || piece.empty())
            continue;
        auto taken = sink->write(piece);
        if (!taken)
            co_return std::unexpected(taken.error());
        progress.received += piece.size();
        if (observer)
            observer(progress);
    }
    co_return answer->status;
}

bool ScriptedHttpClient::answer(std::size_t index, Answer answer)
{
    const auto found = std::ranges::find(waiting_, index, &UntilAnswered::index);
    if (found == waiting_.end())
        return false;
    auto* waiting = *found;
    waiting_.erase(found);
    waiting->resume(std::move(answer));
    return true;
}

} // namespace corvane::testing
