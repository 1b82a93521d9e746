#pragma once

#include <QJsonObject>
#include <QString>
#include <QThread>
#include <memory>

#include "platform/linux/browser/devtools_thread.h"
#include "platform/linux/processes/child.h"

namespace Corvetape {

class RadioLinkWorker;

/// Whoever hears the browser. Called on the thread of the link.
class RadioLinkNews {
 public:
    virtual ~RadioLinkNews() = default;

    /// A line that is no answer.
    virtual void Said(const QJsonObject& message) = 0;

    /// The browser has gone, or is not listened to any more. The last that is said of it.
    virtual void Ended() = 0;
};

/// The connection to a browser process that this program has started, on a thread of its own: whoever waits
/// for an answer needs no event loop for it.
class RadioLink {
 public:
    /// Takes over this end of the socket pair. The child is collected when it has ended, and killed if it
    /// does not end soon after its connection has. `news` outlives the link.
    RadioLink(int socket, pid_t child, std::shared_ptr<RadioLinkNews> news);

    /// Closes the connection, upon which the browser ends. Answers that are still owed are settled as
    /// failures.
    ~RadioLink();
    RadioLink(const RadioLink&) = delete;
    RadioLink& operator=(const RadioLink&) = delete;

    void Send(const QJsonObject& message);

    /// Evaluates a script in the page. The answer is an object with the member "value".
    std::shared_ptr<DevToolsAnswer> Evaluate(const QString& script);

 private:
    QThread Thread;
    std::unique_ptr<RadioLinkWorker> Worker;  ///< works on Thread
};

}  // namespace Corvetape
