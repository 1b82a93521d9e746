#pragma once

#include <cstdio>

#include "platform/dialogs.h"

namespace Corvetape {

/// Boxes for the command line: each is one line on a stream, and is closed at once. Questions are thus
/// answered as by a user who closes the box: no, or nothing chosen.
class ConsoleDialogs : public Dialogs {
 public:
    /// `stream` is not owned; usually the standard error output.
    explicit ConsoleDialogs(std::FILE* stream);

    void ShowMessage(const std::string& text, DialogIcon icon) override;
    void ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) override;
    bool AskYesNo(const std::string& text, DialogIcon icon) override;

    /// Rings the bell of a terminal; nothing elsewhere.
    void Beep() override;

    std::optional<std::string> BrowseForFolder(const std::string& title, const std::string& start) override;
    std::optional<std::string> OpenFile(const std::string& title, const std::string& filter,
                                        const std::string& start) override;

 private:
    std::FILE* Stream;
};

}  // namespace Corvetape
