#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

namespace Corvetape {

/// Whether a panel is there that shows icons of programs: one on the session bus or, for programs of X11, one
/// on the X display. A panel on the bus is asked in the background, so that one that hangs holds up nothing;
/// at the start alone its answer is waited for, a second at most.
class TrayHosts : public QObject {
    Q_OBJECT

 public:
    enum class Where { Bus, BusAndDisplay };

    /// On the bus of the session, or that of a test.
    explicit TrayHosts(Where where, QDBusConnection bus = QDBusConnection::sessionBus());

    bool Present() const { return OnBus || OnDisplay; }

 signals:
    /// Present has another answer.
    void Changed();

 private slots:
    void OwnerChanged(const QString& service, const QString& before, const QString& now);
    void Ask();

 private:
    void SetOnBus(bool there);
    void LookAtDisplay();
    void Set(bool& where, bool there);

    QDBusConnection Bus;
    QTimer Look;
    bool OnBus = false;
    bool OnDisplay = false;
    int Questions = 0;  ///< the answer to the last one counts
};

}  // namespace Corvetape
