#pragma once

#include <memory>
#include <string>

#include "platform/documents.h"
#include "platform/event_loop.h"
#include "platform/web_view.h"

namespace Corvetape {

/// The program's own browser: corvetape-browser, started when the first page is asked for and when it has
/// gone since. Its window has one page, which is found by the name of a source like any page of another
/// browser.
///
/// What the page does cannot hold up the recorder: questions wait for 200 ms a poll at most, as for other
/// browsers, and a page that owes an answer is not waited for again. Frames of other servers are not reached.
/// Needs a QCoreApplication.
class RadioBrowser : public WebView, public Documents {
 public:
    /// `program` is the path of corvetape-browser. `loop` outlives it.
    RadioBrowser(EventLoop& loop, std::string program);

    /// Closes the window, if there is one.
    ~RadioBrowser() override;
    RadioBrowser(const RadioBrowser&) = delete;
    RadioBrowser& operator=(const RadioBrowser&) = delete;

    void Follow(WebViewNews* news) override;
    void Open(const std::string& address, const WebViewTerms& terms) override;

    void BeginPoll() override;
    std::vector<PageInfo> Pages() override;
    std::shared_ptr<Document> Open(const PageInfo& page) override;

 private:
    struct Core;
    std::shared_ptr<Core> Inner;  ///< what is still on its way to a browser that has gone finds nobody
};

}  // namespace Corvetape
