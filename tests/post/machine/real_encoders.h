#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "core/log.h"
#include "core/settings/profile.h"
#include "core/text/text.h"
#include "platform/linux/files/linux_files.h"
#include "platform/linux/files/linux_folders.h"
#include "platform/linux/loop/linux_clock.h"
#include "platform/linux/processes/linux_processes.h"
#include "platform/linux/processes/shell_script.h"
#include "platform/linux/run_shell.h"
#include "post/encoders/encoder_table.h"
#include "post/encoders/encoder_tools.h"
#include "post/lists/watch_pages.h"
#include "post/transfer/encoder_results.h"
#include "post/transfer/song_counter.h"
#include "post/transfer/transfer_job.h"
#include "support/data_file.h"
#include "support/noted_reports.h"

namespace Corvetape {

constexpr std::chrono::milliseconds JobLimit{60000};
constexpr uint64_t ReadLimit = 64 * 1024 * 1024;

inline void Put(std::string& text, uint32_t value, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
}

/// A song file as the recorder writes it: 16-bit stereo with a tone of this amplitude.
inline std::string ToneFile(uint32_t framesPerSecond, double seconds, double amplitude) {
    std::string samples;
    const auto frames = static_cast<uint32_t>(framesPerSecond * seconds);
    for (uint32_t i = 0; i < frames; ++i) {
        const double value = amplitude * std::sin(i * 2 * M_PI * 440 / framesPerSecond);
        Put(samples, static_cast<uint32_t>(static_cast<int32_t>(value)), 2);
        Put(samples, static_cast<uint32_t>(static_cast<int32_t>(-value)), 2);
    }
    const auto bytes = static_cast<uint32_t>(samples.size());
    std::string file = "RIFF";
    Put(file, bytes + 36, 4);
    file += "WAVEfmt ";
    Put(file, 16, 4);
    Put(file, 1, 2);
    Put(file, 2, 2);
    Put(file, framesPerSecond, 4);
    Put(file, framesPerSecond * 4, 4);
    Put(file, 4, 2);
    Put(file, 16, 2);
    file += "data";
    Put(file, bytes, 4);
    return file + samples;
}

/// Highest magnitude of a file as ToneFile makes it.
inline int32_t PeakOf(const std::string& file) {
    int32_t peak = 0;
    for (size_t i = 44; i + 1 < file.size(); i += 2) {
        int16_t sample = 0;
        std::memcpy(&sample, file.data() + i, 2);
        peak = std::max(peak, std::abs(int32_t{sample}));
    }
    return peak;
}

/// The commands that come with the program and the tools of this machine, in a folder of their own.
class RealEncoders : public ::testing::Test {
 protected:
    void SetUp() override {
        Root = Testing::RunShell("mktemp -d | tr -d '\\n'").Output;
        ASSERT_FALSE(Root.empty());
        Folders.Paths = {Root + "/temp", Root + "/music", Root + "/log"};
        Folders.SongTempFolder = Root + "/temp/Corvet";
        Folders.ProgramFolder = Corvetape::Test::DataFolder();
        for (const char* folder : {"/temp", "/temp/Corvet", "/music", "/log"})
            Files.MakeFolder(Root + folder);
        LoadCommands();
        Options.MusicFolderTemplate = "%Genre%";
        Options.MusicFileTemplate[1] = "%Artist% - %Title%";
        Media.SongMedia.StationName = "Radio \xc3\x84";
        Media.SongMedia.Artist = "Artist";
        Media.SongMedia.Song = "Title";
        Media.SongMedia.Album = "Album";
        Media.SongMedia.TempFileName = "240131120000";
        Job.Transferred.Connect([this](const TransferredSong& each) { Song = each; });
    }

    void TearDown() override { Testing::RunShell("rm -rf -- " + ShellWord(Root)); }

