#include "architecture/source_text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Corvetape::Architecture {

namespace {

bool IsNamePart(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

/// Copies every character of a text to where it belongs, one piece at a time.
class Splitter {
 public:
    explicit Splitter(SourceFile& file) : File(file), Text(file.Text) {
        for (std::string* part : {&File.Code, &File.Comments}) {
            part->assign(Text.size(), ' ');
            for (size_t i = 0; i < Text.size(); ++i) {
                if (Text[i] == '\n') (*part)[i] = '\n';
            }
        }
    }

    void Run() {
        while (Place < Text.size()) {
            if (StartsWith("//")) {
                Keep(File.Comments, LineEnd());
            } else if (StartsWith("/*")) {
                Keep(File.Comments, After("*/", Place + 2));
            } else if (Text[Place] == '#' && FirstOfLine()) {
                PreprocessorLine();
            } else if (StartsWith("R\"") && (Place == 0 || !IsNamePart(Text[Place - 1]))) {
                RawLiteral();
            } else if (Text[Place] == '"' || (Text[Place] == '\'' && !DigitSeparator())) {
                Literal();
            } else {
                Keep(File.Code, Place + 1);
            }
        }
    }

 private:
    bool StartsWith(std::string_view part) const { return Text.substr(Place).starts_with(part); }
    size_t LineEnd() const { return std::min(Text.find('\n', Place), Text.size()); }

    size_t After(std::string_view part, size_t from) const {
        const size_t found = Text.find(part, from);
        return found == std::string_view::npos ? Text.size() : found + part.size();
    }

    bool FirstOfLine() const {
        const size_t before = Place == 0 ? std::string_view::npos : Text.find_last_not_of(" \t", Place - 1);
        return before == std::string_view::npos || Text[before] == '\n';
    }

    bool DigitSeparator() const { return Place > 0 && IsNamePart(Text[Place - 1]); }

    void Keep(std::string& part, size_t end) {
        for (; Place < end; ++Place) part[Place] = Text[Place];
    }

    void PreprocessorLine() {
        while (Place < Text.size()) {
            if (StartsWith("//")) {
                Keep(File.Comments, LineEnd());
                return;
            }
            if (Text[Place] == '\n' && Text[Place - 1] != '\\') return;
            ++Place;
        }
    }

    void RawLiteral() {
        const size_t open = Text.find('(', Place);
        const std::string end = ")" + std::string(Text.substr(Place + 2, open - Place - 2)) + "\"";
        Blank(After(end, open));
    }

    void Literal() {
        const char quote = Text[Place];
        size_t end = Place + 1;
        while (end < Text.size() && Text[end] != quote && Text[end] != '\n') end += Text[end] == '\\' ? 2 : 1;
        Blank(std::min(end + 1, Text.size()));
    }

    /// Leaves the outer quotes, so that a literal is still seen to stand here.
    void Blank(size_t end) {
        File.Code[Place] = '"';
        File.Code[end - 1] = Text[end - 1] == '\n' ? '\n' : '"';
        Place = end;
    }

    SourceFile& File;
    std::string_view Text;
    size_t Place = 0;
};

std::string ReadWhole(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

}  // namespace

SourceFile ReadSource(std::string path, std::string text) {
    SourceFile file{.Path = std::move(path), .Text = std::move(text), .Code = {}, .Comments = {}};
    Splitter(file).Run();
    return file;
}

std::vector<SourceFile> ReadTree(std::string_view root, const std::vector<std::string>& folders) {
    const std::filesystem::path top(root);
    std::vector<SourceFile> files;
    for (const std::string& folder : folders) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(top / folder)) {
            const std::string ending = entry.path().extension().string();
            if (!entry.is_regular_file() || (ending != ".h" && ending != ".cpp")) continue;
            files.push_back(
                ReadSource(entry.path().lexically_relative(top).generic_string(), ReadWhole(entry.path())));
        }
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.Path < b.Path; });
    return files;
}

size_t LineOf(std::string_view text, size_t position) {
    return 1 + static_cast<size_t>(std::ranges::count(text.substr(0, position), '\n'));
}

std::vector<std::string_view> LinesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

bool IsHeader(const SourceFile& file) {
    return file.Path.ends_with(".h");
}

std::vector<size_t> FindWord(std::string_view code, std::string_view word) {
    std::vector<size_t> places;
    for (size_t at = code.find(word); at != std::string_view::npos; at = code.find(word, at + 1)) {
        const size_t after = at + word.size();
        const bool startsHere = at == 0 || !IsNamePart(code[at - 1]);
        if (startsHere && (after == code.size() || !IsNamePart(code[after]))) places.push_back(at);
    }
    return places;
}

}  // namespace Corvetape::Architecture
