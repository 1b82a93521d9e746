#include "audio/wav_file.h"

#include <gtest/gtest.h>

#include <string>

#include "audio/signal_bench.h"
#include "sim/sim_files.h"

namespace Corvetape::Test {

namespace {

constexpr const char* Path = "/temp/song.wav";

uint32_t Number(const std::string& bytes, size_t at, size_t width = 4) {
    uint32_t number = 0;
    for (size_t i = width; i-- > 0;) number = number << 8U | static_cast<uint8_t>(bytes.at(at + i));
    return number;
}

class WavFiles : public testing::Test {
 protected:
    WavFiles() { Disk.MakeFolders("/temp"); }

    Opened<WavFile> Create() { return WavFile::Create(Disk, Path, MakeWaveFormat(44100)); }
    std::string Content() const { return Disk.Content(Path).value_or(""); }

    bool WriteBuffers(WavFile& file, int32_t count) {
        bool good = true;
        for (int32_t i = 0; i < count; ++i) {
            const WaveBuffer buffer = NumberedBuffer(i);
            good = file.Write(FramesOf(buffer)) && good;
        }
        return good;
    }

    SimFiles Disk;
};

}  // namespace

TEST_F(WavFiles, TheHeaderIsLaidOutByteForByte) {
    const auto file = Create();
    ASSERT_NE(file, nullptr);
    const std::string header = Content();
    ASSERT_EQ(header.size(), 44U);
    EXPECT_EQ(header.substr(0, 4), "RIFF");
    EXPECT_EQ(Number(header, 4), 36U);
    EXPECT_EQ(header.substr(8, 8), "WAVEfmt ");
    EXPECT_EQ(Number(header, 16), 16U);
    EXPECT_EQ(Number(header, 20, 2), 1U);
    EXPECT_EQ(Number(header, 22, 2), 2U);
    EXPECT_EQ(Number(header, 24), 44100U);
    EXPECT_EQ(Number(header, 28), 176400U);
    EXPECT_EQ(Number(header, 32, 2), 4U);
    EXPECT_EQ(Number(header, 34, 2), 16U);
    EXPECT_EQ(header.substr(36, 4), "data");
    EXPECT_EQ(Number(header, 40), 0U);
}

TEST_F(WavFiles, At48KilohertzTheHeaderSaysSo) {
    const auto file = WavFile::Create(Disk, Path, MakeWaveFormat(48000));
    EXPECT_EQ(Number(Content(), 24), 48000U);
    EXPECT_EQ(Number(Content(), 28), 192000U);
}

TEST_F(WavFiles, EveryWriteReachesTheFileAtOnce) {
    const auto file = Create();
    for (int32_t i = 1; i <= 3; ++i) {
        WriteBuffers(*file, 1);
        EXPECT_EQ(Content().size(), static_cast<size_t>(44 + i * BufferBytes));
    }
    EXPECT_EQ(file->DataBytes(), static_cast<uint64_t>(3 * BufferBytes));
}

TEST_F(WavFiles, TheHeaderIsNeverMoreThanFiveSecondsBehind) {
    const auto file = Create();
    for (int32_t i = 1; i <= 350; ++i) {
        WriteBuffers(*file, 1);
        const uint32_t told = Number(Content(), 40);
        ASSERT_LT(i * BufferBytes - told, 5 * 176400) << i;
        ASSERT_EQ(Number(Content(), 4), told + 36) << i;
    }
    EXPECT_EQ(Number(Content(), 40), 300 * BufferBytes);
}

TEST_F(WavFiles, AFinishedFileStatesItsSizes) {
    const auto file = Create();
    WriteBuffers(*file, 3);
    EXPECT_TRUE(file->FinishData());
    EXPECT_TRUE(file->FinishRiff());
    EXPECT_TRUE(file->Close());
    EXPECT_EQ(Number(Content(), 40), 3 * BufferBytes);
    EXPECT_EQ(Number(Content(), 4), Content().size() - 8);
    EXPECT_EQ(Disk.OpenHandles(), 0U);
}

TEST_F(WavFiles, TheSamplesAreLittleEndianLeftBeforeRight) {
    const auto file = Create();
    const WaveBuffer buffer = MakeBuffer({0x1234, -2});
    file->Write(FramesOf(buffer));
    EXPECT_EQ(Content().substr(44, 8), std::string("\x34\x12\xFE\xFF\x34\x12\xFE\xFF", 8));
}

TEST_F(WavFiles, TagsFollowTheAudioEachPaddedToAnEvenLength) {
    const auto file = Create();
    WriteBuffers(*file, 1);
    file->FinishData();
    const InfoTag tags[] = {{"IGNR", "Radio"}, {"IART", ""}, {"IALB", "AB"}, {"INAM", "x"}};
    EXPECT_TRUE(file->WriteInfo(tags));
    EXPECT_TRUE(file->FinishRiff());
    file->Close();
    const std::string content = Content();
    const std::string list = content.substr(44 + BufferBytes);
    const std::string expected = std::string("LIST\x30\0\0\0INFO", 12) +
                                 std::string("IGNR\x05\0\0\0Radio\0", 14) + std::string("IART\0\0\0\0", 8) +
                                 std::string("IALB\x02\0\0\0AB", 10) + std::string("INAM\x01\0\0\0x\0", 10);
    EXPECT_EQ(list.size() - 8, Number(list, 4));
    std::string sized = expected;
    sized[4] = static_cast<char>(expected.size() - 8);
    EXPECT_EQ(list, sized);
    EXPECT_EQ(Number(content, 4), content.size() - 8);
    EXPECT_EQ(Number(content, 40), BufferBytes);
}

TEST_F(WavFiles, TagsOfStrangersAreCutBetweenTwoCharactersToALimit) {
    const auto file = Create();
    std::string text(MostTagBytes - 1, 'a');
    text += "\xC3\xA4";
    const InfoTag tags[] = {{"INAM", text}};
    file->WriteInfo(tags);
    file->FinishRiff();
    file->Close();
    const auto info = ReadWavInfo(Disk, Path);
    ASSERT_TRUE(info);
    ASSERT_EQ(info->Tags.size(), 1U);
    EXPECT_EQ(info->Tags[0].second, std::string(MostTagBytes - 1, 'a'));
}

TEST_F(WavFiles, TheLargestFileHasRoomForItsTags) {
    EXPECT_LE(MostWavDataBytes + WavHeaderBytes - 8 + 12 + 4 * (8 + MostTagBytes), 0xFFFF'FFFFU);
}

TEST_F(WavFiles, WhatIsTakenOffStaysAfterTheEndThatTheHeaderStates) {
    const auto file = Create();
    WriteBuffers(*file, 4);
    EXPECT_TRUE(file->TakeOff(2 * BufferBytes));
    file->FinishData();
    file->FinishRiff();
    file->Close();
    EXPECT_EQ(Number(Content(), 40), 2 * BufferBytes);
    EXPECT_EQ(Number(Content(), 4), 36 + 2 * BufferBytes);
    EXPECT_EQ(Content().size(), static_cast<size_t>(44 + 4 * BufferBytes));
}

TEST_F(WavFiles, TagsAreWrittenOverWhatWasTakenOff) {
    const auto file = Create();
    WriteBuffers(*file, 4);
    file->TakeOff(2 * BufferBytes);
    file->FinishData();
    const InfoTag tags[] = {{"INAM", "Song"}};
    file->WriteInfo(tags);
    file->FinishRiff();
    file->Close();
    EXPECT_EQ(Content().substr(44 + 2 * BufferBytes, 4), "LIST");
    EXPECT_EQ(Number(Content(), 4), 36 + 2 * BufferBytes + 24);
    const auto info = ReadWavInfo(Disk, Path);
    ASSERT_TRUE(info);
    ASSERT_EQ(info->Tags.size(), 1U);
}

TEST_F(WavFiles, NoMoreThanAllCanBeTakenOff) {
    const auto file = Create();
    WriteBuffers(*file, 1);
    EXPECT_TRUE(file->TakeOff(100 * BufferBytes));
    EXPECT_EQ(file->DataBytes(), 0U);
}

TEST_F(WavFiles, AFileThatCannotBeCreatedIsNone) {
    Disk.AddFault({.Operation = FileOperation::Create, .Error = EACCES});
    const auto file = Create();
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(file.Failure.Code(), EACCES);
    EXPECT_EQ(file.Failure.Path, Path);
}

TEST_F(WavFiles, AFileThatTakesNoHeaderIsNotLeftBehind) {
    Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC, .AfterBytes = 20});
    EXPECT_EQ(Create(), nullptr);
    EXPECT_FALSE(Disk.Exists(Path));
    EXPECT_EQ(Disk.OpenHandles(), 0U);
}

