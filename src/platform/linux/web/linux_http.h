#pragma once

#include <chrono>
#include <memory>

#include "platform/event_loop.h"
#include "platform/http.h"

namespace Corvetape {

class WebRequest;

/// Fetches from the web with plain requests, and from files of this machine: file addresses and absolute
/// paths. No cookies, no credentials, no cache; at most 5 redirects. An answer that is not whole within the
/// time limit, but for the limit of its size, has failed. The transfer of a body that reaches the limit of
/// its size is dropped, as is an answer whose headers exceed 64 KiB.
///
/// Of files only regular ones are read, on a thread of their own: a disk that hangs is not waited for.
class LinuxHttp : public Http {
 public:
    /// `loop` outlives it.
    explicit LinuxHttp(EventLoop& loop, std::chrono::milliseconds timeLimit = std::chrono::seconds(15));
    ~LinuxHttp() override;
    LinuxHttp(const LinuxHttp&) = delete;
    LinuxHttp& operator=(const LinuxHttp&) = delete;

    void Get(const std::string& address, size_t limit,
             std::function<void(const HttpAnswer&)> answered) override;
    void Cancel() override;

 private:
    struct FileRead;

    void ReadFile(const std::string& path, size_t limit);
    void Answer(const HttpAnswer& answer);
    void AnswerLater(const HttpAnswer& answer);

    EventLoop& Loop;
    const std::chrono::milliseconds TimeLimit;
    std::unique_ptr<LoopTimer> Timer;
    std::unique_ptr<WebRequest> Requests;
    std::shared_ptr<FileRead> Reading;
    std::shared_ptr<int> Present;  ///< stands for the request under way; its answers are valid while it does
    std::function<void(const HttpAnswer&)> Answered;
};

}  // namespace Corvetape
