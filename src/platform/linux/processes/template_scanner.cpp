#include "platform/linux/processes/template_scanner.h"

#include <algorithm>
#include <vector>

#include "platform/processes.h"

namespace Corvetape {

namespace {

enum class Place { Bare, DoubleQuotes, SingleQuotes, Parentheses, Backquotes, Comment };

/// A stretch of shell text that is quoted in one way, and how far the word in it has come.
struct Stretch {
    Place Kind = Place::Bare;
    bool WordBegun = false;  ///< the present word has a character
    bool WordSolid = false;  ///< and it cannot turn out empty
    bool WordOpen = false;   ///< it holds something whose length only the shell knows
};

bool IsWordEnd(char character) {
    return std::string_view(" \t\n;&|<>()").find(character) != std::string_view::npos;
}

bool StartsWithSeparator(std::string_view text) {
    const auto isSame = [](char letter, char wanted) {
        return (letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter) == wanted;
    };
    return std::ranges::equal(text.substr(0, CommandSeparator.size()), CommandSeparator, isSame);
}

class Scanner {
 public:
    Scanner(std::span<const TemplateText> parameters, std::string_view endOfCommand)
        : Parameters(parameters), EndOfCommand(endOfCommand) {}

    void Scan(std::string_view text, bool isTemplate) {
        for (size_t i = 0; i < text.size();) i += Step(text.substr(i), isTemplate);
    }

    std::optional<std::string> Finish() {
        if (Top().Kind == Place::Comment) Stack.pop_back();
        if (Stack.size() != 1) return std::nullopt;
        EndCommand();
        return Result;
    }

 private:
    Stretch& Top() { return Stack.back(); }

    /// The stretch whose words are being made: quotations belong to the word that they stand in.
    Stretch& WordStretch() {
        size_t i = Stack.size() - 1;
        while (Stack[i].Kind == Place::DoubleQuotes || Stack[i].Kind == Place::SingleQuotes) --i;
        return Stack[i];
    }

    const TemplateText* ParameterAt(std::string_view rest, bool isTemplate) const {
        if (!isTemplate || rest.size() < 2 || rest[0] != '%' || rest[1] < '1' || rest[1] > '9')
            return nullptr;
        const auto index = static_cast<size_t>(rest[1] - '1');
        return index < Parameters.size() ? &Parameters[index] : nullptr;
    }

    /// Handles what `rest` begins with and returns how many characters that was.
    size_t Step(std::string_view rest, bool isTemplate) {
        if (StartsWithSeparator(rest)) {
            EndCommand();
            return CommandSeparator.size();
        }
        if (const TemplateText* parameter = ParameterAt(rest, isTemplate)) {
            Put(*parameter);
            return 2;
        }
        switch (Top().Kind) {
            case Place::SingleQuotes:
                return StepInSingleQuotes(rest);
            case Place::DoubleQuotes:
                return StepInDoubleQuotes(rest, isTemplate);
            case Place::Comment:
                Result += rest[0];
                if (rest[0] == '\n') Stack.pop_back();
                return 1;
            default:
                return StepInCommand(rest, isTemplate);
        }
    }

    size_t StepInSingleQuotes(std::string_view rest) {
        Result += rest[0];
        if (rest[0] == '\'') {
            Stack.pop_back();
        } else {
            Solid();
        }
        return 1;
    }

    size_t StepInDoubleQuotes(std::string_view rest, bool isTemplate) {
        if (rest[0] == '\\') return StepOnBackslash(rest, isTemplate);
        if (rest[0] == '"') {
            Result += '"';
            Stack.pop_back();
            return 1;
        }
        return StepOnSubstitution(rest);
    }

