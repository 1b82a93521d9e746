#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "live/session_bus.h"
#include "live/sound_server.h"
#include "live/test_process.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {

/// The bytes of a file; empty if there is none.
std::string Content(const std::string& path);

/// Where programs find this sound server and this session bus, and nothing of the user's.
std::map<std::string, std::string> LiveEnvironment(const SoundServer& server, const SessionBus& bus);

/// The command that records what the sound server's radio plays below `home`, with a line of JSON for each
/// song; `more` is added to it.
std::vector<std::string> RecordCommand(const std::string& home, const std::vector<std::string>& more);

/// The songs that such a command has printed into a file as kept.
std::vector<nlohmann::json> KeptIn(const std::string& printed);

/// Runs a program to its end, at most 90 s; gives what it prints, by way of the file `output`.
std::string RunToEnd(const std::vector<std::string>& command,
                     const std::map<std::string, std::string>& environment, const std::string& output);

/// What the command line recorder makes of a song that something plays into a sound server of its own.
///
/// Songs are as short as the recorder's waits allow: they end by media data, a cut is at most 0.5 s after
/// a change of the title, and a song takes its name some 6 s after it.
class RecordingTest : public testing::Test {
 protected:
    static constexpr int SongSeconds = 9;      ///< of sound in each song
    static constexpr int SilenceSeconds = 1;   ///< after each song
    static constexpr int TonePerNumber = 200;  ///< periods a second
    static constexpr int MostSongs = 4;

    RecordingTest();

    /// Runs a program to its end; gives what it prints.
    std::string Run(const std::vector<std::string>& command);

    /// Starts a player that speaks on the session bus and plays into the sound server.
    std::unique_ptr<TestProcess> Play(const std::vector<std::string>& what);

    /// Makes a sound file with the tone of a song's number and the silence after it.
    void MakeSong(int number, const std::vector<std::string>& options, const std::string& file);

    /// What is known of a music file as a whole, its tags among it; an empty object if it cannot be read.
    nlohmann::json FormatOf(const std::string& file);

    /// A picture that is unlike that of any other song.
    std::string Picture(int number);

    /// Records until so many songs were kept; what the recorder tells of these. `source` is the name of the
    /// source that is expected, whose settings are made.
    std::vector<nlohmann::json> Record(int songs, const std::string& source,
                                       const std::vector<std::string>& settings = {});

    /// Expects the file and the tags of "Artist N" and "Title N", and in it the tone of that number. `whole`
    /// asks for the length of a song. Returns the number, 0 if the song has no such name.
    int ExpectSong(const nlohmann::json& song, bool whole);

    /// Expects the picture of this number beside a music file and in it.
    void ExpectPicture(const std::string& file, int number);

    /// All that was printed and logged, for a failure.
    std::string Story();

    LiveSession session;
    TempFolder folder;
    SessionBus bus{session};
    SoundServer server{ServerKind::PulseAudio};
    std::map<std::string, std::string> environment;

 private:
    /// The number of the song whose tone a music file holds.
    int LoudestTone(const std::string& file);
};

}  // namespace Corvetape
