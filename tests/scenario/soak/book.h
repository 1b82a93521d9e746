#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/virtual/sim_random.h"
#include "scenario/world.h"

namespace Corvetape::Test {

/// What the radio calls the album and the cover of a title begins so, and goes on with the title.
inline constexpr const char* AlbumOf = "Album of ";
inline constexpr const char* CoverOf = "http://covers/";

/// The picture at the address of a cover.
std::string PictureAt(const std::string& cover);

/// A number that two buffers share only if they hold the same samples, as good as surely.
uint64_t HashOf(std::span<const std::byte> bytes);

/// One buffer as the program got it, and whether a file may lack it.
struct BookedBuffer {
    uint32_t Opening = 0;   ///< of the input, counted from 1
    uint64_t Position = 0;  ///< of its first frame among all that the inputs have given
    uint64_t RadioEnd = 0;  ///< one past its last frame in the radio, at the rate of the opening
    uint64_t Lost = 0;      ///< frames of the radio that are missing before or within it
    uint32_t Frames = 0;
    uint64_t Hash = 0;        ///< of its samples, after the gain
    int32_t Level = 0;        ///< by the measure in force
    int32_t RingNumber = -1;  ///< its place among all buffers that went into the ring; -1: it did not
    bool Quiet = false;       ///< not above the thresholds
    bool Skipped = false;     ///< taken out of what is routed
    bool Off = false;  ///< recording was off, and nothing else keeps it out: within a song the disk did
    bool MayBeMissing = false;  ///< a rule, a fault or the user has taken it out
};

/// Compares what the program got with what became of it, all the time. It knows the rules by which audio may
/// be left out, but not how they are carried out:
///
/// - while recording is off, nothing is written, and what waits in the ring may go;
/// - end of song by silence: the pause that is recognised, the quiet buffers before it up to its length, and
///   what is skipped after it;
/// - the other ends of song: around a cut one stretch within its window, no buffer of which is louder than
///   1.2 times the quietest or 164; what is skipped; silence that is to be ignored;
/// - a click in fixed time that begins a recording drops what waits in the ring;
/// - what the device has lost and the disk has refused is lost, and its song says how much.
///
/// A song that would end at the read index goes round the ring once.
///
/// What is kept beside unsure songs is what the ring got just before and after them, and a recut from it
/// gives exactly what was asked for.
///
/// It compares names too: a song that a change of title has ended is kept or not by the flags at the change,
/// and has the title, album and cover that were read last before it. No song has the album or the cover of
/// another one. What is handed over has the names that its song was closed with.
class Book {
 public:
    Book();
    ~Book();
    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;

    /// The machine, with this book between its inputs and the program.
    Machine Through(Machine machine);

    /// The world that runs on that machine. Call before its program is loaded.
    void Watch(World& world) { Radio = &world; }

    void Opened(uint32_t framesPerSecond);
    void Arrived(const WaveHeader& buffer);
    void Closed(const HeardSong& song);
    void Transferred(const TransferredSong& song);
    void Encoded(const TransferredSong& song);

    /// After every event of the loop.
    void AfterEvent();

    /// Before and after everything that the user does.
    void BeforePress();
    void AfterPress();

    /// When a program has ended, and its song was closed.
    void ProgramEnded();

    /// When the last program has ended and the encoders are done.
    void Finished();

    /// Cuts every song whose margins are kept again, at a random place. After the last program has ended.
    void CutAgain(SimRandom& chance);

    /// The problems, one a line, with the second at which it was found; empty if there are none.
    const std::string& Problems() const { return Found; }

    std::function<void(const HeardSong&)> OnClosed;  ///< called with each song before it is checked

    size_t SongsKept() const { return Wanted.size(); }
    size_t SongsClosed() const { return Closings; }
    size_t SongsCutAgain() const { return Recuts; }
    double SecondsBooked() const { return static_cast<double>(Buffers.size()) / 20.0; }

 private:
    struct Input;

    /// How far a song file goes: as its header says, or as far as there is audio.
    enum class Extent { ByHeader, AllWritten };

    struct WantedSong {
        std::string TempPath;
        std::vector<uint64_t> Pieces;  ///< hash of each buffer
        bool Safe = false;             ///< an encoder has had it, or a song of the same name came after it
        bool Damaged = false;          ///< a fault struck its file, and was reported
        STATIONANDSONGDATA Media;      ///< as it was closed
        bool ByTime = false;           ///< a piece, which no title names
        std::optional<size_t> First = {};  ///< its first buffer, if it could be followed
        size_t End = 0;                    ///< one past its last
    };

    /// A cut as it was raised, in numbers of buffers in the ring.
    struct Cut {
        int32_t At = 0;
        int32_t Before = 0;
        int32_t After = 0;
    };

    /// A song as it was handed over, and the wanted song that it is; none if an earlier run has left it.
    struct HandedSong {
        std::string TempFile;
        std::optional<size_t> Wanted;
    };

    /// What a song that has ended reports of its losses. The buffer that ended it may not be booked yet.
    struct ReportedLoss {
        uint64_t Reported = 0;
        uint64_t Least = 0;
        uint64_t Most = 0;   ///< with all that it lacks within
        size_t End = 0;      ///< one past its last buffer
        size_t Present = 0;  ///< the buffer that was being handled, or one past the last
    };

