#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/sounds.h"
#include "support/temp_folder.h"

namespace Corvetape::Test {

/// Runs the built command line in a folder of its own.
class CliTest : public testing::Test {
 protected:
    using Json = nlohmann::json;

    /// A command with its own home and with songs of one second and more worth keeping.
    CommandStart With(const std::string& command, std::vector<std::string> arguments) const {
        CommandStart start;
        start.Arguments = {command, "--home", Home(), "--set", "Source.IgnoreShortSongs=1"};
        start.Arguments.insert(start.Arguments.end(), arguments.begin(), arguments.end());
        start.Folder = folder.Path();
        return start;
    }

    Finished Split(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--out", Out()});
        return RunCommand(With("split", std::move(arguments)));
    }

    std::string Home() const { return folder / "home"; }
    std::string Out() const { return folder / "out"; }

    std::string Put(const std::string& name, const std::string& content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
        return folder / name;
    }

    std::string PutWave(const std::string& name, const Recording& recording) const {
        WriteWave(folder / name, recording.Frames, Rate);
        return folder / name;
    }

    /// What --json has printed; a line that is no object fails the test.
    static std::vector<Json> Objects(const std::string& printed) {
        std::vector<Json> objects;
        for (const std::string& line : LinesOf(printed)) {
            objects.push_back(Json::parse(line, nullptr, false));
            EXPECT_TRUE(objects.back().is_object()) << line;
        }
        return objects;
    }

    /// The songs of a --json run compared with what was recorded: "equal" for each that came out bit for bit.
    static std::vector<std::string> Compared(const Recording& recording, const Finished& run) {
        std::vector<std::string> results;
        for (const Json& song : Objects(run.Out)) {
            const size_t number = results.size();
            if (number >= recording.Songs.size()) return {"too many songs"};
            results.push_back(Comparison(recording.Songs[number], ReadSound(song["file"])));
        }
        return results;
    }

    /// All files below a folder, by their paths below it, in order.
    static std::vector<std::string> FilesBelow(const std::string& path) {
        std::vector<std::string> files;
        std::error_code gone;  // of what a run that goes on takes away meanwhile
        std::filesystem::recursive_directory_iterator entry(path, gone);
        for (; !gone && entry != end(entry); entry.increment(gone)) {
            std::error_code ignored;
            if (entry->is_directory(ignored)) continue;
            files.push_back(entry->path().lexically_relative(path).string());
        }
        std::ranges::sort(files);
        return files;
    }

    static std::string Content(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }

    const TempFolder folder;
};

}  // namespace Corvetape::Test
