#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Corvetape {

/// A regular expression in the dialect that scripts in pages use: case counts, "." is any character but a
/// line feed, "$" is the very end, `\d`, `\w` and `\s` are ASCII, a group that did not take part is empty.
///
/// Patterns come from files and texts from strangers: a pattern that would try for too long on some text, or
/// would take too much memory, fails on it instead.
class Regex {
 public:
    static constexpr size_t LongestPattern = 32767;  ///< bytes

    /// Nothing if the pattern is none.
    static std::optional<Regex> Compile(std::string_view pattern);

    Regex(Regex&&) noexcept;
    Regex& operator=(Regex&&) noexcept;
    ~Regex();

    /// What the first match found in its capture groups, in their order.
    struct Match {
        bool Found = false;
        std::vector<std::string> Groups;
    };

    /// The first match in the text. Nothing if the limits were reached.
    std::optional<Match> First(std::string_view text) const;

 private:
    struct Code;
    explicit Regex(std::unique_ptr<Code> code);
    std::unique_ptr<Code> Compiled;
};

}  // namespace Corvetape