    /// Where a file is among the buffers.
    struct Place {
        size_t First = 0;
        size_t End = 0;        ///< one past its last
        uint64_t Lost = 0;     ///< frames of the radio that are missing before or within its buffers
        uint64_t LeftOut = 0;  ///< frames of buffers that it lacks
        uint64_t Refused = 0;  ///< those of them that the disk has refused
        bool RoundTheRing = false;
        bool Followed = true;  ///< up to its last buffer
        std::string Problem;
    };

    void Report(const std::string& problem);
    State& Values() { return Radio->Values(); }
    size_t FirstUnread();
    void ExcuseUnread(size_t from);
    void ExcusePause();
    void NoteCut();
    bool EarlierCutIsDue();
    bool EndsWait();
    void ForgetUnheard(const HeardSong& song);
    bool EndsByTitle();
    void NoteTitle();
    void CheckMedia(const HeardSong& song);
    void CheckPicture(const HeardSong& song);
    void NoteOpenFile();
    void CheckFlags();
    void CheckFate(const HeardSong& song);
    void CheckGap(size_t from, size_t to, const char* where);
    size_t EndOfDiscarded(size_t first, size_t to) const;
    bool WithinACut(int32_t first, int32_t last) const;
    std::optional<std::vector<uint64_t>> PiecesOf(const std::string& path, Extent extent = Extent::ByHeader);
    void CountLeftOut(Place& place, size_t first, size_t end) const;
    bool WasRefused(std::span<const uint64_t> rest, size_t first, size_t at) const;
    Place Find(const std::vector<uint64_t>& pieces, size_t from, size_t claimed);
    size_t ClaimedBegin(const HeardSong& song) const;
    std::optional<Place> Claimed(const HeardSong& song) const;
    void NoteLeftSong();
    bool WasLeft(std::span<const uint64_t> pieces) const;
    bool WasRepaired(std::span<const uint64_t> pieces) const;
    void CheckLosses();
    void CheckKept(const HeardSong& song);
    bool ReachesTheEnd(const Place& place) const;
    bool GoesBack(bool roundTheRing, size_t end);
    bool WasStruck(const std::string& path) const;
    void CheckWanted();
    std::vector<std::string> SongFiles();
    void CheckMargins();
    bool IsBeside(const WantedSong& song, std::span<const uint64_t> pieces, bool before) const;

    World* Radio = nullptr;
    std::unique_ptr<Input> Between;

    std::vector<BookedBuffer> Buffers;
    std::vector<size_t> RingBuffers;  ///< of those that went into the ring, their numbers in Buffers
    size_t RingSize = 0;              ///< how many the ring holds; asked for also when the program is gone
    std::vector<size_t> Stops;        ///< how many buffers were booked when recording was off
    std::vector<Cut> Cuts;
    std::vector<WantedSong> Wanted;
    std::vector<HandedSong> HandedOver;
    std::vector<ReportedLoss> ReportedLosses;
    uint32_t Openings = 0;
    uint64_t FirstFrame = 0;                  ///< of the radio in the present opening
    uint64_t FramesOfEarlierRuns = 0;         ///< of the program, which counts anew with each start
    std::vector<std::vector<uint64_t>> Left;  ///< of songs that no close has seen, their pieces
    std::string OpenPath;                     ///< the song's file
    size_t Next = 0;                          ///< first buffer that no closed file has had
    size_t LastBegin = 0;                     ///< first buffer of the file closed last
    bool LastKnown = true;                    ///< where the file closed last has ended
    bool MayOverlap = false;                  ///< the next file may have audio of the last one too
    size_t Closings = 0;
    size_t Recuts = 0;

    // As they were at the last look.
    int32_t RingIndex = 0;
    uint64_t Overruns = 0;
    bool Skipping = false;
    STATIONANDSONGDATA
    TitleForAutomatic;            ///< the same, without what was read in another mode while nothing was heard
    bool HeardOtherwise = false;  ///< a buffer has come in another mode than "Automatic" since
    STATIONANDSONGDATA LastTitle;  ///< the last reading with a title, of the present source
    std::string Source;            ///< the provider
    bool CutByTitle = false;       ///< the cut that is pending was raised by a title
    STATIONANDSONGDATA Ended;      ///< LastTitle when the title changed and a cut was raised
    bool EndedWanted = false;      ///< CurrentWanted at that moment
    std::deque<std::pair<STATIONANDSONGDATA, bool>> Noticed;  ///< the same, by everything that is known
    bool CurrentWanted = false;                               ///< the song now in the file is to be kept
    bool WaitsForNext = false;                                ///< the next one
    bool Pressing = false;
    bool WasCutPending = false;
    bool WasBoundary = false;
    int32_t LastCutIndex = -1;
    size_t Unread = 0;
    size_t SizeAtPress = 0;
    size_t UnreadAtPress = 0;
    uint32_t WishesAtPress = 0;
    double LastOff = -1'000;  ///< second at which recording was off with a song's file open

    std::string Found;
    size_t FoundCount = 0;
};

}  // namespace Corvetape::Test
