#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/documents.h"
#include "support/live_session.h"

namespace Corvetape {

/// Asks the first page of a browser. A page has so little time to answer that a busy machine may let a poll
/// go by without: whatever is wanted of it is asked for in new polls until there is an answer.
class PageTest : public testing::Test {
 protected:
    bool WaitFor(const std::function<bool()>& condition) {
        return Session.WaitFor(condition, std::chrono::seconds(60));
    }

    /// The first page's document in a new poll; nothing if browser or page do not answer in time.
    std::shared_ptr<Document> Poll() {
        Asked->BeginPoll();
        const auto list = Asked->Pages();
        return list.empty() ? nullptr : Asked->Open(list.front());
    }

    /// What the first page says, at last. Throws if it says nothing at all.
    template <typename Question>
    auto Answer(Question question) {
        decltype(question(std::declval<Document&>())) answer;
        const bool answered = WaitFor([&] {
            const auto document = Poll();
            if (document) answer = question(*document);
            return static_cast<bool>(answer);
        });
        if (!answered) throw std::runtime_error("the page does not answer");
        return answer;
    }

    std::string Title() {
        return *Answer([](Document& page) { return page.Title(); });
    }

    ElementText Element(const MemberKey& key) {
        return *Answer([&](Document& page) { return page.Element(key); });
    }

    /// What a script of the page gives.
    std::string Said(const std::string& script) {
        return *Answer([&](Document& page) { return page.Evaluate(script); });
    }

    /// True if nothing comes of it in a poll in which the page answers afterwards.
    template <typename Question>
    bool IsNothing(Question question) {
        return WaitFor([&] {
            const auto document = Poll();
            return document && !question(*document) && document->Evaluate("1 + 1") == "2";
        });
    }

    bool IsNoElement(const MemberKey& key) {
        return IsNothing([&](Document& page) { return page.Element(key); });
    }

    bool FailsToSay(const std::string& script) {
        return IsNothing([&](Document& page) { return page.Evaluate(script); });
    }

    bool FailsToRun(const std::string& script) {
        return IsNothing([&](Document& page) { return page.Run(script); });
    }

    LiveSession Session;
    Documents* Asked = nullptr;  ///< the browser
};

}  // namespace Corvetape
