#include "app/program.h"

#include <utility>

#include "app/program_parts.h"
#include "core/text/text.h"
#include "platform/processes.h"

namespace Corvetape {

Program::Program(Machine machine, RunOptions options, ProgramEvents events, DesktopSteps desktop)
    : Host(machine),
      Options(std::move(options)),
      Events(std::move(events)),
      Desktop(std::move(desktop)),
      Memory(std::make_unique<State>()),
      Alive(std::make_shared<bool>(true)) {
    Parts = std::make_unique<ProgramParts>(Host, *Memory, Links());
    for (const SettingOverride& each : Options.Overrides) {
        if (EqualIgnoringCase(each.Section, AnySourceSection)) continue;  // when a source is known
        Profile& profile = each.InDataFile ? Parts->Store.FixIni() : Parts->Store.Ini();
        profile.Override(each.Section, each.Key, each.Value);
    }
}

Program::~Program() {
    DetachTimers();  // nothing of them may reach parts that are gone
    Parts.reset();
}

void Program::DetachTimers() {
    for (TimerControl* timer : {&Memory->Form.tmr1Second, &Memory->Form.tmrGetMediaData,
                                &Memory->Form.tmrEncodeFile, &Memory->Form.tmrVU, &Memory->Form.tmrMsgBox}) {
        timer->Detach();
    }
}

ProgramLinks Program::Links() {
    return {Options,
            Events,
            Desktop,
            [this] { RequestUnload(); },
            [this] { TransferNow(); },
            [this] { CollectJobs(); },
            [this] { static_cast<void>(Close()); }};
}

double Program::InputSeconds() const {
    return static_cast<double>(Memory->Signal.FramesReceived) / Parts->Input.Format().nSamplesPerSec;
}

bool Program::InputOpen() const {
    return Parts->Input.IsOpen();
}

uint64_t Program::SongAgeSeconds() const {
    return static_cast<uint64_t>(Parts->Watch.SongAgeSeconds());
}

const clsLocalizeControls& Program::Texts() const {
    return Parts->Messages;
}

LevelDisplay& Program::Levels() {
    return Parts->Levels;
}

CoverImages* Program::Covers() {
    return Parts->Covers.get();
}

FloatingBars& Program::Bars() {
    return Parts->Bars;
}

WatchPages& Program::Lists() {
    return Parts->WatchTabs;
}

SongActions& Program::Songs() {
    return Parts->Songs;
}

void Program::StopKeeping() {
    Memory->Flags.RecordCurrentSong = false;
    Memory->Flags.RecordNextSong = false;
}

void Program::CollectJobs() {
    for (const JobResult& result : Host.Processes.TakeFinished()) {
        Parts->EndJob(result);
        if (Events.JobEnded) Events.JobEnded(result);
    }
}

}  // namespace Corvetape