TEST_F(WavFiles, AfterAFailedWriteTheHeaderCoversWhatIsThereAndTheNextWriteGoesOnAfterIt) {
    const auto file = Create();
    WriteBuffers(*file, 3);
    const size_t fault = Disk.AddFault({.Operation = FileOperation::Write,
                                        .Error = ENOSPC,
                                        .AfterBytes = 44 + 3 * BufferBytes + 1001,
                                        .Times = 1});
    EXPECT_FALSE(WriteBuffers(*file, 1));
    EXPECT_EQ(file->DataBytes(), static_cast<uint64_t>(3 * BufferBytes));
    EXPECT_EQ(Number(Content(), 40), 3 * BufferBytes);
    Disk.RemoveFault(fault);
    const WaveBuffer next = NumberedBuffer(77);
    EXPECT_TRUE(file->Write(FramesOf(next)));
    EXPECT_EQ(Number(Content(), 44 + 3 * static_cast<size_t>(BufferBytes), 2), 77U);
    EXPECT_EQ(Content().size(), static_cast<size_t>(44 + 4 * BufferBytes));
}

TEST_F(WavFiles, AnUpdateOfTheHeaderThatFailsIsTriedAgainAfterTheNextBuffer) {
    const auto file = Create();
    Disk.AddFault({.Operation = FileOperation::Seek, .Times = 1});
    EXPECT_TRUE(WriteBuffers(*file, 100));
    EXPECT_EQ(Number(Content(), 40), 0U);
    const WaveBuffer next = NumberedBuffer(100);
    EXPECT_TRUE(file->Write(FramesOf(next)));
    EXPECT_EQ(Number(Content(), 40), 101 * BufferBytes);
    EXPECT_EQ(Number(Content(), 44 + 100 * static_cast<size_t>(BufferBytes), 2), 100U)
        << "the audio is where it belongs";
}

