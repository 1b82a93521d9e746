#include "media/cover_images.h"

#include <gtest/gtest.h>

#include <vector>

#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

class ScriptedWeb : public Http {
 public:
    void Get(const std::string& address, size_t limit,
             std::function<void(const HttpAnswer&)> answered) override {
        Asked.push_back(address);
        Limit = limit;
        Pending = std::move(answered);
    }
    void Cancel() override { Pending = nullptr; }

    void Answer(const std::string& body) {
        const auto answered = std::exchange(Pending, nullptr);
        ASSERT_TRUE(answered);
        answered({false, body});
    }

    void Fail() { std::exchange(Pending, nullptr)({true, {}}); }

    std::vector<std::string> Asked;
    size_t Limit = 0;
    std::function<void(const HttpAnswer&)> Pending;
};

class CoverImagesTest : public testing::Test {
 protected:
    CoverImagesTest() { Pause.EndOfSongDetection = EndOfSong::MediaData; }

    static std::string PictureOf(char mark, size_t size = 2000) { return std::string(size, mark); }

    std::string Stored() { return Machine.Files.ReadAll("/home/user/song.jpg", 1 << 22).value_or(""); }

    SimMachine Machine;
    ScriptedWeb Web;
    PauseSettings Pause;
    CoverImages Covers{&Web, Machine.Files, Pause};
};

TEST_F(CoverImagesTest, TheSameAddressIsFetchedOnce) {
    for (int i = 0; i < 3; ++i) Covers.LoadImage("http://127.0.0.1/a.jpg");
    EXPECT_EQ(Web.Asked.size(), 1u);
    EXPECT_EQ(Web.Limit, 1'000'000u);
}

TEST_F(CoverImagesTest, AFileCountsOnlyAsAWholePicture) {
    Pause.EndOfSongDetection = EndOfSong::Silence;
    const std::string head("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x10\0\0\0\x10\x08\2\0\0\0", 29);
    const auto stored = [this](const std::string& address, const std::string& body) {
        Covers.LoadImage(address);
        Web.Answer(body);
        Machine.Files.Delete("/home/user/song.jpg");
        Covers.SaveImage("/home/user/song");
        const std::string bytes = Stored();
        Covers.LoadImage("");
        Covers.SaveImage("");  // the next picture has none before it
        return bytes;
    };
    const std::string picture = head + std::string(2000, 'x');
    const std::string largest = head + std::string(1'000'000 - head.size(), 'x');
    EXPECT_EQ(stored("file:///c.png", picture), picture);
    EXPECT_TRUE(stored("file:///largest.png", largest) == largest);
    EXPECT_TRUE(stored("file:///longer.png", largest + "x").empty());
    EXPECT_EQ(stored("file:///home/user/letter.txt", std::string(2000, 'x')), "");
    EXPECT_EQ(stored("/home/user/letter.txt", std::string(2000, 'x')), "");
    EXPECT_EQ(stored("http://127.0.0.1/a", std::string(2000, 'x')), std::string(2000, 'x'));
    EXPECT_EQ(stored("HTTPS://127.0.0.1/a", std::string(2000, 'x')), std::string(2000, 'x'));
}

TEST_F(CoverImagesTest, NeitherAGifNorNothingIsFetched) {
    Covers.LoadImage("http://127.0.0.1/a.GIF");
    Covers.LoadImage("");
    Covers.LoadImage("gif");
    EXPECT_TRUE(Web.Asked.empty());
}

TEST_F(CoverImagesTest, AnAnswerOf1024BytesIsNoPictureAndOneOf1025Is) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a', 1024));
    EXPECT_EQ(Covers.Picture(), "");
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Web.Answer(PictureOf('b', 1025));
    EXPECT_EQ(Covers.Picture().size(), 1025u);
}

TEST_F(CoverImagesTest, AFailedRequestIsNotRepeatedUntilAnotherAddressCameBetween) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Fail();
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    EXPECT_EQ(Web.Asked.size(), 1u);
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    EXPECT_EQ(Web.Asked.size(), 3u);
}

