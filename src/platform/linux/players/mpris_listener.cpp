#include "platform/linux/players/mpris_listener.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEvent>
#include <QStringList>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <utility>

#include "platform/linux/players/mpris_values.h"

namespace Corvetape {
namespace {

constexpr auto RetryAfter = std::chrono::seconds(5);
constexpr auto AskForPositionsEvery = std::chrono::seconds(1);

/// The beginning of a piece moves by less than this if nobody has jumped or paused.
constexpr qint64 PositionIsExactMs = 150;

/// More than anybody runs; a program that claims names without end is not followed for ever.
constexpr size_t MostPlayers = 64;

const QString BusService = QStringLiteral("org.freedesktop.DBus");
const QString BusPath = QStringLiteral("/org/freedesktop/DBus");
const QString PlayerPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString PlayerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString PropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QString NextConnectionName() {
    static std::atomic<int> count = 0;  // Qt keeps connections by name
    return QStringLiteral("corvetape-players-%1").arg(++count);
}

QDBusMessage BusCall(const QString& method) {
    return QDBusMessage::createMethodCall(BusService, BusPath, BusService, method);
}

/// Milliseconds of the monotonic clock.
qint64 Now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

QString TextAt(const QList<QVariant>& arguments, qsizetype index) {
    return index < arguments.size() ? arguments[index].toString() : QString();
}

}  // namespace

MprisListener::MprisListener(QString address, std::chrono::milliseconds answerLimit, MprisNews news)
    : Address(std::move(address)),
      ConnectionName(NextConnectionName()),
      AnswerLimit(answerLimit),
      News(std::move(news)),
      Bus(ConnectionName) {
    Again.setSingleShot(true);
    Again.setInterval(RetryAfter);
    connect(&Again, &QTimer::timeout, this, [this] { Begin(); });
    Positions.setInterval(AskForPositionsEvery);
    connect(&Positions, &QTimer::timeout, this, [this] { AskForPositions(); });
    Positions.start();
}

MprisListener::~MprisListener() {
    Leave();
}

void MprisListener::Leave() {
    if (Bus.isConnected())
        static_cast<void>(Follow(false));  // rules that were never made cannot be taken back
    // A signal on its way holds the connection, but only while the connection itself is held: one that is
    // taken off the bus in between would be released a second time.
    QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
    Bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(ConnectionName);
}

void MprisListener::Begin() {
    Leave();  // what may be left of a bus that has ended
    Bus = QDBusConnection::connectToBus(Address, ConnectionName);
    // Signals are asked for before the names, so that none is missed between the two.
    if (!Bus.isConnected() || !Follow(true)) {
        Again.start();
        return;
    }
    AskForNames();
}

bool MprisListener::Follow(bool begin) {
    // No sender is named in the rules: Qt would wait for an answer of the bus for each of them.
    const auto rule = [&](const QString& path, const QString& interface, const QString& name,
                          const QStringList& match, const char* slot) {
        return begin ? Bus.connect(QString(), path, interface, name, match, QString(), this, slot)
                     : Bus.disconnect(QString(), path, interface, name, match, QString(), this, slot);
    };
    const bool owners =
        rule(BusPath, BusService, QStringLiteral("NameOwnerChanged"), {}, SLOT(OwnerChanged(QDBusMessage)));
    const bool changes = rule(PlayerPath, PropertiesInterface, QStringLiteral("PropertiesChanged"),
                              {PlayerInterface}, SLOT(PropertiesChanged(QDBusMessage)));
    const bool end =
        rule(QStringLiteral("/org/freedesktop/DBus/Local"), QStringLiteral("org.freedesktop.DBus.Local"),
             QStringLiteral("Disconnected"), {}, SLOT(Disconnected()));
    return owners && changes && end;
}

void MprisListener::Call(const QDBusMessage& call, const Answered& answered) {
    const auto limit = static_cast<int>(AnswerLimit.count());
    // Belongs to the listener, so that no answer comes after its end.
    auto watcher = std::make_unique<QDBusPendingCallWatcher>(Bus.asyncCall(call, limit), this);
    QDBusPendingCallWatcher* const waiting = watcher.release();
    connect(waiting, &QDBusPendingCallWatcher::finished, this, [waiting, answered] {
        waiting->deleteLater();
        answered(waiting->reply());
    });
}

void MprisListener::AskForNames() {
    Call(BusCall(QStringLiteral("ListNames")), [this](const QDBusMessage& answer) {
        if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
            Disconnected();  // a bus that does not answer is looked for again like one that has ended
            return;
        }
        for (const QString& name : answer.arguments().constFirst().toStringList()) {
            if (IsPlayerName(name)) AskForOwner(name);
        }
    });
}

void MprisListener::AskForOwner(const QString& name) {
    QDBusMessage call = BusCall(QStringLiteral("GetNameOwner"));
    call << name;
    Call(call, [this, name](const QDBusMessage& answer) {
        // It may have gone meanwhile, or a signal may have reported it earlier.
        if (answer.type() == QDBusMessage::ReplyMessage) Adopt(name, TextAt(answer.arguments(), 0));
    });
}

