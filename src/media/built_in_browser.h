#pragma once

#include <string>

#include "core/controls/message_texts.h"
#include "core/controls/messages.h"
#include "core/log.h"
#include "core/reporter.h"
#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "platform/processes.h"
#include "platform/web_view.h"

namespace Corvetape {

/// What the built-in browser works with. All of it outlives it.
struct BuiltInBrowserParts {
    frmMain& Form;
    SettingsStore& Store;
    Log& Journal;
    const clsLocalizeControls& Messages;
    Corvetape::Processes& Processes;
    Reporter& Say;
    WebView* View = nullptr;  ///< none: addresses open in the user's own browser
};

/// The browser of objWebBrowser: shows the pages that it is sent to, and raises its events.
///
/// Nothing is loaded before the first page is wanted. Where there is no browser to show it in, the address
/// opens in the user's own, and its loading ends at once. "WithoutSandbox" of the section "Browser" in the
/// settings file (0, the default, or 1) lets pages run where they cannot be kept in a sandbox.
class BuiltInBrowser : private WebViewNews {
 public:
    explicit BuiltInBrowser(BuiltInBrowserParts parts);
    ~BuiltInBrowser() override;
    BuiltInBrowser(const BuiltInBrowser&) = delete;
    BuiltInBrowser& operator=(const BuiltInBrowser&) = delete;

 private:
    void Navigate();
    void OpenOutside();
    void Report(const char* kind, const MessageText& message);
    WebViewTerms Terms() const;

    void StatusText(const std::string& text) override;
    void Progress(int64_t progress, int64_t maximum) override;
    void LoadEnded() override;
    void Failed(WebViewFailure failure) override;

    BuiltInBrowserParts Parts;
    bool Used = false;  ///< a page was wanted
};

}  // namespace Corvetape
