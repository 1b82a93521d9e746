#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "audio/closed_song.h"
#include "audio/evidence_cut.h"
#include "core/media_state.h"
#include "platform/players.h"
#include "recording/automatic/silences.h"

namespace Corvetape {

/// What the source of the media data says at one look. Times are counted in slots of 50 ms.
struct SourceLook {
    int64_t Slot = 0;      ///< that was heard when it was taken, which may not have arrived yet
    std::string Source;    ///< who says it; empty if there is nobody
    std::string LearnsAs;  ///< the name that cuts are learned by
    STATIONANDSONGDATA Media;
    PlayerStatus Status = PlayerStatus::Unknown;
    std::string TrackId;              ///< of a piece that has an end, if its player names it; else empty
    std::optional<int64_t> Position;  ///< of the track, at that slot
    std::optional<int64_t> Length;    ///< of the track
    bool OfFile = false;              ///< the title is that of a file on this machine
    bool Others = false;              ///< another player plays at the same time
    bool Deaf = false;                ///< the input stands still: what plays now is not heard
    bool OfInput = false;             ///< the recorded input says it of itself, as it begins to play
};

/// Finds the place of a cut in what was heard.
class CutFinder {
 public:
    virtual ~CutFinder() = default;

    /// The song that is being written began at `slot`, after silence: what was heard before says nothing of
    /// how it sounds, and is no evidence of a change.
    virtual void Begins(int64_t slot) = 0;

    /// The best place for a change at `change`, all counted in slots from the first one heard: `from` is the
    /// first slot that can still be cut, `end` one more than the last that may be looked at. `exact`: the
    /// change is where the player says that its track began, not where somebody noticed a title.
    virtual std::optional<EvidenceCut> Find(int64_t change, int64_t from, int64_t end, bool exact) = 0;

    /// The same if there is a gap. Without one nothing, which costs next to nothing.
    virtual std::optional<EvidenceCut> FindGap(int64_t change, int64_t from, int64_t end, bool exact) = 0;

    /// The source learns what the last Find or FindGap has decided by.
    virtual void Teach() = 0;

    /// The source learns that the titles changed at `change` for a gap from `gap.First` to `gap.Last`,
    /// counted from the change.
    virtual void TeachGap(EdgeRange gap, bool exact) = 0;

    /// Where somebody speaks between two songs round a change, if that is heard, counted from the change.
    /// Slots as in Find.
    virtual std::optional<EdgeRange> Talk(int64_t change, int64_t from, int64_t end) = 0;

    /// The quietest stretch round a change, as the end of song by media data takes it. Slots as in Find.
    virtual EvidenceCut Quietest(int64_t change, int64_t from, int64_t end) = 0;

    /// Where another song seems to begin by the sound alone, if that has become clear with what was heard up
    /// to `end` since the last call. Each call has to listen to all of it.
    virtual std::optional<int64_t> SongChange(int64_t end) = 0;
};

/// One thing to do with what was heard, in the order of the slots.
struct AutomaticStep {
    enum class Kind {
        Write,   ///< everything up to, not including, Slot belongs to the song
        Close,   ///< the song ends
        MoveTo,  ///< go on at Slot: what is before it is in no song, or is in both
        Undo,    ///< the oldest changes that were noticed were none: no song began with them
    };
    Kind What = Kind::Write;
    int64_t Slot = 0;
    STATIONANDSONGDATA Media;  ///< of the song that ends
    SongTrust Trust;           ///< of the song that ends
    bool Wanted = false;       ///< of the song that ends: as when the next one was noticed
    bool Between = false;      ///< what ends is talk between two songs
    bool Passed = false;       ///< the wish for the next song has been passed on when that was noticed
    size_t Undone = 0;         ///< how many changes were none
};

/// Artist and song are the same.
bool SameTitle(const STATIONANDSONGDATA& one, const STATIONANDSONGDATA& other);

/// To whom a fade between two songs goes.
enum class FadeShare : int32_t { Old = 0, New = 1, Both = 2 };

/// The end of songs by everything that is known at once: titles, gaps, what the music sounds like, silence,
/// and what the player says. It decides; somebody else writes.
///
/// Fed with every slot that is heard and with every look at the source, and asked once a second.
class AutomaticEnd {
 public:
    static constexpr int64_t SecondSlots = 20;

