#include <gtest/gtest.h>

#include <string>

#include "audio/signal_bench.h"
#include "audio/wav_file.h"
#include "platform/virtual/sim_random.h"
#include "sim/sim_files.h"

namespace Corvetape::Test {

namespace {

constexpr const char* Path = "/temp/song.wav";

class WavInfos : public testing::Test {
 protected:
    WavInfos() { Disk.MakeFolders("/temp"); }

    /// What a crash leaves after so many buffers: a file that nobody has finished.
    std::string Crashed(int32_t buffers) {
        Disk.Delete(Path);  // of the file before, if there was one
        const auto file = WavFile::Create(Disk, Path, MakeWaveFormat(44100));
        for (int32_t i = 0; i < buffers; ++i) {
            const WaveBuffer buffer = NumberedBuffer(i);
            file->Write(FramesOf(buffer));
        }
        return *Disk.Content(Path);
    }

    std::string Finished(int32_t buffers, int32_t takenOff, bool tagged) {
        Disk.Delete(Path);  // of the file before, if there was one
        const auto file = WavFile::Create(Disk, Path, MakeWaveFormat(44100));
        for (int32_t i = 0; i < buffers; ++i) {
            const WaveBuffer buffer = NumberedBuffer(i);
            file->Write(FramesOf(buffer));
        }
        file->TakeOff(static_cast<uint64_t>(takenOff) * BufferBytes);
        file->FinishData();
        const InfoTag tags[] = {{"IART", "Somebody"}, {"INAM", "Something"}};
        if (tagged) file->WriteInfo(tags);
        file->FinishRiff();
        file->Close();
        return *Disk.Content(Path);
    }

    bool Repair(const std::string& content) {
        Disk.Put(Path, content);
        return RepairWavHeader(Disk, Path);
    }

    SimFiles Disk;
};

}  // namespace

TEST_F(WavInfos, GivesFormatSizesAndTags) {
    Finished(3, 0, true);
    const auto info = ReadWavInfo(Disk, Path);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->Format, MakeWaveFormat(44100));
    EXPECT_EQ(info->DataStart, 44U);
    EXPECT_EQ(info->DataBytes, static_cast<uint64_t>(3 * BufferBytes));
    EXPECT_EQ(info->RiffBytes, info->FileBytes);
    const std::vector<std::pair<std::string, std::string>> tags = {{"IART", "Somebody"},
                                                                   {"INAM", "Something"}};
    EXPECT_EQ(info->Tags, tags);
}

TEST_F(WavInfos, ReadsFilesWithOtherChunksBeforeTheAudio) {
    const std::string content = Finished(1, 0, false);
    Disk.Put(Path, content.substr(0, 12) + std::string("junk\x03\0\0\0abc\0", 12) + content.substr(12));
    const auto info = ReadWavInfo(Disk, Path);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->DataStart, 56U);
    EXPECT_FALSE(RepairWavHeader(Disk, Path)) << "it is no song file of ours";
}

TEST_F(WavInfos, TheFormatAheadOfTheAudioCounts) {
    std::string content = Finished(1, 0, false);
    const std::string mono = [&] {
        std::string chunk = content.substr(12, 24);
        chunk[10] = 1;
        return chunk;
    }();
    content[7] = 0x7F;  // the whole file is looked through
    Disk.Put(Path, content + mono);
    const auto info = ReadWavInfo(Disk, Path);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->Format, MakeWaveFormat(44100));

    Disk.Put(Path, content.substr(0, 12) + content.substr(36) + mono);
    EXPECT_FALSE(ReadWavInfo(Disk, Path)) << "none ahead of it";
}

TEST_F(WavInfos, WhatIsNoWavFileHasNoInfo) {
    EXPECT_FALSE(ReadWavInfo(Disk, "/temp/missing.wav"));
    for (const std::string content : {"", "RIFF", "RIFF1234WAVE", "OggS1234WAVEfmt ", "RIFF1234AVI fmt "}) {
        Disk.Put(Path, content);
        EXPECT_FALSE(ReadWavInfo(Disk, Path)) << content;
        EXPECT_FALSE(RepairWavHeader(Disk, Path)) << content;
    }
}

TEST_F(WavInfos, AFileCutAnywhereIsReadOrRefusedButNeverTrusted) {
    const std::string content = Finished(1, 0, true);
    for (size_t size = 0; size <= content.size(); size += size < 60 ? 1 : 97) {
        Disk.Put(Path, content.substr(0, size));
        const auto info = ReadWavInfo(Disk, Path);
        EXPECT_EQ(info.has_value(), size >= 44) << size;
    }
}

TEST_F(WavInfos, RandomBytesInTheHeaderDoNoHarm) {
    const std::string content = Finished(2, 0, true);
    for (uint64_t seed = 1; seed <= 2000; ++seed) {
        SimRandom random(seed);
        std::string damaged = content;
        for (int32_t i = 0; i < 6; ++i) {
            const size_t at = random.Chance(0.5) ? random.Below(44) : content.size() - 1 - random.Below(60);
            damaged[at] = static_cast<char>(random.Below(256));
        }
        Disk.Put(Path, damaged);
        ReadWavInfo(Disk, Path);
        RepairWavHeader(Disk, Path);
        ASSERT_EQ(Disk.Content(Path)->size(), content.size()) << "seed " << seed;
    }
}

TEST_F(WavInfos, ARepairedFileCoversAllItsAudio) {
    for (const int32_t buffers : {0, 1, 99, 100, 101, 257}) {
        EXPECT_TRUE(Repair(Crashed(buffers)));
        const auto info = ReadWavInfo(Disk, Path);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->DataBytes, static_cast<uint64_t>(buffers * BufferBytes));
        EXPECT_EQ(info->RiffBytes, info->FileBytes);
    }
}

TEST_F(WavInfos, AFrameThatWasWrittenInPartIsLeftOut) {
    EXPECT_TRUE(Repair(Crashed(3) + "abc"));
    const auto info = ReadWavInfo(Disk, Path);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->DataBytes, static_cast<uint64_t>(3 * BufferBytes));
}

TEST_F(WavInfos, AFinishedFileIsNotChangedByARepair) {
    for (const bool tagged : {true, false}) {
        const std::string content = Finished(3, 0, tagged);
        EXPECT_TRUE(Repair(content));
        EXPECT_EQ(Disk.Content(Path), content);
    }
    const std::string trimmed = Finished(5, 2, true);
    EXPECT_TRUE(Repair(trimmed));
    EXPECT_EQ(Disk.Content(Path), trimmed);
}

TEST_F(WavInfos, TagsThatWereBegunAreNotTakenForAudio) {
    const std::string content = Finished(3, 0, true);
    std::string half = content.substr(0, content.size() - 7);
    const auto riff = static_cast<uint32_t>(36 + 3 * BufferBytes);
    for (uint32_t i = 0; i < 4; ++i) half[4 + i] = static_cast<char>(riff >> (8 * i) & 0xFFU);
    EXPECT_TRUE(Repair(half));
    EXPECT_EQ(ReadWavInfo(Disk, Path)->DataBytes, static_cast<uint64_t>(3 * BufferBytes));
}

TEST_F(WavInfos, AFileThatCannotBeChangedIsNotRepaired) {
    const std::string content = Crashed(3);
    Disk.AddFault({.Operation = FileOperation::Patch});
    EXPECT_FALSE(Repair(content));
}

}  // namespace Corvetape::Test
