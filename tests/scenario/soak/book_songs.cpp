// What became of each song, compared with the buffers.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <span>
#include <tuple>
#include <utility>

#include "audio/wav_file.h"
#include "scenario/soak/book.h"

namespace Corvetape::Test {

namespace {

template <typename Items, typename Value, typename Member = std::identity>
bool Contains(const Items& items, const Value& value, Member member = {}) {
    return std::ranges::find(items, value, member) != items.end();
}

/// A repaired file goes as far as the disk took it, which may be a part of a buffer further than whole ones.
bool GoesFurther(std::span<const uint64_t> pieces, std::span<const uint64_t> whole) {
    return pieces.size() == whole.size() + 1 && std::ranges::equal(pieces.first(whole.size()), whole);
}

}  // namespace

/// Whether the song that is closed now has ended with its title, and not at the cut's other side.
bool Book::EndsByTitle() {
    const bool automatic = Values().Pause.EndOfSongDetection == EndOfSong::Automatic;
    const bool noticed = automatic && !Noticed.empty();
    if (noticed) std::tie(Ended, EndedWanted) = Noticed.front();
    return noticed || (CutByTitle && Values().Cut.CutPending);
}

/// Whether the song was kept or not as the flags said before the event.
void Book::CheckFate(const HeardSong& song) {
    const SongFate fate = song.Song.Fate;
    const State& values = Values();
    const bool wished = EndsByTitle() ? EndedWanted : CurrentWanted;
    const uint64_t least =
        static_cast<uint64_t>(std::max(values.Pause.IgnoreShortSongs, 0)) * song.Song.FramesPerSecond;
    const bool silent = values.Signal.SilenceSeconds >= values.Options.InfoAfterSilence;
    if (fate == SongFate::Unwanted && wished && !Pressing && !silent) Report("a wanted song was thrown away");
    if (fate == SongFate::Kept && !wished && !Pressing) Report("a song was kept that nobody wanted");
    if (fate == SongFate::Short && song.Song.Frames > least) Report("a song was called short that is not");
    if (fate == SongFate::Aborted && values.Signal.SilenceSeconds < values.Pause.QuitAfterSilence) {
        Report("a song was broken off");
    }
    const bool left = fate != SongFate::Kept && Radio->Disk().Exists(song.Song.TempPath);
    if (left && !WasStruck(song.Song.TempPath)) Report("an unwanted file stays: " + song.Song.TempPath);
}

/// Whether a kept song has its own names, as far as they were known.
void Book::CheckMedia(const HeardSong& song) {
    const STATIONANDSONGDATA& media = song.Song.Media;
    const auto isOf = [&media](const std::string& what, const std::string& field) {
        return field.empty() || field == what + media.Song;
    };
    if (!isOf(AlbumOf, media.Album)) Report(media.Song + " has another song's album: " + media.Album);
    if (!isOf(CoverOf, media.Cover)) Report(media.Song + " has another song's cover: " + media.Cover);
    if (!EndsByTitle()) return;
    const auto names = [](const STATIONANDSONGDATA& each) {
        return each.Artist + ", " + each.Song + ", " + each.Album + ", " + each.Cover;
    };
    if (names(media) != names(Ended)) Report("what was " + names(Ended) + " is kept as " + names(media));
}

/// A song has its own picture beside it or none, which may not have come in time.
void Book::CheckPicture(const HeardSong& song) {
    const std::string& wave = song.Song.TempPath;
    const auto picture = Radio->Disk().Content(wave.substr(0, wave.rfind('.')) + ".jpg");
    if (!picture || *picture == PictureAt(song.Song.Media.Cover)) return;
    Report(song.Song.Media.Song + " has another song's picture: " + picture->substr(0, picture->find('\n')));
}

/// A song of which nothing was heard, such as one that was over while the input stood still, has no file and
/// is closed without a report: what was noticed of it is no longer expected.
void Book::ForgetUnheard(const HeardSong& song) {
    const auto own = std::ranges::find_if(
        Noticed, [&](const auto& each) { return each.first.Song == song.Song.Media.Song; });
    if (own != Noticed.end()) Noticed.erase(Noticed.begin(), own);
}

bool Book::WasStruck(const std::string& path) const {
    const auto isOfIt = [&path](const std::string& failed) { return failed.find(path) != std::string::npos; };
    return std::ranges::any_of(Radio->Computer.Files.FailedOperations(), isOfIt);
}

void Book::Closed(const HeardSong& song) {
    ++Closings;
    if (OnClosed) OnClosed(song);
    ForgetUnheard(song);
    CheckFate(song);
    if (song.Song.TempPath == OpenPath) OpenPath.clear();
    CurrentWanted = Values().Flags.RecordCurrentSong;
    NoteCut();
    if (!Values().Flags.RecordingEnabled) ExcuseUnread(Unread);
    if (song.Song.Fate == SongFate::Kept) {
        CheckMedia(song);
        CheckPicture(song);
        CheckKept(song);
        if (!Noticed.empty()) Noticed.pop_front();
        return;
    }
    if (!Noticed.empty()) Noticed.pop_front();
    if (song.Song.Frames == 0) return;  // nothing but its pause, which was taken off
    const std::optional<Place> place = Claimed(song);
    if (place) {
        CheckGap(Next, place->First, "ahead of a song that was not kept");
        LastBegin = place->First;
        Next = std::max(Next, place->End);
    }
    LastKnown = place.has_value();
    MayOverlap = GoesBack(place && ReachesTheEnd(*place), place ? place->End : Next);
}

/// The buffer that a song claims to begin with, or one past the last.
size_t Book::ClaimedBegin(const HeardSong& song) const {
    const auto first =
        std::ranges::find(Buffers, FramesOfEarlierRuns + song.Song.BeginFrame, &BookedBuffer::Position);
    return static_cast<size_t>(first - Buffers.begin());
}

/// Where a file that is gone has been, as its song claims; nothing if it had holes.
std::optional<Book::Place> Book::Claimed(const HeardSong& song) const {
    if (song.Song.Frames != song.Song.EndFrame - song.Song.BeginFrame) return std::nullopt;
    const auto first = Buffers.begin() + static_cast<std::ptrdiff_t>(ClaimedBegin(song));
    const auto last = std::find_if(first, Buffers.end(), [&](const BookedBuffer& each) {
        return each.Position + each.Frames == FramesOfEarlierRuns + song.Song.EndFrame;
    });
    if (first == Buffers.end() || last == Buffers.end()) return std::nullopt;
    Place place;
    place.First = static_cast<size_t>(first - Buffers.begin());
    place.End = static_cast<size_t>(last - Buffers.begin()) + 1;
    return place;
}

std::optional<std::vector<uint64_t>> Book::PiecesOf(const std::string& path, Extent extent) {
    // Not through the disk: a look must not use up a fault.
    const std::optional<std::string> content = Radio->Disk().Content(path);
    if (!content || content->size() < WavHeaderBytes) return std::nullopt;
    const auto number = [&content](size_t at) {
        uint32_t value = 0;
        std::memcpy(&value, content->data() + at, sizeof(value));
        return size_t{value};
    };
    const size_t piece = number(28) / 20;
    if (piece == 0 || number(40) > content->size() - WavHeaderBytes) return std::nullopt;
    const size_t written = (content->size() - WavHeaderBytes) / piece * piece;
    auto bytes = std::as_bytes(std::span(*content))
                     .subspan(WavHeaderBytes, extent == Extent::ByHeader ? number(40) : written);
    std::vector<uint64_t> pieces;
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(piece, bytes.size()))) {
        pieces.push_back(HashOf(bytes.first(std::min(piece, bytes.size()))));
    }
    return pieces;
}

