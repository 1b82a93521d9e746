// Settings files: reading, writing and deleting keys, and the profiles of web radios in such a file.
// Fields: section, key, value, file.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "core/settings/profile.h"
#include "core/text/fold.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "media/browser_profile.h"
#include "sim/sim_files.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr const char* Path = "/file.ini";
constexpr size_t ProfileBuffer = 32767;

struct Key {
    std::string Section;
    std::string Name;
    std::string Value;

    bool operator==(const Key&) const = default;
};

std::vector<std::string> AllSections(const Profile& file) {
    std::vector<std::string> sections = file.Sections();
    sections.insert(sections.begin(), "");
    return sections;
}

std::vector<Key> AllKeys(const Profile& file) {
    std::vector<Key> keys;
    for (const std::string& section : AllSections(file)) {
        for (const std::string& name : file.Keys(section)) {
            Require(file.HasKey(section, name), "a key that is listed is there");
            keys.push_back({section, name, file.ReadText(section, name, "")});
        }
    }
    return keys;
}

bool Is(const Key& key, std::string_view section, std::string_view name) {
    return EqualIgnoringCase(key.Section, section) && EqualIgnoringCase(key.Name, name);
}

void CheckReading(const Profile& file) {
    for (const std::string& section : AllSections(file)) {
        for (const size_t room : {size_t{0}, size_t{1}, size_t{16}}) {
            size_t used = 1;
            for (const std::string& name : file.Keys(section, room)) used += name.size() + 1;
            Require(used <= std::max<size_t>(room, 1), "names fit into the buffer");
        }
    }
    for (const Key& key : AllKeys(file)) {
        Require(key.Value.find_first_of(std::string_view("\n\0", 2)) == std::string::npos,
                "a value is of one line");
        for (const size_t limit : {size_t{0}, size_t{1}, size_t{7}}) {
            const std::string cut = file.ReadText(key.Section, key.Name, "", limit);
            Require(CharactersOf(cut).size() <= limit && key.Value.starts_with(cut),
                    "a value is cut to its limit in characters");
            Require(Fuzz::IsUtf8(cut) || !Fuzz::IsUtf8(key.Value), "no character is cut in two");
        }
        file.ReadInt(key.Section, key.Name, 0);
    }
}

void CheckProfiles(const Profile& file) {
    for (const ProviderProfile& each : ReadProfiles(file)) {
        const std::array<std::string, 5> texts = {each.Name, each.WindowClass, each.WindowTitle,
                                                  each.DocTitle, each.DocUrl};
        for (const std::string& text : texts) {
            Require(Fuzz::IsUtf8(text), "what a profile holds is UTF-8");
            Require(CharactersOf(text).size() < ProfileBuffer, "what a profile holds has an end");
        }
        const std::array<MediaFieldRule, 8> rules = {each.Station, each.StationDesc, each.Artist,
                                                     each.Title,   each.Album,       each.Cover,
                                                     each.Status,  each.Restart};
        for (const MediaFieldRule& rule : rules) {
            Require((rule.Source + rule.Element + rule.Pattern).find(';') == std::string::npos,
                    "no part of a rule holds its separator");
        }
    }
}

std::string OneLine(std::string_view value) {
    std::string line(value);
    for (char& each : line) {
        if (each == '\r' || each == '\n' || each == '\0') each = ' ';
    }
    return line;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines = Split(text, '\n');
    for (std::string& line : lines) {
        if (line.ends_with('\r')) line.pop_back();
    }
    if (lines.back().empty()) lines.pop_back();
    return lines;
}

/// All lines but one of `before` stand in `after`, in their order at its beginning and at its end.
bool KeepsAllButOneLine(const std::string& before, const std::string& after) {
    const std::vector<std::string> old = Lines(before);
    const std::vector<std::string> now = Lines(after);
    const size_t most = std::min(old.size(), now.size());
    size_t first = 0;
    while (first < most && old[first] == now[first]) ++first;
    size_t last = 0;
    while (last < most - first && old[old.size() - 1 - last] == now[now.size() - 1 - last]) ++last;
    return first + last + 1 >= old.size();
}

void CheckWriting(const std::string& text, const Key& key) {
    SimFiles disk;
    disk.Put(Path, text);
    Profile file(disk, Path);
    const std::vector<Key> before = AllKeys(file);
    if (!file.Write(key.Section, key.Name, key.Value)) {
        Require(disk.Content(Path) == text, "a refused write changes nothing");
        return;
    }
    const std::string written = disk.Content(Path).value_or("");
    Require(KeepsAllButOneLine(text, written), "a write changes one line only");
    Profile again(disk, Path);
    Require(again.ReadText(key.Section, key.Name, "?") == OneLine(key.Value), "what is written is read back");
    for (const Key& each : before) {
        if (Is(each, key.Section, key.Name)) continue;
        Require(again.ReadText(each.Section, each.Name, "?") == each.Value, "other keys keep their values");
    }
    Require(again.Write(key.Section, key.Name, key.Value) && disk.Content(Path) == written,
            "a second write of the same changes nothing");
}

void CheckDeleting(const std::string& text, const Key& key) {
    SimFiles disk;
    disk.Put(Path, text);
    Profile file(disk, Path);
    const std::vector<Key> before = AllKeys(file);
    Require(file.Delete(key.Section, key.Name) && !file.HasKey(key.Section, key.Name),
            "a deleted key is gone");
    for (const Key& each : before) {
        if (Is(each, key.Section, key.Name)) continue;
        Require(file.ReadText(each.Section, each.Name, "?") == each.Value, "other keys stay");
    }
    Require(file.DeleteSection(key.Section) && file.Keys(key.Section).empty(), "a deleted section is gone");
    for (const Key& each : before) {
        if (EqualIgnoringCase(each.Section, key.Section)) continue;
        Require(file.ReadText(each.Section, each.Name, "?") == each.Value, "other sections stay");
    }
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    Key key;
    key.Section = input.Field();
    key.Name = input.Field();
    key.Value = input.Field();
    const std::string text(input.Rest());
    SimFiles disk;
    disk.Put(Path, text);
    const Profile file(disk, Path);
    CheckReading(file);
    CheckProfiles(file);
    CheckWriting(text, key);
    CheckDeleting(text, key);
}

}  // namespace Corvetape
