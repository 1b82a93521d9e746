#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace Corvetape {

/// A message: its key in the language files, and its English text as english.lang has it.
struct MessageText {
    std::string_view Key;
    std::string_view English;

    /// The key as a number, for what is kept as one.
    constexpr int32_t Number() const {
        int32_t number = 0;
        for (const char digit : Key) number = number * 10 + (digit - '0');
        return number;
    }
};

}  // namespace Corvetape

/// The messages that the program shows beside the texts of its controls. %1, %2, ... are filled in; a test
/// compares the texts with both language files.
namespace Corvetape::Message {

// Numbers that were typed.
inline constexpr MessageText NoNumber{"701", "Please type a number here, in digits only."};
inline constexpr MessageText NoWholeNumber{"702", "Please type a whole number here, without a fraction."};
inline constexpr MessageText OutOfRange{"703",
                                        "This number is out of range. Please type a number from %1 to %2."};
inline constexpr MessageText NoMultiple{"704", "This number does not fit. Please type a multiple of %1."};

// What happens while recording.
inline constexpr MessageText NoSound{
    "705", "No sound for %1 seconds. Please check that the radio or player is still running."};
inline constexpr MessageText SoundIsAwaited{
    "890", "No sound for %1 seconds. Recording begins as soon as the sound is back."};
inline constexpr MessageText SoundIsBack{"706", "The sound is back."};
inline constexpr MessageText EndedBySilence{
    "707", "Recording has ended, because there was no sound for %1 minutes."};
inline constexpr MessageText EndedBySilenceHint{
    "708",
    "Recording has ended, because there was no sound for %1 minutes.\\r\\n\\r\\nPlease start the radio or "
    "player again, check that the right input is chosen on the tab \"Audio Devices\", and then start the "
    "recording again."};
inline constexpr MessageText NoRecordingTime{
    "802", "A recording of 0 minutes would record nothing. Please type the number of minutes first."};
inline constexpr MessageText DiskNearlyFull{
    "803", "The disk is nearly full. Recording ends with this song. Please make room on the disk."};
inline constexpr MessageText TempDiskNearlyFull{"804",
                                                "The disk with the temporary files is nearly full. Recording "
                                                "ends with this song. Please make room there."};
inline constexpr MessageText MusicDiskNearlyFull{
    "805", "The disk with your music is nearly full. Recording ends with this song. Please make room there."};
inline constexpr MessageText SoundCameLate{
    "814",
    "This computer was busy for too long: %1 buffers of sound were waiting. They came late, and nothing was "
    "lost. Please close other programs, or use a faster disk for the temporary files."};
inline constexpr MessageText SoundIsMissing{
    "870",
    "This computer was busy for too long: %1 buffers of sound were waiting, and music is missing. Please "
    "close other programs, or use a faster disk for the temporary files."};
inline constexpr MessageText MediaDataAreOff{
    "871", "Nothing is recorded while the media data are switched off. Please switch them on first."};
inline constexpr MessageText NoRoomToRecord{"872",
                                            "Nothing is recorded, because the disk has no room. Please make "
                                            "room on it, and then press Record again."};
inline constexpr MessageText EndedByDisk{"833",
                                         "Recording was ended, because the disk was nearly full. Please make "
                                         "room on it, or lower the limits in the options."};
inline constexpr MessageText EndedByTempDisk{
    "834",
    "Recording was ended, because the disk with the temporary files was nearly full. Please make room on it, "
    "choose another folder, or lower its limit in the options."};
inline constexpr MessageText EndedByMusicDisk{
    "835",
    "Recording was ended, because the disk with your music was nearly full. Please make room on it, choose "
    "another folder, or lower its limit in the options."};
inline constexpr MessageText EndsAfterThisSong{
    "900", "Corvetape will end after this song. Close the window again to end it at once."};

// Folders and options.
inline constexpr MessageText NoSuchFolder{"811", "This folder does not exist. Please choose another one."};
inline constexpr MessageText SameFolder{
    "812", "Temporary files and music need two different folders. Please choose another one."};
inline constexpr MessageText HoldsFromNextStart{
    "813", "This will take effect when Corvetape is started the next time."};
inline constexpr MessageText ChooseFolder{"4800", "Please choose the folder for %1."};
inline constexpr MessageText FolderOfTemporaryFiles{"4801", "the temporary files"};
inline constexpr MessageText FolderOfMusic{"4802", "your music"};
inline constexpr MessageText FolderOfLogs{"4803", "the log files"};
inline constexpr MessageText ProgramFilter{"5900", "Programs (*)%1*%1"};
inline constexpr MessageText ChooseProgram{"5910", "Choose a program"};

// Inputs and levels.
inline constexpr MessageText InputSearchBegins{
    "815",
    "Corvetape will now look for the input that carries your music. It tries one input after the other, and "
    "asks you when it hears something.\\r\\n\\r\\nPlease start some music first, and then choose OK."};
inline constexpr MessageText InputSearchFailed{"816",
                                               "No sound was found on any input. Please start some music "
                                               "first, check that its volume is up, and then try "
                                               "again."};
inline constexpr MessageText InputFound{
    "817", "The input \"%1\" was found and is used from now on. Shall the level be adjusted now as well?"};
inline constexpr MessageText IsThisTheInput{
    "818",
    "There is sound on \"%1\". Is this the input that you want to record from?\\r\\n\\r\\nIf it is not, its "
    "volume is set to 0, and the search goes on."};
inline constexpr MessageText OpenSoundSettings{
    "819",
    "On this system an input may have to be switched on in the sound settings before it can be found. Shall "
    "the sound settings be opened?"};
inline constexpr MessageText LevelSearchBegins{"820",
                                               "Corvetape will now adjust the recording level. This takes "
                                               "between 3 and 35 seconds.\\r\\n\\r\\nPlease let "
                                               "loud music play, and then choose OK."};
inline constexpr MessageText LevelFound{
    "821", "The recording level is adjusted. Shall the settings be saved for this source?"};
inline constexpr MessageText LevelNotFound{
    "822",
    "A good recording level could not be reached. Please change the volume of the radio or player, and then "
    "try again. Shall the settings be saved for this source all the same?"};
inline constexpr MessageText InputsChanged{"901",
                                           "Corvetape will record from \"%1\". It has not seen this choice "
                                           "of inputs before, so please check on the tab "
                                           "\"Audio Devices\" that it is the right one."};
inline constexpr MessageText NoInput{"902",
                                     "No input to record from was found. Please connect or switch on a sound "
                                     "device, and then start Corvetape again."};

inline constexpr MessageText InputNotOpened{"61730", "The input \"%1\" could not be opened."};
inline constexpr MessageText ServerSays{"61731", "%1 The sound server says: %2."};

inline constexpr MessageText NoSoundSettings{
    "1500",
    "No program for sound settings was found on this computer. Please install one, for example pavucontrol."};
inline constexpr MessageText DefaultInput{"1501", "%1 (default)"};
inline constexpr MessageText InputsPutBack{
    "1502", "The volumes of the inputs were put back, because a search had been broken off."};
inline constexpr MessageText EndedBySearch{
    "1503", "The song that was being recorded ends here, because the inputs are searched for music."};

// Pauses between songs.
inline constexpr MessageText TooLoudForPause{
    "825",
    "The sound was too loud in the last ten seconds to measure a pause. Please wait for a pause between two "
    "songs, and then try again at once."};
inline constexpr MessageText PauseMeasured{
    "826",
    "The pauses are now recognized with these settings:\\r\\n\\r\\nMax. silence volume: %1\\r\\nEnd of "
    "silence volume: %2\\r\\nSilence is detected %3.\\r\\n\\r\\nPlease check with the next songs that they "
    "are cut where they should be."};
inline constexpr MessageText ByPeakLevel{"827", "by peak level"};
inline constexpr MessageText ByAverageLevel{"828", "by average level"};
inline constexpr MessageText SettingsForNewSource{
    "50010",
    "Corvetape has found out that you want to record from \"%1\", for which there are no settings yet on the "
    "tabs \"Audio Devices\" and \"Pause Recognition\".\\r\\n\\r\\nTo save you the work, you can take over "
    "the settings of another source now. Each of them can be changed later."};

// What went wrong.
inline constexpr MessageText SongNotCreated{
    "903",
    "The song file \"%1\" could not be created (error %2). Recording has stopped. Please check that the "
    "folder for temporary files exists and can be written to, and that its disk has room."};
inline constexpr MessageText SongNotFinished{
    "904",
    "The song file \"%1\" could not be finished (error %2). Recording has stopped. What was written is still "
    "there. Please check the disk with the temporary files."};
inline constexpr MessageText SongNotWritten{
    "905",
    "The song file \"%1\" could not be written any further (error %2). Recording has stopped. What was "
    "written is still there. Please make room on the disk with the temporary files."};
inline constexpr MessageText LeftSongKept{
    "840", "A song of an earlier run that ended too early was found, \"%1\". It is kept."};
inline constexpr MessageText LeftSongDeleted{"841",
                                             "A song of an earlier run that ended too early was found, "
                                             "\"%1\". It was not wanted or holds no sound, and is deleted."};
inline constexpr MessageText LeftSongStays{
    "849",
    "A song of an earlier run that ended too early was found, \"%1\". It could not be repaired now, and "
    "stays for the next start. Please check the disk with the temporary files."};
inline constexpr MessageText InputGone{"842", "The input is gone. Recording goes on as soon as it is back."};
inline constexpr MessageText InputBack{"843", "The input is back. Recording goes on."};
inline constexpr MessageText LostByThisComputer{"844",
                                                "%3: %1 seconds of sound were lost (%2 frames), because this "
                                                "computer was too slow for the sound server."};
inline constexpr MessageText LostByServer{
    "845", "%3: %1 seconds of sound were lost (%2 frames), because the sound server was gone."};
inline constexpr MessageText LostWithDevice{
    "846", "%3: %1 seconds of sound were lost (%2 frames), because the device was gone."};
inline constexpr MessageText NotDelivered{
    "847", "%3: %1 seconds of sound were lost (%2 frames), because the device did not deliver them."};
inline constexpr MessageText SoundMissingInSong{
    "848", "The song in \"%1\" is kept, but %2 seconds of it are missing."};
inline constexpr MessageText IsOnExcludeList{
    "860", "\"%1\" is on the list of songs that are not wanted, and is not kept."};
inline constexpr MessageText IsTooShort{"861", "\"%1\" is not kept: with %2 seconds it is too short."};
inline constexpr MessageText HasDropouts{
    "1652", "The song in \"%1\" has %2 short dropouts. They were in what the player gave."};
inline constexpr MessageText HasOneDropout{
    "61850", "The song in \"%1\" has one short dropout. It was in what the player gave."};
inline constexpr MessageText IsMixed{"1653", "The song in \"%1\" is mixed: two players were heard at once."};
inline constexpr MessageText IsSought{
    "1654", "The song in \"%1\" is not in one piece: somebody has jumped within it."};
inline constexpr MessageText IsCutByTitle{
    "1655", "The song in \"%1\" ends where its title ended: nothing in the sound shows a better place."};
inline constexpr MessageText WasPaused{"1656",
                                       "The song in \"%1\" was paused %2 times. The pauses are left out."};
inline constexpr MessageText WasPausedOnce{"61851",
                                           "The song in \"%1\" was paused once. The pause is left out."};
inline constexpr MessageText BrokenOffBySilence{
    "862",
    "The song was broken off by %1 seconds of silence and is not kept. Recording goes on with the next one."};
inline constexpr MessageText NoWindowTitles{"865",
                                            "This desktop shows its windows to no other program. Profiles "
                                            "that read the title of a window find nothing."};
inline constexpr MessageText NameWasTaken{"866",
                                          "Another song of this name was there already. This one is \"%1\"."};
inline constexpr MessageText NameTakenOver{
    "867", "\"%1\" takes the name of a shorter song, which is now called \"(%2)\"."};
inline constexpr MessageText OlderReplaced{"868", "\"%1\" replaces an older song of this name."};
inline constexpr MessageText FreeSpaceUnknown{
    "906",
    "The free space of the folder \"%1\" could not be found out, so Corvetape has ended. Please check that "
    "the folder exists and that its disk is connected."};
inline constexpr MessageText FreeSpaceCheckFailed{
    "907",
    "The free space of the disks could not be checked because of an unexpected error, so Corvetape has "
    "ended. Please start it again."};
inline constexpr MessageText CommandsNotWritten{
    "908",
    "The commands for the encoder could not be written into the folder \"%1\" (error %2: %3). The song stays "
    "there as a temporary file. Please check that the folder can be written to."};
inline constexpr MessageText ListNotRead{
    "876",
    "The list \"%1\" could not be read. It is left as it is: changes to it hold until Corvetape ends."};
inline constexpr MessageText SettingsNotWritten{"877",
                                                "The settings could not be written into the file \"%1\" "
                                                "(error %2). Changes to them hold until Corvetape ends."};
inline constexpr MessageText LogNotWritten{"878",
                                           "The log could not be written into the folder \"%1\" (error %2)."};
inline constexpr MessageText ProfilesNotRead{
    "879",
    "Of the profiles in the file \"%1\", %2 cannot be read, because the list of their names is full. Please "
    "remove some, or give them shorter names."};
inline constexpr MessageText Registered{
    "909", "Corvetape is registered. It will now end, and is ready to be started."};

// Log file.
inline constexpr MessageText LogFileCaption{"7010", "Log file "};
inline constexpr MessageText LogFilter{"7900", "Log files (*.log)%1*.log%1All files (*)%1*%1"};
inline constexpr MessageText ChooseLog{"7910", "Choose a log file to be shown"};
inline constexpr MessageText ChooseLogsToDelete{"7920", "Choose log files to be deleted"};

// Assistant and updates.
inline constexpr MessageText AssistantIsBusy{"829",
                                             "The check for a new version needs the assistant window, which "
                                             "is in use. Please close it, and then try again."};
inline constexpr MessageText UpdateNeedsRights{
    "989VI",
    "The update has to write to the folder of the program, which needs the rights of an administrator. Shall "
    "Corvetape be started again with these rights?"};

// The window "Radio".
inline constexpr MessageText BrowserNotThere{
    "61700",
    "The built-in browser is not installed, so %1 is opened in your own browser. What it plays can only be "
    "read there with a DevTools port."};
inline constexpr MessageText BrowserNoSandbox{
    "61701",
    "The built-in browser shows no pages here, because it could not keep them in a sandbox. Please do not "
    "run Corvetape as root. To allow it all the same, set WithoutSandbox=1 in the section [Browser] of the "
    "settings file."};
inline constexpr MessageText PageCrashed{
    "61702",
    "The page in the window \"Radio\" has crashed. It can be reloaded there. The recording is not affected."};
inline constexpr MessageText BrowserEnded{"61703",
                                          "The built-in browser has ended unexpectedly. Launch the station "
                                          "again to start it. The recording is not affected."};
inline constexpr MessageText BrowserBack{"61704", "Back"};
inline constexpr MessageText BrowserForward{"61705", "Forward"};
inline constexpr MessageText BrowserReload{"61706", "Reload"};
inline constexpr MessageText BrowserStop{"61707", "Stop"};
inline constexpr MessageText CrashedPage{"61708", "The page has crashed."};

// News of a song on the desktop.
inline constexpr MessageText SongIsKept{"61710", "Kept by Corvetape"};
inline constexpr MessageText MusicFileNotMade{
    "61711", "Kept by Corvetape as a temporary song: no music file could be made of it"};

// The window.
inline constexpr MessageText NothingPlays{"100", "Corvetape"};
inline constexpr MessageText DemoOffered{
    "60001",
    "There is nothing to record from on this computer: no sound server answers. Shall Corvetape play its "
    "demo radio, made-up music from inside the program, so that you can try everything?"};
inline constexpr MessageText NothingOpens{"61880",
                                          "No program on this computer can open this:\\r\\n\\r\\n%1"};
inline constexpr MessageText NotThereToOpen{"61881",
                                            "This no longer exists and cannot be opened:\\r\\n\\r\\n%1"};
inline constexpr MessageText EncoderFailed{
    "61893",
    "The encoder of \"%1\" has ended with error %2, and there is no music file. The song stays there as a "
    "temporary file, and the next start tries once more."};
inline constexpr MessageText SongIsGone{"61882", "The files of \"%1\" are gone, so it cannot be played."};

inline constexpr std::array All = {NoNumber,
                                   NoWholeNumber,
                                   OutOfRange,
                                   NoMultiple,
                                   NoSound,
                                   SoundIsAwaited,
                                   SoundIsBack,
                                   EndedBySilence,
                                   EndedBySilenceHint,
                                   NoRecordingTime,
                                   DiskNearlyFull,
                                   TempDiskNearlyFull,
                                   MusicDiskNearlyFull,
                                   SoundCameLate,
                                   SoundIsMissing,
                                   MediaDataAreOff,
                                   NoRoomToRecord,
                                   EndedByDisk,
                                   EndedByTempDisk,
                                   EndedByMusicDisk,
                                   EndsAfterThisSong,
                                   NoSuchFolder,
                                   SameFolder,
                                   HoldsFromNextStart,
                                   ChooseFolder,
                                   FolderOfTemporaryFiles,
                                   FolderOfMusic,
                                   FolderOfLogs,
                                   ProgramFilter,
                                   ChooseProgram,
                                   InputSearchBegins,
                                   InputSearchFailed,
                                   InputFound,
                                   IsThisTheInput,
                                   OpenSoundSettings,
                                   LevelSearchBegins,
                                   LevelFound,
                                   LevelNotFound,
                                   InputsChanged,
                                   NoInput,
                                   InputNotOpened,
                                   ServerSays,
                                   NoSoundSettings,
                                   DefaultInput,
                                   InputsPutBack,
                                   EndedBySearch,
                                   TooLoudForPause,
                                   PauseMeasured,
                                   ByPeakLevel,
                                   ByAverageLevel,
                                   SettingsForNewSource,
                                   SongNotCreated,
                                   SongNotFinished,
                                   SongNotWritten,
                                   LeftSongKept,
                                   LeftSongDeleted,
                                   LeftSongStays,
                                   InputGone,
                                   InputBack,
                                   LostByThisComputer,
                                   LostByServer,
                                   LostWithDevice,
                                   NotDelivered,
                                   SoundMissingInSong,
                                   IsOnExcludeList,
                                   IsTooShort,
                                   HasDropouts,
                                   HasOneDropout,
                                   IsMixed,
                                   IsSought,
                                   IsCutByTitle,
                                   WasPaused,
                                   WasPausedOnce,
                                   BrokenOffBySilence,
                                   NoWindowTitles,
                                   NameWasTaken,
                                   NameTakenOver,
                                   OlderReplaced,
                                   FreeSpaceUnknown,
                                   FreeSpaceCheckFailed,
                                   CommandsNotWritten,
                                   ListNotRead,
                                   SettingsNotWritten,
                                   LogNotWritten,
                                   ProfilesNotRead,
                                   Registered,
                                   LogFileCaption,
                                   LogFilter,
                                   ChooseLog,
                                   ChooseLogsToDelete,
                                   AssistantIsBusy,
                                   UpdateNeedsRights,
                                   BrowserNotThere,
                                   BrowserNoSandbox,
                                   PageCrashed,
                                   BrowserEnded,
                                   BrowserBack,
                                   BrowserForward,
                                   BrowserReload,
                                   BrowserStop,
                                   CrashedPage,
                                   SongIsKept,
                                   MusicFileNotMade,
                                   NothingPlays,
                                   DemoOffered,
                                   NothingOpens,
                                   NotThereToOpen,
                                   SongIsGone,
                                   EncoderFailed};

}  // namespace Corvetape::Message
