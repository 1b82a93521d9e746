#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Corvetape {

/// Number of encoders, by the index that the setting Encoder holds.
inline constexpr size_t EncoderCount = 6;

/// One quality list: what the user reads and the options that stand for it, entry by entry.
struct QualityList {
    std::vector<std::string> EncQuality;
    std::vector<std::string> EncParams;
};

/// The section that holds for every source of media data, whatever its name, and for the state without one. A
/// section that is named itself comes first. In the settings file it holds the end of song only.
inline constexpr const char* AnySourceSection = "Source";

/// What becomes of a music file whose name a new song gets. Other values of the setting count as the default.
enum class SameNameRule : int32_t {
    Replace = 0,     ///< it goes
    KeepLonger = 1,  ///< the longer one keeps the name, of equal ones the new one; the other is numbered
    NumberAll = 2,   ///< it stays, and the new one is numbered
};

/// All settings that are not kept per provider, as loaded at start and as the controls change them.
/// Named by their keys; a key whose name says too little has its section before it.
struct Settings {
    // From IniFile, in the order of its table.
    bool ProvidersEnable = true;
    std::string FormPos;
    int32_t FormState = 0;
    bool MaximizeButton = false;  ///< maximises; otherwise it shows and hides the floating bar
    std::string QuickButtonsPos;
    bool QuickButtonsVisible = true;
    bool OldView = false;
    int32_t CurrentUrlIndex = 0;
    bool LogToFile = true;
    std::string Language;
    int32_t Interval = 100;
    int32_t StopAfter = 60;
    bool AutoUpdate = false;
    int32_t InputDevice = 1;
    bool SPDIF48kHz = false;
    std::string InputDeviceNames;
    bool KeepRejectedInputs = true;  ///< inputs that the search passes over get their volume back
    std::string TempPath;
    std::string MusicPath;
    std::string LogFilePath;
    bool UseMusicSubfolder = true;
    std::string MusicFolderTemplate;
    std::array<std::string, 2> MusicFileTemplate;
    bool Normalize = false;
    bool EncodeOffline = false;
    bool NoStartupInfo = false;
    int32_t InfoAfterSilence = 60;
    bool RestartRadioIfSilent = false;
    bool StoreCoverImage = true;
    bool NotifySongs = false;
    bool AutoExclude = false;
    bool DisableSoundScheme = false;
    bool DelayUnload = false;
    bool QuitAfterRecording = false;
    bool DelTemp = false;
    bool DelTempFolder = false;
    int32_t SameName = 1;    ///< what becomes of a music file whose name a new song gets, see SameNameRule
    bool LearnCuts = true;   ///< remember how late the titles of each source are; else what was learned goes
    int32_t FadeGoesTo = 2;  ///< with the end of song "Automatic": 0 the song that ends, 1 the next, 2 both
    int32_t KeepMargins = 24;  ///< hours that a song with an unsure cut can be cut again; 0: none
    int32_t Encoder = 0;
    int32_t MP3Quality = 5;
    int32_t OggVorbisQuality = 5;
    int32_t WMA44Quality = 2;
    int32_t WMA48Quality = 2;
    int32_t LowTempSpace = 300;   ///< MB
    int32_t LowMusicSpace = 300;  ///< MB
    bool StartApp = false;
    std::string StartAppName;
    std::string StartAppParams;
    bool StopApp = false;
    std::string StopAppName;
    std::string StopAppParams;
    int32_t RecordingBuffers = 30;
    int32_t PollRecordingBuffers = 0;
    int32_t EncodeDelay = 5000;  ///< ms
    int32_t AudioBuffers = 400;

    // From FixIniFile.
    std::vector<std::string> StationNames;
    std::vector<std::string> StationUrls;
    std::array<std::string, EncoderCount> EncoderCommand;
    std::string NormalizeCommand;
    QualityList MP3;
    QualityList OggVorbis;
    QualityList WMA44;
    QualityList WMA48;

    // From the registry: dates as day numbers with a fraction.
    double LastUpdateCheck = 0;
    double NextUpdateCheck = 0;
};

/// The working folders, expanded, and what is derived from them.
struct WorkingFolders {
    std::array<std::string, 3> Paths;  ///< 0 TempPath, 1 MusicPath, 2 LogFilePath
    std::string SongTempFolder;        ///< Paths[0] and the program's short name
    std::string CommonDataFolder;
    std::string ProgramFolder;
};

}  // namespace Corvetape