    void LoadCommands() {
        const Profile fix(Files, Folders.ProgramFolder + "/CorvetFix.ini");
        Options.NormalizeCommand = fix.ReadText("Encode", "Normalize", "", 254);
        for (size_t i = 0; i < EncoderTable.size(); ++i) {
            const EncoderRow& row = EncoderTable[i];
            Options.EncoderCommand[i] = fix.ReadText("Encode", row.TemplateKey, "", 254);
            if (row.Qualities == nullptr) continue;
            (Options.*row.Qualities).EncParams = Split(fix.ReadText(row.Section, "EncParams", "", 1023), ';');
        }
    }

    std::string TempPath(const std::string& extension) {
        return Folders.SongTempFolder + "/" + Media.SongMedia.TempFileName + extension;
    }

    void PutSong(const std::string& content) {
        ASSERT_TRUE(Files.ReplaceAtomically(TempPath(".wav"), content));
    }

    void PutCover(const std::string& measures) {
        const std::string cover = ShellWord(TempPath(".jpg"));
        ASSERT_EQ(Testing::RunShell("ffmpeg -nostdin -loglevel error -f lavfi -i nullsrc=s=" + measures +
                                    ",geq='random(1)*255:128:128' -frames:v 1 -q:v 2 " + cover)
                      .ExitCode,
                  0);
    }

    /// Hands the song over and waits for its command. The exit code; -1 without one.
    int32_t Transfer(int32_t encoder) {
        Options.Encoder = encoder;
        Job.TransferSong(Media.SongMedia);
        EXPECT_TRUE(Processes.WaitForAll(JobLimit));
        for (const JobResult& result : Processes.TakeFinished()) {
            if (result.Name != Song.JobName) continue;
            const auto music = ReadMadeMusic(Files, Song.MadeFile);
            Made = music ? music->MusicFile : "";
            Older = music ? music->Older : std::nullopt;
            Files.Delete(Song.MadeFile);
            NoteStood = Exists(NoteOf(Song));
            Job.NoteEnd(Song, true);
            return result.ExitCode;
        }
        return -1;
    }

    static std::string NoteOf(const TransferredSong& song) {
        return song.TempFile.substr(0, song.TempFile.size() - 3) + "note";
    }

    std::string Content(const std::string& path) { return Files.ReadAll(path, ReadLimit).value_or("(none)"); }
    bool Exists(const std::string& path) { return Files.FileSize(path).has_value(); }

    /// What a reader of its own sees in the music file, such as "stream=sample_rate".
    std::string Probe(const std::string& entries) {
        std::string text = Testing::RunShell("ffprobe -v error -of default=nw=1:nk=1 -show_entries " +
                                             entries + " -- " + ShellWord("file:" + Song.MusicFile))
                               .Output;
        if (text.ends_with('\n')) text.pop_back();
        return text;
    }
    std::string Tag(const std::string& name) { return Probe("format_tags=" + name + ":stream_tags=" + name); }

    std::string Listing(const std::string& folder) {
        std::string names;
        for (const FileEntry& entry : Files.List(folder)) names += entry.Name + "\n";
        return names;
    }

    LinuxFiles Files;
    LinuxClock Clock;
    LinuxProcesses Processes;
    Settings Options;
    WorkingFolders Folders;
    MediaState Media;
    PauseSettings Pause;
    Log Journal{Files, Clock, Options, Folders};
    SongNotes Notes{Files, Folders};
    SimMachine Sim;  ///< for what is neither a file nor a process
    RegistryBranches Registry{Sim.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    SongCounter Counter{Registry};
    frmMain Form;
    Corvetape::Test::NotedReports Reports{Sim, Form};
    WatchLists Lists{Files, Folders};
    WatchPages Pages{Form, Lists, Processes, Reports.Say};
    TransferJob Job{
        {Options, Folders, "1-run", {}}, Media, Pause, {Files, Processes, Journal, Notes, Counter, Pages}};
    bool NoteStood = false;        ///< the note was there when the last command had ended
    std::string Made;              ///< what the last command says of its music file
    std::optional<int32_t> Older;  ///< and of an older one
    TransferredSong Song;
    std::string Root;
};

}  // namespace Corvetape
