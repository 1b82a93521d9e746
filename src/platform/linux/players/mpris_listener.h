#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QTimer>
#include <QVariantMap>
#include <chrono>
#include <functional>
#include <map>
#include <string>

#include "platform/players.h"

namespace Corvetape {

/// What a listener reports, on its own thread.
struct MprisNews {
    std::function<void(const PlayerReport&)> Changed;
    std::function<void(const std::string& player)> Gone;
};

/// Follows the players of one bus. Lives on a thread of its own, which may wait for the bus.
class MprisListener : public QObject {
    Q_OBJECT

 public:
    /// `address` is that of the bus. A player that does not answer within `answerLimit` counts as one that
    /// says nothing.
    MprisListener(QString address, std::chrono::milliseconds answerLimit, MprisNews news);
    ~MprisListener() override;
    MprisListener(const MprisListener&) = delete;
    MprisListener& operator=(const MprisListener&) = delete;

    /// Connects, and asks who is there. Without a bus it tries again from time to time.
    void Begin();

 private slots:
    void OwnerChanged(const QDBusMessage& signal);
    void PropertiesChanged(const QDBusMessage& signal);
    void Disconnected();

 private:
    struct Player {
        QString Owner;  ///< unique name of the connection that it speaks through
        PlayerReport Report;
        bool Asking = false;    ///< an answer is awaited
        bool AskAgain = false;  ///< something has changed since it was asked
        bool PassedOn = false;
    };
    using Answered = std::function<void(const QDBusMessage&)>;

    /// Begins or ends to follow the signals of the bus. False if one of them cannot be followed.
    bool Follow(bool begin);

    /// Lets go of the bus. Nothing of it comes any more.
    void Leave();
    void Call(const QDBusMessage& call, const Answered& answered);
    void AskForNames();
    void AskForOwner(const QString& name);
    void Adopt(const QString& name, const QString& owner);
    void AskForProperties(const QString& name);
    void AskForPositions();
    void TakePosition(const QString& name, const QString& owner, qint64 askedAt, const QDBusMessage& answer);
    void TakeAnswer(const QString& name, const QString& owner, const QDBusMessage& answer);
    void Take(Player& player, const QVariantMap& properties);
    void PassOn(Player& player, PlayerReport report);
    void Forget(const QString& name);

    const QString Address;
    const QString ConnectionName;
    const std::chrono::milliseconds AnswerLimit;
    const MprisNews News;
    QDBusConnection Bus;
    QTimer Again;
    QTimer Positions;                 ///< nobody signals how far a piece has played
    std::map<QString, Player> Known;  ///< by bus name
};

}  // namespace Corvetape
