#pragma once

namespace Corvetape {

/// Notices Ctrl-C, a request to end, and the end of the terminal while it lives. The first one is only noted;
/// a second one ends the process the usual way, unless it is the terminal's, which often comes twice. A
/// process that is to outlive its terminal does so.
class Interrupt {
 public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    static bool Wanted();

    /// Like Ctrl-C, from inside the program.
    static void Want();

    /// A descriptor that becomes readable with the first one; for loops that wait. -1 if there is none.
    static int Descriptor();

 private:
    void (*HangupBefore)(int);
};

}  // namespace Corvetape
