#include "architecture/structure.h"

#include <algorithm>
#include <array>
#include <string>

#include "architecture/source_text.h"

namespace Corvetape::Architecture {

namespace {

constexpr std::string_view Blanks = " \t\n";

std::string_view Trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

bool EndsWithWord(std::string_view text, std::string_view word) {
    const auto places = FindWord(text, word);
    return !places.empty() && places.back() + word.size() == text.size();
}

bool StartsWithWord(std::string_view text, std::string_view word) {
    const auto places = FindWord(text, word);
    return !places.empty() && places.front() == 0;
}

/// The head of a declaration without the template parameters in front of it.
std::string_view WithoutTemplate(std::string_view head) {
    while (StartsWithWord(head, "template")) {
        size_t depth = 0;
        size_t at = head.find('<');
        if (at == std::string_view::npos) return head;
        for (; at < head.size(); ++at) {
            if (head[at] == '<') ++depth;
            if (head[at] == '>' && --depth == 0) break;
        }
        head = Trimmed(head.substr(std::min(at + 1, head.size())));
    }
    return head;
}

/// What stands outside all round and square brackets; of a pair the closing one is left.
std::string Outline(std::string_view head) {
    std::string outline;
    size_t depth = 0;
    for (char character : head) {
        if (character == '(' || character == '[') {
            ++depth;
            continue;
        }
        if ((character == ')' || character == ']') && depth > 0) --depth;
        if (depth == 0) outline += character;
    }
    return outline;
}

bool HasAssignment(const std::string& outline) {
    for (size_t at = outline.find('='); at != std::string::npos; at = outline.find('=', at + 1)) {
        const bool comparison =
            (at > 0 && std::string_view("=<>!").find(outline[at - 1]) != std::string::npos) ||
            (at + 1 < outline.size() && outline[at + 1] == '=');
        const std::string_view before = Trimmed(std::string_view(outline).substr(0, at));
        if (!comparison && !EndsWithWord(before, "operator")) return true;
    }
    return false;
}

/// The head without what may stand between a parameter list and a body.
std::string_view WithoutQualifiers(std::string_view outline) {
    constexpr std::array words = std::to_array<std::string_view>(
        {"const", "noexcept", "override", "final", "mutable", "constexpr", "try", "volatile"});
    outline = Trimmed(outline);
    while (true) {
        const auto word = std::ranges::find_if(words, [&](auto each) { return EndsWithWord(outline, each); });
        if (word == words.end()) return outline;
        outline = Trimmed(outline.substr(0, outline.size() - word->size()));
    }
}

bool HasInitialiserList(std::string_view outline) {
    const size_t parameters = outline.find(')');
    if (parameters == std::string_view::npos) return false;
    for (size_t at = outline.find(':', parameters); at != std::string_view::npos;
         at = outline.find(':', at + 1)) {
        const bool scope = outline[at - 1] == ':' || (at + 1 < outline.size() && outline[at + 1] == ':');
        if (!scope) return true;
    }
    return false;
}

/// What a brace after `head` opens, when it is not inside a function.
PieceKind KindAfter(std::string_view head, bool inValue) {
    head = WithoutTemplate(Trimmed(head));
    const std::string outline = Outline(head);
    const std::string_view end = WithoutQualifiers(outline);
    const bool afterList = end.ends_with(')') || end.ends_with(']');
    if (inValue || HasAssignment(outline)) {
        const bool lambda = (afterList || outline.find("->") != std::string::npos) &&
                            head.find('[') != std::string_view::npos;
        return lambda ? PieceKind::Function : PieceKind::Initializer;
    }
    if (!FindWord(outline, "namespace").empty() || (head.starts_with("extern") && !end.ends_with(')'))) {
        return PieceKind::Namespace;
    }
    for (std::string_view word : {"class", "struct", "union", "enum"}) {
        if (StartsWithWord(head, word) && !end.ends_with(')')) return PieceKind::Type;
    }
    if (HasInitialiserList(outline)) {
        // A name in front of the brace is a member that is set; anything else ends the list.
        return end.ends_with(')') || end.ends_with('}') ? PieceKind::Function : PieceKind::Initializer;
    }
    const bool moreAfterList =
        outline.find(") ->") != std::string::npos || outline.find(") requires ") != std::string::npos;
    return end.ends_with(')') || moreAfterList ? PieceKind::Function : PieceKind::Initializer;
}

class Scanner {
 public:
    explicit Scanner(std::string_view code) : Code(code) {}

