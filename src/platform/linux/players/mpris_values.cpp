#include "platform/linux/players/mpris_values.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

#include "platform/linux/players/mpris_names.h"

namespace Corvetape {
namespace {

std::string Text(const QString& text) {
    // No character is shorter in UTF-8 than in units of a QString, so more than this is never needed.
    QByteArray bytes = text.left(MostPlayerTextBytes + 1).toUtf8();
    if (bytes.size() > MostPlayerTextBytes) {
        qsizetype end = MostPlayerTextBytes;
        while (end > 0 && (static_cast<unsigned char>(bytes[end]) & 0xC0) == 0x80) --end;
        bytes.truncate(end);
    }
    return bytes.toStdString();
}

std::string Address(const QString& text) {
    const QByteArray bytes = text.left(MostPlayerTextBytes + 1).toUtf8();
    return bytes.size() > MostPlayerTextBytes ? std::string() : bytes.toStdString();
}

/// Whether this is the file of a picture that a browser has fetched for a page and put among its own files:
/// the name is the browser's, and no file of the user has it. No page has a say in it.
bool IsPictureOfBrowser(const QString& address) {
    // In whatever folder, the last part is the file's whole name as it is: nothing encoded, nothing after it.
    static const QRegularExpression own(QStringLiteral(
        "\\Afile:///(?:[^/?#]+/)*(?:"
        "\\.?(?:org\\.chromium\\.Chromium|com\\.google\\.Chrome|com\\.microsoft\\.Edge)\\.[A-Za-z0-9]{6}|"
        "firefox-mpris/[0-9]+_[0-9]+\\.(?:png|jpe?g|webp))\\z"));
    return own.match(address).hasMatch();
}

/// Whether a piece may name this picture. Files of this machine are those of pieces that are files
/// themselves, and those that browsers make: whatever else others make a page or a stream show is
/// fetched from the web.
bool MayShow(const QString& address, const QString& piece) {
    const auto begins = [](const QString& text, const char* with) {
        return text.startsWith(QLatin1String(with), Qt::CaseInsensitive);
    };
    return begins(address, "http://") || begins(address, "https://") || begins(piece, "file://") ||
           IsPictureOfBrowser(address);
}

/// A text, or a list of texts in one.
QString Joined(const QVariant& value) {
    if (value.typeId() == QMetaType::QString) return value.toString();
    if (value.typeId() != QMetaType::QStringList) return {};
    QString all;
    for (const QString& part : value.toStringList()) {
        if (part.isEmpty()) continue;
        if (!all.isEmpty()) all += QStringLiteral(", ");
        all += part.left(MostPlayerTextBytes);
        if (all.size() > MostPlayerTextBytes) break;  // the rest would be cut off anyway
    }
    return all;
}

/// The name of a piece; an empty one for what stands for no piece.
QString TrackName(const QVariant& value) {
    const bool isPath = value.metaType() == QMetaType::fromType<QDBusObjectPath>();
    const QString name = isPath ? value.value<QDBusObjectPath>().path() : value.toString();
    return name.endsWith(QStringLiteral("/NoTrack")) ? QString() : name;
}

PlayerStatus StatusOf(const QString& text) {
    if (text == QStringLiteral("Playing")) return PlayerStatus::Playing;
    if (text == QStringLiteral("Paused")) return PlayerStatus::Paused;
    return text == QStringLiteral("Stopped") ? PlayerStatus::Stopped : PlayerStatus::Unknown;
}

QString Single(const QVariant& value) {
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

}  // namespace

bool IsPlayerName(const QString& busName) {
    // A recorder is no source of what it records, whichever process of it that is.
    const QString own = QLatin1String(OwnPlayerName);
    if (busName == own || busName.startsWith(own + QLatin1Char('.'))) return false;
    // This one repeats what another player says, and stays when there is none.
    return busName.startsWith(QStringLiteral("org.mpris.MediaPlayer2.")) &&
           busName != QStringLiteral("org.mpris.MediaPlayer2.playerctld");
}

QVariantMap BusMap(const QVariant& value) {
    if (value.typeId() == QMetaType::QVariantMap) return value.toMap();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("a{sv}")) return {};
    return qdbus_cast<QVariantMap>(argument);
}

PlayerReport WithProperties(PlayerReport report, const QVariantMap& properties) {
    const auto status = properties.constFind(QStringLiteral("PlaybackStatus"));
    if (status != properties.constEnd()) {
        report.Status = StatusOf(Single(*status));
        report.Playing = report.Status == PlayerStatus::Playing;
    }
    const auto metadata = properties.constFind(QStringLiteral("Metadata"));
    if (metadata == properties.constEnd()) return report;
    const QVariantMap piece = BusMap(*metadata);
    report.Genre = Text(Joined(piece.value(QStringLiteral("xesam:genre"))));
    report.Artist = Text(Joined(piece.value(QStringLiteral("xesam:artist"))));
    report.Title = Text(Single(piece.value(QStringLiteral("xesam:title"))));
    report.Album = Text(Single(piece.value(QStringLiteral("xesam:album"))));
    const QString cover = Single(piece.value(QStringLiteral("mpris:artUrl")));
    const bool shown = MayShow(cover, Single(piece.value(QStringLiteral("xesam:url"))));
    report.Cover = shown ? Address(cover) : std::string();
    report.TrackId = Text(TrackName(piece.value(QStringLiteral("mpris:trackid"))));
    report.Address = Address(Single(piece.value(QStringLiteral("xesam:url"))));
    constexpr qlonglong microseconds = 1000;
    report.LengthMs = std::max(piece.value(QStringLiteral("mpris:length")).toLongLong() / microseconds, 0LL);
    return report;
}

}  // namespace Corvetape
