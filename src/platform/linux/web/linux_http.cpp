#include "platform/linux/web/linux_http.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/linux/files/linux_files.h"
#include "platform/linux/web/web_request.h"

namespace Corvetape {
namespace {

/// Files whose disks hang, at most; further ones are refused rather than waited for.
constexpr int MostReads = 4;

/// The path of a file of this machine; nothing for addresses of other things.
std::optional<std::string> FilePath(const std::string& address) {
    if (address.starts_with('/')) return address;
    const QUrl url(QString::fromStdString(address));
    if (url.scheme() != QStringLiteral("file")) return std::nullopt;
    if (!url.host().isEmpty() && url.host() != QStringLiteral("localhost")) return std::nullopt;
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8()).toStdString();
}

}  // namespace

/// What reading threads have in common with the object, which they may outlive.
struct LinuxHttp::FileRead {
    std::mutex Lock;
    EventLoop* Loop = nullptr;  ///< null when the object has gone
    int Running = 0;
};

LinuxHttp::LinuxHttp(EventLoop& loop, std::chrono::milliseconds timeLimit)
    : Loop(loop),
      TimeLimit(timeLimit),
      Timer(loop.NewTimer([this] { Answer({}); })),
      Reading(std::make_shared<FileRead>()) {
    Reading->Loop = &loop;
}

LinuxHttp::~LinuxHttp() {
    Cancel();
    const std::lock_guard guard(Reading->Lock);
    Reading->Loop = nullptr;
}

void LinuxHttp::Get(const std::string& address, size_t limit,
                    std::function<void(const HttpAnswer&)> answered) {
    Cancel();
    Answered = std::move(answered);
    Present = std::make_shared<int>();
    Timer->Start(TimeLimit, TimerPrecision::Coarse);
    if (const auto path = FilePath(address)) {
        ReadFile(*path, limit);
        return;
    }
    const QUrl url(QString::fromStdString(address));
    if (!WebRequest::Takes(url)) {
        AnswerLater({});
        return;
    }
    if (!Requests)
        Requests = std::make_unique<WebRequest>([this](const HttpAnswer& answer) { Answer(answer); });
    Requests->Begin(url, limit);
}

void LinuxHttp::Cancel() {
    Timer->Stop();
    Present.reset();
    Answered = {};
    if (Requests) Requests->Drop();
}

void LinuxHttp::ReadFile(const std::string& path, size_t limit) {
    const std::lock_guard guard(Reading->Lock);
    if (path.find('\0') != std::string::npos || Reading->Running >= MostReads) {
        AnswerLater({});
        return;
    }
    const auto read = [this, path, limit, shared = Reading, present = std::weak_ptr<int>(Present)] {
        FileOr<std::string> content = LinuxFiles().ReadPart(path, 0, limit);
        const HttpAnswer answer{!content, std::move(content).value_or("")};
        const std::lock_guard lock(shared->Lock);
        --shared->Running;
        if (shared->Loop == nullptr) return;
        shared->Loop->Post([this, present, answer] {
            if (!present.expired()) Answer(answer);
        });
    };
    try {
        std::thread(read).detach();
        ++Reading->Running;
    } catch (const std::system_error&) {
        AnswerLater({});
    }
}

void LinuxHttp::AnswerLater(const HttpAnswer& answer) {
    Loop.Post([this, answer, present = std::weak_ptr<int>(Present)] {
        if (!present.expired()) Answer(answer);
    });
}

void LinuxHttp::Answer(const HttpAnswer& answer) {
    const auto answered = std::exchange(Answered, {});
    Cancel();
    if (answered) answered(answer);
}

}  // namespace Corvetape
