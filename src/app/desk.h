#pragma once

namespace Corvetape {

class clsLocalizeControls;
class CoverImages;
class DiskCheck;
class FloatingBars;
class HeardSong;
class LevelDisplay;
class PlayerBridge;
class SettingsStore;
class SongActions;
class SongAge;
struct State;
class WatchPages;

/// What a program shows to the shell that it runs in. All of it lives as long as the program.
struct Desk {
    State& Values;         ///< the forms among them
    LevelDisplay& Levels;  ///< the meter and the statistic of the tab "TAB_AUDIO"
    CoverImages& Covers;
    const PlayerBridge* Players;  ///< null in a run without players
    WatchPages& Lists;
    SongActions& Songs;      ///< what the user can do with a song of the list of this run
    SongAge& Age;            ///< of the song that plays, by the rules of the recording
    const HeardSong& Heard;  ///< the song that plays, as its listener hears it
    const DiskCheck& Disk;
    FloatingBars& Bars;
    const clsLocalizeControls& Texts;  ///< of the chosen language; none before TextsReady
    SettingsStore& Store;
};

}  // namespace Corvetape
