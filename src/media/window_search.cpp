#include "media/window_search.h"

#include <algorithm>

#include "core/text/like.h"

namespace Corvetape {

namespace {

/// Browsers write "Title - Product" into their windows, some with another dash.
bool Shows(const WindowInfo& window, const PageInfo& page) {
    if (page.Title.empty() || !window.Text.starts_with(page.Title)) return false;
    const std::string_view rest = std::string_view(window.Text).substr(page.Title.size());
    return rest.empty() || rest.starts_with(" - ") || rest.starts_with(" \u2013 ") ||
           rest.starts_with(" \u2014 ");
}

bool Matches(const WindowInfo& window, const LikePattern& title, const LikePattern& windowClass) {
    return title.Matches(window.Text) && windowClass.Matches(window.Class);
}

}  // namespace

std::vector<ShownPage> PagesInOrder(const std::vector<PageInfo>& pages,
                                    const std::vector<WindowInfo>& windows) {
    std::vector<ShownPage> shown;
    std::vector<bool> taken(pages.size());
    for (const WindowInfo& window : windows) {
        // Of titles that begin alike the longest is meant.
        size_t best = pages.size();
        for (size_t i = 0; i < pages.size(); ++i) {
            if (taken[i] || !Shows(window, pages[i])) continue;
            if (best == pages.size() || pages[i].Title.size() > pages[best].Title.size()) best = i;
        }
        if (best == pages.size()) continue;
        taken[best] = true;
        shown.push_back({pages[best], window.Text, window.Class});
    }
    for (size_t i = 0; i < pages.size(); ++i) {
        if (!taken[i]) shown.push_back({pages[i], pages[i].Title, pages[i].Product});
    }
    return shown;
}

SearchPlace::SearchPlace(Documents* documents, Windows* windows) : Browsers(documents), Desktop(windows) {
    if (Desktop) Top = Desktop->TopLevel();
    if (Browsers) Shown = PagesInOrder(Browsers->Pages(), Top);
}

std::shared_ptr<Document> SearchPlace::FindDocumentByPatterns(const std::string& windowClass,
                                                              const std::string& windowTitle,
                                                              const std::string& docTitle,
                                                              const std::string& docUrl) {
    const LikePattern windowPattern(windowTitle);
    const LikePattern titlePattern(docTitle);
    const LikePattern urlPattern(docUrl);
    for (const ShownPage& each : Shown) {
        if (!windowClass.empty() && each.WindowClass != windowClass) continue;
        if (!windowTitle.empty() && !windowPattern.Matches(each.WindowText)) continue;
        if (!urlPattern.Matches(each.Page.Url)) continue;
        // A browser shows an address in the place of a title that is empty.
        if (!titlePattern.Matches(each.Page.Title) && !titlePattern.Matches("")) continue;
        std::shared_ptr<Document> document = Browsers->Open(each.Page);
        if (!document || !urlPattern.Matches(document->Url())) continue;
        const std::optional<std::string> title = document->Title();
        if (title && titlePattern.Matches(*title)) return document;
    }
    return nullptr;
}

uint64_t SearchPlace::FindWindowByPatterns(const std::string& windowTitle, const std::string& windowClass) {
    const LikePattern title(windowTitle);
    const LikePattern className(windowClass);
    for (const WindowInfo& window : Top) {
        if (Matches(window, title, className)) return window.Handle;
        const std::vector<WindowInfo> inside = Desktop->Descendants(window.Handle);
        const auto found = std::ranges::find_if(
            inside, [&](const WindowInfo& each) { return Matches(each, title, className); });
        if (found != inside.end()) return found->Handle;
    }
    return 0;
}

}  // namespace Corvetape