/// Whether it may be a song that was followed round the ring.
bool Book::ReachesTheEnd(const Place& place) const {
    const bool throughRing = Radio->Recorder->Values().Pause.EndOfSongDetection != EndOfSong::Silence;
    return throughRing && !RingBuffers.empty() && place.End > RingBuffers.back();
}

/// Whether the next song may begin before what the files up to now have reached.
bool Book::GoesBack(bool roundTheRing, size_t end) {
    // By everything that is known, a fade between two songs may be in both.
    const bool fades = Values().Pause.EndOfSongDetection == EndOfSong::Automatic;
    return Values().Pause.DuplicatepartOfSong || fades || roundTheRing || end < Next;
}

void Book::CountLeftOut(Place& place, size_t first, size_t end) const {
    for (size_t i = first; i < end; ++i) {
        place.LeftOut += Buffers[i].Lost + Buffers[i].Frames;
        if (Buffers[i].Off) place.Refused += Buffers[i].Frames;
    }
}

/// Whether the disk has refused something of a song from buffer `first` on, which goes on after it with what
/// was heard from buffer `at` on. Nothing may have been heard in the meantime.
bool Book::WasRefused(std::span<const uint64_t> rest, size_t first, size_t at) const {
    const auto from = [this](size_t number) { return std::span(Buffers).subspan(number); };
    if (std::ranges::any_of(from(first), std::mem_fn(&BookedBuffer::Off))) return true;
    const bool stopped = std::ranges::any_of(Stops, [&](size_t stop) { return stop >= first; });
    return stopped && std::ranges::any_of(rest, [&](uint64_t piece) {
               return Contains(from(at), piece, &BookedBuffer::Hash);
           });
}

