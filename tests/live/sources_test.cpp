// A recording while its sources of media data come, hang and go: with real browsers, a session bus and a
// sound server.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "live/live_browser.h"
#include "live/live_program.h"
#include "live/page_server.h"
#include "platform/linux/browser/patience.h"
#include "support/read_sound.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr size_t Second = 44100;
constexpr const char* Player = "Windows Media Player";

constexpr const char* Profiles =
    "[- First]\nName=First Radio\nWindow&Doc=;;*;*/first\nTitle=-4;now;\n"
    "[- Second]\nName=Second Radio\nWindow&Doc=;;*;*/second\nTitle=-4;now;\n";

constexpr const char* QuietPage = "<!doctype html><title>Hanging</title><p id='now'>Hung Song</p>";

class SourcesTest : public testing::Test {
 protected:
    SourcesTest() { server.Start(); }

    bool WaitFor(const std::function<bool()>& condition) { return session.WaitFor(condition, seconds(60)); }

    /// Waits until this is read, within as many polls as a machine at its ease makes in two seconds, and some
    /// for those in which a busy one gets no answer.
    bool TakesOver(const std::string& source, const std::string& title) {
        constexpr int mostPolls = 16;
        const int before = program.Pages.Polls;
        EXPECT_TRUE(WaitFor([&] { return program.Reads(source, title); }));
        return program.Pages.Polls - before <= mostPolls;
    }

    /// Keeps a page busy for ever.
    void Hang(uint16_t port) {
        DevToolsDocuments pages({port});
        EXPECT_TRUE(WaitFor([&] {
            pages.BeginPoll();
            const auto list = pages.Pages();
            const auto page = list.empty() ? nullptr : pages.Open(list.front());
            return page && page->Run("setTimeout(() => { for (;;); }, 3000)");
        }));
    }

    /// Begins to play noise for so many seconds.
    void PlayNoise(size_t noiseSeconds) {
        noise = Noise(noiseSeconds * Second, 51);
        WriteWave(server.Folder / "noise.wav", noise, Second);
        player = server.Play(server.Folder / "noise.wav");
    }

    /// Waits until the noise has been played, and ends the recording.
    void EndRecording() {
        EXPECT_TRUE(WaitFor([&] { return player->Wait(milliseconds(0)).has_value(); }));
        const double end = program.Running->InputSeconds() + 1;
        EXPECT_TRUE(WaitFor([&] { return program.Running->InputSeconds() > end; }));
        program.Running->Unload();
        EXPECT_EQ(program.LostFrames, 0u);
    }

    LiveSession session;
    SoundServer server{ServerKind::PulseAudio};
    SessionBus bus{session};
    LiveProgram program{session, server, bus};
    std::vector<Frame> noise;
    std::unique_ptr<TestProcess> player;
};

TEST_F(SourcesTest, WhenOneIsClosedTheNextOneTakesOverSoon) {
    const PageServer pages({{"/first", "<!doctype html><p id='now'>First Song</p>"},
                            {"/second", "<!doctype html><p id='now'>Second Song</p>"}});
    LiveBrowser first(session, pages.Url("/first"));
    LiveBrowser second(session, pages.Url("/second"));
    auto third = std::make_unique<FakePlayer>(
        bus, "third",
        QVariantMap{{"PlaybackStatus", "Playing"}, {"Metadata", QVariantMap{{"xesam:title", "Third Song"}}}});
    const std::string ports = std::to_string(second.Port()) + ";" + std::to_string(first.Port());
    ASSERT_TRUE(program.Start(Profiles, ports, {"First Radio", "Second Radio", Player}));
    PlayNoise(15);

    ASSERT_TRUE(WaitFor([&] { return program.Reads("First Radio", "First Song"); }));
    first.Kill();
    EXPECT_TRUE(TakesOver("Second Radio", "Second Song"));
    second.Kill();
    EXPECT_TRUE(TakesOver(Player, "Third Song"));
    third.reset();
    EXPECT_TRUE(TakesOver("NoStationData", ""));

    EndRecording();
    ASSERT_FALSE(program.Songs.empty());
    for (const TransferredSong& song : program.Songs) {
        const std::vector<Frame> recorded = ReadSound(song.TempFile);
        const auto sound = WithoutSilenceAround(recorded);
        const auto begin = std::ranges::search(noise, sound.first(std::min<size_t>(sound.size(), 100)));
        const std::span<const Frame> played(begin.begin(), noise.end());
        EXPECT_EQ(Comparison(played.first(std::min(played.size(), sound.size())), sound), "equal");
    }
}

TEST_F(SourcesTest, APageThatHangsDelaysNoPollBeyondItsLimitAndCostsNoSound) {
    const PageServer pages(std::map<std::string, std::string>{{"/first", QuietPage}});
    const LiveBrowser browser(session, pages.Url("/first"));
    ASSERT_TRUE(program.Start(Profiles, std::to_string(browser.Port()), {"First Radio"}));
    ASSERT_TRUE(WaitFor([&] { return program.Reads("First Radio", "Hung Song"); }));
    // The cut in front of the first title has been made; the page still answers.
    ASSERT_TRUE(WaitFor([&] { return !program.Running->Values().Cut.CutPending; }));
    program.Pages.Longest = {};
    PlayNoise(15);
    Hang(browser.Port());
    ASSERT_TRUE(WaitFor([&] { return program.Reads("NoStationData", ""); })) << "the page does not hang";
    const int polls = program.Pages.Polls;

    EndRecording();
    EXPECT_GE(program.Pages.Polls, polls + 3) << "the page was not asked any more";
    EXPECT_LT(program.Pages.Longest, 5 * Patience::Limit);
    ASSERT_FALSE(program.Songs.empty());
    EXPECT_EQ(Comparison(noise, WithoutSilenceAround(ReadSound(program.Songs.back().TempFile))), "equal");
}

}  // namespace
}  // namespace Corvetape
