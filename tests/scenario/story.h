#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "scenario/song_audio.h"

namespace Corvetape::Test {

/// What a run of a story has left behind, down to the last byte.
struct Outcome {
    uint64_t DiskHistory = 0;  ///< over every byte that was written, in order
    uint64_t Files = 0;        ///< over the names and contents of what is there at the end
    std::vector<LogLine> Log;
    std::vector<std::string> Boxes;
    size_t SongsClosed = 0;
    size_t Ends = 0;

    bool operator==(const Outcome&) const = default;
};

inline Outcome OutcomeOf(World& world) {
    Outcome outcome{world.Disk().HistoryHash(), 0, world.Log, world.Boxes(), world.Closed.size(), world.Ends};
    ContentHash files;
    for (const std::string& path : world.Disk().Tree()) {
        files.Add(path);
        files.Add(world.Disk().HashOfFile(path).value_or(0));
    }
    outcome.Files = files.Value();
    return outcome;
}

/// Lives through a story on two machines that know nothing of each other. They have to come out the same, and
/// no file may stay open once the program is gone.
inline void TellTwice(const std::function<WorldOptions()>& begin, const std::function<void(World&)>& story) {
    const auto tell = [&] {
        World world(begin());
        story(world);
        world.Recorder.reset();
        EXPECT_EQ(world.Disk().OpenHandles(), 0U);
        return OutcomeOf(world);
    };
    const Outcome first = tell();
    if (testing::Test::HasFatalFailure()) return;
    EXPECT_EQ(first, tell()) << "two runs differ";
}

/// Goes on to a moment, in seconds since the machine was made.
inline void RunTo(World& world, double second) {
    world.RunFor(second - world.Now());
}

/// Adds songs of equal length that carry the numbers of their frames, with a pause of two seconds after
/// each. `number` counts them; song n is called "Song n".
inline void AddSongs(RadioScript& radio, uint64_t& number, int count, double seconds) {
    for (int i = 0; i < count; ++i) {
        ScriptSong song;
        song.Seconds = seconds;
        song.Seed = ++number;
        const std::string text = std::to_string(number);
        song.Media = {"Radio", "Band " + text, "Song " + text, "Album " + text, ""};
        radio.Song(std::move(song)).Pause(2);
    }
}

/// A radio of songs of equal length: song k, from 0 on, begins at second 3 + k * (seconds + 2).
inline RadioScript EvenRadio(int count, double seconds) {
    RadioScript radio;
    uint64_t number = 0;
    radio.Pause(3);
    AddSongs(radio, number, count, seconds);
    return radio.Stamped().SilenceForever();
}

/// Titles of the songs that were kept, in their order.
inline std::vector<std::string> KeptTitles(const World& world) {
    std::vector<std::string> titles;
    for (const HeardSong& song : KeptSongs(world)) titles.push_back(song.Song.Media.Song);
    return titles;
}

/// The text of a key of the language file with its arguments, as people read it.
inline std::string Text(const std::string& key, const std::vector<std::string>& arguments = {}) {
    std::istringstream lines(DataFile("english.lang"));
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(key + "=")) text = line.substr(key.size() + 1);
    }
    const auto replace = [&text](const std::string& what, const std::string& with) {
        for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
            text.replace(at, what.size(), with);
        }
    };
    for (size_t i = 0; i < arguments.size(); ++i) replace("%" + std::to_string(i + 1), arguments[i]);
    replace("\\r\\n", "\r\n");
    while (text.ends_with('\r')) text.pop_back();
    return text;
}

/// The information of the log but for pieces that were too short, as the one before the first title is.
inline std::vector<std::string> InfoButForShortSongs(const World& world) {
    std::vector<std::string> lines = world.Logged("INFO");
    std::erase_if(lines, [](const std::string& line) { return line.ends_with("it is too short."); });
    return lines;
}

}  // namespace Corvetape::Test
