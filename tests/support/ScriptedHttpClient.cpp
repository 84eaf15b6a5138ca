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