TEST_F(WavFiles, AFileThatNobodyClosesIsLeftWithItsSizes) {
    {
        const auto file = Create();
        WriteBuffers(*file, 7);
    }
    EXPECT_EQ(Number(Content(), 40), 7 * BufferBytes);
    EXPECT_EQ(Disk.OpenHandles(), 0U);
}

TEST_F(WavFiles, TagsThatFailDoNotCountAsPartOfTheFile) {
    const auto file = Create();
    WriteBuffers(*file, 2);
    file->FinishData();
    Disk.AddFault({.Operation = FileOperation::Write, .Times = 1});
    const InfoTag tags[] = {{"INAM", "Song"}};
    EXPECT_FALSE(file->WriteInfo(tags));
    EXPECT_TRUE(file->FinishRiff());
    file->Close();
    EXPECT_EQ(Number(Content(), 4), 36 + 2 * BufferBytes);
    EXPECT_EQ(Number(Content(), 40), 2 * BufferBytes);
}

TEST_F(WavFiles, OperationsOnAClosedFileFail) {
    const auto file = Create();
    file->Close();
    EXPECT_FALSE(WriteBuffers(*file, 1));
    EXPECT_FALSE(file->TakeOff(0));
    EXPECT_FALSE(file->FinishData());
    EXPECT_FALSE(file->FinishRiff());
    EXPECT_FALSE(file->WriteInfo({}));
    EXPECT_TRUE(file->Close());
}

TEST_F(WavFiles, ALateErrorIsReportedByTheClose) {
    const auto file = Create();
    Disk.AddFault({.Operation = FileOperation::Close});
    EXPECT_FALSE(file->Close());
}

}  // namespace Corvetape::Test
