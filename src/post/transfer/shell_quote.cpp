#include "post/transfer/shell_quote.h"

#include "core/text/text.h"
#include "post/transfer/template_scanner.h"

namespace Corvetape {

namespace {

/// Keeps the code of the first command that failed. It hands the code on, so that standing between two
/// commands it changes nothing for the second.
constexpr std::string_view EndOfCommand =
    "corvet_end() { corvet_code=$?; [ \"$corvet_failed\" -ne 0 ] || corvet_failed=$corvet_code; "
    "return \"$corvet_code\"; }\n";

}  // namespace

std::string ShellWord(std::string_view value) {
    std::string word = "'";
    for (const char character : value) {
        if (character == '\0') continue;
        if (character == '\'') {
            word += "'\\''";
        } else {
            word += character;
        }
    }
    return word += '\'';
}

ShellScript::ShellScript(std::span<const std::string> programFolders) {
    Preamble = "PATH=";
    for (const std::string& folder : programFolders) Preamble += ShellWord(folder) + ":";
    Preamble += "\"$PATH\"\nexport PATH\ncorvet_failed=0\n";
    Preamble += EndOfCommand;
}

std::string ShellScript::Declare(std::string_view value) {
    std::string name = "corvet_" + std::to_string(++Variables);
    Declarations += name + "=" + ShellWord(value) + "\n";
    return name;
}

void ShellScript::Export(const std::string& name, std::string_view value) {
    Declarations += name + "=" + ShellWord(value) + "\nexport " + name + "\n";
}

bool ShellScript::AddTemplate(std::string_view text, std::span<const TemplateParameter> parameters) {
    std::vector<TemplateText> texts;
    for (const TemplateParameter& parameter : parameters) {
        const bool isOptions = parameter.Kind == ParameterKind::Options;
        texts.push_back(
            {isOptions ? parameter.Value : std::string(), {}, {}, isOptions, !parameter.Value.empty()});
        if (isOptions) continue;
        texts.back().Variable = Declare(parameter.Value);
        texts.back().WordStartVariable =
            parameter.Value.starts_with('-') ? Declare(" " + parameter.Value) : texts.back().Variable;
    }
    const std::optional<std::string> commands = ScanTemplate(text, texts, "corvet_end");
    if (!commands) return false;
    Commands += *commands;
    return true;
}

void ShellScript::RememberSong(const std::string& base) {
    const std::string song = Declare(base + ".wav");
    Commands += "if [ -r \"$" + song + "\" ]; then exec 9<\"$" + song + "\"; fi\n";
}

void ShellScript::DeleteNoteIfMade(const std::string& note, const std::string& made,
                                   const std::string& reader) {
    const std::string noteName = Declare(note);
    const std::string madeName = Declare(made);
    const std::string process = Declare("/proc/" + reader);
    Commands += "if [ \"$corvet_failed\" -eq 0 ] || [ -s \"$" + madeName + "\" ]; then rm -f -- \"$" +
                noteName + "\"; fi\n";
    Commands += "[ -d \"$" + process + "\" ] || rm -f -- \"$" + madeName + "\"\n";
}

void ShellScript::DeleteIfAllSucceeded(const std::string& base, const std::string& target) {
    const std::string name = Declare(base);
    const std::string song = Declare(base + ".wav");
    const std::string here = Declare(base.substr(0, base.rfind('/') + 1));
    const std::string there = Declare(target.substr(0, target.rfind('/') + 1));
    Commands += "if [ \"$corvet_failed\" -eq 0 ] && ! [ \"$" + here + "\" -ef \"$" + there +
                "\" ] && [ /proc/self/fd/9 -ef \"$" + song + "\" ]; then\n";
    // Another song may be called like this one with a dot and more after it; only one extension counts.
    Commands += "for corvet_file in \"$" + name + "\".*; do case \"${corvet_file#\"$" + name +
                "\".}\" in *.*) ;; *) rm -f -- \"$corvet_file\" ;; esac; done\nfi\n";
}

std::string ShellScript::Text() const {
    return Preamble + Declarations + Commands + "exit \"$corvet_failed\"\n";
}

}  // namespace Corvetape
