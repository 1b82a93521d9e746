#pragma once

#include <cstdint>
#include <string>

namespace Corvetape {

/// Why a web view shows nothing, or nothing any more.
enum class WebViewFailure {
    NotThere,     ///< no browser comes with this installation, or it cannot be started
    NoSandbox,    ///< pages would run without a sandbox, and that is not allowed
    PageCrashed,  ///< the page has gone; the user can load it anew
    Ended         ///< the whole browser has gone, without having been closed
};

/// Whoever follows a web view, always on the logic thread.
class WebViewNews {
 public:
    virtual ~WebViewNews() = default;

    virtual void StatusText(const std::string& text) = 0;

    /// -1 of something if nothing is loading any more.
    virtual void Progress(int64_t progress, int64_t maximum) = 0;

    /// The page has come, or will not come any more.
    virtual void LoadEnded() = 0;

    /// Nothing is loading then.
    virtual void Failed(WebViewFailure failure) = 0;
};

/// What the window round the pages says, in the language of the user.
struct WebViewCaptions {
    std::string Back;
    std::string Forward;
    std::string Reload;
    std::string Stop;
    std::string Crashed;  ///< beside the button that loads the page anew

    bool operator==(const WebViewCaptions&) const = default;
};

/// The conditions under which pages are shown.
struct WebViewTerms {
    bool WithoutSandbox = false;  ///< show them also where there is no sandbox
    WebViewCaptions Captions;
};

/// The program's own browser: one window with one page, in a process of its own.
class WebView {
 public:
    virtual ~WebView() = default;

    /// Who is told from now on; null for nobody.
    virtual void Follow(WebViewNews* news) = 0;

    /// Shows a page, and the window if there is none. Returns at once; the news say what becomes of it.
    virtual void Open(const std::string& address, const WebViewTerms& terms) = 0;
};

}  // namespace Corvetape