    /// A silence of so many slots ends a song.
    static constexpr int64_t SilenceThatEnds = 3 * SecondSlots;

    /// The same while nobody names titles, so that nothing else tells songs apart.
    static constexpr int64_t SilenceWithoutTitles = SecondSlots;

    /// Changes that follow each other within so many slots are one.
    static constexpr int64_t OneChange = 5 * SecondSlots;

    /// How long a change with too little evidence waits for better.
    static constexpr int64_t WaitForEvidence = 10 * SecondSlots;

    /// Slots that stay unwritten while nothing happens: a title comes so late, and a look takes its time.
    static constexpr int64_t KeptBack = -FirstEdge + 30;

    /// The same where nobody reports titles: another song is noticed when it has played for half a minute.
    static constexpr int64_t KeptBackUntitled = 700;

    /// Where nobody reports titles, no song is shorter, unless a silence ends it.
    static constexpr int64_t LeastUntitled = 60 * SecondSlots;

    /// Evidence below this drops most false changes and hardly a real one.
    static constexpr float LeastEvidence = 2.8F;

    /// `finder` outlives it.
    explicit AutomaticEnd(CutFinder& finder) : Finder(finder) {}

    /// Begins anew: the next slot that is heard has the number 0. The song goes on if some of it is written
    /// (`goesOn`), and what is known of the source stays then.
    void Restart(bool goesOn);

    /// Songs have ended in another way for a while: what was reported before is of an earlier song.
    void ForgetSource();

    /// One more slot has been heard.
    void Heard(const HeardSlot& slot);

    /// The source was looked at. `wanted`: the song that plays is to be kept. True if another song has begun
    /// by it: the wish for the next song is its wish now.
    bool Look(const SourceLook& look, bool wanted);

    /// What is to be done now. `wanted` as in Look.
    std::vector<AutomaticStep> Decide(bool wanted);

    /// The same at the end of all sound: nothing more will be heard, and nothing is kept back.
    std::vector<AutomaticStep> Finish(bool wanted);

    /// Nothing is recorded now: what was heard so far is in no song. The song goes on later, or ends here by
    /// another title, if some of it is written (`goesOn`). Of the changes that wait one is left at most, to
    /// the newest title. Returns how many of the oldest ones were none, as AutomaticStep::Undone.
    size_t Forget(bool goesOn);

    void ShareFades(FadeShare share) { Share = share; }

    /// The song whose title is shown is not the one that is being written.
    bool ChangePending() const { return !Changes.empty(); }

    /// What is known of the song that is being written.
    const STATIONANDSONGDATA& Media() const { return Present.Media; }
    const SongTrust& Trust() const { return Present.Trust; }

    /// Whether it is to be kept, if that is asked for the song whose title is shown.
    bool Wanted(bool wanted) const { return Changes.empty() ? wanted : Changes.front().Wanted; }

    /// First slot that is not dealt with yet.
    int64_t Read() const { return Next; }

    /// One more than the last slot that was heard.
    int64_t End() const { return Quiet.End(); }

 private:
    /// The song that is being written.
    struct Song {
        STATIONANDSONGDATA Media;
        SongTrust Trust;
        int64_t Begin = 0;
        bool Named = false;     ///< its title was reported for it, not for the one before
        bool HasSound = false;  ///< some of it has been written
        int64_t OldEnd = 0;     ///< where the song before it ended
        bool Joined = false;    ///< the first that was heard, after silence: it may have begun long before
    };

