#include "sim/sim_faults.h"

#include <algorithm>
#include <array>

namespace Corvetape {

namespace {

constexpr std::array OperationNames = std::to_array<std::string_view>(
    {"Create", "Write", "Seek", "CutBack", "Close", "Read", "Patch", "Replace", "Append", "Rename", "Copy",
     "Delete", "MakeFolder", "DeleteFolder", "Look", "FreeSpace"});

constexpr size_t MostRemembered = 100;

}  // namespace

std::string_view NameOf(FileOperation operation) {
    return OperationNames[static_cast<size_t>(operation)];
}

bool MatchesPattern(std::string_view pattern, std::string_view text) {
    size_t inPattern = 0;
    size_t inText = 0;
    size_t star = std::string_view::npos;
    size_t tried = 0;  ///< text up to here was given to the last star
    while (inText < text.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = inPattern++;
            tried = inText;
        } else if (inPattern < pattern.size() &&
                   (pattern[inPattern] == '?' || pattern[inPattern] == text[inText])) {
            ++inPattern;
            ++inText;
        } else if (star != std::string_view::npos) {
            inPattern = star + 1;
            inText = ++tried;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', inPattern) == std::string_view::npos;
}

size_t SimFaults::Add(FileFault fault) {
    Rules.push_back({std::move(fault)});
    return Rules.size() - 1;
}

void SimFaults::Remove(size_t fault) {
    if (fault < Rules.size()) Rules[fault].Removed = true;
}

// Numbers that were given out stay valid, so the rules are only put out of force.
void SimFaults::Clear() {
    for (Rule& rule : Rules) rule.Removed = true;
    NumberToFail = 0;
}

void SimFaults::FailNumber(uint64_t number, int32_t error) {
    NumberToFail = number;
    NumberError = error;
}

/// The first rule that strikes. `bytesAfter` is what a file has taken once a write is done.
SimFaults::Rule* SimFaults::RuleFor(FileOperation operation, std::string_view path, uint64_t bytesAfter) {
    for (Rule& rule : Rules) {
        const FileFault& fault = rule.Fault;
        if (rule.Removed || rule.Strikes >= fault.Times) continue;
        if (fault.Operation.has_value() && *fault.Operation != operation) continue;
        if (operation == FileOperation::Write && bytesAfter <= fault.AfterBytes) continue;
        if (!MatchesPattern(fault.Pattern, path)) continue;
        if (++rule.Calls <= fault.AfterCalls) continue;
        ++rule.Strikes;
        if (fault.Delay.count() > 0 && Delay) Delay(fault.Delay);
        if (fault.Error != 0) return &rule;
    }
    return nullptr;
}

int32_t SimFaults::Fail(FileOperation operation, std::string_view path, int32_t error) {
    if (StruckOnes.size() == MostRemembered) StruckOnes.erase(StruckOnes.begin());
    StruckOnes.push_back(std::string(NameOf(operation)) + " " + std::string(path));
    return error;
}

int32_t SimFaults::Strike(FileOperation operation, std::string_view path) {
    ++Counted;
    if (Counted == NumberToFail) return Fail(operation, path, NumberError);
    if (Rules.empty()) return 0;
    const Rule* rule = RuleFor(operation, path, 0);
    return rule == nullptr ? 0 : Fail(operation, path, rule->Fault.Error);
}

SimFaults::WritePass SimFaults::StrikeWrite(std::string_view path, uint64_t taken, uint64_t bytes) {
    ++Counted;
    if (Counted == NumberToFail) return {0, Fail(FileOperation::Write, path, NumberError)};
    if (Rules.empty()) return {bytes, 0};
    const Rule* rule = RuleFor(FileOperation::Write, path, taken + bytes);
    if (rule == nullptr) return {bytes, 0};
    const uint64_t limit = rule->Fault.AfterBytes;
    return {limit > taken ? limit - taken : 0, Fail(FileOperation::Write, path, rule->Fault.Error)};
}

}  // namespace Corvetape
