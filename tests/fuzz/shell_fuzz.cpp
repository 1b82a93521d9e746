// Command templates: a small reader of shell words, written for this test, reads the scripts that they
// become. Fields: first value, second value, options, template.
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "platform/linux/processes/shell_script.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr size_t MostBytes = 512;
constexpr size_t FirstOptions = 2;  // %3

/// Words of commands as a shell takes them; signs such as ";" and line ends are words after a mark.
class Words {
 public:
    void Add(char character) {
        Word += character;
        Begun = true;
    }
    void Add(std::string_view text) {
        Word += text;
        Begun = true;
    }
    void Begin() { Begun = true; }
    void End() {
        if (Begun) All.push_back(std::exchange(Word, {}));
        Begun = false;
    }
    void Sign(char sign) {
        End();
        All.push_back(std::string("sign ") + sign);
    }
    bool IsBegun() const { return Begun; }
    bool IsEmpty() const { return Word.empty(); }

    std::vector<std::string> All;

 private:
    std::string Word;
    bool Begun = false;
};

enum class Quote { None, Single, Double, Comment };

bool IsSign(char character) {
    return std::string_view("\n;&|<>").find(character) != std::string_view::npos;
}

/// What `character` means outside of backslashes and variables. True if it was handled.
void Read(char character, Quote& quote, Words& words) {
    if (quote == Quote::Comment) {
        if (character != '\n') return;
        quote = Quote::None;
        words.Sign('\n');
    } else if (quote != Quote::None) {
        const bool ends = character == (quote == Quote::Single ? '\'' : '"');
        if (ends) quote = Quote::None;
        if (!ends) words.Add(character);
    } else if (character == '\'' || character == '"') {
        quote = character == '"' ? Quote::Double : Quote::Single;
        words.Begin();
    } else if (character == '#' && !words.IsBegun()) {
        quote = Quote::Comment;
    } else if (character == ' ' || character == '\t') {
        words.End();
    } else if (IsSign(character)) {
        words.Sign(character);
    } else {
        words.Add(character);
    }
}

/// A backslash that is not in single quotes or a comment, and what stands after it.
void ReadEscaped(char next, Quote quote, Words& words) {
    if (next == '\n') return;  // the line goes on
    const bool kept =
        quote == Quote::Double && std::string_view("$`\"\\").find(next) == std::string_view::npos;
    if (kept) words.Add('\\');
    words.Add(next);
}

/// The words of a script of the shell, whose variables are known. Nothing if it is not whole.
std::optional<std::vector<std::string>> WordsOfScript(std::string_view script,
                                                      const std::map<std::string, std::string>& variables) {
    Words words;
    Quote quote = Quote::None;
    for (size_t i = 0; i < script.size(); ++i) {
        const bool literal = quote == Quote::Single || quote == Quote::Comment;
        if (script[i] == '\\' && !literal) {
            if (++i == script.size()) return std::nullopt;
            ReadEscaped(script[i], quote, words);
        } else if (script[i] == '$' && !literal) {
            Require(quote == Quote::Double, "a variable is quoted wherever it stands");
            const size_t end = script.find('}', i);
            Require(script.substr(i, 2) == "${" && end != std::string_view::npos, "a variable is in braces");
            const auto found = variables.find(std::string(script.substr(i + 2, end - i - 2)));
            Require(found != variables.end(), "only declared variables are read");
            words.Add(found->second);
            i = end;
        } else {
            Read(script[i], quote, words);
        }
    }
    if (quote == Quote::Single || quote == Quote::Double) return std::nullopt;
    words.End();
    return words.All;
}

/// The words that a template asks for, with the values in their places.
class TemplateReader {
 public:
    explicit TemplateReader(const std::vector<TemplateParameter>& values) : Values(values) {}

    std::optional<std::vector<std::string>> Run(std::string_view text) {
        Scan(text, true);
        if (State == Quote::Single || State == Quote::Double) return std::nullopt;
        Result.Sign('\n');
        return Result.All;
    }

 private:
    const TemplateParameter* ValueAt(std::string_view rest, bool isTemplate) const {
        if (!isTemplate || rest.size() < 2 || rest[0] != '%') return nullptr;
        const size_t index = static_cast<size_t>(static_cast<unsigned char>(rest[1])) - '1';
        return index < Values.size() ? &Values[index] : nullptr;
    }

    static bool IsSeparator(std::string_view rest) {
        return rest.size() >= 4 && EqualIgnoringCase(rest.substr(0, 4), CommandSeparator);
    }

    void Put(const TemplateParameter& value) {
        if (value.Kind == ParameterKind::Options) {
            Scan(value.Value, false);
        } else if (State != Quote::Comment) {
            if (Result.IsEmpty() && value.Value.starts_with('-')) Result.Add(' ');
            Result.Add(value.Value);
        }
    }

    void Scan(std::string_view text, bool isTemplate) {
        while (!text.empty()) text.remove_prefix(Step(text, isTemplate));
    }