    /// Another song was noticed, and is not cut yet.
    struct Change {
        int64_t At = 0;               ///< slot of the change
        int64_t Later = 0;            ///< its cut was looked for so much later, and is counted from there
        std::optional<int64_t> Last;  ///< of a further change that came soon after it
        STATIONANDSONGDATA Media;     ///< of the new song
        bool Exact = false;           ///< At is where the player says that the track began
        bool Unplaced = false;        ///< the player has not said yet where the newest of it began
        bool Joined = false;          ///< another change came soon after it
        bool Weak = false;            ///< to the title from before: no song without strong evidence
        bool Wanted = false;          ///< the song before it was to be kept
        bool Mixed = false;           ///< the new one plays beside the old one
        bool Unheard = false;  ///< nothing was heard at the change: the songs meet where the input stood
        SongTrust Trust;       ///< what is known of the new song already
    };

    bool NoteChange(const SourceLook& look, Change change);
    bool TakesTitle(const Change& change);
    bool IsRestart(const SourceLook& look) const;
    std::optional<int64_t> EndOf(const std::optional<SourceLook>& before) const;
    void PlaceChange(const SourceLook& look);
    void NoteSeek(const SourceLook& look);
    void NoteBegin(int64_t slot);
    void NoteStanding(const SourceLook& look);
    void FollowStatus(const SourceLook& look);

    void DropSilence(std::vector<AutomaticStep>& steps);
    void BeginWith(int64_t sound);
    bool BeganAt(int64_t slot) const;
    bool DecideChange(std::vector<AutomaticStep>& steps, bool last);
    bool IsTakenBack(const Change& change) const;
    bool IsBanner() const;
    bool GoesOn() const;
    size_t TakeDropped();
    size_t JoinChanges();
    void Drop(std::vector<AutomaticStep>& steps);
    void Begin(const Change& change, int64_t slot, Certainty certainty);
    void Cut(std::vector<AutomaticStep>& steps, const EvidenceCut& cut, const Change& change);
    void CutOutTalk(std::vector<AutomaticStep>& steps, EdgeRange talk, const Change& change);
    static int32_t EdgeOf(int64_t slot, const Change& change);
    void CutUnheard(std::vector<AutomaticStep>& steps, const Change& change);
    int64_t EndOfSearch() const;
    std::string LearnsAs() const { return Last ? Last->LearnsAs : std::string(); }
    void DecideSilence(std::vector<AutomaticStep>& steps, bool wanted);
    void EndSong(std::vector<AutomaticStep>& steps, bool wanted, SlotRun gap,
                 Certainty certainty = Certainty::Sure);
    bool Untitled() const { return !Last && Changes.empty() && Present.Media.Song.empty(); }
    void DecideBySound(std::vector<AutomaticStep>& steps, bool wanted);
    void DecideStop(std::vector<AutomaticStep>& steps, bool wanted);
    std::optional<SlotRun> SilenceOf(int64_t news, int64_t least, bool last) const;
    void HoldPause(std::vector<AutomaticStep>& steps, bool last);
    void WriteSafe(std::vector<AutomaticStep>& steps);

    void Write(std::vector<AutomaticStep>& steps, int64_t upTo);
    void Close(std::vector<AutomaticStep>& steps, bool wanted, bool passed, Certainty end);
    void MoveTo(std::vector<AutomaticStep>& steps, int64_t slot);

    CutFinder& Finder;
    Silences Quiet;
    Song Present;
    std::deque<Change> Changes;
    std::optional<SourceLook> Last;    ///< the last look with a title
    std::optional<int64_t> PausedAt;   ///< the player has said that it paused
    std::optional<int64_t> ResumedAt;  ///< and that it plays again
    std::optional<int64_t> StoppedAt;  ///< the player has stopped, or has gone
    PlayerStatus LastStatus = PlayerStatus::Unknown;
    std::optional<int64_t> TrackBegan;   ///< where the track that plays would have begun
    std::optional<SourceLook> Standing;  ///< since when it is watched whether the position moves
    bool Stands = false;                 ///< the player says that it plays, but its position does not move
    bool TitleVanished = false;
    bool Anew = false;  ///< nobody has looked at the source since the slots are counted from 0
    int64_t Next = 0;
    bool Dropping = true;     ///< silence at Next is in no song
    bool Unrecorded = false;  ///< nothing was recorded before Next
    FadeShare Share = FadeShare::Both;
};

}  // namespace Corvetape
