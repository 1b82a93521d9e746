#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/documents.h"

namespace Corvetape {

/// The pages of all Chromium-family browsers on this machine that were started with a DevTools port. Frames
/// of any origin can be reached.
///
/// The waiting is counted: 200 ms a poll for one page with all its frames, and as much for the list of one
/// browser. Whoever did not answer within that is not waited for again until the answer has come, so that a
/// page that hangs costs its limit once. Needs a QCoreApplication.
class DevToolsDocuments : public Documents {
 public:
    explicit DevToolsDocuments(std::vector<uint16_t> ports = {});
    ~DevToolsDocuments() override;
    DevToolsDocuments(const DevToolsDocuments&) = delete;
    DevToolsDocuments& operator=(const DevToolsDocuments&) = delete;

    void UsePorts(std::span<const uint16_t> ports) override;
    void BeginPoll() override;
    std::vector<PageInfo> Pages() override;
    std::shared_ptr<Document> Open(const PageInfo& page) override;

 private:
    struct Core;
    std::unique_ptr<Core> Inner;
};

}  // namespace Corvetape
