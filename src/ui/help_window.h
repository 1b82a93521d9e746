#pragma once

#include <QDialog>
#include <QString>

#include "ui/words.h"

class QLabel;
class QLineEdit;
class QTextBrowser;

namespace Corvetape {

/// Where the manual is, below the folder of the program, in the build tree as after the installation.
inline constexpr const char* ManualInProgramFolder = "/manual/manual.md";

/// Shows the manual and the pages that it leads to, with a line to search in them. It deletes itself when it
/// is closed.
class HelpWindow : public QDialog {
 public:
    /// `manual` is the path of the first page.
    HelpWindow(const QString& manual, const Words& say, QWidget* parent);

    /// The keyboard goes into the line to search.
    void BeginSearch();

 private:
    void Find();
    void GoToHeading(const QString& anchor);

    QTextBrowser* Page;
    QLineEdit* Wanted;
    QLabel* Missing;
};

}  // namespace Corvetape
