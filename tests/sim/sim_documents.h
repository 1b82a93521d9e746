#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/documents.h"

namespace Corvetape {

/// An element of a simulated page.
struct SimElement {
    std::string Name;  ///< name or id
    ElementText Text;
};

/// A simulated document. Tests change it as a script in the page would.
struct SimDocument {
    std::string Url;
    std::string Title;
    bool Body = true;
    std::vector<SimElement> All;
    std::vector<std::pair<std::string, std::shared_ptr<SimDocument>>> Frames;  ///< with their names

    /// Value of each script expression; others are errors.
    std::map<std::string, std::string> Values;
    std::vector<std::string> Ran;  ///< expressions that were run as acts of the user
    std::function<void(const std::string& expression)> WhenRun;

    /// Called for every question to the document, before it is answered.
    std::function<void()> Asked;
};

/// A simulated page in a browser.
struct SimPage {
    std::string Id;
    std::shared_ptr<SimDocument> Top = std::make_shared<SimDocument>();
    std::string Product = "Browser";
    std::optional<std::string> KnownTitle;  ///< what the browser knows, if that is not the document's title
    bool Answers = true;                    ///< false: a script in it runs for ever
};

/// The pages of simulated browsers, last used first.
class SimDocuments : public Documents {
 public:
    /// Adds a page after the others.
    SimPage& Add(const std::string& url, const std::string& title);

    /// Takes the page away. Whoever still holds a document of it has no answer any more.
    void Close(SimPage& page);

    void UsePorts(std::span<const uint16_t> ports) override { Ports.assign(ports.begin(), ports.end()); }
    void BeginPoll() override { ++Polls; }
    std::vector<PageInfo> Pages() override;
    std::shared_ptr<Document> Open(const PageInfo& page) override;

    std::vector<std::shared_ptr<SimPage>> All;  ///< last used first
    std::vector<uint16_t> Ports;
    size_t Polls = 0;
    size_t Opened = 0;  ///< pages that were asked for their document

 private:
    size_t Made = 0;
};

}  // namespace Corvetape
