#include "sim/sim_folders.h"

#include <algorithm>
#include <cctype>

namespace Corvetape {

namespace {

std::string InSmallLetters(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

}  // namespace

SimFolders::SimFolders(SimFiles& files)
    : ShellFolders({{ShellFolder::MyDocuments, "/home/user/Documents"},
                    {ShellFolder::MyMusic, "/home/user/Music"},
                    {ShellFolder::MyVideo, "/home/user/Videos"},
                    {ShellFolder::AppData, "/home/user/.config"},
                    {ShellFolder::CommonAppData, "/usr/share"},
                    {ShellFolder::MyPictures, "/home/user/Pictures"}}),
      Variables({{"HOME", "/home/user"},
                 {"UserProfile", "/home/user"},
                 {"Temp", "/home/user/.cache"},
                 {"Tmp", "/home/user/.cache"},
                 {"PATH", "/usr/local/bin:/usr/bin:/bin"}}),
      Disk(files) {}

std::string SimFolders::ShellFolderPath(ShellFolder folder) {
    const auto path = ShellFolders.find(folder);
    if (path == ShellFolders.end()) return {};
    Disk.MakeFolders(path->second);
    return path->second;
}

std::map<std::string, std::string>::iterator SimFolders::FindVariable(const std::string& name) {
    const auto exact = Variables.find(name);
    if (exact != Variables.end()) return exact;
    const std::string wanted = InSmallLetters(name);
    return std::ranges::find_if(
        Variables, [&wanted](const auto& variable) { return InSmallLetters(variable.first) == wanted; });
}

std::optional<std::string> SimFolders::Environment(const std::string& name) {
    const auto variable = FindVariable(name);
    if (variable == Variables.end()) return std::nullopt;
    return variable->second;
}

bool SimFolders::SetEnvironment(const std::string& name, const std::string& value) {
    if (RefuseVariables) return false;
    const auto variable = FindVariable(name);
    if (variable == Variables.end()) {
        Variables[name] = value;
    } else {
        variable->second = value;
    }
    return true;
}

std::optional<std::string> SimFolders::FindProgram(const std::string& name) {
    std::string path = Environment("PATH").value_or("");
    path += SearchPathSeparator();
    size_t begin = 0;
    for (size_t end = path.find(SearchPathSeparator()); end != std::string::npos;
         end = path.find(SearchPathSeparator(), begin)) {
        const std::string candidate = path.substr(begin, end - begin) + "/" + name;
        if (end > begin && Disk.Content(candidate).has_value()) return candidate;
        begin = end + 1;
    }
    return std::nullopt;
}

}  // namespace Corvetape
