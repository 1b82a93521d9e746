#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::IsEmpty;
using testing::SizeIs;

class BadInputTest : public CliTest {
 protected:
    /// It was told in one line, nothing was printed as a result, and no folder was made for one.
    void ExpectRefusal(const Finished& run, const std::string& line, int code = 1) {
        EXPECT_EQ(run.Code, code);
        EXPECT_EQ(run.Err, "corvetape-cli: " + line + "\n");
        EXPECT_EQ(run.Out, "");
        EXPECT_THAT(FilesBelow(Out()), IsEmpty());
    }

    std::string PutShow() const { return PutWave("show.wav", MakeRecording()); }

    std::string PutShowAt48() const {
        WriteWave(folder / "show48.wav", MakeRecording({.FramesPerSecond = 48000}).Frames, 48000);
        return folder / "show48.wav";
    }

    /// A run with no tool on the search path.
    Finished SplitWithoutTools(std::vector<std::string> arguments) const {
        std::filesystem::create_directory(folder / "bin");
        CommandStart start = With("split", {"--out", Out()});
        start.Arguments.insert(start.Arguments.end(), arguments.begin(), arguments.end());
        start.Environment["PATH"] = folder / "bin";
        return RunCommand(start);
    }
};

TEST_F(BadInputTest, AFileThatIsNotThere) {
    ExpectRefusal(Split({"nothing.wav"}), "nothing.wav: no such file");
    ExpectRefusal(Split({"no/such/folder.wav"}), "no/such/folder.wav: no such file");
}

TEST_F(BadInputTest, AFileThatIsNoSound) {
    Put("text.txt", "This is no music.\n");
    ExpectRefusal(Split({"text.txt"}),
                  "text.txt: not a sound file that can be read, such as WAV, FLAC, Ogg or MP3");
}

TEST_F(BadInputTest, AnEmptyFile) {
    Put("empty.wav", "");
    ExpectRefusal(Split({"empty.wav"}),
                  "empty.wav: not a sound file that can be read, such as WAV, FLAC, Ogg or MP3");
}

TEST_F(BadInputTest, ABrokenHeader) {
    const std::string whole = Content(PutShow());
    Put("cut.wav", whole.substr(0, 30));
    ExpectRefusal(Split({"cut.wav"}), "cut.wav: its header is broken");
    std::string wrong = whole;
    wrong[22] = 0;  // channels
    Put("wrong.wav", wrong);
    ExpectRefusal(Split({"wrong.wav"}), "wrong.wav: its header is broken");
}

TEST_F(BadInputTest, AFileWithoutSound) {
    Put("silent.wav", Content(PutShow()).substr(0, 44));
    ExpectRefusal(Split({"silent.wav"}), "silent.wav: there is no sound in it");
}

TEST_F(BadInputTest, AFolder) {
    ExpectRefusal(Split({folder.Path()}), folder.Path() + ": is a folder");
}

TEST_F(BadInputTest, ADevice) {
    ExpectRefusal(Split({"/dev/zero"}), "/dev/zero: is not a file on a disk");
}

TEST_F(BadInputTest, MoreThanTwoChannels) {
    std::string surround = Content(PutShow());
    surround[22] = 6;
    surround[32] = 12;
    Put("surround.wav", surround);
    ExpectRefusal(Split({"surround.wav"}), "surround.wav: has 6 channels; only mono and stereo can be used");
}

TEST_F(BadInputTest, OneBadFileAmongGoodOnesIsToldBeforeAnythingIsSplit) {
    ExpectRefusal(Split({PutShow(), "nothing.wav"}), "nothing.wav: no such file");
}

TEST_F(BadInputTest, EachOfSeveralBadFilesIsTold) {
    Put("text.txt", "This is no music.\n");
    const Finished run = Split({"text.txt", PutShow(), "nothing.wav"});
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(run.Err,
              "corvetape-cli: text.txt: not a sound file that can be read, such as WAV, FLAC, Ogg or MP3\n"
              "corvetape-cli: nothing.wav: no such file\n");
    EXPECT_THAT(FilesBelow(Out()), IsEmpty());
}

