#include "platform/linux/desktop/tray_hosts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <memory>

#include "platform/linux/desktop/screen_selections.h"

namespace Corvetape {

namespace {

constexpr const char* Service = "org.kde.StatusNotifierWatcher";
constexpr const char* Path = "/StatusNotifierWatcher";

constexpr int FirstAnswerMs = 1000;
constexpr int LookEveryMs = 5000;  // for panels on the display, of whose coming nobody tells

QDBusMessage Question() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(Service, Path, "org.freedesktop.DBus.Properties", "Get");
    call << QString(Service) << QString("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    return call;
}

bool IsYes(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return false;
    return answer.arguments().first().value<QDBusVariant>().variant().toBool();
}

}  // namespace

TrayHosts::TrayHosts(Where where, QDBusConnection bus) : Bus(std::move(bus)) {
    if (Bus.isConnected()) {
        auto* const owners = std::make_unique<QDBusServiceWatcher>(
                                 Service, Bus, QDBusServiceWatcher::WatchForOwnerChange, this)
                                 .release();
        connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this, &TrayHosts::OwnerChanged);
        for (const char* news : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
            Bus.connect(Service, Path, Service, news, this, SLOT(Ask()));
        }
        OnBus = IsYes(Bus.call(Question(), QDBus::Block, FirstAnswerMs));
    }
    if (where != Where::BusAndDisplay) return;
    connect(&Look, &QTimer::timeout, this, &TrayHosts::LookAtDisplay);
    Look.setInterval(LookEveryMs);
    LookAtDisplay();
    if (!OnBus) Look.start();
}

void TrayHosts::OwnerChanged(const QString& /*service*/, const QString& /*before*/, const QString& now) {
    if (!now.isEmpty()) return Ask();
    ++Questions;
    SetOnBus(false);
}

void TrayHosts::Ask() {
    const int question = ++Questions;
    auto* const answer = std::make_unique<QDBusPendingCallWatcher>(Bus.asyncCall(Question()), this).release();
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question] {
        if (question == Questions) SetOnBus(IsYes(answer->reply()));
        answer->deleteLater();
    });
}

void TrayHosts::SetOnBus(bool there) {
    Set(OnBus, there);
    // One on the bus says itself when it goes.
    if (there) {
        Look.stop();
    } else if (Look.interval() > 0) {
        Look.start();
    }
}

void TrayHosts::LookAtDisplay() {
    Set(OnDisplay, IsScreenSelectionOwned("_NET_SYSTEM_TRAY"));
}

void TrayHosts::Set(bool& where, bool there) {
    const bool before = Present();
    where = there;
    if (Present() != before) emit Changed();
}

}  // namespace Corvetape
