#pragma once

#include <vector>

#include "platform/documents.h"

namespace Corvetape {

/// The pages of several sources in one, those of the first source first.
class JoinedDocuments : public Documents {
 public:
    /// They outlive it.
    JoinedDocuments(Documents& first, Documents& second) : First(first), Second(second) {}

    void UsePorts(std::span<const uint16_t> ports) override;
    void BeginPoll() override;
    std::vector<PageInfo> Pages() override;
    std::shared_ptr<Document> Open(const PageInfo& page) override;

 private:
    Documents& First;
    Documents& Second;
};

}  // namespace Corvetape
