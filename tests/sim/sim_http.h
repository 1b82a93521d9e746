#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_loop.h"
#include "platform/http.h"

namespace Corvetape {

/// A web made of a list of addresses. Each answer takes the same time.
class SimHttp : public Http {
 public:
    /// The loop outlives it.
    explicit SimHttp(EventLoop& loop) : Timer(loop.NewTimer([this] { Answer(); })) {}

    void Get(const std::string& address, size_t limit,
             std::function<void(const HttpAnswer&)> answered) override {
        Asked.push_back(address);
        Limit = limit;
        Answered = std::move(answered);
        Timer->Start(Delay, TimerPrecision::Precise);
    }

    void Cancel() override {
        Timer->Stop();
        Answered = nullptr;
    }

    std::map<std::string, std::string> Bodies;  ///< by address; there is nothing at others
    std::vector<std::string> Asked;             ///< all addresses that were asked for, in their order
    std::chrono::milliseconds Delay{300};

 private:
    void Answer() {
        Timer->Stop();
        const auto found = Bodies.find(Asked.back());
        HttpAnswer answer;
        answer.Failed = found == Bodies.end();
        if (!answer.Failed) answer.Body = found->second.substr(0, Limit);
        const auto answered = std::exchange(Answered, nullptr);
        if (answered) answered(answer);
    }

    std::unique_ptr<LoopTimer> Timer;
    std::function<void(const HttpAnswer&)> Answered;
    size_t Limit = 0;
};

}  // namespace Corvetape
