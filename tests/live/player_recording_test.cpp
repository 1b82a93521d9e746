// What a media player plays becomes music files: with a real player, sound server and session bus.
#include <filesystem>
#include <fstream>
#include <set>

#include "live/icy_server.h"
#include "live/live_recording.h"

namespace Corvetape {
namespace {

using Json = nlohmann::json;

class PlayerRecordingTest : public RecordingTest {
 protected:
    static constexpr const char* Player = "Windows Media Player";

    /// A tone of its own with its tags and its cover; the path of the song.
    std::string MakeTaggedSong(int number) {
        const std::string place = folder / ("album" + std::to_string(number));
        const std::string text = std::to_string(number);
        std::filesystem::create_directories(place);
        std::ofstream(place + "/cover.jpg", std::ios::binary) << Picture(number);
        MakeSong(number,
                 {"-metadata", "artist=Artist " + text, "-metadata", "title=Title " + text, "-metadata",
                  "album=Album " + text, "-metadata", "genre=Rock"},
                 place + "/song.flac");
        return place + "/song.flac";
    }

    /// The bytes that a station sends for a song.
    std::string MakeStreamedSong(int number) {
        const std::string file = folder / "stream.mp3";
        std::filesystem::remove(file);
        MakeSong(number, {"-b:a", "128k", "-write_xing", "0", "-id3v2_version", "0"}, file);
        return Content(file);
    }
};

TEST_F(PlayerRecordingTest, SongsOfAPlayerGetTheirNamesTagsAndCovers) {
    std::vector<std::string> files;
    for (int i = 1; i <= MostSongs; ++i) files.push_back(MakeTaggedSong(i));
    const auto player = Play(files);
    const std::vector<Json> kept = Record(3, Player);
    ASSERT_EQ(kept.size(), 3u) << Story();
    std::set<int> numbers;
    for (size_t i = 0; i < kept.size(); ++i) {
        // The first song had begun before the recording, or the player's name was not known yet.
        const int number = ExpectSong(kept[i], i > 0);
        const std::string file = kept[i].value("file", "");
        EXPECT_NE(file.find("/Music/Rock/"), std::string::npos) << file;
        EXPECT_EQ(FormatOf(file).value("/tags/album"_json_pointer, ""), "Album " + std::to_string(number));
        ExpectPicture(file, number);
        numbers.insert(number);
    }
    EXPECT_EQ(numbers.size(), kept.size()) << "each song has a name of its own";
    if (HasFailure()) ADD_FAILURE() << Story();
}

TEST_F(PlayerRecordingTest, SongsOfAStationGetTheNamesThatItsStreamGives) {
    std::vector<IcySong> songs;
    for (int i = 1; i <= MostSongs; ++i) {
        const std::string text = std::to_string(i);
        songs.push_back(
            {"Artist " + text + " - Title " + text, MakeStreamedSong(i), SongSeconds + SilenceSeconds});
    }
    const IcyServer station(songs);
    const auto player = Play({station.Url()});
    const std::vector<Json> kept = Record(3, Player);
    ASSERT_EQ(kept.size(), 3u) << Story();
    for (size_t i = 0; i < kept.size(); ++i) {
        const int number = ExpectSong(kept[i], i > 0);
        if (i > 0) {
            EXPECT_EQ(number, ExpectSong(kept[i - 1], false) % MostSongs + 1);
        }
    }
    if (HasFailure()) ADD_FAILURE() << Story();
}

}  // namespace
}  // namespace Corvetape
