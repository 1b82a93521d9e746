#include "core/text/fold.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace Corvetape {

namespace {

constexpr char32_t NoCharacter = 0x110000;

/// After all scripts that know capital letters.
constexpr char32_t EndOfCapitals = 0x20000;

/// All characters that folding changes, in the order of what they become.
struct FoldedForms {
    std::vector<char32_t> Folded;
    std::vector<char32_t> Forms;
    std::array<std::span<const char32_t>, 128> OfAscii;  ///< asked for most
};

std::span<const char32_t> FormsOf(const FoldedForms& forms, char32_t folded) {
    const auto [first, last] = std::equal_range(forms.Folded.begin(), forms.Folded.end(), folded);
    return std::span(forms.Forms)
        .subspan(static_cast<size_t>(first - forms.Folded.begin()), static_cast<size_t>(last - first));
}

FoldedForms MakeForms() {
    std::vector<std::pair<char32_t, char32_t>> pairs;
    for (char32_t each = 0; each < EndOfCapitals; ++each) {
        const char32_t folded = FoldCharacter(each);
        if (folded != each) pairs.emplace_back(folded, each);
    }
    std::ranges::sort(pairs);
    FoldedForms forms;
    for (const auto& [folded, form] : pairs) {
        forms.Folded.push_back(folded);
        forms.Forms.push_back(form);
    }
    for (char32_t each = 0; each < forms.OfAscii.size(); ++each) forms.OfAscii[each] = FormsOf(forms, each);
    return forms;
}

std::array<char32_t, 128> MakeAscii() {
    std::array<char32_t, 128> table{};
    for (char32_t i = 0; i < table.size(); ++i) table[i] = i >= 'A' && i <= 'Z' ? i - 'A' + 'a' : i;
    return table;
}

}  // namespace

char32_t TakeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        text.remove_prefix(1);
        return first;
    }
    utf8proc_int32_t character = -1;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                         static_cast<utf8proc_ssize_t>(text.size()), &character);
    if (length <= 0 || character < 0) {
        text.remove_prefix(1);
        return NoCharacter + first;
    }
    text.remove_prefix(static_cast<size_t>(length));
    return static_cast<char32_t>(character);
}

char32_t FoldCharacter(char32_t character) {
    static const std::array<char32_t, 128> ascii = MakeAscii();
    if (character < ascii.size()) return ascii[character];
    if (character >= NoCharacter) return character;
    std::array<utf8proc_int32_t, 4> folded{};
    int boundClass = 0;
    const auto count =
        utf8proc_decompose_char(static_cast<utf8proc_int32_t>(character), folded.data(),
                                static_cast<utf8proc_ssize_t>(folded.size()), UTF8PROC_CASEFOLD, &boundClass);
    if (count == 1) return static_cast<char32_t>(folded[0]);
    return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(character)));
}

std::span<const char32_t> UnfoldedForms(char32_t folded) {
    static const FoldedForms forms = MakeForms();
    return folded < forms.OfAscii.size() ? forms.OfAscii[folded] : FormsOf(forms, folded);
}

std::u32string CharactersOf(std::string_view text) {
    std::u32string characters;
    characters.reserve(text.size());
    while (!text.empty()) characters += TakeCharacter(text);
    return characters;
}

std::u32string FoldText(std::string_view text) {
    std::u32string characters = CharactersOf(text);
    for (char32_t& character : characters) character = FoldCharacter(character);
    return characters;
}

}  // namespace Corvetape
