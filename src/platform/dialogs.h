#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Corvetape {

enum class DialogIcon { Information, Exclamation, Critical, Question };

/// Boxes that the user answers. A call returns when the box is closed; events are handled meanwhile.
/// A machine without a screen answers at once, as if the user had closed the box.
class Dialogs {
 public:
    virtual ~Dialogs() = default;

    virtual void ShowMessage(const std::string& text, DialogIcon icon) = 0;

    /// The same with a title of its own in place of the program's.
    virtual void ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) = 0;
    virtual bool AskYesNo(const std::string& text, DialogIcon icon) = 0;

    /// The same with No as the answer to a key that was pressed unawares.
    virtual bool AskNoYes(const std::string& text, DialogIcon icon) { return AskYesNo(text, icon); }

    /// True for OK, false for Cancel.
    virtual bool AskOkCancel(const std::string& text, DialogIcon icon) { return AskYesNo(text, icon); }
    virtual void Beep() = 0;

    /// Lets the user choose a folder; nothing if cancelled.
    virtual std::optional<std::string> BrowseForFolder(const std::string& title,
                                                       const std::string& start) = 0;

    /// Lets the user choose a file; nothing if cancelled.
    virtual std::optional<std::string> OpenFile(const std::string& title, const std::string& filter,
                                                const std::string& start) = 0;

    /// Lets the user choose any number of files; none if cancelled.
    virtual std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter,
                                               const std::string& start) {
        const auto file = OpenFile(title, filter, start);
        return file ? std::vector<std::string>{*file} : std::vector<std::string>{};
    }
};

}  // namespace Corvetape
