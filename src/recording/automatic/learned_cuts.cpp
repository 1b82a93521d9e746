#include "recording/automatic/learned_cuts.h"

#include <system_error>
#include <utility>

#include "core/text/placeholders.h"
#include "core/version.h"

namespace Corvetape {

namespace {

constexpr uint64_t LargestFile = 65'536;
constexpr const char* Extension = ".cuts";

/// Slots by which the reported position of a player is wrong, more or less from track to track.
constexpr int32_t JitterOfPosition = 4;

int32_t JitterOf(bool exact) {
    return exact ? JitterOfPosition : CutPrior::UsualJitter;
}

/// Where a player reports the position of its track, the cut is expected there.
CutPrior NewPrior(bool exact) {
    CutPrior prior(JitterOf(exact));
    if (exact) prior.LearnCorrection(0);
    return prior;
}

}  // namespace

LearnedCuts::LearnedCuts(Files& disk, std::string folder, const Settings& settings)
    : Disk(disk), Folder(std::move(folder)), Options(settings) {}

std::string LearnedCuts::PathOf(const std::string& source, bool exact) const {
    const std::string name = SafePathPart(source.empty() ? "unknown" : source);
    return Folder + "/" + name + (exact ? ".track" : "") + Extension;
}

CutPrior& LearnedCuts::Of(const std::string& source, bool exact) {
    const std::string path = PathOf(source, exact);
    Source& known = Known.try_emplace(path, Source{NewPrior(exact), {}}).first->second;
    if (!Options.LearnCuts) return known.Prior;
    const auto text = Disk.ReadAll(path, LargestFile);
    if (!text && text.Failure.Error == std::errc::no_such_file_or_directory && !known.Text.empty()) {
        known = {NewPrior(exact), {}};  // somebody wants it forgotten
    }
    if (!text || *text == known.Text) return known.Prior;
    if (const auto read = CutPrior::FromText(*text, JitterOf(exact))) known.Prior = *read;
    known.Text = *text;
    return known.Prior;
}

void LearnedCuts::Store(const std::string& source, bool exact) {
    if (!Options.LearnCuts) return;
    const std::string text = Of(source, exact).Text();
    const std::string path = PathOf(source, exact);
    if (CutPrior::IsOfLaterVersion(Known.at(path).Text)) return;
    if (!Disk.ReplaceQuickly(path, text)) {
        Disk.MakeFolder(Folder);  // the first time it is missing; a disk that refuses costs what was learned
        if (!Disk.ReplaceQuickly(path, text)) return;
    }
    Known.at(path).Text = text;
}

void LearnedCuts::Forget() {
    Known.clear();
    for (const FileEntry& entry : Disk.List(Folder)) {
        if (!entry.IsFolder && entry.Name.ends_with(Extension)) Disk.Delete(Folder + "/" + entry.Name);
    }
}

std::string FolderOfLearnedCuts(Folders& folders) {
    return folders.ShellFolderPath(ShellFolder::AppData) + "/" + ProgramShortName + "/cuts";
}

}  // namespace Corvetape
