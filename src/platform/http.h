#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Corvetape {

/// An answer to a request.
struct HttpAnswer {
    bool Failed = true;  ///< no answer came, or one that says that there is nothing
    std::string Body;    ///< its first bytes, up to the limit
};

/// Fetches what stands at an address: http, https and file. One request at a time; no cookies are kept, and
/// a redirect may lead to http and https only.
class Http {
 public:
    virtual ~Http() = default;

    /// Asks for the first `limit` bytes. A request that is under way is given up, and nothing is reported of
    /// it. `answered` is called once, on the logic thread, never from within Get.
    virtual void Get(const std::string& address, size_t limit,
                     std::function<void(const HttpAnswer&)> answered) = 0;

    /// Gives a request up that is under way.
    virtual void Cancel() = 0;
};

}  // namespace Corvetape