TEST_F(BadInputTest, ANameThatWouldSteerTheTerminal) {
    ExpectRefusal(Split({"a\x1b[2J\nb.wav"}), "a [2J b.wav: no such file");
}

TEST_F(BadInputTest, AnUnknownSetting) {
    ExpectRefusal(Split({PutShow(), "--set", "Options.Nothing=1"}), "there is no setting Options.Nothing", 2);
    ExpectRefusal(Split({PutShow(), "--set", "Encoder=1"}),
                  "'Encoder=1' is not of the form SECTION.KEY=VALUE", 2);
    ExpectRefusal(Split({PutShow(), "--set", "Options.Encoder=mp3"}),
                  "Options.Encoder takes a whole number, not 'mp3'", 2);
}

TEST_F(BadInputTest, AFolderThatIsNoWholePath) {
    ExpectRefusal(Split({PutShow(), "--set", "Options.TempPath=%Nothing%/x"}),
                  "the folder %Nothing%/x/Corvet is no whole path; it has to begin with /");
}

TEST_F(BadInputTest, MediaDataThatAreSwitchedOff) {
    ExpectRefusal(Split({PutShow(), "--set", "Providers.Enable=0"}),
                  "the media data are switched off (Providers.Enable=0), so that nothing would be recorded");
}

TEST_F(BadInputTest, AFormatOrQualityThatIsNotThere) {
    ExpectRefusal(Split({PutShow(), "--set", "Options.Encoder=6"}),
                  "there is no format 6; Options.Encoder goes from 0 to 5");
    ExpectRefusal(Split({PutShow(), "--set", "Options.Encoder=-1"}),
                  "there is no format -1; Options.Encoder goes from 0 to 5");
    ExpectRefusal(Split({PutShow(), "--set", "Options.Encoder=1", "--set", "Options.MP3Quality=12"}),
                  "there is no quality 12 for MP3; MP3.EncParams has 12 of them, from 0 on");
    ExpectRefusal(Split({PutShow(), "--set", "Options.Encoder=1", "--set", "Encode.MP3="}),
                  "there is no command Encode.MP3 to make the chosen format");
}

TEST_F(BadInputTest, AToolThatIsNotThere) {
    const auto needs = [&](const std::string& encoder) {
        return SplitWithoutTools({PutShow(), "--set", "Options.Encoder=" + encoder});
    };
    ExpectRefusal(needs("1"), "the chosen format needs lame, which is not installed");
    ExpectRefusal(needs("2"), "the chosen format needs oggenc, which is not installed");
    ExpectRefusal(needs("3"),
                  "the chosen format needs ffmpeg with its encoder wmav2, which is not installed");
    ExpectRefusal(needs("4"),
                  "the chosen format needs ffmpeg with its encoder wmav2, which is not installed");
    ExpectRefusal(needs("5"), "the chosen format needs sox, which is not installed");
}

TEST_F(BadInputTest, AToolForTheWayToTheFormatThatIsNotThere) {
    ExpectRefusal(SplitWithoutTools({PutShow(), "--set", "Options.Normalize=1"}),
                  "normalising needs sox, which is not installed");
    ExpectRefusal(SplitWithoutTools({PutShowAt48()}),
                  "making 44.1 kHz out of a 48 kHz recording needs sox, which is not installed");
}

TEST_F(BadInputTest, AFolderThatCannotBeMade) {
    Put("file", "");
    const auto into = [&](const std::string& out) {
        return RunCommand(With("split", {PutShow(), "--out", folder / out}));
    };
    ExpectRefusal(into("file"), "cannot make the folder " + (folder / "file"));
    ExpectRefusal(into("file/below"), "cannot make the folder " + (folder / "file/below"));
}

