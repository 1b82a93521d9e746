#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/dialogs.h"

namespace Corvetape {

class clsLocalizeControls;
class Label;
class Log;
struct LifecycleFlags;

/// Kind of a report in the log.
enum class ReportKind { Info, Error };

/// What the program says to its user in the chosen language: in the log, in the status line, in boxes.
class Reporter {
 public:
    /// All of them outlive it. `status` is the text of the status line.
    Reporter(Log& log, const clsLocalizeControls& texts, Dialogs& boxes, const LifecycleFlags& lifecycle,
             Label& status)
        : Journal(log), Texts(texts), Boxes(boxes), Lifecycle(lifecycle), Status(status) {}

    /// The message of a key with its arguments; empty without such a text.
    std::string Text(std::string_view key, std::initializer_list<std::string> arguments = {}) const;

    /// A text with the sound server's own words after it, if it has said any.
    std::string WithReason(const std::string& text, const std::string& serverSays) const;

    /// A line of the log.
    void Write(ReportKind kind, const std::string& text);

    /// The text of the status line, until something else happens.
    void Show(const std::string& text);

    void WriteAndShow(ReportKind kind, const std::string& text);

    /// A box, unless the program runs unattended. Returns when it is closed; events are handled meanwhile.
    void Box(const std::string& text, DialogIcon icon);

    /// The same with a title of its own in place of the program's.
    void TitledBox(const std::string& title, const std::string& text, DialogIcon icon);

 private:
    Log& Journal;
    const clsLocalizeControls& Texts;
    Dialogs& Boxes;
    const LifecycleFlags& Lifecycle;
    Label& Status;
};

}  // namespace Corvetape
