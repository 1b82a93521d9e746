#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include "core/version.h"
#include "platform/dialogs.h"

namespace Corvetape {

/// Boxes of the toolkit, in front of the window. The loop of the program goes on while one is open.
class QtDialogs : public Dialogs {
 public:
    /// The window that boxes belong to; there may be none yet.
    void Over(QWidget* window) { Window = window; }

    /// Whether the system or the session wants the end of the program: no box opens any more, and each is
    /// answered as if the user had closed it.
    void Ending(bool ending) { IsEnding = ending; }

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
    int Show(const std::string& text, DialogIcon icon, QMessageBox::StandardButtons buttons,
             QMessageBox::StandardButton preselected = QMessageBox::NoButton,
             const QString& title = ProgramTitle) const;

    QPointer<QWidget> Window;
    bool IsEnding = false;
};

}  // namespace Corvetape
