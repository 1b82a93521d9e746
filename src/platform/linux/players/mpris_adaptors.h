#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include "platform/media_controls.h"
#include "platform/program_name.h"

namespace Corvetape {

/// The object that stands on the bus. Lives on the thread that speaks with it.
class MprisPresence : public QObject {
    Q_OBJECT

 public:
    explicit MprisPresence(QString address);
    ~MprisPresence() override;
    MprisPresence(const MprisPresence&) = delete;
    MprisPresence& operator=(const MprisPresence&) = delete;

    /// Goes on the bus; tries again later where there is none.
    void Begin();
    void Show(const PlayerDisplay& display);
    void Notify(const Notice& notice) const;

    const PlayerDisplay& Display() const { return Shown; }
    QVariantMap Metadata() const;

 signals:
    void Pressed(Corvetape::MediaButton button);

 private slots:
    void Disconnected();

 private:
    void Leave();

    const QString Address;
    const QString ConnectionName;
    QDBusConnection Bus;
    QTimer Again{this};  ///< a child, so that it comes along to the thread of the bus
    PlayerDisplay Shown;
    int Piece = 0;  ///< number of the song that is shown
};

/// The program as one of the desktop's media programs.
class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ Yes CONSTANT)
    Q_PROPERTY(bool CanRaise READ Yes CONSTANT)
    Q_PROPERTY(bool HasTrackList READ No CONSTANT)
    Q_PROPERTY(QString Identity READ Identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ DesktopEntry CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ None CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ None CONSTANT)

 public:
    explicit MprisRoot(MprisPresence& presence) : QDBusAbstractAdaptor(&presence), Presence(presence) {}

    bool Yes() const { return true; }
    bool No() const { return false; }
    QString Identity() const { return ProgramTitle; }
    QString DesktopEntry() const { return ProgramEntryName; }
    QStringList None() const { return {}; }

 public slots:
    void Raise() { emit Presence.Pressed(MediaButton::Raise); }
    void Quit() { emit Presence.Pressed(MediaButton::Quit); }

 private:
    MprisPresence& Presence;
};

/// The recorder as a player: it plays while it records.
class MprisPlayer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ PlaybackStatus)
    Q_PROPERTY(QVariantMap Metadata READ Metadata)
    Q_PROPERTY(double Rate READ One WRITE Ignore)
    Q_PROPERTY(double MinimumRate READ One CONSTANT)
    Q_PROPERTY(double MaximumRate READ One CONSTANT)
    Q_PROPERTY(double Volume READ One WRITE Ignore)
    Q_PROPERTY(qlonglong Position READ Position)
    Q_PROPERTY(bool CanGoNext READ Yes CONSTANT)
    Q_PROPERTY(bool CanGoPrevious READ No CONSTANT)
    Q_PROPERTY(bool CanPlay READ Yes CONSTANT)
    Q_PROPERTY(bool CanPause READ Yes CONSTANT)
    Q_PROPERTY(bool CanSeek READ No CONSTANT)
    Q_PROPERTY(bool CanControl READ Yes CONSTANT)

 public:
    explicit MprisPlayer(MprisPresence& presence) : QDBusAbstractAdaptor(&presence), Presence(presence) {}

    QString PlaybackStatus() const;
    QVariantMap Metadata() const { return Presence.Metadata(); }
    double One() const { return 1; }
    void Ignore(double /*value*/) {}
    qlonglong Position() const { return 0; }
    bool Yes() const { return true; }
    bool No() const { return false; }

 public slots:
    void Play() { emit Presence.Pressed(MediaButton::Play); }
    void Pause() { emit Presence.Pressed(MediaButton::Pause); }
    void PlayPause() { emit Presence.Pressed(MediaButton::PlayPause); }
    void Stop() { emit Presence.Pressed(MediaButton::Stop); }
    void Next() { emit Presence.Pressed(MediaButton::Next); }
    void Previous() {}

 private:
    MprisPresence& Presence;
};

}  // namespace Corvetape