void MprisListener::OwnerChanged(const QDBusMessage& signal) {
    const QString name = TextAt(signal.arguments(), 0);
    if (signal.service() != BusService || !IsPlayerName(name)) return;
    const QString owner = TextAt(signal.arguments(), 2);
    if (owner.isEmpty()) {
        Forget(name);
    } else {
        Adopt(name, owner);
    }
}

void MprisListener::Adopt(const QString& name, const QString& owner) {
    const auto known = Known.find(name);
    if (known != Known.end() && known->second.Owner == owner) return;
    if (known == Known.end() && Known.size() >= MostPlayers) return;
    // Another one under the same name is another player.
    Forget(name);
    Player& player = Known[name];
    player.Owner = owner;
    player.Report.Player = name.toStdString();
    AskForProperties(name);
}

void MprisListener::AskForProperties(const QString& name) {
    Player& player = Known[name];
    player.AskAgain = player.Asking;
    if (player.Asking) return;
    player.Asking = true;
    QDBusMessage call = QDBusMessage::createMethodCall(player.Owner, PlayerPath, PropertiesInterface,
                                                       QStringLiteral("GetAll"));
    call << PlayerInterface;
    Call(call,
         [this, name, owner = player.Owner](const QDBusMessage& answer) { TakeAnswer(name, owner, answer); });
}

void MprisListener::TakeAnswer(const QString& name, const QString& owner, const QDBusMessage& answer) {
    const auto known = Known.find(name);
    if (known == Known.end() || known->second.Owner != owner) return;
    Player& player = known->second;
    player.Asking = false;
    const bool said = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
    // One that does not answer is there all the same.
    Take(player, said ? BusMap(answer.arguments().constFirst()) : QVariantMap());
    if (player.AskAgain) AskForProperties(name);
}

void MprisListener::PropertiesChanged(const QDBusMessage& signal) {
    const QList<QVariant> arguments = signal.arguments();
    if (arguments.size() < 3 || TextAt(arguments, 0) != PlayerInterface) return;
    const QVariantMap changed = BusMap(arguments[1]);
    const QStringList untold = arguments[2].toStringList();
    const bool ask =
        untold.contains(QStringLiteral("Metadata")) || untold.contains(QStringLiteral("PlaybackStatus"));
    for (auto& [name, player] : Known) {
        if (player.Owner != signal.service()) continue;
        Take(player, changed);
        if (ask) AskForProperties(name);
    }
}

void MprisListener::Take(Player& player, const QVariantMap& properties) {
    PlayerReport report = WithProperties(player.Report, properties);
    // Another piece, or one that goes on after a pause, has begun at another time. Browsers call all pieces
    // of a page by one name.
    const auto piece = [](const PlayerReport& of) {
        return std::tie(of.TrackId, of.Address, of.Artist, of.Title, of.LengthMs);
    };
    const bool moved = report.Playing != player.Report.Playing || piece(report) != piece(player.Report);
    if (moved || !report.Playing) report.BeganAtMs.reset();
    PassOn(player, std::move(report));
    if (moved && player.Report.Playing) AskForPositions();
}

void MprisListener::AskForPositions() {
    for (const auto& [name, player] : Known) {
        if (!player.Report.Playing) continue;
        QDBusMessage call = QDBusMessage::createMethodCall(player.Owner, PlayerPath, PropertiesInterface,
                                                           QStringLiteral("Get"));
        call << PlayerInterface << QStringLiteral("Position");
        Call(call, [this, name = name, owner = player.Owner, asked = Now()](const QDBusMessage& answer) {
            TakePosition(name, owner, asked, answer);
        });
    }
}

void MprisListener::TakePosition(const QString& name, const QString& owner, qint64 askedAt,
                                 const QDBusMessage& answer) {
    const auto known = Known.find(name);
    const bool said = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
    if (known == Known.end() || known->second.Owner != owner || !said) return;
    const QVariant value = answer.arguments().constFirst().value<QDBusVariant>().variant();
    bool isNumber = false;
    constexpr qint64 microseconds = 1000;
    const qint64 position = value.toLongLong(&isNumber) / microseconds;
    PlayerReport report = known->second.Report;
    if (!isNumber || position < 0 || !report.Playing) return;
    const qint64 began = (askedAt + Now()) / 2 - position;
    if (report.BeganAtMs && std::abs(began - *report.BeganAtMs) <= PositionIsExactMs) return;
    report.BeganAtMs = began;
    PassOn(known->second, std::move(report));
}

void MprisListener::PassOn(Player& player, PlayerReport report) {
    // Some players signal dozens of times a second that nothing has changed but their position.
    if (player.PassedOn && report == player.Report) return;
    player.PassedOn = true;
    player.Report = std::move(report);
    News.Changed(player.Report);
}

void MprisListener::Forget(const QString& name) {
    const auto known = Known.find(name);
    if (known == Known.end()) return;
    const bool passedOn = known->second.PassedOn;
    Known.erase(known);
    if (passedOn) News.Gone(name.toStdString());
}

void MprisListener::Disconnected() {
    while (!Known.empty()) Forget(Known.begin()->first);
    Again.start();
}

}  // namespace Corvetape
