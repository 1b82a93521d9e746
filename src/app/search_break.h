#pragma once

namespace Corvetape {

struct ProgramParts;

/// Keeps what other inputs play out of the songs while they are searched.
class SearchBreak {
 public:
    /// `parts` outlives it.
    explicit SearchBreak(ProgramParts& parts) : Parts(parts) {}

    /// A search begins: a song that is being kept ends here, with a line of the log that says why, and
    /// nothing is kept from now on.
    void Begin();

    /// The chosen input is open again: whoever was recording goes on with the next song.
    void End();

 private:
    ProgramParts& Parts;
    bool Wanted = false;  ///< a song was wanted, this one or the next
};

}  // namespace Corvetape