/// Follows a file through the buffers, from `from` on. What it lacks on its way has to have its reason.
/// Noise repeats, so the search does not start before the claimed beginning.
Book::Place Book::Find(const std::vector<uint64_t>& pieces, size_t from, size_t claimed) {
    Place place;
    if (claimed < Buffers.size()) from = std::max(from, claimed);
    const auto begin = Buffers.begin() + static_cast<std::ptrdiff_t>(from);
    const auto first = std::ranges::find(begin, Buffers.end(), pieces[0], &BookedBuffer::Hash);
    if (first == Buffers.end()) {
        place.Problem = "begins with audio that was never heard, or that another song has";
        return place;
    }
    place.First = static_cast<size_t>(first - Buffers.begin());
    size_t at = place.First;
    for (size_t number = 0; number < pieces.size(); ++number, ++at) {
        const auto found = std::ranges::find(Buffers.begin() + static_cast<std::ptrdiff_t>(at), Buffers.end(),
                                             pieces[number], &BookedBuffer::Hash);
        if (found == Buffers.end()) {
            const bool wasHeard = Contains(Buffers, pieces[number], &BookedBuffer::Hash);
            // A full disk may have broken the round off, and the song goes on after it.
            const bool wasRefused = WasRefused(std::span(pieces).subspan(number), place.First, at);
            place.RoundTheRing = wasHeard && (wasRefused || pieces.size() - number <= RingSize);
            place.Followed = !wasRefused;
            if (!place.RoundTheRing) place.Problem = "holds audio in its middle that was not heard there";
            break;
        }
        const auto index = static_cast<size_t>(found - Buffers.begin());
        if (index > at) CheckGap(at, index, "within a song");
        CountLeftOut(place, at, index);
        at = index;
        place.Lost += Buffers[at].Lost;
    }
    place.End = at;
    return place;
}

void Book::CheckKept(const HeardSong& song) {
    WantedSong wanted{song.Song.TempPath, {}, false, WasStruck(song.Song.TempPath), song.Song.Media, false};
    wanted.ByTime = Values().Pause.EndOfSongDetection == EndOfSong::FixedTime;
    const auto pieces = PiecesOf(song.Song.TempPath);
    const bool readable = pieces && !pieces->empty();
    if (readable) wanted.Pieces = *pieces;
    Wanted.push_back(wanted);
    if (!readable) {
        LastKnown = false;
        if (!wanted.Damaged) Report("a kept song cannot be read: " + song.Song.TempPath);
        return;
    }
    // What is in two songs is there because the user asked for it.
    const size_t claimed = ClaimedBegin(song);
    Place place = Find(*pieces, MayOverlap || !LastKnown ? LastBegin : Next, claimed);
    CountLeftOut(place, claimed, place.First);
    if (place.Problem.empty()) CheckGap(Next, place.First, "ahead of a song");
    LastKnown = place.Problem.empty() && place.Followed && !wanted.Damaged;
    MayOverlap = GoesBack(place.RoundTheRing || ReachesTheEnd(place), place.End);
    if (!place.Problem.empty()) {
        if (!wanted.Damaged) Report(song.Song.TempPath + " " + place.Problem);
        return;
    }
    if (!wanted.Damaged) {
        if (place.Followed && !place.RoundTheRing) {
            Wanted.back().First = place.First;
            Wanted.back().End = place.End;
        }
        LastBegin = place.First;
        Next = std::max(Next, place.End);
    }
    if (place.RoundTheRing) return;
    ReportedLosses.push_back({song.Song.LostFrames, place.Lost + place.Refused, place.Lost + place.LeftOut,
                              place.End, Buffers.size()});
}

