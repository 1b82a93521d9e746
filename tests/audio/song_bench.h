#pragma once

#include <string>
#include <vector>

#include "audio/signal_bench.h"
#include "audio/song_writer.h"
#include "audio/wav_file.h"
#include "platform/virtual/sim_clock.h"
#include "sim/sim_files.h"

namespace Corvetape::Test {

/// A song writer on a simulated disk, with everything round it and a note of all that it tells.
class SongBench {
 public:
    explicit SongBench(uint64_t maxSongBytes = 0)
        : Writer({Disk, Flags, Signal, Pause, Media, Messages, Cut}, MakePlace(maxSongBytes), MakeEvents()) {
        Folders.SongTempFolder = "/temp/Corvet";
        Options.MusicFileTemplate[0] = "yymmddhhnnss";
        Disk.MakeFolders(Folders.SongTempFolder);
        Flags.RecordingEnabled = true;
        Pause.PauseBuffers = 2;
        Pause.IgnoreShortSongs = 0;
        Signal.PauseRecognition = PauseRecognitionRunning;
        Media.SongMedia.StationName = "Radio";
        Media.SongMedia.Artist = "Artist";
        Media.SongMedia.Album = "Album";
        Media.SongMedia.Song = "Song";
        Writer.SongKept.Connect([this](const STATIONANDSONGDATA& song) {
            Told += "over ";
            HandedOver.push_back(song.TempFileName);
        });
    }

    /// Writes the next buffers of the stream as the routing does with the end of song by silence.
    bool Hear(int32_t count) {
        bool good = true;
        for (int32_t i = 0; i < count; ++i)
            good = Writer.WriteBufferToSong(NumberedBuffer(Next++), false) && good;
        return good;
    }

    /// The buffer that makes the pause long enough.
    bool HearPause() {
        Signal.InPause = true;
        const bool good = Writer.WriteBufferToSong(NumberedBuffer(Next++), true);
        Signal.InPause = false;
        return good;
    }

    /// A kept song of `count` buffers, of which the last are its pause, closed at its boundary.
    void Record(int32_t count) {
        Flags.RecordCurrentSong = true;
        Hear(count - 1);
        HearPause();
    }

    static std::string PathOf(const std::string& base) { return "/temp/Corvet/" + base + ".wav"; }
    const ClosedSong& Last() const { return Closed.back(); }

    /// Numbers of the buffers whose audio the file's header tells of, from the mark of each buffer.
    std::vector<int32_t> BuffersIn(const std::string& path) { return BuffersIn(Disk, path); }

    /// The same for a start of the program after it was killed at this moment: of the repaired file.
    std::vector<int32_t> BuffersLeftIn(const std::string& path) const {
        SimFiles left;
        left.Restore(Disk.Snapshot());
        return RepairWavHeader(left, path) ? BuffersIn(left, path) : std::vector<int32_t>{-1};
    }

    static std::vector<int32_t> BuffersIn(SimFiles& disk, const std::string& path) {
        std::vector<int32_t> numbers;
        const auto info = ReadWavInfo(disk, path);
        if (!info) return {-1};
        for (uint64_t at = 0; at + BufferBytes <= info->DataBytes; at += BufferBytes) {
            const std::string bytes =
                disk.ReadPart(path, info->DataStart + at, 2).value_or(std::string(2, '\0'));
            const auto low = static_cast<uint8_t>(bytes[0]);
            const auto high = static_cast<uint8_t>(bytes[1]);
            numbers.push_back(low | high << 8);
        }
        return numbers;
    }

    static std::vector<int32_t> Range(int32_t from, int32_t count) {
        std::vector<int32_t> numbers;
        for (int32_t i = 0; i < count; ++i) numbers.push_back(from + i);
        return numbers;
    }

    SimClock Clock;
    SimFiles Disk;
    RecordingFlags Flags;
    SignalState Signal;
    CutState Cut;
    PauseSettings Pause;
    MediaState Media;
    DeferredMessages Messages;
    Settings Options;
    WorkingFolders Folders;
    WaveFormat Format = MakeWaveFormat(44100);

    std::vector<ClosedSong> Closed;
    std::vector<std::string> Begun;
    std::vector<std::string> HandedOver;  ///< TempFileName each time
    std::vector<std::string> Covers;
    std::string Told;  ///< names of the events in their order
    int32_t QuitsWanted = 0;
    std::vector<SongFailure> Failures;
    int32_t Next = 0;
    SongWriter Writer;

 private:
    SongPlace MakePlace(uint64_t maxSongBytes) { return {Format, Options, Folders, Clock, "", maxSongBytes}; }

    SongEvents MakeEvents() {
        SongEvents events;
        events.SongBegun = [this](const std::string& path) { Begun.push_back(path); };
        events.SongClosed = [this](const ClosedSong& song) {
            Told += "closed ";
            Closed.push_back(song);
        };
        events.StoreCover = [this](const std::string& base) {
            Told += "cover ";
            Covers.push_back(base);
        };
        events.QuitWanted = [this] {
            Told += "quit ";
            ++QuitsWanted;
        };
        events.Failed = [this](const SongFailure& failure) { Failures.push_back(failure); };
        return events;
    }
};

}  // namespace Corvetape::Test
