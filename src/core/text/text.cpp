#include "core/text/text.h"

#include <algorithm>

namespace Corvetape {

namespace {

char Lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

template <typename Find>
std::string Replace(std::string_view text, std::string_view part, std::string_view replacement, Find find) {
    std::string result;
    size_t position = 0;
    while (!part.empty()) {
        const size_t found = find(position);
        if (found == std::string_view::npos) break;
        result.append(text.substr(position, found - position)).append(replacement);
        position = found + part.size();
    }
    return result.append(text.substr(position));
}

}  // namespace

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i])) return false;
    }
    return true;
}

size_t FindIgnoringCase(std::string_view text, std::string_view part, size_t from) {
    if (part.size() > text.size()) return std::string_view::npos;
    for (size_t i = from; i + part.size() <= text.size(); ++i) {
        if (EqualIgnoringCase(text.substr(i, part.size()), part)) return i;
    }
    return std::string_view::npos;
}

std::string ReplaceAll(std::string_view text, std::string_view part, std::string_view replacement) {
    return Replace(text, part, replacement, [&](size_t from) { return text.find(part, from); });
}

std::string ReplaceAllIgnoringCase(std::string_view text, std::string_view part,
                                   std::string_view replacement) {
    return Replace(text, part, replacement, [&](size_t from) { return FindIgnoringCase(text, part, from); });
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    for (char& character : result) character = Lower(character);
    return result;
}

size_t CharacterLength(std::string_view text) {
    if (text.empty()) return 0;
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return 1;
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
    }
    // Longer than needed, half of a surrogate pair, or past the last character.
    if (first == 0xE0 && byte(1) < 0xA0) return 0;
    if (first == 0xED && byte(1) >= 0xA0) return 0;
    if (first == 0xF0 && byte(1) < 0x90) return 0;
    if (first == 0xF4 && byte(1) >= 0x90) return 0;
    return length;
}

std::string_view CutText(std::string_view text, size_t limit) {
    if (text.size() <= limit) return text;
    // A character that the limit splits began at most three bytes before it.
    for (size_t back = 1; back <= 3 && back <= limit; ++back) {
        if (CharacterLength(text.substr(limit - back)) > back) return text.substr(0, limit - back);
    }
    return text.substr(0, limit);
}

std::string_view CutCharacters(std::string_view text, size_t limit) {
    if (text.size() <= limit) return text;
    size_t length = 0;
    for (size_t i = 0; i < limit && length < text.size(); ++i) {
        length += std::max<size_t>(CharacterLength(text.substr(length)), 1);
    }
    return text.substr(0, length);
}

std::string_view TrimBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    size_t begin = 0;
    while (true) {
        const size_t end = text.find(separator, begin);
        if (end == std::string_view::npos) break;
        pieces.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    pieces.emplace_back(text.substr(begin));
    return pieces;
}

}  // namespace Corvetape
