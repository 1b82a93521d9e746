#pragma once

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "live/automatic_stage.h"
#include "live/live_browser.h"
#include "live/page_server.h"
#include "live/played_songs.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {

/// Seconds of a song that may be missing at an edge, or of its neighbour that may be in it.
inline constexpr double WithAGap = 0.1;
inline constexpr double WithoutAGap = 0.3;

/// Of the first songs of a source, at joins without a gap. Nothing is learned of it yet: a join may be taken
/// for a fade of a second, of which both songs have all.
inline constexpr double FirstCuts = 1.2;

/// A player on a busy machine falters: its song gets longer by that, and a little of it is lost to the eye of
/// the test, which looks at windows of 20 ms.
inline constexpr double Faltering = 3;
inline constexpr double FalteringHides = 0.3;

/// Seconds of the input after which a recorder ends that does not get what it waits for.
inline constexpr int Patience = 120;

/// So busy that players start late and falter whatever they play.
bool MachineIsBusy();

/// Songs that end by everything that is known, on both sound servers at the same time: most of a test is
/// waiting.
class AutomaticRecording : public testing::Test {
 protected:
    AutomaticRecording() { MakeStages(); }

    void MakeStages();

    /// A take on a machine that was too busy for its players says nothing of joins: there is another one
    /// then, with everything new. On any other machine the first failure counts.
    template <typename Take>
    void WithRetakes(const Take& take) {
        constexpr int mostTakes = 3;
        for (int number = 1; number < mostTakes; ++number) {
            testing::TestPartResultArray failures;
            {
                const testing::ScopedFakeTestPartResultReporter intercepted(
                    testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
                take();
            }
            if (failures.size() == 0) return;
            if (!MachineIsBusy()) {
                for (int i = 0; i < failures.size(); ++i) {
                    ADD_FAILURE() << failures.GetTestPartResult(i).message();
                }
                return;
            }
            MakeStages();
        }
        take();
    }

    /// A song with the tone of its number, 20 % of it noise.
    std::string Song(int number, int length, const std::string& filter = "anull", bool tagged = true);

    /// Records until so many songs were kept.
    void Record(int songs, const std::vector<std::string>& more = {}, int seconds = Patience);

    /// Records a page that a browser plays on each server, until so many songs were kept. `how`: lines of its
    /// profile.
    void RecordPage(const PageServer& pages, int songs, int seconds, const std::string& how);

    void Play(const std::vector<std::string>& files) {
        for (AutomaticStage& stage : stages) stage.Play(files);
    }

    /// Waits until it is so on all servers.
    template <typename Condition>
    void Await(const Condition& condition) {
        for (AutomaticStage& stage : stages) {
            EXPECT_TRUE(session.WaitFor([&] { return condition(stage); }, std::chrono::milliseconds(60'000)));
        }
    }

    /// Presses a button of each player when it has played so much of a song.
    void PressAfter(int number, double played, const std::string& button);

    /// The time of a player and a recorder that know of no clock of ours.
    void WaitFor(double length) {
        session.WaitFor([] { return false; }, std::chrono::milliseconds(static_cast<int>(length * 1000)));
    }

    /// Looks at what was kept on each of the servers, which have to be so many songs.
    template <typename Look>
    void ExpectKept(size_t songs, const Look& look) {
        constexpr std::array<const char*, 2> names = {"PulseAudio", "PipeWire"};
        for (size_t i = 0; i < stages.size(); ++i) {
            const std::vector<nlohmann::json> kept = stages[i].Kept();
            SCOPED_TRACE(names[i] + ("\n" + stages[i].Story()));
            EXPECT_EQ(kept.size(), songs);
            if (kept.size() == songs) look(stages[i], kept);
        }
    }

    static void ExpectWhole(const AutomaticStage& stage, const std::string& name, int number, double length,
                            double within);

    static void ExpectWhole(const AutomaticStage& stage, int number, double length, double within) {
        const std::string text = std::to_string(number);
        ExpectWhole(stage, "Band " + text + " - Song " + text, number, length, within);
    }

    /// The same for each edge by itself. `suffix` follows the name of the song in that of its file.
    static void ExpectEdges(const AutomaticStage& stage, const PlayedSong& song, double within,
                            const std::string& suffix = "");

    LiveSession session;
    TempFolder folder;
    std::deque<AutomaticStage> stages;  ///< one for each sound server
    std::vector<std::unique_ptr<LiveBrowser>> browsers;
};

}  // namespace Corvetape
