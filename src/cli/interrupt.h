#pragma once

namespace Corvetape {

/// Notices Ctrl-C and a request to end while it lives. The first one is only noted; a second one ends the
/// process the usual way.
class Interrupt {
 public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    static bool Wanted();

    /// A descriptor that becomes readable with the first one; for loops that wait. -1 if there is none.
    static int Descriptor();
};

}  // namespace Corvetape
