#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <string>

#include "recording/margins/song_recut.h"
#include "scenario/story.h"

namespace Corvetape::Test {

/// Cuts the songs of a world again whose program has ended, as a process of its own does.
class RecutDesk {
 public:
    /// `world` outlives it.
    explicit RecutDesk(World& world) : Place(world) { EncodesRecuts(); }

    /// What has been kept of the song of this title.
    std::optional<KeptMargins> Of(const std::string& title) {
        for (const KeptMargins& each : Store.List()) {
            if (each.Media.Song == title) return each;
        }
        return std::nullopt;
    }

    /// Cuts a song again. What was wrong, empty if nothing was.
    std::string Cut(const std::string& title, const RecutWish& wish) {
        const auto margins = Of(title);
        if (!margins) return "there are no margins";
        if (std::string problem = Recut.Begin(*margins, wish); !problem.empty()) return problem;
        if (Recut.JobName().empty()) return {};
        Place.Computer.Processes.WaitForAll(std::chrono::hours(1));
        std::string problem = "its encoder has not ended";
        for (const JobResult& result : Place.Computer.Processes.TakeFinished()) {
            if (result.Name == Recut.JobName()) problem = Recut.End(result);
        }
        return problem;
    }

    const HeardSong& Heard(const std::string& title) {
        const auto found = std::ranges::find_if(
            Place.Closed, [&](const HeardSong& song) { return song.Song.Media.Song == title; });
        return *found;
    }

    /// Compares a music file of a song with the radio, its cuts so many seconds later than they were found.
    std::string Compared(const HeardSong& heard, const std::string& musicFile, const RecutWish& moved) {
        const double rate = heard.Song.FramesPerSecond;
        const auto begin = static_cast<int64_t>(heard.RadioBegin) + std::llround(moved.Begin * rate);
        const auto end = static_cast<int64_t>(heard.RadioEnd) + std::llround(moved.End * rate);
        const auto frames = FramesOfWav(Place.Disk(), musicFile);
        if (!frames) return musicFile + " is no song";
        return Comparison(
            FramesOfRadio(Place.Truth(), static_cast<uint64_t>(begin), static_cast<uint64_t>(end - begin)),
            *frames);
    }

    /// What an encoder does for a recut.
    void EncodesRecuts() {
        Place.Computer.Processes.OnJob = [this](const HiddenJob& job) {
            for (const std::string& path : Place.Disk().Tree()) {
                const bool source = path.find(".recut-") != std::string::npos && path.ends_with(".wav");
                if (!source || !Mentions(job, path.substr(0, path.size() - 4))) {
                    continue;
                }
                Place.Disk().Put(path.substr(0, path.size() - 4) + ".new.wav", *Place.Disk().Content(path));
            }
            return 0;
        };
    }

    World& Place;
    MarginStore Store{Place.Computer.Files, Place.Computer.Clock, Place.Values().Options,
                      Place.Values().Folders, "recut-1"};
    LearnedCuts Learned{Place.Computer.Files, FolderOfLearnedCuts(Place.Computer.Folders),
                        Place.Values().Options};
    SongRecut Recut{{Place.Computer.Files, Place.Computer.Processes, Place.Values().Options,
                     Place.Values().Folders, Store, Learned, "recut-1"}};
};

}  // namespace Corvetape::Test
