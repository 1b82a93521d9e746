#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings/profile.h"

namespace Corvetape {

class Files;

/// Where one field of the media data stands. All three are as the file has them.
struct MediaFieldRule {
    std::string Source;   ///< a number for the kind of place, or a path of frames; empty: no rule
    std::string Element;  ///< index, name or id of an element, or a script expression
    std::string Pattern;  ///< regular expression; its first group that is not empty is the value

    bool operator==(const MediaFieldRule&) const = default;
};

/// How one web radio is recognised, and where its page shows what plays.
struct ProviderProfile {
    std::string Name;  ///< becomes ProviderName
    std::string WindowClass;
    std::string WindowTitle;
    std::string DocTitle;  ///< empty: the profile is one of windows, not of documents
    std::string DocUrl;
    MediaFieldRule Station;
    MediaFieldRule StationDesc;
    MediaFieldRule Artist;
    MediaFieldRule Title;
    MediaFieldRule Album;
    MediaFieldRule Cover;
    MediaFieldRule Status;   ///< read and kept, without effect
    MediaFieldRule Restart;  ///< its Element is the script that lets the radio play again

    bool ReadsWindow() const { return DocTitle.empty(); }
    bool operator==(const ProviderProfile&) const = default;
};

/// Name of the file that profiles are read from.
inline constexpr const char* ProfileFileName = "MSIE.ini";

/// The profiles of a file, in its order: the sections whose names begin with a dash and a blank. No file, no
/// profiles.
///
/// A value is split at ";", which therefore stands in no pattern and no script; parts that are missing are
/// empty, further ones are passed over. Values and the list of section names are cut where a buffer of 32767
/// characters ends. Values that are not UTF-8 are read as ANSI.
std::vector<ProviderProfile> ReadProfiles(const Profile& file);

/// How many profiles of a file ReadProfiles leaves out, because the list of names is full before them.
size_t CountUnreadProfiles(const Profile& file);

/// Where the profiles are: in the folder of the settings file, if the user has put a file of his own there,
/// and else beside the program.
std::string ProfilePath(Files& files, const std::string& settingsFile, const std::string& programFolder);

/// The parts of one rule's value.
MediaFieldRule RuleFromText(std::string_view value);

}  // namespace Corvetape
