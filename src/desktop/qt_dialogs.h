#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "platform/dialogs.h"

namespace Corvetape {

/// Boxes of the toolkit, in front of the window. The loop of the program goes on while one is open.
class QtDialogs : public Dialogs {
 public:
    /// The window that boxes belong to; there may be none yet.
    void Over(QWidget* window) { Window = window; }

    void ShowMessage(const std::string& text, DialogIcon icon) override;
    void ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) override;
    bool AskYesNo(const std::string& text, DialogIcon icon) override;
    bool AskNoYes(const std::string& text, DialogIcon icon) override;
    bool AskOkCancel(const std::string& text, DialogIcon icon) override;
    void Beep() override;
    std::optional<std::string> BrowseForFolder(const std::string& title, const std::string& start) override;
    std::optional<std::string> OpenFile(const std::string& title, const std::string& filter,
                                        const std::string& start) override;
    std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter,
                                       const std::string& start) override;

 private:
    QPointer<QWidget> Window;
};

}  // namespace Corvetape
