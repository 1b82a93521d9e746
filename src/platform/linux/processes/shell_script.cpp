#include "platform/linux/processes/shell_script.h"

#include <algorithm>
#include <vector>

#include "platform/linux/processes/template_scanner.h"

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

bool ShellScript::Add(const CommandTemplate& commands) {
    std::vector<TemplateText> texts;
    for (const TemplateParameter& parameter : commands.Parameters) {
        const bool isOptions = parameter.Kind == ParameterKind::Options;
        texts.push_back(
            {isOptions ? parameter.Value : std::string(), {}, {}, isOptions, !parameter.Value.empty()});
        if (isOptions) continue;
        texts.back().Variable = Declare(parameter.Value);
        texts.back().WordStartVariable =
            parameter.Value.starts_with('-') ? Declare(" " + parameter.Value) : texts.back().Variable;
    }
    const std::optional<std::string> translated = ScanTemplate(commands.Text, texts, "corvet_end");
    if (!translated) return false;
    Commands += *translated;
    return true;
}

bool ShellScript::Add(const ProgramCall& call) {
    for (const std::string& argument : call.Arguments) Commands += ShellWord(argument) + " ";
    if (!call.PrintedLine.empty()) {
        const std::string begin = Declare(call.PrintedLine);
        Commands += "| { while IFS= read -r corvet_line; do case \"$corvet_line\" in \"$" + begin +
                    "\"*) exit 0 ;; esac; done; exit 1; }";
    }
    Commands += "\ncorvet_end\n";
    return true;
}

bool ShellScript::Add(const RememberSong& step) {
    const std::string song = Declare(step.Base + ".wav");
    Commands += "if [ -r \"$" + song + "\" ]; then exec 9<\"$" + song + "\"; fi\n";
    return true;
}

bool ShellScript::Add(const DeleteSong& step) {
    const std::string name = Declare(step.Base);
    const std::string song = Declare(step.Base + ".wav");
    const std::string here = Declare(step.Base.substr(0, step.Base.rfind('/') + 1));
    const std::string there = Declare(step.Target.substr(0, step.Target.rfind('/') + 1));
    Commands += "if [ \"$corvet_failed\" -eq 0 ] && ! [ \"$" + here + "\" -ef \"$" + there +
                "\" ] && [ /proc/self/fd/9 -ef \"$" + song + "\" ]; then\n";
    // Another song may be called like this one with a dot and more after it; only one extension counts. As
    // soon as the note is gone, another song may take the name, and its file would go here.
    Commands += "for corvet_file in \"$" + name + "\".*; do case \"${corvet_file#\"$" + name +
                "\".}\" in *.* | note) ;; *) rm -f -- \"$corvet_file\" ;; esac; done\nfi\n";
    return true;
}

bool ShellScript::Add(const DeleteNote& step) {
    const std::string note = Declare(step.Note);
    const std::string made = Declare(step.Made);
    const std::string process = Declare("/proc/" + step.Reader);
    Commands +=
        "if [ \"$corvet_failed\" -eq 0 ] || [ -s \"$" + made + "\" ]; then rm -f -- \"$" + note + "\"; fi\n";
    Commands += "[ -d \"$" + process + "\" ] || rm -f -- \"$" + made + "\"\n";
    return true;
}

std::string ShellScript::Text() const {
    return Preamble + Declarations + Commands + "exit \"$corvet_failed\"\n";
}

std::optional<std::string> ShellLine(const HiddenJob& job) {
    ShellScript script(job.ProgramFolders);
    for (const EnvironmentValue& value : job.Environment) script.Export(value.Name, value.Value);
    const bool isWhole = std::ranges::all_of(job.Steps, [&](const JobStep& step) {
        return std::visit([&](const auto& each) { return script.Add(each); }, step);
    });
    if (!isWhole) return std::nullopt;
    return script.Text();
}

}  // namespace Corvetape
