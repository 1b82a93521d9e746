#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QThread>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

namespace Corvetape {

class DevToolsWorker;

/// The answer to a question that is on its way.
class DevToolsAnswer {
 public:
    /// True when it has come, or will not come any more.
    bool Settled() const;

    /// Waits for it. Nothing if it does not come in time, or if the question failed.
    std::optional<QJsonDocument> Wait(std::chrono::nanoseconds limit);

    /// Called by the thread that asks; nothing for a failure.
    void Settle(std::optional<QJsonDocument> answer);

 private:
    mutable std::mutex Guard;
    std::condition_variable Changed;
    bool Known = false;
    std::optional<QJsonDocument> Content;
};

/// Asks browsers on this machine through their DevTools ports, on a thread of its own, so that whoever waits
/// for an answer needs no event loop for it and never handles other events meanwhile.
///
/// Only 127.0.0.1 is asked, without proxy, redirects and cookies. Answers beyond a few megabytes count as
/// failures. Connections to pages stay open for the next question.
class DevToolsThread {
 public:
    DevToolsThread();

    /// Ends the thread; answers that are still owed are settled as failures.
    ~DevToolsThread();
    DevToolsThread(const DevToolsThread&) = delete;
    DevToolsThread& operator=(const DevToolsThread&) = delete;

    /// Asks the browser at a port for a JSON document, as "/json/list".
    std::shared_ptr<DevToolsAnswer> Get(uint16_t port, const QString& path);

    /// Asks one page, or frame with a process of its own.
    std::shared_ptr<DevToolsAnswer> Ask(uint16_t port, const QString& target, const QString& method,
                                        const QJsonObject& parameters);

    /// Closes the connections of one port to all but these.
    void KeepOnly(uint16_t port, const std::set<QString>& targets);

 private:
    QThread Thread;
    std::unique_ptr<DevToolsWorker> Worker;  ///< works on Thread
};

}  // namespace Corvetape
