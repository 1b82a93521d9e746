#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace Corvetape {

/// What a server may send before the body, interim answers included. Browsers allow about as much.
inline constexpr size_t MostHeadBytes = size_t{64} * 1024;

/// Takes the answer of a web server apart while it comes in. It stores the head up to MostHeadBytes and the
/// body up to the limit given to it, whatever a server sends.
class HttpReader {
 public:
    /// Keeps the first `limit` bytes of the body.
    explicit HttpReader(size_t limit) : Limit(limit) {}

    /// The next bytes as they came, in pieces of any size. Those after the end are ignored.
    void Take(std::string_view bytes);

    /// The server has closed the connection, which ends a body that has no other end.
    void Close();

    /// The answer is complete, or its body has reached the limit, or it has failed: nothing more is wanted.
    bool IsOver() const { return Now == Stage::Over || Now == Stage::Broken; }

    /// It broke off, is none, or exceeds what a head may hold.
    bool HasFailed() const { return Now == Stage::Broken; }

    /// 0 until the head is complete.
    int Status() const { return StatusCode; }

    /// The last field of that name, which is given in small letters; empty if there is none.
    std::string Field(const std::string& name) const;

    /// What has come of the body.
    const std::string& Body() const { return Content; }

 private:
    enum class Stage { Head, Sized, Chunked, UntilClosed, Over, Broken };

    void TakeHead();
    bool ReadStatusLine(std::string_view line);
    void ReadFields(std::string_view lines);
    void BeginBody();
    void TakeBody();
    void TakeChunks();
    bool ReadChunkSize();
    void Keep(size_t size);

    const size_t Limit;
    Stage Now = Stage::Head;
    int StatusCode = 0;
    size_t HeadBytes = 0;
    std::string Waiting;  ///< received and not yet understood
    std::map<std::string, std::string> Fields;
    uint64_t Remaining = 0;        ///< of the body, or of the chunk
    bool LineEndExpected = false;  ///< that after a chunk
    std::string Content;
};

}  // namespace Corvetape
