#include "desktop/qt_dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QIcon>

#include "ui/look.h"

namespace Corvetape {

namespace {

QMessageBox::Icon IconOf(DialogIcon icon) {
    if (icon == DialogIcon::Critical) return QMessageBox::Critical;
    if (icon == DialogIcon::Question) return QMessageBox::Question;
    return icon == DialogIcon::Exclamation ? QMessageBox::Warning : QMessageBox::Information;
}

/// The pointer of a wait would say that the box cannot be answered: over it there is the normal one.
class NormalPointer {
 public:
    NormalPointer() : Taken(QApplication::overrideCursor() != nullptr) {
        if (Taken) QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~NormalPointer() {
        if (Taken) QApplication::restoreOverrideCursor();
    }
    NormalPointer(const NormalPointer&) = delete;
    NormalPointer& operator=(const NormalPointer&) = delete;

 private:
    bool Taken;
};

}  // namespace

int QtDialogs::Show(const std::string& text, DialogIcon icon, QMessageBox::StandardButtons buttons,
                    QMessageBox::StandardButton preselected, const QString& title) const {
    if (IsEnding) return QMessageBox::NoButton;
    QMessageBox box(IconOf(icon), title, QString::fromStdString(text), buttons, Window);
    if (!Window) {  // else it looks like its window
        Dress(box);
        box.setWindowIcon(QIcon(":/ui/icons/corvetape.svg"));
    }
    box.setDefaultButton(preselected);
    box.setTextFormat(Qt::PlainText);  // titles of strangers stand in it
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const NormalPointer pointer;
    return box.exec();
}

void QtDialogs::ShowMessage(const std::string& text, DialogIcon icon) {
    Show(text, icon, QMessageBox::Ok);
}

void QtDialogs::ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) {
    Show(text, icon, QMessageBox::Ok, QMessageBox::NoButton, QString::fromStdString(title));
}

bool QtDialogs::AskYesNo(const std::string& text, DialogIcon icon) {
    return Show(text, icon, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

bool QtDialogs::AskNoYes(const std::string& text, DialogIcon icon) {
    const auto buttons = QMessageBox::Yes | QMessageBox::No;
    return Show(text, icon, buttons, QMessageBox::No) == QMessageBox::Yes;
}

bool QtDialogs::AskOkCancel(const std::string& text, DialogIcon icon) {
    return Show(text, icon, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

void QtDialogs::Beep() {
    QApplication::beep();
}

std::optional<std::string> QtDialogs::BrowseForFolder(const std::string& title, const std::string& start) {
    const QString chosen = QFileDialog::getExistingDirectory(Window, QString::fromStdString(title),
                                                             QString::fromStdString(start));
    if (chosen.isEmpty()) return std::nullopt;
    return chosen.toStdString();
}

namespace {

/// Names and patterns of a filter stand one after the other, with a NUL between.
QString FiltersOf(const std::string& filter) {
    const QStringList parts = QString::fromStdString(filter).split(QChar(0));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        filters << parts[i].section('(', 0, 0).trimmed() + " (" + QString(parts[i + 1]).replace(';', ' ') +
                       ")";
    }
    return filters.join(";;");
}

}  // namespace

std::vector<std::string> QtDialogs::OpenFiles(const std::string& title, const std::string& filter,
                                              const std::string& start) {
    std::vector<std::string> paths;
    for (const QString& chosen : QFileDialog::getOpenFileNames(
             Window, QString::fromStdString(title), QString::fromStdString(start), FiltersOf(filter))) {
        paths.push_back(chosen.toStdString());
    }
    return paths;
}

std::optional<std::string> QtDialogs::OpenFile(const std::string& title, const std::string& filter,
                                               const std::string& start) {
    const QString chosen = QFileDialog::getOpenFileName(Window, QString::fromStdString(title),
                                                        QString::fromStdString(start), FiltersOf(filter));
    if (chosen.isEmpty()) return std::nullopt;
    return chosen.toStdString();
}

}  // namespace Corvetape
