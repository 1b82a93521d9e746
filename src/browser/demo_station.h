#pragma once

#include <QByteArray>
#include <QPointer>
#include <QThreadPool>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlSchemeHandler>
#include <cstdint>

namespace Corvetape {

/// The station that works without the internet: "corvetape://radio/", its page from the folder "radio" beside
/// the program, its music made on the spot. The page itself cannot reach any other file.
class DemoStation : public QWebEngineUrlSchemeHandler {
    Q_OBJECT

 public:
    static constexpr const char* Scheme = "corvetape";

    /// Makes the scheme known to the engine. To be called before the application is made.
    static void Announce();

    /// `folder` holds the page's files.
    explicit DemoStation(QString folder);
    ~DemoStation() override;
    DemoStation(const DemoStation&) = delete;
    DemoStation& operator=(const DemoStation&) = delete;

    void requestStarted(QWebEngineUrlRequestJob* job) override;

 private:
    /// Makes a song on a thread of its own, as that takes a moment, and answers with it.
    void MakeSong(uint64_t number, const QPointer<QWebEngineUrlRequestJob>& job);

    const QString Folder;
    QThreadPool Makers;
};

/// How many songs the station has; after the last one the first comes again.
inline constexpr uint64_t DemoStationSongs = 12;

/// The names of the songs as a script for the page: `const songs = [{artist, title, album, address}, ...]`.
QByteArray DemoSongList();

/// A song as a sound file.
QByteArray DemoSongFile(uint64_t number);

}  // namespace Corvetape