void Book::CheckLosses() {
    for (const ReportedLoss& each : ReportedLosses) {
        // What is missing after the last buffer, in the pause that was taken off or before it, may have been
        // of the song.
        uint64_t most = each.Most;
        for (size_t i = each.End; i < Buffers.size() && i <= each.Present; ++i) {
            if (!Buffers[i].Quiet && !Buffers[i].MayBeMissing) break;
            most += Buffers[i].Lost + (Buffers[i].MayBeMissing ? Buffers[i].Frames : 0);
        }
        if (each.Reported >= each.Least && each.Reported <= most) continue;
        Report("a song says that it lost " + std::to_string(each.Reported) + " frames and has lost " +
               std::to_string(each.Least));
    }
    ReportedLosses.clear();
}

/// The buffers that no file has, from `from` up to `to`: a rule has taken each of them out, or it is in a
/// stretch that a cut threw away.
void Book::CheckGap(size_t from, size_t to, const char* where) {
    if (!LastKnown) return;
    for (size_t i = from; i < to;) {
        const size_t end = Buffers[i].MayBeMissing ? i + 1 : EndOfDiscarded(i, to);
        if (end == i) {
            Report("a buffer is missing " + std::string(where) + ": number " + std::to_string(i) +
                   ", between " + std::to_string(from) + " and " + std::to_string(to) + ", level " +
                   std::to_string(Buffers[i].Level));
            return;
        }
        i = end;
    }
}

/// One past the longest stretch from `first` on that a cut may have thrown away.
size_t Book::EndOfDiscarded(size_t first, size_t to) const {
    int32_t lowest = Buffers[first].Level;
    int32_t highest = lowest;
    size_t end = first;
    for (size_t i = first; i < to && Buffers[i].RingNumber >= 0 && !Buffers[i].MayBeMissing; ++i) {
        lowest = std::min(lowest, Buffers[i].Level);
        highest = std::max(highest, Buffers[i].Level);
        const bool quiet = highest <= std::max<int64_t>(std::lround(lowest * 1.2), 164);
        if (quiet && WithinACut(Buffers[first].RingNumber, Buffers[i].RingNumber)) end = i + 1;
    }
    return end;
}

bool Book::WithinACut(int32_t first, int32_t last) const {
    return std::ranges::any_of(
        Cuts, [&](const Cut& cut) { return first >= cut.At - cut.Before && last <= cut.At + cut.After; });
}

void Book::Transferred(const TransferredSong& song) {
    // Stamps can come again: of the wanted songs of that name it is the last.
    HandedSong handed{song.TempFile, std::nullopt};
    for (size_t i = 0; i < Wanted.size(); ++i) {
        if (Wanted[i].TempPath.ends_with("/" + song.Media.TempFileName + ".wav")) handed.Wanted = i;
    }
    // A song of the same name takes the place of an earlier one whose encoder has not ended.
    for (const HandedSong& earlier : HandedOver) {
        const bool replaced = earlier.TempFile == handed.TempFile && earlier.Wanted != handed.Wanted;
        if (replaced && earlier.Wanted) Wanted[*earlier.Wanted].Safe = true;
    }
    if (handed.Wanted) {
        const STATIONANDSONGDATA& closed = Wanted[*handed.Wanted].Media;
        const bool unnamed = Wanted[*handed.Wanted].ByTime && song.Media.Song.empty();
        if (unnamed) {
            // A next start has the piece from its note, which has no names.
        } else if (song.Media.Artist != closed.Artist || song.Media.Song != closed.Song ||
                   song.Media.Album != closed.Album || song.Media.Cover != closed.Cover) {
            Report("what was closed as " + closed.Song + " is handed over as " + song.Media.Song);
        }
    }
    HandedOver.push_back(std::move(handed));
}

