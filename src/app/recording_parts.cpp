#include "app/recording_parts.h"

#include "app/program_parts.h"

namespace Corvetape {

RecordingParts::RecordingParts(ProgramParts& parts, const Machine& machine, State& state)
    : Disk({state.Form, machine.Files, state.Options, state.Folders, state.Flags, state.Messages,
            parts.MarginFiles},
           state.Signal.Format, parts.Say),
      Look(state.Form, state.PlainBar, state.CoverBar, parts.Messages),
      Notice(state.Flags, state.Signal, parts.Say),
      Resumption({state.Flags, state.Media, state.Messages, parts.Writer, Disk, Notice}, parts.Say),
      Pieces({state.Pause, state.Media, state.Flags, state.Cut, state.Ring, parts.Writer, parts.Drain},
             parts.Requests),
      Clicks({state.Form, state.Flags, state.Media, Pieces, Look, Resumption}),
      Period(state.Form, state.Flags, state.Options, parts.Store, machine.Dialogs, parts.Messages),
      Change({state.Flags, state.Cut, state.Signal, state.Ring, parts.Drain, Clicks}, parts.Requests),
      Poll({state.Form, state.Media, state.Cut, state.Lifecycle, state.Pause, parts.Providers, Change}),
      First({state.Form, state.Lifecycle, state.Signal, state.Options, state.Folders, parts.Inputs}, machine,
            parts.Requests),
      Source(state.Media, state.Pause, parts.Providers),
      Age({state.Form, state.Options, state.Flags, state.Cut, state.Media, parts.Watched}, parts.Say),
      Heard({state.Signal, state.Pause, state.Cut, state.Media, parts.Bridge.get(), machine.Clock}),
      Display({state.Form, state.PlainBar, state.CoverBar, state.Media, state.Flags, machine.Desktop},
              parts.Say),
      Radio({state.Options, state.Lifecycle, state.Media, state.Flags, parts.Launcher, parts.Providers}),
      Silence({machine.Clock, state.Options, state.Pause, state.Lifecycle, state.Signal},
              {state.Form, state.Flags, Radio, Clicks, parts.Targets}, Notice, parts.Say),
      Buffers(state.Form, state.Options, state.Signal, parts.Input.MaxBuffersUsed(), parts.Say),
      Tick(
          state.Form.tmr1Second, machine.Clock, state.Lifecycle,
          {First, Source, Age, Heard, Display, Clicks, Period, Silence, Buffers, Pieces, parts.Targets, Disk},
          parts.Requests) {}

}  // namespace Corvetape
