#include "platform/linux/players/mpris_adaptors.h"

#include <unistd.h>

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QUrl>
#include <utility>

#include "platform/linux/players/mpris_names.h"

namespace Corvetape {

namespace {

constexpr int AgainMs = 5000;

QString PlayerPath() {
    return QStringLiteral("/org/mpris/MediaPlayer2");
}

QString ConnectionNameOf(const void* owner) {
    return QStringLiteral("corvetape-presence-%1").arg(reinterpret_cast<quintptr>(owner));
}

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

QString StatusName(RecorderStatus status) {
    if (status == RecorderStatus::Recording) return QStringLiteral("Playing");
    return status == RecorderStatus::Listening ? QStringLiteral("Paused") : QStringLiteral("Stopped");
}

}  // namespace

MprisPresence::MprisPresence(QString address)
    : Address(std::move(address)), ConnectionName(ConnectionNameOf(this)), Bus(QString()) {
    Again.setSingleShot(true);
    Again.setInterval(AgainMs);
    connect(&Again, &QTimer::timeout, this, [this] { Begin(); });
}

MprisPresence::~MprisPresence() {
    Leave();
}

void MprisPresence::Leave() {
    Bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(ConnectionName);
}

void MprisPresence::Begin() {
    Leave();  // what may be left of a bus that has ended
    Bus = QDBusConnection::connectToBus(Address, ConnectionName);
    if (!Bus.isConnected()) return Again.start();
    Bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(Disconnected()));
    Bus.registerObject(PlayerPath(), this, QDBusConnection::ExportAdaptors);
    const QString name = QLatin1String(OwnPlayerName);
    if (!Bus.registerService(name)) Bus.registerService(name + QStringLiteral(".instance%1").arg(getpid()));
}

void MprisPresence::Disconnected() {
    Again.start();
}

QVariantMap MprisPresence::Metadata() const {
    QVariantMap piece;
    if (Shown.Artist.empty() && Shown.Title.empty()) return piece;
    const QDBusObjectPath track(QStringLiteral("/net/corvetape/song/%1").arg(Piece));
    piece.insert(QStringLiteral("mpris:trackid"), QVariant::fromValue(track));
    piece.insert(QStringLiteral("xesam:title"), Text(Shown.Title));
    piece.insert(QStringLiteral("xesam:artist"), QStringList{Text(Shown.Artist)});
    piece.insert(QStringLiteral("xesam:album"), Text(Shown.Album));
    const QUrl cover(Text(Shown.Cover), QUrl::StrictMode);
    if (cover.isValid() && !cover.isRelative())
        piece.insert(QStringLiteral("mpris:artUrl"), cover.toString());
    return piece;
}

void MprisPresence::Show(const PlayerDisplay& display) {
    if (display.Title != Shown.Title || display.Artist != Shown.Artist) ++Piece;
    Shown = display;
    if (!Bus.isConnected()) return;
    QDBusMessage signal = QDBusMessage::createSignal(
        PlayerPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
    const QVariantMap changed{{QStringLiteral("PlaybackStatus"), StatusName(Shown.Status)},
                              {QStringLiteral("Metadata"), Metadata()}};
    signal << QStringLiteral("org.mpris.MediaPlayer2.Player") << changed << QStringList();
    Bus.send(signal);
}

void MprisPresence::Notify(const Notice& notice) const {
    constexpr int usualTime = -1;
    if (!Bus.isConnected()) return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QString(ProgramEntryName)}};
    call << QString(ProgramTitle) << 0U << QString(ProgramEntryName) << Text(notice.Title)
         << Text(notice.Text) << QStringList() << hints << usualTime;
    Bus.call(call, QDBus::NoBlock);
}

QString MprisPlayer::PlaybackStatus() const {
    return StatusName(Presence.Display().Status);
}

}  // namespace Corvetape
