#include "platform/linux/browser/joined_documents.h"

namespace Corvetape {

void JoinedDocuments::UsePorts(std::span<const uint16_t> ports) {
    First.UsePorts(ports);
    Second.UsePorts(ports);
}

void JoinedDocuments::BeginPoll() {
    First.BeginPoll();
    Second.BeginPoll();
}

std::vector<PageInfo> JoinedDocuments::Pages() {
    std::vector<PageInfo> pages = First.Pages();
    for (PageInfo& page : Second.Pages()) pages.push_back(std::move(page));
    return pages;
}

std::shared_ptr<Document> JoinedDocuments::Open(const PageInfo& page) {
    // Each knows its pages by their identifiers, and nothing by those of the other.
    if (auto document = First.Open(page)) return document;
    return Second.Open(page);
}

}  // namespace Corvetape
