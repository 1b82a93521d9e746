// The whole road of a buffer: device, capture, analysis, routing, ring, cut, song file.
#include <gtest/gtest.h>

#include <cstring>

#include "audio/capture.h"
#include "audio/drain.h"
#include "audio/route.h"
#include "audio/song_bench.h"
#include "platform/virtual/sim_loop.h"
#include "sim/frame_stamp.h"
#include "sim/sim_wave_in.h"

namespace Corvetape::Test {

namespace {

using std::chrono::seconds;

/// A radio whose frames carry their numbers, recorded by everything in this room.
class Chain : public testing::Test, protected SongBench {
 protected:
    Chain()
        : Loop(Clock),
          Radio(Clock, Loop),
          Drain({Ring, Cut, Pause, Flags, Writer}),
          Targets(Writer, Drain),
          Path({Signal, Pause, Ring, Clock}, {Signal, Cut, Pause, Flags, Ring}, Targets),
          Input({Radio, Loop, Clock, Options, Signal, Ring, Path}, {}),
          EverySecond(Loop.NewTimer([this] { Drain.DrainAudioRing(false); })) {
        Options.RecordingBuffers = 30;
        Options.AudioBuffers = 400;
        Pause.PauseBuffers = 10;
        Flags.RecordCurrentSong = true;
    }

    void Play(RadioScript script) {
        Radio.AddRadio("radio", script.Stamped());
        ASSERT_TRUE(Input.OpenWaveIn(Radio.Devices().size() - 1));
        Truth = Radio.Timeline("radio", 44100);
        EverySecond->Start(seconds(1), TimerPrecision::Coarse);
    }

    std::vector<Frame> FramesIn(const std::string& path) {
        const auto info = ReadWavInfo(Disk, path);
        if (!info) return {};
        std::vector<Frame> frames(info->DataBytes / sizeof(Frame));
        std::memcpy(frames.data(), Disk.Content(path)->data() + info->DataStart, info->DataBytes);
        return frames;
    }

    /// Every frame of the song is in the file, in its order and once.
    void ExpectWholeSong(const std::string& path, const ScriptedSong& song) {
        const std::vector<Frame> frames = FramesIn(path);
        uint64_t next = song.Begin;
        for (const Frame frame : frames) {
            if (next < song.End && frame == StampOf(next)) ++next;
        }
        EXPECT_EQ(next, song.End) << path << " of " << frames.size() << " frames";
        EXPECT_LT(frames.size(), song.End - song.Begin + 44100);
    }

    SimLoop Loop;
    SimWaveIn Radio;
    AudioRing Ring;
    CutState Cut;
    AudioDrain Drain;
    SongTargets Targets;
    SignalPath Path;
    Capture Input;
    std::unique_ptr<LoopTimer> EverySecond;
    std::shared_ptr<const RadioTimeline> Truth;
};

RadioScript ThreeSongs() {
    RadioScript script;
    for (const double length : {20.3, 33.33, 25.0}) {
        ScriptSong song;
        song.Seconds = length;
        script.Song(song).Pause(1.5);
    }
    return script.SilenceForever();
}

}  // namespace

/// The same in each return mode.
class ChainInMode : public Chain, public testing::WithParamInterface<int32_t> {};

TEST_P(ChainInMode, BySilenceEachSongIsInItsFileFrameByFrame) {
    Options.PollRecordingBuffers = GetParam();
    Play(ThreeSongs());
    Loop.RunFor(seconds(90));
    ASSERT_EQ(Closed.size(), 3U);
    for (size_t i = 0; i < 3; ++i) ExpectWholeSong(Closed[i].TempPath, Truth->Songs()[i]);
    EXPECT_TRUE(Last().Whole);
}

INSTANTIATE_TEST_SUITE_P(AllModes, ChainInMode, testing::Range(0, 4));

TEST_F(Chain, ByMediaDataEachSongIsInItsFileAlsoIfTheTitleComesLate) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    Play(ThreeSongs());
    uint64_t before = 0;
    for (const ScriptedSong& song : Truth->Songs()) {
        const uint64_t noticed = song.End + 44100 * 3;  // 1.5 s into the next song
        Loop.RunFor(std::chrono::microseconds((noticed - before) * 1000000 / 44100));
        before = noticed;
        Cut.CutPending = true;
        Cut.CutIndex = Ring.AudioWriteIndex;
    }
    Loop.RunFor(seconds(10));
    ASSERT_EQ(Closed.size(), 3U);
    for (size_t i = 0; i < 3; ++i) ExpectWholeSong(Closed[i].TempPath, Truth->Songs()[i]);
}

TEST_F(Chain, AStandstillOfAMinuteLosesNothing) {
    for (const EndOfSong mode : {EndOfSong::Silence, EndOfSong::MediaData}) {
        Pause.EndOfSongDetection = mode;
        Closed.clear();
        RadioScript script;
        ScriptSong song;
        song.Seconds = 120;
        Radio.AddRadio(mode == EndOfSong::Silence ? "a" : "b", script.Song(song).SilenceForever().Stamped());
        ASSERT_TRUE(Input.OpenWaveIn(Radio.Devices().size() - 1));
        EverySecond->Start(seconds(1), TimerPrecision::Coarse);
        Loop.RunFor(seconds(30));
        Loop.Sleep(seconds(60));
        Loop.RunFor(seconds(32));
        Drain.WriteOut();
        if (mode == EndOfSong::MediaData) Writer.CloseSongFile();
        ASSERT_EQ(Closed.size(), 1U);
        const std::vector<Frame> frames = FramesIn(Last().TempPath);
        ASSERT_GE(frames.size(), 120U * 44100U);
        const uint64_t first = FrameOfStamp(frames.front(), 0);
        for (uint64_t i = first; i < 120U * 44100U; ++i) ASSERT_EQ(frames[i - first], StampOf(i)) << i;
        EXPECT_EQ(first, 0U);
        EXPECT_EQ(Ring.OverrunBuffers, 0U);
        Input.CloseWaveIn();
    }
}

TEST_F(Chain, AStandstillShowsInTheNumberOfBuffersUsed) {
    Play(ThreeSongs());
    Loop.RunFor(seconds(5));
    EXPECT_EQ(Input.MaxBuffersUsed(), 2);
    Loop.Sleep(seconds(3));
    Loop.RunFor(seconds(1));
    EXPECT_GE(Input.MaxBuffersUsed(), 29);
}

TEST_F(Chain, WhatTheDeviceLosesIsReportedForTheSongThatLacksIt) {
    Play(ThreeSongs());
    Loop.RunFor(seconds(30));
    Radio.Lose("radio", 4410);
    Loop.RunFor(seconds(60));
    ASSERT_EQ(Closed.size(), 3U);
    EXPECT_EQ(Closed[0].LostFrames, 0U);
    EXPECT_EQ(Closed[1].LostFrames, 4410U);
    EXPECT_EQ(Closed[2].LostFrames, 0U);
    EXPECT_EQ(Signal.FramesLost, 4410U);
}

}  // namespace Corvetape::Test