TEST_F(CoverImagesTest, ANewAddressGivesTheRunningRequestUp) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Covers.LoadImage("http://127.0.0.1/b.gif");
    EXPECT_FALSE(Web.Pending);
}

TEST_F(CoverImagesTest, WithCutsByMediaDataTheOldPictureBelongsToTheSongThatIsBeingFinished) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Web.Answer(PictureOf('b'));
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, WithCutsByEverythingThatIsKnownItDoesToo) {
    Pause.EndOfSongDetection = EndOfSong::Automatic;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Web.Answer(PictureOf('b'));
    Covers.SaveImage("/home/user/song", "http://127.0.0.1/a.jpg");
    EXPECT_EQ(Stored(), PictureOf('a'));
    Covers.LoadImage("http://127.0.0.1/c.jpg");
    Web.Fail();
    Covers.SaveImage("/home/user/song", "http://127.0.0.1/b.jpg");
    EXPECT_EQ(Stored(), PictureOf('b')) << "a picture that cannot be had is the next song's";
}

TEST_F(CoverImagesTest, WithoutThemTheNewPictureBelongsToTheSongAtOnce) {
    Pause.EndOfSongDetection = EndOfSong::Silence;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, ASongWhoseAddressIsKnownGetsThePictureOfThatAddressOrNone) {
    for (const auto& [address, picture] : {std::pair{"http://127.0.0.1/a.jpg", 'a'},
                                           {"http://127.0.0.1/b.jpg", 'b'},
                                           {"http://127.0.0.1/c.jpg", '-'}}) {
        Covers.LoadImage("http://127.0.0.1/a.jpg");
        Web.Answer(PictureOf('a'));
        Covers.LoadImage("http://127.0.0.1/b.jpg");
        Web.Answer(PictureOf('b'));
        Machine.Files.Delete("/home/user/song.jpg");
        Covers.SaveImage("/home/user/song", address);
        EXPECT_EQ(Stored(), picture == '-' ? "" : PictureOf(picture)) << address;
    }
}

TEST_F(CoverImagesTest, APictureIsStoredOnce) {
    Pause.EndOfSongDetection = EndOfSong::Silence;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.SaveImage("/home/user/song");
    Machine.Files.Delete("/home/user/song.jpg");
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), "");
}

TEST_F(CoverImagesTest, ASongWithoutAFileHasNoPicture) {
    Pause.EndOfSongDetection = EndOfSong::Silence;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.SaveImage("");
    EXPECT_FALSE(Machine.Files.FileSize(".jpg"));
}

TEST_F(CoverImagesTest, ADiskThatRefusesIsPassedOver) {
    Pause.EndOfSongDetection = EndOfSong::Silence;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.SaveImage("/nowhere/song");
    EXPECT_EQ(Covers.Picture(), PictureOf('a'));
}

TEST_F(CoverImagesTest, ReportsWhenAPictureComesAndWhenItGoes) {
    int changes = 0;
    Covers.Changed.Connect([&] { ++changes; });
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    EXPECT_EQ(changes, 1);
    Web.Answer(PictureOf('a'));
    EXPECT_EQ(changes, 2);
}

TEST_F(CoverImagesTest, APictureThatWouldEatTheMemoryIsStoredButNotShown) {
    std::string png("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0", 24);
    png.resize(2000);
    Covers.LoadImage("http://127.0.0.1/small.png");
    Web.Answer(png);
    EXPECT_EQ(Covers.PictureToShow(), png);
    png.replace(16, 8, std::string("\0\0\x75\x30\0\0\x75\x30", 8));  // 30,000 by 30,000
    Covers.LoadImage("http://127.0.0.1/large.png");
    Web.Answer(png);
    EXPECT_EQ(Covers.Picture(), png);
    EXPECT_EQ(Covers.PictureToShow(), "");
    Covers.LoadImage("");
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), png);
}

