#pragma once

#include <QJsonDocument>
#include <chrono>
#include <memory>
#include <optional>

#include "platform/linux/browser/devtools_thread.h"

namespace Corvetape {

/// Counts the time that is spent on waiting for one party in one poll, at most 200 ms.
class Patience {
 public:
    static constexpr std::chrono::milliseconds Limit{200};

    void BeginPoll() { Spent = std::chrono::nanoseconds::zero(); }

    /// The answer of `ask`, waited for as long as there is patience left. Nothing, and nothing asked, if the
    /// party owes an answer or the limit is reached.
    template <typename Ask>
    std::optional<QJsonDocument> Await(Ask ask) {
        if (Owed && !Owed->Settled()) return std::nullopt;
        Owed.reset();
        const std::chrono::nanoseconds left = Limit - Spent;
        if (left <= std::chrono::nanoseconds::zero()) return std::nullopt;
        const auto begin = std::chrono::steady_clock::now();
        const std::shared_ptr<DevToolsAnswer> answer = ask();
        std::optional<QJsonDocument> result = answer->Wait(left);
        Spent += std::chrono::steady_clock::now() - begin;
        if (!answer->Settled()) Owed = answer;
        return result;
    }

 private:
    std::chrono::nanoseconds Spent{0};
    std::shared_ptr<DevToolsAnswer> Owed;  ///< a question of an earlier time
};

}  // namespace Corvetape
