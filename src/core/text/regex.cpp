#include "core/text/regex.h"

#include <pcre2.h>

#include <utility>

namespace Corvetape {

namespace {

constexpr uint32_t MostSteps = 200'000;
constexpr uint32_t MostDepth = 20'000;
constexpr uint32_t MostHeapKilobytes = 16 * 1024;

constexpr uint32_t Dialect = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | PCRE2_ALT_BSUX | PCRE2_ALLOW_EMPTY_CLASS |
                             PCRE2_MATCH_UNSET_BACKREF | PCRE2_DOLLAR_ENDONLY | PCRE2_NEVER_BACKSLASH_C;

/// A repetition of nothing, as in "(*", is an error in this dialect, where the library reads orders to
/// itself.
bool GivesOrders(std::string_view pattern) {
    bool inClass = false;
    for (size_t i = 0; i < pattern.size(); ++i) {
        const char character = pattern[i];
        if (character == '\\') {
            ++i;
        } else if (inClass) {
            inClass = character != ']';
        } else if (character == '[') {
            inClass = true;
        } else if (pattern.substr(i).starts_with("(*")) {
            return true;
        }
    }
    return false;
}

template <typename Thing, void (*Free)(Thing*)>
struct Freed {
    void operator()(Thing* thing) const { Free(thing); }
};
using CompileContext =
    std::unique_ptr<pcre2_compile_context, Freed<pcre2_compile_context, pcre2_compile_context_free>>;
using MatchContext =
    std::unique_ptr<pcre2_match_context, Freed<pcre2_match_context, pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, Freed<pcre2_match_data, pcre2_match_data_free>>;
using CodePointer = std::unique_ptr<pcre2_code, Freed<pcre2_code, pcre2_code_free>>;

PCRE2_SPTR Bytes(std::string_view text) {
    return reinterpret_cast<PCRE2_SPTR>(text.data());
}

}  // namespace

struct Regex::Code {
    CodePointer Pattern;
    MatchContext Limits;
};

Regex::Regex(std::unique_ptr<Code> code) : Compiled(std::move(code)) {}
Regex::Regex(Regex&&) noexcept = default;
Regex& Regex::operator=(Regex&&) noexcept = default;
Regex::~Regex() = default;

std::optional<Regex> Regex::Compile(std::string_view pattern) {
    if (pattern.size() > LongestPattern || GivesOrders(pattern)) return std::nullopt;
    const CompileContext context(pcre2_compile_context_create(nullptr));
    if (!context) return std::nullopt;
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    int error = 0;
    PCRE2_SIZE place = 0;
    auto code = std::make_unique<Code>();
    code->Pattern.reset(
        pcre2_compile(Bytes(pattern), pattern.size(), Dialect, &error, &place, context.get()));
    code->Limits.reset(pcre2_match_context_create(nullptr));
    if (!code->Pattern || !code->Limits) return std::nullopt;
    pcre2_set_match_limit(code->Limits.get(), MostSteps);
    pcre2_set_depth_limit(code->Limits.get(), MostDepth);
    pcre2_set_heap_limit(code->Limits.get(), MostHeapKilobytes);
    return Regex(std::move(code));
}

std::optional<Regex::Match> Regex::First(std::string_view text) const {
    const MatchData data(pcre2_match_data_create_from_pattern(Compiled->Pattern.get(), nullptr));
    if (!data) return std::nullopt;
    const int found = pcre2_match(Compiled->Pattern.get(), Bytes(text), text.size(), 0, 0, data.get(),
                                  Compiled->Limits.get());
    if (found == PCRE2_ERROR_NOMATCH) return Match{};
    if (found < 0) return std::nullopt;

    Match match;
    match.Found = true;
    uint32_t groups = 0;
    pcre2_pattern_info(Compiled->Pattern.get(), PCRE2_INFO_CAPTURECOUNT, &groups);
    const PCRE2_SIZE* const ends = pcre2_get_ovector_pointer(data.get());
    for (size_t group = 1; group <= groups; ++group) {
        const PCRE2_SIZE begin = ends[2 * group];
        const PCRE2_SIZE end = ends[2 * group + 1];
        const bool taken = group < static_cast<size_t>(found) && begin != PCRE2_UNSET && begin <= end;
        match.Groups.emplace_back(taken ? text.substr(begin, end - begin) : std::string_view());
    }
    return match;
}

}  // namespace Corvetape
