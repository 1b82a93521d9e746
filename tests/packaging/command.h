#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace Corvetape {

/// What a shell command prints, its errors included, and how it ends.
struct ShellResult {
    std::string Text;
    int ExitCode = -1;
};

inline ShellResult RunShell(const std::string& command) {
    ShellResult result;
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 4096> part{};
    size_t got = 0;
    while ((got = fread(part.data(), 1, part.size(), pipe)) > 0) result.Text.append(part.data(), got);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) result.ExitCode = WEXITSTATUS(status);
    return result;
}

inline std::string TextOfFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// All that matches a pattern: its first group.
inline std::set<std::string> AllOf(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern, std::regex::ECMAScript | std::regex::multiline);
    std::set<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at) {
        found.insert((*at)[1].str());
    }
    return found;
}

}  // namespace Corvetape
