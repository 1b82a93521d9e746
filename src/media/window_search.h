#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "media/browser_profile.h"
#include "platform/documents.h"
#include "platform/windows.h"

namespace Corvetape {

/// A page with the window that shows it.
struct ShownPage {
    PageInfo Page;
    std::string WindowText;   ///< the page's own title if no window shows it
    std::string WindowClass;  ///< the name of the browser if no window shows it

    bool operator==(const ShownPage&) const = default;
};

/// The pages in the order of the search: those in windows come in the Z order of these, after them the
/// others in the order of their browser. A window shows a page if its text begins with the page's title, its
/// browser's name or nothing following after a dash, and shows one page only.
std::vector<ShownPage> PagesInOrder(const std::vector<PageInfo>& pages,
                                    const std::vector<WindowInfo>& windows);

/// The pages and windows of one moment, for the search of one poll. Either may be missing.
class SearchPlace {
 public:
    /// Both outlive it.
    SearchPlace(Documents* documents, Windows* windows);

    /// The first document whose window has exactly this class, or any if that is empty, and a text like the
    /// title, if there is one, and whose title and address are like the two patterns of the document. All
    /// patterns compare with case. Nothing without one; a page that does not answer is none.
    std::shared_ptr<Document> FindDocumentByPatterns(const std::string& windowClass,
                                                     const std::string& windowTitle,
                                                     const std::string& docTitle, const std::string& docUrl);

    /// The first window, or window inside one, whose text and class are like the patterns; 0 without one. An
    /// empty pattern is like an empty text only.
    uint64_t FindWindowByPatterns(const std::string& windowTitle, const std::string& windowClass);

    /// What is there, for whoever shows it.
    const std::vector<ShownPage>& Pages() const { return Shown; }
    const std::vector<WindowInfo>& TopLevel() const { return Top; }

 private:
    Documents* Browsers;
    Windows* Desktop;
    std::vector<WindowInfo> Top;
    std::vector<ShownPage> Shown;
};

}  // namespace Corvetape
