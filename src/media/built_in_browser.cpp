#include "media/built_in_browser.h"

#include "core/opening.h"

namespace Corvetape {

namespace {

constexpr std::string_view BlankPage = "about:blank";

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
    LoadEnded();  // first: the report of a failure waits for the user
    Corvetape::OpenOutside(Parts.Form.objWebBrowser.Address(), Parts.Processes, Parts.Say);
}

WebViewTerms BuiltInBrowser::Terms() const {
    const auto text = [this](const MessageText& message) { return Parts.Messages.FormatMsg(message.Key); };
    return {Parts.Store.Ini().ReadText("Browser", "WithoutSandbox", "0") == "1",
            {text(Message::BrowserBack), text(Message::BrowserForward), text(Message::BrowserReload),
             text(Message::BrowserStop), text(Message::CrashedPage)}};
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
            Report("INFO", Message::BrowserNotThere);
            return OpenOutside();
        case WebViewFailure::NoSandbox:
            Report("ERROR", Message::BrowserNoSandbox);
            break;
        case WebViewFailure::PageCrashed:
            Report("ERROR", Message::PageCrashed);
            break;
        case WebViewFailure::Ended:
            Report("ERROR", Message::BrowserEnded);
            break;
    }
    LoadEnded();
}

void BuiltInBrowser::Report(const char* kind, const MessageText& message) {
    const std::string text = Parts.Messages.FormatMsg(message.Key, {Parts.Form.objWebBrowser.Address()});
    Parts.Journal.WriteLog({kind, text});
    Parts.Form.lblStatus[1].Caption(text);
}

}  // namespace Corvetape
