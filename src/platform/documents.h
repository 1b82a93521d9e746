#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace Corvetape {

/// What an element says of itself. A property that the element does not have, or that is no text, is missing.
struct ElementText {
    std::optional<std::string> Title;
    std::optional<std::string> InnerText;
    std::optional<std::string> Src;

    bool operator==(const ElementText&) const = default;
};

/// A member of a collection: by its index, from 0, or by its name or id.
using MemberKey = std::variant<int32_t, std::string>;

/// The document of a page or of a frame in it.
///
/// Every operation asks the browser and waits for its answer. One poll waits 200 ms at most for a page and
/// all frames in it together; what is asked past that limit has no answer. Texts are cut at a fixed length,
/// so that no page can fill the memory.
class Document {
 public:
    virtual ~Document() = default;

    virtual std::string Url() const = 0;

    /// Nothing if the page does not answer.
    virtual std::optional<std::string> Title() = 0;

    /// The document of a frame of this one; nothing if there is no such frame or it does not answer.
    virtual std::shared_ptr<Document> Frame(const MemberKey& frame) = 0;

    /// True if the document has a body.
    virtual bool HasBody() = 0;

    /// A member of the body's `all` collection, which holds every element in the body, in the order of the
    /// document. Of several with one name or id the first counts. Nothing if there is none.
    virtual std::optional<ElementText> Element(const MemberKey& element) = 0;

    /// The value of a script expression as text; what is undefined or null is the empty text. The document
    /// goes by the name `Doc`, its members can be named without it, and its collections can be called like
    /// functions, as in `Doc.forms(0)`. Nothing on a script error.
    virtual std::optional<std::string> Evaluate(const std::string& expression) = 0;

    /// The same as an act of the user, for expressions that press something. True if it ran without error.
    virtual bool Run(const std::string& expression) = 0;
};

/// A page that some browser has open. Title and address are what the browser itself knows of it, which may
/// lag behind the page.
struct PageInfo {
    std::string Id;  ///< of the page, as long as it is open
    std::string Url;
    std::string Title;
    std::string Product;  ///< name of the browser

    bool operator==(const PageInfo&) const = default;
};

/// The pages of the browsers on this machine.
class Documents {
 public:
    virtual ~Documents() = default;

    /// The ports of this machine that browsers may answer at; whoever has other ways to its pages needs none.
    virtual void UsePorts(std::span<const uint16_t> /*ports*/) {}

    /// Begins a poll: its limits of time are counted from 0 again.
    virtual void BeginPoll() = 0;

    /// All pages, those that were used last first. Pages of a browser that does not answer are not among
    /// them.
    virtual std::vector<PageInfo> Pages() = 0;

    /// The document of a page. Nothing if the page has gone, or if it does not answer: a page that still owes
    /// an answer to an earlier poll is not waited for again.
    virtual std::shared_ptr<Document> Open(const PageInfo& page) = 0;
};

}  // namespace Corvetape
