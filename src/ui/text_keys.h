#pragma once

/// Keys of the texts that the window has beside those of its controls.
namespace Corvetape::Key {

// What happens now, large; the line below it says more.
inline constexpr const char* NoInput = "60010";
inline constexpr const char* InputGone = "60011";
inline constexpr const char* NoSound = "60012";
inline constexpr const char* Recording = "60013";
inline constexpr const char* RecordingFromMiddle = "60014";
inline constexpr const char* LastSong = "60015";
inline constexpr const char* Waiting = "60016";
inline constexpr const char* Listening = "60017";
inline constexpr const char* NotEnabled = "61740";
inline constexpr const char* DiskFull = "61550";
inline constexpr const char* DiskStopped = "61892";

// The page of the recording.
inline constexpr const char* NoTitle = "60030";
inline constexpr const char* NoTitleHint = "60031";
inline constexpr const char* SignalName = "60032";
inline constexpr const char* SongBegins = "60033";
inline constexpr const char* Cut = "60034";
inline constexpr const char* TwoMinutesAgo = "60035";
inline constexpr const char* OneMinuteAgo = "60036";
inline constexpr const char* Now = "60037";
inline constexpr const char* SongsOfRun = "60038";
inline constexpr const char* SongsSummary = "60039";
inline constexpr const char* NoSongsYet = "60040";
inline constexpr const char* InputIs = "60041";
inline constexpr const char* CoverName = "60042";

// What became of a song.
inline constexpr const char* Whole = "60050";
inline constexpr const char* NotWhole = "60051";
inline constexpr const char* Damaged = "60052";
inline constexpr const char* CutSure = "61720";
inline constexpr const char* CutLikely = "61721";
inline constexpr const char* CutUnsure = "61722";
inline constexpr const char* BeginIs = "61723";
inline constexpr const char* HasDropouts = "61845";
inline constexpr const char* IsMixed = "61846";
inline constexpr const char* IsSought = "61847";
inline constexpr const char* LacksAnEnd = "61848";
inline constexpr const char* IsByTitleAlone = "61820";
inline constexpr const char* EndIs = "61724";
inline constexpr const char* BeginAndEndAre = "61725";
inline constexpr const char* TooShort = "60053";
inline constexpr const char* Unwanted = "60054";
inline constexpr const char* OnDropList = "61830";
inline constexpr const char* Aborted = "60055";
inline constexpr const char* WaitingForTurn = "60060";
inline constexpr const char* Encoding = "60061";
inline constexpr const char* Made = "60062";
inline constexpr const char* Stays = "60063";
inline constexpr const char* Failed = "60064";
inline constexpr const char* PlaySong = "60070";
inline constexpr const char* OpenFolder = "60071";
inline constexpr const char* ShowLogLines = "61551";
inline constexpr const char* KeepSong = "61552";
inline constexpr const char* PutOnWhiteList = "61553";
inline constexpr const char* PutOnBlacklist = "61554";
inline constexpr const char* LogOfSong = "61555";
inline constexpr const char* NoLogLines = "61556";
inline constexpr const char* CloseBox = "61557";
inline constexpr const char* SongAgeName = "61558";

// The level, and the room on the disk.
inline constexpr const char* Decibels = "61852";
inline constexpr const char* RoomLeft = "61853";
inline constexpr const char* RoomLeftHint = "61854";

// What the desktop cannot do, and lists without entries.
inline constexpr const char* WaylandBars = "61580";
inline constexpr const char* EmptyList = "61581";
inline constexpr const char* OpenBracket = "61855";

// The help, and the choice of the language.
inline constexpr const char* LanguageCard = "61884";
inline constexpr const char* LanguageCardLine = "61885";
inline constexpr const char* HelpTitle = "61886";
inline constexpr const char* HelpSearch = "61887";
inline constexpr const char* NotInHelp = "61888";
inline constexpr const char* HelpBack = "61889";
inline constexpr const char* AssistantLater = "61890";
inline constexpr const char* AssistantLaterLine = "61891";

// A control without its function, and the pages of settings: names, headings, lines of explanation.
inline constexpr const char* NotBuilt = "60005";
inline constexpr const char* AudioName = "60100";
inline constexpr const char* AudioLine = "60101";
inline constexpr const char* InputCard = "60102";
inline constexpr const char* InputCardLine = "60103";
inline constexpr const char* LevelCardLine = "60104";
inline constexpr const char* GainCard = "60105";
inline constexpr const char* GainCardLine = "60106";
inline constexpr const char* PauseName = "60110";
inline constexpr const char* PauseLine = "60111";
inline constexpr const char* EndOfSongLine = "60112";
inline constexpr const char* SilenceCard = "60113";
inline constexpr const char* SilenceCardLine = "60114";
inline constexpr const char* CutCard = "60115";
inline constexpr const char* CutCardLine = "60116";
inline constexpr const char* LimitsCard = "60117";
inline constexpr const char* EncoderName = "60120";
inline constexpr const char* EncoderLine = "60121";
inline constexpr const char* FormatCard = "60122";
inline constexpr const char* FormatCardLine = "60123";
inline constexpr const char* ToolsCard = "60124";
inline constexpr const char* ToolsCardLine = "60125";
inline constexpr const char* Options1Name = "60130";
inline constexpr const char* Options1Line = "60131";
inline constexpr const char* MusicFilesCard = "60132";
inline constexpr const char* MusicFilesCardLine = "60133";
inline constexpr const char* LeftoversCard = "60134";
inline constexpr const char* LeftoversCardLine = "60135";
inline constexpr const char* EndCard = "60136";
inline constexpr const char* EndCardLine = "60137";
inline constexpr const char* SourceCard = "60138";
inline constexpr const char* SourceCardLine = "60139";
inline constexpr const char* WindowCard = "61560";
inline constexpr const char* WindowCardLine = "61561";
inline constexpr const char* Options2Name = "60140";
inline constexpr const char* Options2Line = "60141";
inline constexpr const char* SpaceCardLine = "60142";
inline constexpr const char* ProgramsCard = "60143";
inline constexpr const char* ProgramsCardLine = "60144";
inline constexpr const char* ProgramName = "61750";
inline constexpr const char* FoldersName = "60150";
inline constexpr const char* FoldersLine = "60151";
inline constexpr const char* FoldersCard = "60152";
inline constexpr const char* FoldersCardLine = "60153";
inline constexpr const char* NamesCard = "60154";
inline constexpr const char* NamesCardLine = "60155";
inline constexpr const char* LogName = "60160";
inline constexpr const char* LogLine = "60161";
inline constexpr const char* IncludeName = "60162";
inline constexpr const char* IncludeLine = "60163";
inline constexpr const char* ExcludeName = "60164";
inline constexpr const char* ExcludeLine = "60165";
inline constexpr const char* AboutName = "60170";
inline constexpr const char* AboutLine = "60171";

}  // namespace Corvetape::Key
