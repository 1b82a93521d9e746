// Songs that are cut again as music files, by the encoders themselves: as if the right sound had been
// encoded.
#include <algorithm>
#include <filesystem>
#include <optional>

#include "live/automatic_recording.h"
#include "live/played_songs.h"
#include "live/tone_edges.h"

namespace Corvetape {
namespace {

using Json = nlohmann::json;

constexpr size_t Second = 44100;

/// A kind of music file, and how it is made by hand: with the options that its quality stands for, and where
/// the encoder wants its file named.
struct Encoding {
    const char* Ending;
    std::vector<std::string> Settings;
    std::vector<std::string> Command;
};

const Encoding Mp3 = {".mp3",
                      {"--set", "Options.Encoder=1", "--set", "Options.MP3Quality=3"},
                      {"lame", "--quiet", "-b", "128"}};
const Encoding Ogg = {".ogg",
                      {"--set", "Options.Encoder=2", "--set", "Options.OggVorbisQuality=4"},
                      {"oggenc", "-Q", "-q", "4"}};

class AutomaticRecut : public AutomaticRecording {
 protected:
    /// A song that was heard from its fifth second on, and the next one, are recorded and encoded. The first
    /// is cut again then, a second later at its begin and two seconds at its end.
    void CutAgain(const Encoding& encoding, bool refusesLinks = false) {
        const std::vector<PlayedSong> songs = {{.Number = 1, .Seconds = 14}, {.Number = 2}};
        std::vector<std::string> files;
        for (const PlayedSong& song : songs) files.push_back(TaggedFileOf(song, folder.Path()));
        const std::vector<Frame> played = SoundOf(songs);
        std::vector<std::string> settings = {"--set", "Options.EncodeOffline=0"};
        settings.insert(settings.end(), encoding.Settings.begin(), encoding.Settings.end());
        WithRetakes([&] {
            for (AutomaticStage& stage : stages) stage.RefusesLinks = refusesLinks;
            Play(files);
            Await([](AutomaticStage& stage) { return stage.HasPlayed("Song 1", 5); });
            Record(2, settings);
            ExpectKept(2, [&](AutomaticStage& stage, const std::vector<Json>& kept) {
                EXPECT_EQ(kept[0].value("/confidence/begin"_json_pointer, ""), "unsure");
                const std::string name = "Band 1 - Song 1" + std::string(encoding.Ending);
                const auto right = RightSound(stage, played);
                ASSERT_TRUE(right);
                ASSERT_FALSE(Decoded(stage.PathOf(name)).empty());
                const std::string wanted = Encoded(encoding, *right);
                EXPECT_FALSE(Decoded(stage.PathOf(name)) == wanted);
                stage.Recut("Song 1", {"--begin", "+1", "--end", "+2"});
                EXPECT_TRUE(Decoded(stage.PathOf(name)) == wanted);
            });
        });
    }

    /// The samples of a sound file.
    std::string Decoded(const std::string& file) {
        const std::string samples = folder / "samples";
        RunToEnd({"ffmpeg", "-y", "-loglevel", "error", "-i", file, "-ac", "2", "-ar", "44100", "-f", "s16le",
                  samples},
                 {}, folder / "output");
        return Content(samples);
    }

    /// What a sound becomes that is encoded by hand.
    std::string Encoded(const Encoding& encoding, const std::vector<Frame>& sound) {
        const std::string source = folder / "right.wav";
        const std::string target = folder / ("right" + std::string(encoding.Ending));
        std::filesystem::remove(target);
        WriteWave(source, sound);
        std::vector<std::string> command = encoding.Command;
        command.push_back(source);
        if (encoding.Ending == Ogg.Ending) command.push_back("-o");
        command.push_back(target);
        RunToEnd(command, {}, folder / "output");
        return Decoded(target);
    }

    /// What the song is to be: its recording without its first second, and the two that were played after it.
    static std::optional<std::vector<Frame>> RightSound(const AutomaticStage& stage,
                                                        const std::vector<Frame>& played) {
        constexpr size_t known = 4410;
        const std::vector<Frame> recorded = FramesOfWave(stage.PathEndingWith(".song.wav"));
        if (recorded.size() < Second + known) return std::nullopt;
        const auto found = std::search(played.begin(), played.end(), recorded.end() - known, recorded.end());
        if (played.end() - found < static_cast<std::ptrdiff_t>(known + 2 * Second)) return std::nullopt;
        std::vector<Frame> right(recorded.begin() + Second, recorded.end());
        right.insert(right.end(), found + known, found + known + 2 * Second);
        return right;
    }
};

TEST_F(AutomaticRecut, AnMp3IsWhatTheRightSoundWouldHaveBecome) {
    CutAgain(Mp3);
}

TEST_F(AutomaticRecut, AnOggOnADiskWithoutHardLinksIsWhatTheRightSoundWouldHaveBecome) {
    CutAgain(Ogg, true);
}

}  // namespace
}  // namespace Corvetape
