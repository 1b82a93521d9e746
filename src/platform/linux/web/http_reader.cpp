#include "platform/linux/web/http_reader.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace Corvetape {
namespace {

/// A chunk's size with its extensions, which nobody uses.
constexpr size_t MostChunkLineBytes = 256;

std::string Small(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

std::string_view Trimmed(std::string_view text) {
    const size_t begin = text.find_first_not_of(" \t\r");
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

/// Digits to the end of the text and nothing else.
std::optional<uint64_t> WholeNumber(std::string_view text, int base) {
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace

void HttpReader::Take(std::string_view bytes) {
    if (IsOver()) return;
    Waiting += bytes;
    while (Now == Stage::Head) {
        const size_t before = Waiting.size();
        TakeHead();
        if (Now == Stage::Head && Waiting.size() == before) return;  // more of it has to come
    }
    if (Now == Stage::Chunked) {
        TakeChunks();
    } else {
        TakeBody();
    }
}

void HttpReader::Close() {
    if (!IsOver()) Now = Now == Stage::UntilClosed ? Stage::Over : Stage::Broken;
}

std::string HttpReader::Field(const std::string& name) const {
    const auto found = Fields.find(name);
    return found == Fields.end() ? std::string() : found->second;
}

void HttpReader::TakeHead() {
    const size_t end = Waiting.find("\r\n\r\n");
    HeadBytes += end == std::string::npos ? 0 : end;
    if (HeadBytes + (end == std::string::npos ? Waiting.size() : 0) > MostHeadBytes) {
        Now = Stage::Broken;
        return;
    }
    if (end == std::string::npos) return;
    const std::string head = Waiting.substr(0, end);
    Waiting.erase(0, end + 4);
    const size_t firstEnd = std::min(head.find('\n'), head.size());
    if (!ReadStatusLine(Trimmed(std::string_view(head).substr(0, firstEnd)))) {
        Now = Stage::Broken;
        return;
    }
    if (StatusCode < 200) {  // an interim answer; the real one follows
        StatusCode = 0;
        return;
    }
    ReadFields(std::string_view(head).substr(firstEnd));
    BeginBody();
}

bool HttpReader::ReadStatusLine(std::string_view line) {
    if (!line.starts_with("HTTP/1.")) return false;
    const size_t blank = line.find(' ');
    if (blank == std::string_view::npos) return false;
    const auto number = WholeNumber(line.substr(blank + 1, 3), 10);
    if (!number || *number < 100 || *number > 999) return false;
    StatusCode = static_cast<int>(*number);
    return true;
}

void HttpReader::ReadFields(std::string_view lines) {
    while (!lines.empty()) {
        const size_t end = std::min(lines.find('\n'), lines.size());
        const std::string_view line = lines.substr(0, end);
        lines.remove_prefix(std::min(end + 1, lines.size()));
        const size_t colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        Fields[Small(Trimmed(line.substr(0, colon)))] = Trimmed(line.substr(colon + 1));
    }
}

void HttpReader::BeginBody() {
    const std::string length = Field("content-length");
    if (Small(Field("transfer-encoding")).ends_with("chunked")) {
        Now = Stage::Chunked;
    } else if (StatusCode == 204 || StatusCode == 304) {
        Now = Stage::Over;
    } else if (length.empty()) {
        Now = Stage::UntilClosed;
    } else if (const auto size = WholeNumber(length, 10)) {
        Remaining = *size;
        Now = Remaining == 0 ? Stage::Over : Stage::Sized;
    } else {
        Now = Stage::Broken;
    }
}

void HttpReader::Keep(size_t size) {
    Content.append(Waiting, 0, std::min(size, Limit - Content.size()));
    Waiting.erase(0, size);
    if (Content.size() >= Limit) Now = Stage::Over;
}

void HttpReader::TakeBody() {
    if (Now == Stage::UntilClosed) Keep(Waiting.size());
    if (Now != Stage::Sized) return;
    const auto size = static_cast<size_t>(std::min<uint64_t>(Waiting.size(), Remaining));
    Remaining -= size;
    Keep(size);
    if (Remaining == 0) Now = Stage::Over;
}

void HttpReader::TakeChunks() {
    while (Now == Stage::Chunked) {
        if (Remaining == 0 && !ReadChunkSize()) return;
        if (Waiting.empty()) return;
        const auto size = static_cast<size_t>(std::min<uint64_t>(Waiting.size(), Remaining));
        Remaining -= size;
        LineEndExpected = Remaining == 0;
        Keep(size);
    }
}

/// False if its line is not complete yet, is none, or was that of the end.
bool HttpReader::ReadChunkSize() {
    const size_t skipped = LineEndExpected ? 2 : 0;
    const size_t end = Waiting.find("\r\n", skipped);
    if (Waiting.size() >= skipped && !Waiting.starts_with(std::string_view("\r\n", skipped))) {
        Now = Stage::Broken;
        return false;
    }
    if (end == std::string::npos) {
        if (Waiting.size() > MostChunkLineBytes) Now = Stage::Broken;
        return false;
    }
    const std::string_view line = std::string_view(Waiting).substr(skipped, end - skipped);
    const auto size = WholeNumber(Trimmed(line.substr(0, line.find(';'))), 16);
    if (!size) {
        Now = Stage::Broken;
    } else if (*size == 0) {
        Now = Stage::Over;
    } else {
        Remaining = *size;
        LineEndExpected = false;
        Waiting.erase(0, end + 2);
        return true;
    }
    return false;
}

}  // namespace Corvetape
