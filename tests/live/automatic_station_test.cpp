// Songs of a web radio in a real player, on both sound servers, judged by what the station has sent.
#include "live/automatic_recording.h"
#include "live/played_songs.h"

namespace Corvetape {
namespace {

using Json = nlohmann::json;

constexpr double SilenceAtTheEnd = 5;

/// So much of its stream a player has at hand, lest it falters on a busy machine.
constexpr double SecondsAhead = 2;

/// So many songs, one after the other as the pattern says.
std::vector<PlayedSong> Songs(int count, const PlayedSong& pattern) {
    std::vector<PlayedSong> songs(static_cast<size_t>(count), pattern);
    for (int i = 0; i < count; ++i) songs[static_cast<size_t>(i)].Number = i + 1;
    songs.back().SilenceAfter = SilenceAtTheEnd;
    songs.back().TalkAfter = 0;
    return songs;
}

class AutomaticStation : public AutomaticRecording {
 protected:
    /// Records a station of these songs in a player on each server, until so many songs were kept.
    void RecordStation(const std::vector<PlayedSong>& songs, int kept) {
        stations.clear();
        constexpr double slack = 60;
        double seconds = slack;
        for (const PlayedSong& song : songs) seconds += song.Seconds + song.SilenceAfter + song.TalkAfter;
        const std::vector<IcySong> stream = StreamOf(songs, folder.Path());
        Record(kept, {}, static_cast<int>(seconds));
        for (AutomaticStage& stage : stages) {
            stations.push_back(std::make_unique<IcyServer>(stream, SecondsAhead));
            stage.Play({stations.back()->Url()}, {"--audio-buffer=1"});
        }
    }

    std::vector<std::unique_ptr<IcyServer>> stations;
};

TEST_F(AutomaticStation, SixSongsWithGapsAndTitlesOfFiveSecondsLateAreWhole) {
    const std::vector<PlayedSong> songs = Songs(6, {.SilenceAfter = 1.2, .TitleLate = 5});
    WithRetakes([&] {
        RecordStation(songs, 6);
        ExpectKept(6, [&](const AutomaticStage& stage, const std::vector<Json>&) {
            for (const PlayedSong& song : songs) ExpectEdges(stage, song, WithAGap);
        });
    });
}

TEST_F(AutomaticStation, AGapOfAFifthOfASecondIsEnough) {
    const std::vector<PlayedSong> songs = Songs(6, {.SilenceAfter = 0.2, .TitleLate = 2});
    WithRetakes([&] {
        RecordStation(songs, 6);
        ExpectKept(6, [&](const AutomaticStage& stage, const std::vector<Json>&) {
            for (const PlayedSong& song : songs) ExpectEdges(stage, song, WithAGap);
        });
    });
}

TEST_F(AutomaticStation, SongsWithoutGapsAreExactAfterTheFirstTen) {
    const std::vector<PlayedSong> songs = Songs(16, {});
    WithRetakes([&] {
        RecordStation(songs, 16);
        ExpectKept(16, [&](const AutomaticStage& stage, const std::vector<Json>&) {
            for (const PlayedSong& song : songs) {
                ExpectEdges(stage, song, song.Number <= 10 ? FirstCuts : WithoutAGap);
            }
        });
    });
}

TEST_F(AutomaticStation, TalkBetweenSongsIsInNeither) {
    const std::vector<PlayedSong> songs = Songs(4, {.TalkAfter = 4});
    WithRetakes([&] {
        RecordStation(songs, 4);
        ExpectKept(4, [&](const AutomaticStage& stage, const std::vector<Json>&) {
            for (const PlayedSong& song : songs) ExpectEdges(stage, song, WithAGap);
        });
    });
}

}  // namespace
}  // namespace Corvetape
