#include "browser/demo_station.h"

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QtEndian>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "browser/make.h"
#include "platform/virtual/demo_score.h"
#include "platform/virtual/demo_synth.h"

namespace Corvetape {

namespace {

constexpr uint64_t Seed = 1;  // the same songs as from the demo radio among the inputs
constexpr uint32_t Rate = 44100;
constexpr int SongPathBegin = 6;  // after "/song-"

struct PageFile {
    const char* Path;
    const char* Name;
    const char* Type;
};

constexpr std::array PageFiles = {
    PageFile{"/", "index.html", "text/html"},
    PageFile{"/radio.css", "radio.css", "text/css"},
    PageFile{"/radio.js", "radio.js", "text/javascript"},
};

void Answer(QWebEngineUrlRequestJob& job, const QByteArray& type, const QByteArray& content) {
    auto* const buffer = MakeFor<QBuffer>(&job);  // belongs to the job
    buffer->setData(content);
    buffer->open(QIODevice::ReadOnly);
    job.reply(type, buffer);
}

template <typename Number>
void Append(QByteArray& bytes, Number number) {
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

QByteArray SoundHeader(uint32_t dataBytes) {
    constexpr uint16_t frameBytes = sizeof(Frame);
    QByteArray bytes("RIFF");
    Append<uint32_t>(bytes, 36 + dataBytes);
    bytes.append("WAVEfmt ");
    Append<uint32_t>(bytes, 16);
    Append<uint16_t>(bytes, 1);  // PCM
    Append<uint16_t>(bytes, 2);
    Append<uint32_t>(bytes, Rate);
    Append<uint32_t>(bytes, Rate * frameBytes);
    Append<uint16_t>(bytes, frameBytes);
    Append<uint16_t>(bytes, 16);
    bytes.append("data");
    Append<uint32_t>(bytes, dataBytes);
    return bytes;
}

}  // namespace

void DemoStation::Announce() {
    QWebEngineUrlScheme scheme(Scheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(scheme);
}

DemoStation::DemoStation(QString folder) : Folder(std::move(folder)) {}

void DemoStation::requestStarted(QWebEngineUrlRequestJob* job) {
    const QUrl url = job->requestUrl();
    const QString path = url.path();
    if (url.host() != QLatin1String("radio") || job->requestMethod() != "GET") {
        return job->fail(QWebEngineUrlRequestJob::RequestDenied);
    }
    if (path == QLatin1String("/songs.js")) return Answer(*job, "text/javascript", DemoSongList());
    for (const PageFile& each : PageFiles) {
        if (path != QLatin1String(each.Path)) continue;
        QFile file(Folder + '/' + each.Name);
        if (!file.open(QIODevice::ReadOnly)) break;
        return Answer(*job, each.Type, file.readAll());
    }
    bool number = false;
    const uint64_t song = path.mid(SongPathBegin).chopped(path.endsWith(".wav") ? 4 : 0).toULongLong(&number);
    if (path.startsWith("/song-") && number && song < DemoStationSongs) {
        return MakeSong(song, job);
    }
    job->fail(QWebEngineUrlRequestJob::UrlNotFound);
}

void DemoStation::MakeSong(uint64_t number, const QPointer<QWebEngineUrlRequestJob>& job) {
    Makers.start([this, number, job] {
        const QByteArray file = DemoSongFile(number);
        // Only on the thread of the engine is it known whether the page still wants it.
        QMetaObject::invokeMethod(this, [job, file] {
            if (job) Answer(*job, "audio/wav", file);
        });
    });
}

DemoStation::~DemoStation() {
    Makers.waitForDone();
}

QByteArray DemoSongList() {
    QJsonArray songs;
    for (uint64_t i = 0; i < DemoStationSongs; ++i) {
        const SourceMedia media = NameDemoSong(Seed, i);
        songs.append(QJsonObject{{"artist", QString::fromStdString(media.Artist)},
                                 {"title", QString::fromStdString(media.Song)},
                                 {"album", QString::fromStdString(media.Album)},
                                 {"address", QString("/song-%1.wav").arg(i)}});
    }
    return "const songs = " + QJsonDocument(songs).toJson(QJsonDocument::Compact) + ";\n";
}

QByteArray DemoSongFile(uint64_t number) {
    const auto length = static_cast<size_t>(std::lround(PlanDemoSong(Seed, number).Seconds * Rate));
    std::vector<Frame> frames(length);
    DemoSynth(ComposeDemoSong(Seed, number), Rate, length).Read(frames);
    const auto dataBytes = static_cast<uint32_t>(length * sizeof(Frame));
    QByteArray file = SoundHeader(dataBytes);
    file.append(reinterpret_cast<const char*>(frames.data()), dataBytes);
    return file;
}

}  // namespace Corvetape