void Book::Encoded(const TransferredSong& song) {
    const auto pieces = PiecesOf(song.TempFile);
    for (WantedSong& wanted : Wanted) {
        if (pieces && wanted.Pieces == *pieces) {
            wanted.Safe = true;
            return;
        }
    }
    if (pieces && (WasLeft(*pieces) || WasRepaired(*pieces))) return;
    // A song that was to go and could not is called as it was recorded until it is handed over.
    const std::string recorded = std::string(SongTempFolder) + "/" + song.Media.TempFileName + ".wav";
    if (!WasStruck(song.TempFile) && !WasStruck(recorded))
        Report("an encoder was given a song that was not kept: " + song.TempFile);
}

/// The song that was in the file when a failure ended the recording is there still, and the next start
/// decides.
void Book::NoteLeftSong() {
    if (OpenPath.empty() || !Radio->Disk().Exists(OpenPath)) return;
    const auto pieces = PiecesOf(OpenPath, Extent::AllWritten);
    if (pieces) Left.push_back(*pieces);
    LastKnown = LastKnown && pieces && !pieces->empty() && !WasStruck(OpenPath);
    if (!LastKnown) return;
    const Place place = Find(*pieces, MayOverlap ? LastBegin : Next, 0);
    if (!place.Problem.empty()) return Report("what was left " + place.Problem);
    CheckGap(Next, place.First, "ahead of what was left");
    Next = std::max(Next, place.End);
}

bool Book::WasLeft(std::span<const uint64_t> pieces) const {
    return std::ranges::any_of(Left, [pieces](const std::vector<uint64_t>& left) {
        return pieces.size() == left.size() ? std::ranges::equal(pieces, left) : GoesFurther(pieces, left);
    });
}

/// A full disk has no room to note that a song was closed. The next start takes its file for one that was
/// broken off.
bool Book::WasRepaired(std::span<const uint64_t> pieces) const {
    return std::ranges::any_of(
        Wanted, [pieces](const WantedSong& wanted) { return GoesFurther(pieces, wanted.Pieces); });
}

void Book::ProgramEnded() {
    CheckLosses();
    NoteLeftSong();
    CheckGap(Next, Buffers.size(), "at the end");
    Next = Buffers.size();
    LastBegin = Next;
    LastKnown = true;
    if (!Buffers.empty()) FramesOfEarlierRuns = Buffers.back().Position + Buffers.back().Frames;
    RingBuffers.clear();
    Cuts.clear();
    OpenPath.clear();
    WasCutPending = false;
    if (Radio->Disk().OpenHandles() != 0) Report("a file was left open");
    CheckWanted();
    CheckMargins();
}

/// Each song that was kept has been encoded, or it is where the user finds it. What becomes of it there is up
/// to the user: a later run may empty the folder.
void Book::CheckWanted() {
    std::vector<std::vector<uint64_t>> there;
    for (const std::string& path : SongFiles()) {
        if (auto pieces = PiecesOf(path)) there.push_back(std::move(*pieces));
    }
    for (WantedSong& wanted : Wanted) {
        const bool isSafe = wanted.Safe || wanted.Damaged || Contains(there, wanted.Pieces);
        if (!isSafe) Report("a wanted song is gone: " + wanted.TempPath);
        wanted.Safe = true;
    }
}

std::vector<std::string> Book::SongFiles() {
    std::vector<std::string> files = Radio->Disk().Tree(SongTempFolder);
    const std::string margins = std::string(SongTempFolder) + "/margins/";
    std::erase_if(
        files, [&](const std::string& path) { return !path.ends_with(".wav") || path.starts_with(margins); });
    return files;
}

void Book::Finished() {
    for (const std::string& path : SongFiles()) {
        const auto pieces = PiecesOf(path);
        const bool isWanted = pieces && (Contains(Wanted, *pieces, &WantedSong::Pieces) || WasLeft(*pieces) ||
                                         WasRepaired(*pieces));
        if (!isWanted && !WasStruck(path)) Report("a file stays that nobody wants: " + path);
    }
}

}  // namespace Corvetape::Test
