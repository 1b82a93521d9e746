#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace Corvetape {

/// Files in memory, with switches for what may fail.
class MemoryFiles : public Files {
 public:
    std::map<std::string, std::string> Contents;
    std::set<std::string> Folders;
    bool WritesFail = false;
    bool ReadsFail = false;
    int Replacements = 0;  ///< successful ones
    int Reads = 0;

    Opened<File> Create(const std::string& path) override { return Refused(path); }
    Opened<File> CreateNew(const std::string& path) override { return Refused(path); }

    FileOr<std::string> ReadAll(const std::string& path, uint64_t limit) override {
        ++Reads;
        const auto found = Contents.find(path);
        if (ReadsFail || found == Contents.end() || found->second.size() > limit) return Refused(path);
        return found->second;
    }

    FileOr<std::string> ReadPart(const std::string& path, uint64_t offset, size_t count) override {
        const auto all = ReadAll(path, UINT64_MAX);
        if (!all) return all.Failure;
        return offset >= all->size() ? std::string() : all->substr(offset, count);
    }

    FileResult Patch(const std::string& path, uint64_t /*offset*/, std::string_view /*bytes*/) override {
        return Refused(path);
    }

    FileResult ReplaceAtomically(const std::string& path, std::string_view content) override {
        if (WritesFail) return Refused(path);
        Contents[path] = content;
        ++Replacements;
        return {};
    }

    FileResult Append(const std::string& path, std::string_view content) override {
        if (WritesFail) return Refused(path);
        Contents[path].append(content);
        return {};
    }

    FileResult Rename(const std::string& from, const std::string& to) override {
        const auto found = Contents.find(from);
        if (WritesFail || found == Contents.end()) return Refused(from);
        Contents[to] = std::exchange(found->second, {});
        Contents.erase(from);
        return {};
    }

    FileResult Copy(const std::string& from, const std::string& to) override {
        if (WritesFail || !Contents.contains(from)) return Refused(from);
        Contents[to] = Contents[from];
        return {};
    }

    FileResult Delete(const std::string& path) override {
        return !WritesFail && Contents.erase(path) > 0 ? FileResult() : Refused(path);
    }
    FileResult MakeFolder(const std::string& path) override {
        return !WritesFail && Folders.insert(path).second ? FileResult() : Refused(path);
    }
    FileResult DeleteFolder(const std::string& path) override {
        return Folders.erase(path) > 0 ? FileResult() : Refused(path);
    }
    bool IsFolder(const std::string& path) override { return Folders.contains(path); }

    FileOr<uint64_t> FileSize(const std::string& path) override {
        const auto found = Contents.find(path);
        if (found == Contents.end()) return Refused(path);
        return found->second.size();
    }

    std::vector<FileEntry> List(const std::string& /*folder*/) override { return {}; }
    FileOr<uint64_t> FreeSpace(const std::string& folder) override { return Refused(folder); }
    bool SameDrive(const std::string& /*one*/, const std::string& /*other*/) override { return false; }

 private:
    static FileResult Refused(const std::string& path) {
        return {"use", path, std::make_error_code(std::errc::permission_denied)};
    }
};

/// A clock that stands until it is moved.
class StandingClock : public Clock {
 public:
    explicit StandingClock(DateTime now = {2009, 12, 31, 14, 5, 9, 0}) : Now(now) {}

    DateTime LocalNow() const override { return Now; }
    int64_t MonotonicNanoseconds() const override { return Nanoseconds; }

    /// Moves the time of day; past midnight the day counts on.
    void Advance(std::chrono::milliseconds duration) {
        Nanoseconds += std::chrono::nanoseconds(duration).count();
        int64_t ms = ((Now.Hour * 60 + Now.Minute) * 60 + Now.Second) * int64_t{1000} + Now.Millisecond;
        ms += duration.count();
        Now.Day += static_cast<int32_t>(ms / 86'400'000);
        ms %= 86'400'000;
        Now.Millisecond = static_cast<int32_t>(ms % 1000);
        Now.Second = static_cast<int32_t>(ms / 1000 % 60);
        Now.Minute = static_cast<int32_t>(ms / 60'000 % 60);
        Now.Hour = static_cast<int32_t>(ms / 3'600'000);
    }

    DateTime Now;
    int64_t Nanoseconds = 0;
};

/// A loop whose sleep moves a clock. It counts what it was asked.
class CountingLoop : public EventLoop {
 public:
    explicit CountingLoop(StandingClock& clock) : Time(clock) {}

    std::unique_ptr<LoopTimer> NewTimer(std::function<void()> /*fired*/) override { return nullptr; }
    void Post(std::function<void()> work) override { Work.push_back(std::move(work)); }

    void ProcessEvents() override {
        ++Processed;
        for (const auto& each : std::exchange(Work, {})) each();
    }

    void Sleep(std::chrono::milliseconds duration) override {
        Slept += duration;
        Time.Advance(duration);
    }

    void Run() override {}
    void Quit() override {}

    int Processed = 0;
    std::chrono::milliseconds Slept{0};

 private:
    StandingClock& Time;
    std::vector<std::function<void()>> Work;
};

class TableFolders : public Folders {
 public:
    std::map<ShellFolder, std::string> Paths = {
        {ShellFolder::AppData, "/home/eva/.config"}, {ShellFolder::MyDocuments, "/home/eva/Documents"},
        {ShellFolder::MyMusic, "/home/eva/Music"},   {ShellFolder::MyPictures, "/home/eva/Pictures"},
        {ShellFolder::MyVideo, "/home/eva/Videos"},  {ShellFolder::CommonAppData, "/var/lib"},
    };
    std::map<std::string, std::string> Variables = {
        {"Temp", "/tmp/eva"}, {"Tmp", "/tmp/tmp"}, {"UserProfile", "/home/eva"}, {"PATH", "/usr/bin:/bin"}};
    bool SetFails = false;

    std::string ShellFolderPath(ShellFolder folder) override {
        const auto found = Paths.find(folder);
        return found == Paths.end() ? std::string() : found->second;
    }
    std::string ProgramFolder() override { return "/opt/corvetape"; }
    std::optional<std::string> Environment(const std::string& name) override {
        const auto same = [&](const auto& each) {
            return std::ranges::equal(each.first, name, {}, Lower, Lower);
        };
        const auto found = std::ranges::find_if(Variables, same);
        return found == Variables.end() ? std::nullopt : std::optional(found->second);
    }
    bool SetEnvironment(const std::string& name, const std::string& value) override {
        if (SetFails) return false;
        Variables[name] = value;
        return true;
    }
    std::optional<std::string> FindProgram(const std::string& /*name*/) override { return std::nullopt; }

 private:
    static char Lower(char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
    }
};

/// Boxes that remember what they showed.
class RecordingDialogs : public Dialogs {
 public:
    struct Shown {
        std::string Text;
        DialogIcon Icon;
        bool operator==(const Shown&) const = default;
    };
    std::vector<Shown> Boxes;

    void ShowMessage(const std::string& text, DialogIcon icon) override { Boxes.push_back({text, icon}); }
    void ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) override {
        Boxes.push_back({title + ": " + text, icon});
    }
    bool AskYesNo(const std::string& text, DialogIcon icon) override {
        Boxes.push_back({text, icon});
        return false;
    }
    void Beep() override {}
    std::optional<std::string> BrowseForFolder(const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> OpenFile(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
};

}  // namespace Corvetape