TEST_F(CoverImagesTest, ByFixedTimeTheNewPictureBelongsToTheSongAtOnce) {
    Pause.EndOfSongDetection = EndOfSong::FixedTime;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, APictureIsCutOffAfterAMillionBytes) {
    Pause.EndOfSongDetection = EndOfSong::Silence;
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a', 1'000'001));
    EXPECT_EQ(Covers.Picture().size(), 1'000'000u);
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored().size(), 1'000'000u);
}

TEST_F(CoverImagesTest, AnAddressWithoutAPictureTakesTheOldOneAwayAndLeavesItToItsSong) {
    for (const char* address : {"", "http://127.0.0.1/b.gif"}) {
        Covers.LoadImage("http://127.0.0.1/a.jpg");
        Web.Answer(PictureOf('a'));
        Covers.LoadImage(address);
        EXPECT_EQ(Covers.Picture(), "");
        Covers.SaveImage("/home/user/song");
        EXPECT_EQ(Stored(), PictureOf('a'));
    }
}

TEST_F(CoverImagesTest, ASecondSongWithTheSameAddressHasNoPictureOfItsOwn) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    EXPECT_EQ(Covers.Picture(), PictureOf('a'));
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), "");
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, AShortAnswerIsStoredAsLittleAsItIsShown) {
    for (const size_t size : {size_t{1024}, size_t{1025}}) {
        Covers.LoadImage("http://127.0.0.1/" + std::to_string(size));
        Web.Answer(PictureOf('a', size));
        Covers.LoadImage("");
        Covers.SaveImage("/home/user/song");
        EXPECT_EQ(Stored().size(), size == 1024 ? 0u : 1025u);
    }
}

TEST_F(CoverImagesTest, AnAnswerOfOneByteLeavesTheSongThePictureThatItHas) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Web.Answer("b");
    Covers.LoadImage("http://127.0.0.1/c.jpg");
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, ASongWhosePictureCannotBeHadDoesNotGetThatOfASongThatWasDropped) {
    for (const EndOfSong mode : {EndOfSong::MediaData, EndOfSong::Silence, EndOfSong::FixedTime}) {
        for (const char* refused : {"http://127.0.0.1/b.jpg", "http://127.0.0.1/b.gif", "file:///b.txt"}) {
            Pause.EndOfSongDetection = mode;
            Covers.LoadImage("http://127.0.0.1/a.jpg");
            Web.Answer(PictureOf('a'));
            // Its song was too short to be kept, so nobody takes the picture.
            Covers.LoadImage(refused);
            if (std::string_view(refused).ends_with("jpg")) Web.Fail();
            if (std::string_view(refused).ends_with("txt")) Web.Answer(PictureOf('b'));
            // With cuts by media data the next address comes before the song is closed.
            if (mode == EndOfSong::MediaData) Covers.LoadImage("http://127.0.0.1/c.jpg");
            Covers.SaveImage("/home/user/song");
            EXPECT_EQ(Stored(), "") << refused;
        }
    }
}

TEST_F(CoverImagesTest, AFailedRequestLeavesTheSongThatIsBeingFinishedItsPicture) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Web.Fail();
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, ALateAddressLeavesTheSongThatIsBeingFinishedItsPicture) {
    Covers.LoadImage("http://127.0.0.1/a.jpg");
    Web.Answer(PictureOf('a'));
    Covers.LoadImage("");
    Covers.LoadImage("http://127.0.0.1/b.jpg");
    Covers.SaveImage("/home/user/song");
    EXPECT_EQ(Stored(), PictureOf('a'));
}

TEST_F(CoverImagesTest, AnAnswerToOneThatHasGoneReachesNobody) {
    std::function<void(const HttpAnswer&)> answered;
    {
        CoverImages covers(&Web, Machine.Files, Pause);
        covers.LoadImage("http://127.0.0.1/a.jpg");
        answered = Web.Pending;
    }
    EXPECT_FALSE(Web.Pending);
    answered({false, PictureOf('a')});  // must not touch what is gone
}

}  // namespace
}  // namespace Corvetape
