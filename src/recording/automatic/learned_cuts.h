#pragma once

#include <map>
#include <string>

#include "audio/cut_prior.h"
#include "core/settings/settings.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace Corvetape {

/// What was learned of each source about its titles and cuts, kept in a folder of the user's data: a small
/// file for each source. A file that is damaged, or of another version, counts as none.
///
/// Another process may teach a source meanwhile, or have it forgotten: what its file says then counts. A file
/// of a later version of the program is left as it is.
class LearnedCuts {
 public:
    /// `folder` is made when something is stored. All of them outlive it.
    LearnedCuts(Files& disk, std::string folder, const Settings& settings);

    /// What is known of a source. `exact`: of its tracks whose beginning the player reports; the cut is then
    /// expected there, give or take little.
    CutPrior& Of(const std::string& source, bool exact);

    /// Keeps what was learned for later runs, if the user wants that. What cannot be written is known for
    /// this run only.
    void Store(const std::string& source, bool exact);

    /// Everything that was learned goes.
    void Forget();

 private:
    std::string PathOf(const std::string& source, bool exact) const;

    Files& Disk;
    std::string Folder;
    const Settings& Options;

    struct Source {
        CutPrior Prior;
        std::string Text;  ///< as its file had it last
    };
    std::map<std::string, Source> Known;  ///< by path
};

/// The folder of what was learned.
std::string FolderOfLearnedCuts(Folders& folders);

}  // namespace Corvetape
