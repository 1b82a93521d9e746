// The profiles that come with the program, on pages of the kinds that they are for.
#include <gtest/gtest.h>

#include "live/live_browser.h"
#include "live/page_server.h"
#include "media/browser_rules.h"
#include "media/window_search.h"
#include "platform/linux/browser/devtools_documents.h"
#include "platform/linux/files/linux_files.h"

namespace Corvetape {
namespace {

constexpr const char* Pages[][2] = {
    {"/title", "<!doctype html><title>An Artist - A Song | A Station</title><body></body>"},
    {"/element",
     "<!doctype html><title>Radio</title><body><p id='artist'>An Artist</p><p id='song'>A Song</p>"
     "<p id='album'>An Album</p><img id='cover' src='/c.jpg'><button id='play'></button></body>"},
    {"/frame",
     "<!doctype html><title>Radio</title><body><iframe name='player' src='/inner'></iframe></body>"},
    {"/inner", "<!doctype html><body><p id='now'>An Artist - A Song</p></body>"},
    {"/session",
     "<!doctype html><title>Radio</title><body><script>navigator.mediaSession.metadata = new MediaMetadata("
     "{artist: 'An Artist', title: 'A Song', album: 'An Album', artwork: [{src: "
     "'/c.jpg'}]})</script></body>"},
};

class SampleProfiles : public testing::Test {
 protected:
    /// Expects that the profile of this name reads this from its page, once the page is there: a frame may be
    /// loaded between two rules of one look, and a busy machine may let one rule go by without an answer.
    void Read(const std::string& name, const std::string& path, const std::string& host,
              const std::string& album = "", const std::string& cover = "") {
        PageServer server({std::begin(PageMap()), std::end(PageMap())});
        LiveBrowser browser(Session, server.Url(path, host),
                            {"--host-resolver-rules=MAP *.example 127.0.0.1 , MAP * ~NOTFOUND , "
                             "EXCLUDE 127.0.0.1"});
        DevToolsDocuments documents({browser.Port()});
        LinuxFiles files;
        const auto profiles = ReadProfiles(Profile(files, CORVETAPE_SOURCE_DIR "/data/MSIE.ini"));
        const auto profile = std::ranges::find(profiles, name, &ProviderProfile::Name);
        ASSERT_NE(profile, profiles.end());
        EXPECT_TRUE(Session.WaitFor(
            [&] {
                documents.BeginPoll();
                From.Page = SearchPlace(&documents, nullptr)
                                .FindDocumentByPatterns(profile->WindowClass, profile->WindowTitle,
                                                        profile->DocTitle, profile->DocUrl);
                Artist = Value(profile->Artist);
                Song = Value(profile->Title);
                Album = Value(profile->Album);
                Cover = EvaluateRule(From, profile->Cover, FieldKind::Address).Value;
                return Artist == "An Artist" && Song == "A Song" && Album == album && Cover.ends_with(cover);
            },
            std::chrono::seconds(60)))
            << "read last: artist \"" << Artist << "\", title \"" << Song << "\", album \"" << Album
            << "\", cover \"" << Cover << "\"";
        From = {};  // what it reads goes with the browser
    }

    static const std::map<std::string, std::string>& PageMap() {
        static const std::map<std::string, std::string> pages = [] {
            std::map<std::string, std::string> result;
            for (const auto& page : Pages) result[page[0]] = page[1];
            return result;
        }();
        return pages;
    }

    std::string Value(const MediaFieldRule& rule) const {
        return EvaluateRule(From, rule, FieldKind::Text).Value;
    }

    LiveSession Session;
    RuleSource From;
    std::string Artist, Song, Album, Cover;
};

TEST_F(SampleProfiles, ATitleOfThePage) {
    Read("Title Radio", "/title", "title-radio.example");
}

TEST_F(SampleProfiles, ElementsOfThePage) {
    Read("Element Radio", "/element", "element-radio.example", "An Album", "/c.jpg");
}

TEST_F(SampleProfiles, APlayerInAFrame) {
    Read("Frame Radio", "/frame", "frame-radio.example");
}

TEST_F(SampleProfiles, AMediaSession) {
    Read("Session Radio", "/session", "session-radio.example", "An Album", "/c.jpg");
}

}  // namespace
}  // namespace Corvetape
