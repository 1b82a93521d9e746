#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace Corvetape {

enum class BoxKind { Message, YesNo, NoYes, OkCancel, Folder, File };

/// A box as it was shown.
struct ShownBox {
    BoxKind Kind = BoxKind::Message;
    std::string Text;  ///< of the message or the question; the title of a choice of folder or file
    DialogIcon Icon = DialogIcon::Information;
    std::string Filter;
    std::string Start;
    std::string Title{};  ///< of a message that has one of its own

    bool operator==(const ShownBox&) const = default;
};

/// Boxes that are written down and answered by the test. Without an answer a question is answered with no
/// and a choice is cancelled, as if the user had closed the box.
class SimDialogs : public Dialogs {
 public:
    void ShowMessage(const std::string& text, DialogIcon icon) override;
    void ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) override;
    bool AskYesNo(const std::string& text, DialogIcon icon) override;
    bool AskNoYes(const std::string& text, DialogIcon icon) override;
    bool AskOkCancel(const std::string& text, DialogIcon icon) override;
    void Beep() override { ++Beeps; }
    std::optional<std::string> BrowseForFolder(const std::string& title, const std::string& start) override;
    std::optional<std::string> OpenFile(const std::string& title, const std::string& filter,
                                        const std::string& start) override;

    std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter,
                                       const std::string& start) override;

    /// Answers to come, used up from the front, one queue a kind of box. OK counts as a yes.
    std::deque<bool> YesNoAnswers;
    std::deque<std::optional<std::string>> FolderAnswers;
    std::deque<std::optional<std::string>> FileAnswers;
    std::deque<std::vector<std::string>> FilesAnswers;

    /// Called while a box is open: the place to let time pass or to press something behind it.
    std::function<void(const ShownBox&)> WhileOpen;

    std::vector<ShownBox> Boxes;  ///< all boxes so far, in the order of their opening
    size_t Open = 0;              ///< boxes that stand open now
    size_t Beeps = 0;

 private:
    void Show(const ShownBox& box);
};

}  // namespace Corvetape
