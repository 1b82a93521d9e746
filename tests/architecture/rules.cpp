#include "architecture/rules.h"

#include <algorithm>
#include <array>

#include "architecture/structure.h"

namespace Corvetape::Architecture {

namespace {

bool Below(const SourceFile& file, std::string_view folder) {
    return file.Path.starts_with(folder);
}

std::vector<Finding> Words(const SourceFile& file, std::string_view text, std::string_view word) {
    std::vector<Finding> findings;
    for (size_t at : FindWord(text, word)) {
        findings.push_back({file.Path, LineOf(text, at), std::string(word)});
    }
    return findings;
}

void Append(std::vector<Finding>& to, std::vector<Finding> from) {
    to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

std::string_view LastWordBefore(std::string_view code, size_t at) {
    const size_t last = code.find_last_not_of(" \t\n", at == 0 ? 0 : at - 1);
    if (at == 0 || last == std::string_view::npos) return {};
    const size_t before = code.find_last_of(" \t\n", last);
    return code.substr(before + 1, last - before);
}

/// A static creation that may reach a private constructor hands the new object over on the spot.
bool HandedToUniquePointer(std::string_view code, size_t at) {
    const std::string_view before = code.substr(0, at);
    if (!before.ends_with('(')) return false;
    const size_t statement = before.find_last_of(";{}") + 1;
    return !FindWord(before.substr(statement), "unique_ptr").empty();
}

/// What stands in a namespace Detail is nobody's contract.
bool InDetail(const SourceFile& file, const std::vector<Piece>& pieces, const Piece& piece) {
    return std::ranges::any_of(pieces, [&](const Piece& around) {
        const std::string_view head =
            std::string_view(file.Code).substr(around.Begin, around.Open - around.Begin);
        return around.Kind == PieceKind::Namespace && around.Open < piece.Begin && piece.End < around.End &&
               !FindWord(head, "Detail").empty();
    });
}

std::string FirstLineOf(std::string_view text) {
    return std::string(text.substr(0, text.find('\n')));
}

}  // namespace

std::vector<Finding> LongFiles(const SourceFile& file) {
    if (file.Path.ends_with("_table.h") || file.Path.ends_with("_table.cpp")) return {};
    const size_t lines = LinesOf(file.Text).size();
    if (lines <= MostFileLines) return {};
    return {{file.Path, lines, std::to_string(lines) + " lines"}};
}

std::vector<Finding> UnexplainedHeaders(const SourceFile& file) {
    if (!Below(file, "src/") || !IsHeader(file)) return {};
    if (file.Comments.find("///") == std::string::npos) return {{file.Path, 1, "no /// comment"}};

    const auto lines = LinesOf(file.Text);
    const std::vector<Piece> pieces = PiecesOf(file.Code);
    std::vector<Finding> findings;
    size_t endOfLast = 0;  // line of the last declaration, whose comment the next one shares
    for (const Piece& piece : pieces) {
        const bool free =
            piece.Kind == PieceKind::Declaration || (piece.Kind == PieceKind::Function && piece.Depth == 0);
        if (!free || InDetail(file, pieces, piece)) continue;
        const size_t first = LineOf(file.Code, piece.Begin);
        const bool explained = first > 1 && lines[first - 2].find("///") != std::string_view::npos;
        if (!explained && first != endOfLast + 1) {
            findings.push_back({file.Path, first, FirstLineOf(file.Code.substr(piece.Begin))});
        }
        endOfLast = LineOf(file.Code, piece.End);
    }
    return findings;
}

std::vector<Finding> UsingNamespaceInHeaders(const SourceFile& file) {
    if (!IsHeader(file)) return {};
    return Words(file, file.Code, "using namespace");
}

std::vector<Finding> RawOwnership(const SourceFile& file) {
    // In these places a parent widget owns what is made.
    if (Below(file, "src/ui/") || Below(file, "src/assistant/web_view")) return {};
    std::vector<Finding> findings;
    for (size_t at : FindWord(file.Code, "new")) {
        if (LastWordBefore(file.Code, at) == "operator") continue;  // declares, and owns nothing
        if (!HandedToUniquePointer(file.Code, at))
            findings.push_back({file.Path, LineOf(file.Code, at), "new"});
    }
    for (size_t at : FindWord(file.Code, "delete")) {
        const std::string_view before = LastWordBefore(file.Code, at);
        if (before == "=" || before == "operator") continue;
        findings.push_back({file.Path, LineOf(file.Code, at), "delete"});
    }
    return findings;
}

std::vector<Finding> OpenMarks(const SourceFile& file) {
    std::vector<Finding> findings;
    for (std::string_view mark : {"TODO", "FIXME", "XXX", "HACK"}) {
        Append(findings, Words(file, file.Comments, mark));
    }
    return findings;
}

std::vector<Finding> SleepingTests(const SourceFile& file) {
    if (!Below(file, "tests/") || Below(file, "tests/live/") || Below(file, "tests/platform/linux/"))
        return {};
    std::vector<Finding> findings;
    for (std::string_view word : {"sleep_for", "sleep_until", "usleep", "nanosleep", "sleep", "qSleep"}) {
        Append(findings, Words(file, file.Code, word));
    }
    return findings;
}

std::vector<Finding> WrongFileNames(const SourceFile& file) {
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyz0123456789_/";
    const std::string_view name = std::string_view(file.Path).substr(0, file.Path.rfind('.'));
    if (name.find_first_not_of(allowed) == std::string_view::npos) return {};
    return {{file.Path, 1, "not lower_snake_case"}};
}

}  // namespace Corvetape::Architecture