    size_t Step(std::string_view rest, bool isTemplate) {
        const bool literal = State == Quote::Single || State == Quote::Comment;
        if (IsSeparator(rest)) {
            Read('\n', State, Result);
            return CommandSeparator.size();
        }
        if (const TemplateParameter* value = ValueAt(rest, isTemplate)) {
            Put(*value);
            return 2;
        }
        if (rest[0] != '\\' || literal) {
            Read(rest[0], State, Result);
            return 1;
        }
        const std::string_view next = rest.substr(1);
        if (ValueAt(next, isTemplate) && State == Quote::None) return 1;  // it only kept the percent sign
        if (next.empty() || IsSeparator(next) || ValueAt(next, isTemplate)) {
            Result.Add('\\');
            return 1;
        }
        ReadEscaped(next[0], State, Result);
        return 2;
    }

    const std::vector<TemplateParameter>& Values;
    Words Result;
    Quote State = Quote::None;
};

/// The script after what stands at its beginning in any script, and the variables that it declares.
struct Script {
    std::map<std::string, std::string> Variables;
    std::string Commands;
};

Script TakeApart(const std::string& text) {
    const std::string empty = ShellScript({}).Text();
    const std::string end = "exit \"$corvet_failed\"\n";
    const size_t preamble = empty.size() - end.size();
    Require(text.starts_with(empty.substr(0, preamble)) && text.ends_with(end), "a script has its frame");
    std::string_view rest = std::string_view(text).substr(preamble, text.size() - end.size() - preamble);
    Script script;
    while (rest.starts_with("corvet_") && !rest.starts_with("corvet_end\n")) {
        const size_t equals = rest.find('=');
        std::string value;
        size_t i = equals + 1;
        for (bool quoted = false; quoted || rest[i] != '\n'; ++i) {
            if (rest[i] == '\'') {
                quoted = !quoted;
            } else {
                value += !quoted && rest[i] == '\\' ? rest[++i] : rest[i];
            }
        }
        script.Variables[std::string(rest.substr(0, equals))] = value;
        rest.remove_prefix(i + 1);
    }
    script.Commands = rest;
    return script;
}

std::string WithoutNul(std::string_view value) {
    return ReplaceAll(value, std::string_view("\0", 1), "");
}

void CheckWord(const std::string& value) {
    const auto words = WordsOfScript(ShellWord(value), {});
    Require(words && words->size() == 1 && words->front() == WithoutNul(value),
            "a quoted value is one word that is the value");
}

std::optional<Script> MakeScript(const std::string& text, const std::vector<TemplateParameter>& values) {
    ShellScript script({});
    Require(script.Add(RememberSong{"/temp/" + values[0].Value}), "a song can be remembered");
    if (!script.Add(CommandTemplate{text, values})) return std::nullopt;
    Require(script.Add(DeleteSong{"/temp/" + values[0].Value, "/music/" + values[1].Value}), "and deleted");
    return TakeApart(script.Text());
}

/// No byte of a value is among the commands: with others that begin alike they are the same.
void CheckCommands(const std::string& text, std::vector<TemplateParameter> values) {
    const std::optional<Script> script = MakeScript(text, values);
    for (size_t i = 0; i < FirstOptions; ++i) {
        if (!values[i].Value.empty()) values[i].Value = values[i].Value.starts_with('-') ? "-" : "x";
    }
    const std::optional<Script> other = MakeScript(text, values);
    Require(script.has_value() == other.has_value(), "no value decides whether a template is whole");
    Require(!script || script->Commands == other->Commands, "no value gets into the commands");
}

void CheckArguments(const std::string& text, const std::vector<TemplateParameter>& values) {
    ShellScript script({});
    const bool added = script.Add(CommandTemplate{text, values});
    const auto wanted = TemplateReader(values).Run(text);
    Require(added == wanted.has_value(), "a template whose quotations are closed is taken");
    if (!added) return;
    Script made = TakeApart(script.Text());
    std::optional<std::vector<std::string>> words = WordsOfScript(made.Commands, made.Variables);
    Require(words.has_value(), "a script is whole");
    for (size_t i = 0; i + 1 < words->size();) {
        const bool call = (*words)[i] == "corvet_end" && (*words)[i + 1] == "sign \n";
        if (call)
            words->erase(words->begin() + static_cast<std::ptrdiff_t>(i),
                         words->begin() + static_cast<std::ptrdiff_t>(i) + 2);
        if (!call) ++i;
    }
    Require(words == wanted, "each command gets its words with the values in them");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string first(input.Field());
    const std::string second(input.Field());
    const std::string options = WithoutNul(input.Field().substr(0, MostBytes));
    const std::string text = WithoutNul(input.Rest().substr(0, MostBytes));
    CheckWord(first);
    const std::vector<TemplateParameter> values = {{ParameterKind::Text, WithoutNul(first)},
                                                   {ParameterKind::Text, WithoutNul(second)},
                                                   {ParameterKind::Options, options}};
    if ((text + options).find("corvet_") != std::string::npos) return;  // would pass for the script's own
    CheckCommands(text, values);
    // What the shell would have to run to know it is read by the tests with the real one.
    const bool simple = (text + options).find_first_of("$`()") == std::string::npos;
    if (simple) CheckArguments(text, values);
}

}  // namespace Corvetape