    std::vector<Piece> Run() {
        for (Place = 0; Place < Code.size(); ++Place) {
            switch (Code[Place]) {
                case '{':
                    Open();
                    break;
                case '}':
                    Close();
                    break;
                case ';':
                    Semicolon();
                    break;
                case ',':
                    Comma();
                    break;
                case ':':
                    Colon();
                    break;
                case '(':
                    ++Brackets;
                    break;
                case ')':
                    Brackets -= Brackets > 0 ? 1 : 0;
                    break;
                default:
                    break;
            }
        }
        return std::move(Pieces);
    }

 private:
    struct Level {
        Piece Opened;
        size_t HeadBegin = 0;  ///< where the head that the piece continues began
        size_t Brackets = 0;
    };

    bool InFunction() const { return FunctionBraces > 0; }
    bool InValue() const { return !Levels.empty() && Levels.back().Opened.Kind == PieceKind::Initializer; }
    std::string_view Head() const { return Code.substr(HeadBegin, Place - HeadBegin); }

    void Open() {
        if (InFunction()) {
            ++FunctionBraces;
            return;
        }
        const PieceKind kind = KindAfter(Head(), InValue() || Brackets > 0);
        const size_t blank = Head().find_first_not_of(Blanks);
        const size_t begin = HeadBegin + (blank == std::string_view::npos ? Head().size() : blank);
        Levels.push_back({{kind, begin, Place, 0, TypesAround()}, HeadBegin, Brackets});
        if (kind == PieceKind::Function) FunctionBraces = 1;
        HeadBegin = Place + 1;
        Brackets = 0;
    }

    void Close() {
        if (InFunction() && --FunctionBraces > 0) return;
        if (Levels.empty()) return;
        Level level = Levels.back();
        Levels.pop_back();
        level.Opened.End = Place;
        Pieces.push_back(level.Opened);
        // Behind a value the declaration goes on: a second value, a body, the semicolon.
        HeadBegin = level.Opened.Kind == PieceKind::Initializer ? level.HeadBegin : Place + 1;
        Brackets = level.Brackets;
    }

    void Semicolon() {
        if (InFunction() || Brackets > 0) return;
        const std::string_view head = WithoutTemplate(Trimmed(Head()));
        const std::string outline = Outline(head);
        const bool atNamespace = TypesAround() == 0 && !InValue();
        const bool alias = StartsWithWord(head, "using") || StartsWithWord(head, "static_assert") ||
                           StartsWithWord(head, "friend");
        if (atNamespace && !alias && !HasAssignment(outline) && WithoutQualifiers(outline).ends_with(')')) {
            const size_t begin = HeadBegin + Head().find_first_not_of(Blanks);
            Pieces.push_back({PieceKind::Declaration, begin, Place, Place, 0});
        }
        HeadBegin = Place + 1;
    }

    void Comma() {
        if (!InFunction() && InValue() && Brackets == 0) HeadBegin = Place + 1;
    }

    void Colon() {
        if (InFunction()) return;
        const std::string_view head = Trimmed(Head());
        if (head == "public" || head == "private" || head == "protected") HeadBegin = Place + 1;
    }

    size_t TypesAround() const {
        return static_cast<size_t>(std::ranges::count_if(
            Levels, [](const Level& level) { return level.Opened.Kind != PieceKind::Namespace; }));
    }

    std::string_view Code;
    std::vector<Piece> Pieces;
    std::vector<Level> Levels;
    size_t Place = 0;
    size_t HeadBegin = 0;
    size_t Brackets = 0;
    size_t FunctionBraces = 0;
};

}  // namespace

std::vector<Piece> PiecesOf(std::string_view code) {
    return Scanner(code).Run();
}

}  // namespace Corvetape::Architecture
