#include "app/program.h"

#include <utility>

#include "app/program_parts.h"

namespace Corvetape {

Program::Program(Machine machine, RunOptions options, ProgramEvents events)
    : Host(machine),
      Options(std::move(options)),
      Events(std::move(events)),
      Memory(std::make_unique<State>()),
      Alive(std::make_shared<bool>(true)) {
    Parts = std::make_unique<ProgramParts>(Host, *Memory, Options, Events);
    Parts->Requests.End.Connect([this] { RequestUnload(); });
    Memory->Form.Methods.Add("Quit", [this] { static_cast<void>(Close()); });
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

double Program::InputSeconds() const {
    return static_cast<double>(Memory->Signal.FramesReceived) / Parts->Input.Format().nSamplesPerSec;
}

bool Program::InputOpen() const {
    return Parts->Input.IsOpen();
}

uint64_t Program::SongAgeSeconds() const {
    return static_cast<uint64_t>(Parts->Recording.Heard.Seconds());
}

Desk Program::Shown() {
    return {*Memory,
            Parts->Levels,
            Parts->Covers,
            Parts->Bridge.get(),
            Parts->WatchTabs,
            Parts->Songs,
            Parts->Recording.Age,
            Parts->Recording.Heard,
            Parts->Recording.Disk,
            Parts->Bars,
            Parts->Messages,
            Parts->Store};
}

void Program::Report(const std::string& key) {
    Parts->Journal.WriteLog({"INFO", Parts->Messages.FormatMsg(key)});
}

void Program::ReportError(const std::string& key, std::initializer_list<std::string> arguments) {
    Parts->Say.WriteAndShow(ReportKind::Error, Parts->Say.Text(key, arguments));
}

void Program::StopKeeping() {
    Memory->Flags.WishNothing();
}

void Program::CollectJobs() {
    Parts->Results.Collect();
}

}  // namespace Corvetape
