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
inline constexpr const char* TooShort = "60053";
inline constexpr const char* Unwanted = "60054";
inline constexpr const char* Aborted = "60055";
inline constexpr const char* WaitingForTurn = "60060";
inline constexpr const char* Encoding = "60061";
inline constexpr const char* Made = "60062";
inline constexpr const char* Stays = "60063";
inline constexpr const char* Failed = "60064";
inline constexpr const char* PlaySong = "60070";
inline constexpr const char* OpenFolder = "60071";

}  // namespace Corvetape::Key
