#include "cli/song_printer.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "cli/json_text.h"
#include "cli/output.h"
#include "cli/song_report.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

namespace {

constexpr std::string_view LabelOfSongsThatStay = "TEMP";

}  // namespace

SongPrinter::SongPrinter(SongFormat format, std::FILE* songs, std::FILE* errors)
    : Format(format), Songs(songs), Errors(errors) {}

void SongPrinter::Closed(const ClosedSong& song) {
    const bool kept = song.Fate == SongFate::Kept;
    if (kept) ++Kept;
    if (Format == SongFormat::Lines) Print(Songs, SongAsLine(song) + "\n");
    Entry entry;
    entry.Song = song;
    entry.Done = !kept;
    Waiting.push_back(std::move(entry));
    PrintReady();
}

void SongPrinter::Transferred(const TransferredSong& song) {
    const auto found = std::ranges::find_if(Waiting, [&](const Entry& entry) {
        return !entry.Done && entry.JobName.empty() &&
               entry.Song.Media.TempFileName == song.Media.TempFileName;
    });
    if (!song.Problem.empty()) {
        ++Refused;  // its log line says why
    } else if (song.JobName.empty() && song.JobLabel != LabelOfSongsThatStay) {
        Refuse(song.Media, "its encoder could not be started", song.TempFile);
    }
    // A song that an earlier run has left was not closed in this one.
    Entry& entry = found != Waiting.end() ? *found : OfEarlierRuns.emplace_back();
    entry.Song.Media = song.Media;
    entry.JobName = song.JobName;
    entry.MusicFile = song.MusicFile;
    entry.TempFile = song.TempFile;
    entry.Done = song.JobName.empty();
    PrintReady();
}

void SongPrinter::MusicMade(const std::string& job, const std::string& musicFile) {
    for (std::deque<Entry>* entries : {&Waiting, &OfEarlierRuns}) {
        for (Entry& entry : *entries) {
            if (!entry.Done && entry.JobName == job) entry.MusicFile = musicFile;
        }
    }
}

void SongPrinter::JobEnded(const JobResult& result) {
    const auto isMeant = [&](const Entry& entry) { return !entry.Done && entry.JobName == result.Name; };
    for (std::deque<Entry>* entries : {&Waiting, &OfEarlierRuns}) {
        const auto found = std::ranges::find_if(*entries, isMeant);
        if (found == entries->end()) continue;
        found->Done = true;
        if (result.ExitCode != 0) {
            const std::string log = EncodeLog.empty() ? "" : ", see " + EncodeLog;
            Refuse(found->Song.Media, fmt::format("its encoder ended with code {}{}", result.ExitCode, log),
                   found->TempFile);
            found->MusicFile.clear();
        }
        break;
    }
    PrintReady();
}

void SongPrinter::Failed(const std::string& text) {
    if (Format == SongFormat::Json) Print(Songs, fmt::format("{{\"error\":{}}}\n", JsonText(text)));
}

void SongPrinter::Finish() {
    for (Entry& entry : Waiting) {
        if (!entry.Done) entry.MusicFile.clear();
        entry.Done = true;
    }
    PrintReady();
}

void SongPrinter::PrintReady() {
    while (!Waiting.empty() && Waiting.front().Done) {
        const Entry& entry = Waiting.front();
        if (Format == SongFormat::Json) Print(Songs, SongAsJson(entry.Song, entry.MusicFile) + "\n");
        Waiting.pop_front();
    }
}

void SongPrinter::Refuse(const STATIONANDSONGDATA& media, const std::string& why,
                         const std::string& tempFile) {
    ++Refused;
    std::string text = fmt::format("no music file of {}: {}", SongName(media), why);
    if (std::error_code none; std::filesystem::exists(tempFile, none)) {
        text += "; the song stays as " + tempFile;
    }
    Print(Errors, fmt::format("corvetape-cli: {}\n", OneLine(text)));
}

}  // namespace Corvetape
