#pragma once

#include <string>
#include <vector>

#include "media/browser_notices.h"
#include "media/browser_profile.h"
#include "media/browser_rules.h"
#include "media/provider.h"
#include "platform/documents.h"
#include "platform/windows.h"

namespace Corvetape {

class Files;

/// What the browser provider reads from. All of it outlives the provider.
struct BrowserPlaces {
    Corvetape::Files& Files;
    std::string ProfilePath;                    ///< of the file with the profiles
    Corvetape::Documents* Documents = nullptr;  ///< none: there are no pages
    Corvetape::Windows* Windows = nullptr;      ///< none: there are no windows
};

/// Reads what plays from a web page or from the title of a window, by the profiles of a file.
///
/// It knows no web radio by itself. Profiles of documents come before those of windows, within them the order
/// of the file counts, and for one profile the order of the windows on the screen. Every refresh searches
/// anew, so that a page that was closed is noticed at once and one of a higher profile takes over.
class clsProviderMSIE : public clsProvider {
 public:
    /// Reads the profiles and searches. ProviderName is set only if something was found.
    clsProviderMSIE(ProviderHost& host, BrowserPlaces places, BrowserNotices& notices);
    ~clsProviderMSIE() override;
    clsProviderMSIE(const clsProviderMSIE&) = delete;
    clsProviderMSIE& operator=(const clsProviderMSIE&) = delete;

    /// Searches, then reads all fields. Empties ProviderName if nothing was found. A refresh that is asked
    /// for while one runs, as a box may be open, does nothing.
    void GetStationData() override;
    void GetSongData() override;

    /// Runs the script of the profile in the page. True without a script, too.
    bool RestartRadio() override;

 private:
    void LoadProfiles();
    bool ConnectDocument();
    bool ReadStationFields();
    bool ReadSongFields();

    bool Find();
    void BecomeProvider();
    bool ReadField(std::string& field, const MediaFieldRule& rule, FieldKind kind = FieldKind::Text);
    bool Connected() const { return From.Page || From.Window != 0; }

    ProviderHost& Host;
    BrowserPlaces Places;
    BrowserNotices& Notices;
    std::vector<ProviderProfile> Profiles;
    const ProviderProfile* Current = nullptr;  ///< the one found last, in Profiles
    RuleSource From;
    bool Busy = false;  ///< a refresh runs
};

}  // namespace Corvetape