TEST_F(BadInputTest, AFolderThatCannotBeWrittenTo) {
    // For the superuser only the system's own folders are closed.
    std::string closed = "/proc/self";
    std::string reason = "No such file or directory";
    if (geteuid() != 0) {
        closed = folder / "closed";
        std::filesystem::create_directory(closed);
        std::filesystem::permissions(closed, std::filesystem::perms::owner_read);
        reason = "Permission denied";
    }
    ExpectRefusal(RunCommand(With("split", {PutShow(), "--out", closed})),
                  "cannot write into the folder " + closed + ": " + reason);
}

TEST_F(BadInputTest, AHomeThatCannotBeMade) {
    Put("file", "");
    for (const std::string command : {"split", "record"}) {
        CommandStart start;
        start.Arguments = {command, "--home", folder / "file"};
        if (command == "split") start.Arguments.push_back(PutShow());
        if (command == "record") start.Arguments.insert(start.Arguments.end(), {"--input", "demo"});
        ExpectRefusal(RunCommand(start), "cannot make the folder " + (folder / "file"));
    }
}

TEST_F(BadInputTest, AMediaTableThatCannotBeRead) {
    ExpectRefusal(Split({PutShow(), "--media", "nothing.csv"}), "cannot read the media table nothing.csv");
    Put("bad.csv", "soon,Radio,Artist,Title,Album\n");
    ExpectRefusal(Split({PutShow(), "--media", "bad.csv"}),
                  "bad.csv: row 1 of the media table does not begin with a number of seconds");
}

TEST_F(BadInputTest, AnInputThatIsNotThere) {
    const auto record = [&](const std::string& input) {
        return RunCommand(With("record", {"--input", input}));
    };
    const std::string why = " (no sound server answers: Connection refused)";
    ExpectRefusal(record("7"), "there is no input 7; corvetape-cli devices lists them" + why);
    ExpectRefusal(record("Kitchen"),
                  "there is no input called 'Kitchen'; corvetape-cli devices lists them" + why);
    ExpectRefusal(record("file:nothing.wav"), "nothing.wav: no such file");
    ExpectRefusal(record("file:"), "file: needs a path after it");
    ExpectRefusal(RunCommand(With("record", {})),
                  "there is no default input to record from; try --input demo or --input file:PATH" + why);
}

TEST_F(BadInputTest, AnEmptyHomeIsNone) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"record", "--home", ""},
                                                  {"split", "--home", "", PutShow()},
                                                  {"profiles", "--home", ""}}) {
        const auto run = RunCommand({words, {}, "", false});
        EXPECT_EQ(run.Code, 2) << words[0];
        EXPECT_THAT(run.Err, testing::HasSubstr("The name of the folder is empty")) << words[0];
    }
}

TEST_F(BadInputTest, WrongWordsAreTheUsersMistake) {
    const auto run = [&](std::vector<std::string> words) {
        return RunCommand({std::move(words), {}, "", false});
    };
    for (const std::vector<std::string>& words : {std::vector<std::string>{},
                                                  {"sing"},
                                                  {"split"},
                                                  {"split", "--loud", "a.wav"},
                                                  {"record", "--songs", "x"}}) {
        const Finished finished = run(words);
        EXPECT_EQ(finished.Code, 2);
        EXPECT_EQ(finished.Out, "");
        EXPECT_THAT(LinesOf(finished.Err), SizeIs(1));
        EXPECT_THAT(finished.Err, testing::ContainsRegex("; corvetape-cli( [a-z]+)? --help tells more\n$"));
    }
}

TEST_F(BadInputTest, AMixerWithoutASoundServerIsAFailure) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"mixer"}, {"mixer", "--json"}}) {
        CommandStart start;
        start.Arguments = words;
        start.Environment = {{"PULSE_SERVER", "unix:/nowhere"}};
        const Finished run = RunCommand(start);
        EXPECT_EQ(run.Code, 1);
        EXPECT_EQ(run.Out, "");
        EXPECT_EQ(run.Err, "corvetape-cli: no sound server answers\n");
    }
}

}  // namespace
}  // namespace Corvetape
