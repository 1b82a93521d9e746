#pragma once

namespace Corvetape {

/// Asks RealtimeKit on the system bus to give the calling thread this nice value. The answer is not waited
/// for, and without a bus no time is spent. Needs a QCoreApplication; does nothing without one.
void AskRealtimeKitForNice(int nice);

}  // namespace Corvetape