    size_t StepInCommand(std::string_view rest, bool isTemplate) {
        const char character = rest[0];
        if (character == '\\') return StepOnBackslash(rest, isTemplate);
        if (character == '\'' || character == '"') {
            Result += character;
            Top().WordBegun = true;
            Stack.push_back({character == '"' ? Place::DoubleQuotes : Place::SingleQuotes});
            return 1;
        }
        if (character == '#' && !Top().WordBegun) {
            Result += '#';
            Stack.push_back({Place::Comment});
            return 1;
        }
        if (!IsWordEnd(character)) return StepOnSubstitution(rest);
        Result += character;
        const Place place = Top().Kind;
        if (character == ')' && place == Place::Parentheses) Stack.pop_back();
        if (character != ')' || place != Place::Parentheses) BeginWord();
        if (character == '(') Stack.push_back({Place::Parentheses});
        return 1;
    }

    /// A backslash that would act on what the program puts in stands for itself, or for nothing ahead of %N
    /// outside quotations, where it would only have kept the percent sign.
    size_t StepOnBackslash(std::string_view rest, bool isTemplate) {
        const std::string_view next = rest.substr(1);
        const bool isParameter = ParameterAt(next, isTemplate) != nullptr;
        if (isParameter && Top().Kind != Place::DoubleQuotes) return 1;
        if (next.starts_with('\n')) {  // the shell takes both away: no word has begun
            Result += rest.substr(0, 2);
            return 2;
        }
        Solid();
        if (isParameter || next.empty() || StartsWithSeparator(next)) {
            Result += "\\\\";
            return 1;
        }
        Result += rest.substr(0, 2);
        return 2;
    }

    /// An ordinary character, or the beginning or end of a command substitution.
    size_t StepOnSubstitution(std::string_view rest) {
        const char character = rest[0];
        Result += character;
        if (character == '`') {
            StepOnBackquote();
            return 1;
        }
        if (character != '$') {
            Solid();
            return 1;
        }
        WordStretch().WordBegun = true;
        WordStretch().WordOpen = true;
        if (!rest.starts_with("$(")) return 1;
        Result += '(';
        Stack.push_back({Place::Parentheses});
        return 2;
    }

    void StepOnBackquote() {
        for (size_t i = Stack.size(); i-- > 0;) {
            if (Stack[i].Kind != Place::Backquotes) continue;
            Stack.resize(i);
            return;
        }
        WordStretch().WordBegun = true;
        WordStretch().WordOpen = true;
        Stack.push_back({Place::Backquotes});
    }

    void Put(const TemplateText& parameter) {
        if (parameter.IsOptions) {
            Scan(parameter.Options, false);
            return;
        }
        Stretch& word = WordStretch();
        const std::string& variable = word.WordSolid ? parameter.Variable : parameter.WordStartVariable;
        switch (Top().Kind) {
            case Place::SingleQuotes:
                Result += "'\"${" + variable + "}\"'";
                break;
            case Place::DoubleQuotes:
            case Place::Comment:
                Result += "${" + variable + "}";
                break;
            default:
                Result += "\"${" + variable + "}\"";
        }
        word.WordBegun = true;
        if (parameter.IsFilled) Solid();
    }

    void EndCommand() {
        if (Top().Kind == Place::Comment) Stack.pop_back();
        Result += '\n';
        if (Stack.size() == 1) Result.append(EndOfCommand).append("\n");
        if (Top().Kind != Place::SingleQuotes && Top().Kind != Place::DoubleQuotes) BeginWord();
    }

    void BeginWord() { Top() = {Top().Kind}; }

    void Solid() {
        Stretch& word = WordStretch();
        word.WordBegun = true;
        if (!word.WordOpen) word.WordSolid = true;
    }

    std::span<const TemplateText> Parameters;
    std::string_view EndOfCommand;
    std::vector<Stretch> Stack{{}};
    std::string Result;
};

}  // namespace

std::optional<std::string> ScanTemplate(std::string_view text, std::span<const TemplateText> parameters,
                                        std::string_view endOfCommand) {
    Scanner scanner(parameters, endOfCommand);
    scanner.Scan(text, true);
    return scanner.Finish();
}

}  // namespace Corvetape
