#include "live/automatic_recording.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <thread>

#include "live/tone_edges.h"

namespace Corvetape {

bool MachineIsBusy() {
    constexpr double mostPerCore = 4;
    double load = 0;
    return getloadavg(&load, 1) == 1 &&
           load > mostPerCore * std::max(std::thread::hardware_concurrency(), 1U);
}

void AutomaticRecording::MakeStages() {
    browsers.clear();
    stages.clear();
    for (const ServerKind kind : {ServerKind::PulseAudio, ServerKind::PipeWire}) {
        stages.emplace_back(session, kind);
    }
}

std::string AutomaticRecording::Song(int number, int length, const std::string& filter, bool tagged) {
    const std::string text = std::to_string(number);
    const std::string file = folder / ((tagged ? "song" : "Old Tape ") + text + ".flac");
    const std::string noise = "anoisesrc=d=" + std::to_string(length) +
                              ":c=" + (number % 2 == 0 ? "brown" : "white") + ":a=0.05:r=44100:seed=" + text;
    const std::string tone = "sine=frequency=" + std::to_string(200 * number) +
                             ":sample_rate=44100:duration=" + std::to_string(length);
    std::vector<std::string> command = {"ffmpeg",
                                        "-y",
                                        "-loglevel",
                                        "error",
                                        "-f",
                                        "lavfi",
                                        "-i",
                                        tone,
                                        "-f",
                                        "lavfi",
                                        "-i",
                                        noise,
                                        "-filter_complex",
                                        "[0][1]amix=inputs=2:normalize=0," + filter,
                                        "-ac",
                                        "2"};
    if (tagged) {
        command.insert(command.end(),
                       {"-metadata", "artist=Band " + text, "-metadata", "title=Song " + text});
    }
    command.push_back(file);
    RunToEnd(command, {}, folder / "output");
    return file;
}

void AutomaticRecording::Record(int songs, const std::vector<std::string>& more, int seconds) {
    for (AutomaticStage& stage : stages) stage.Record(songs, seconds, more);
    Await([](AutomaticStage& stage) { return stage.Records(); });
    WaitFor(2);  // until sound has come, and they know of no player
}

void AutomaticRecording::RecordPage(const PageServer& pages, int songs, int seconds, const std::string& how) {
    for (AutomaticStage& stage : stages) {
        stage.GiveSettings("MSIE.ini",
                           "[- Radio]\nName=Page Radio\nWindow&Doc=;;* | *;http://127.0.0.1:*\n" + how);
        std::map<std::string, std::string> environment = stage.Environment();
        environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";  // the page is the only source
        browsers.push_back(std::make_unique<LiveBrowser>(
            session, pages.Url("/"),
            std::vector<std::string>{"--autoplay-policy=no-user-gesture-required",
                                     "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"},
            environment));
        const std::string port = std::to_string(browsers.back()->Port());
        stage.Record(songs, seconds, {"--set", "Browser.DevToolsPorts=" + port});
    }
    Await([](AutomaticStage& stage) { return stage.Records(); });
}

void AutomaticRecording::PressAfter(int number, double played, const std::string& button) {
    const std::string title = "Song " + std::to_string(number);
    for (AutomaticStage& stage : stages) {
        EXPECT_TRUE(session.WaitFor([&] { return stage.HasPlayed(title, played); },
                                    std::chrono::milliseconds(60'000)));
        stage.Press(button);
    }
}

void AutomaticRecording::ExpectWhole(const AutomaticStage& stage, const std::string& name, int number,
                                     double length, double within) {
    SCOPED_TRACE(name);
    const ToneEdges edges = EdgesOf(TonesOf(FramesOfWave(stage.FileOf(name))), number);
    EXPECT_GE(edges.OwnSeconds, length - 2 * within - FalteringHides);
    EXPECT_LE(edges.OwnSeconds, length + 2 * within + Faltering);
    EXPECT_LE(edges.ForeignAtBegin, within);
    EXPECT_LE(edges.ForeignAtEnd, within);
}

void AutomaticRecording::ExpectEdges(const AutomaticStage& stage, const PlayedSong& song, double within,
                                     const std::string& suffix) {
    SCOPED_TRACE(NameOf(song) + suffix);
    const PlayedEdges edges = EdgesOf(stage.FileOf(NameOf(song) + suffix), song);
    EXPECT_LE(edges.MissingAtBegin, within);
    EXPECT_LE(edges.MissingAtEnd, within);
    EXPECT_LE(edges.ForeignAtBegin, within);
    EXPECT_LE(edges.ForeignAtEnd, within);
}

}  // namespace Corvetape
