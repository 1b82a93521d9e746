#include "media/built_in_browser.h"

namespace Corvetape {

namespace {

constexpr std::string_view BlankPage = "about:blank";

constexpr const char* KeyNotThere = "61700";
constexpr const char* KeyNoSandbox = "61701";
constexpr const char* KeyPageCrashed = "61702";
constexpr const char* KeyBrowserEnded = "61703";
constexpr const char* KeyBack = "61704";
constexpr const char* KeyForward = "61705";
constexpr const char* KeyReload = "61706";
constexpr const char* KeyStop = "61707";
constexpr const char* KeyCrashedPage = "61708";

}  // namespace

BuiltInBrowser::BuiltInBrowser(BuiltInBrowserParts parts) : Parts(parts) {
    Parts.Form.objWebBrowser.NavigateAsked.Connect([this] { Navigate(); });
    if (Parts.View) Parts.View->Follow(this);
}

BuiltInBrowser::~BuiltInBrowser() {
    if (Parts.View) Parts.View->Follow(nullptr);
}

void BuiltInBrowser::Navigate() {
    const std::string& address = Parts.Form.objWebBrowser.Address();
    if (!Used && address == BlankPage) return;  // the start wants no page, and no browser for it
    Used = true;
    if (Parts.View) {
        Parts.View->Open(address, Terms());
    } else {
        OpenOutside();
    }
}

void BuiltInBrowser::OpenOutside() {
    // Whoever is started reports by itself that it could not.
    Parts.Processes.ShellOpen(Parts.Form.objWebBrowser.Address(), "", "");
    LoadEnded();
}

WebViewTerms BuiltInBrowser::Terms() const {
    const auto text = [this](const char* key) { return Parts.Messages.FormatMsg(key); };
    return {Parts.Store.Ini().ReadText("Browser", "WithoutSandbox", "0") == "1",
            {text(KeyBack), text(KeyForward), text(KeyReload), text(KeyStop), text(KeyCrashedPage)}};
}

void BuiltInBrowser::StatusText(const std::string& text) {
    Parts.Form.objWebBrowser.StatusTextChange.Raise(text);
}

void BuiltInBrowser::Progress(int64_t progress, int64_t maximum) {
    Parts.Form.objWebBrowser.ProgressChange.Raise(progress, maximum);
}

void BuiltInBrowser::LoadEnded() {
    Parts.Form.objWebBrowser.DownloadComplete.Raise();
}

void BuiltInBrowser::Failed(WebViewFailure failure) {
    switch (failure) {
        case WebViewFailure::NotThere:
            Report("INFO", KeyNotThere);
            return OpenOutside();
        case WebViewFailure::NoSandbox:
            Report("ERROR", KeyNoSandbox);
            break;
        case WebViewFailure::PageCrashed:
            Report("ERROR", KeyPageCrashed);
            break;
        case WebViewFailure::Ended:
            Report("ERROR", KeyBrowserEnded);
            break;
    }
    LoadEnded();
}

void BuiltInBrowser::Report(const char* kind, const char* key) {
    const std::string text = Parts.Messages.FormatMsg(key, {Parts.Form.objWebBrowser.Address()});
    Parts.Journal.WriteLog({kind, text});
    Parts.Form.lblStatus[1].Caption(text);
}

}  // namespace Corvetape
