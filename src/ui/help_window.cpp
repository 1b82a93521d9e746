#include "ui/help_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

HelpWindow::HelpWindow(const QString& manual, const Words& say, QWidget* parent)
    : QDialog(parent),
      Page(Make<QTextBrowser>()),
      Wanted(Make<QLineEdit>()),
      Missing(Make<QLabel>(say(Key::NotInHelp))) {
    setObjectName("help");
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(say(Key::HelpTitle));
    Dress(*this);
    auto* const lines = Make<QVBoxLayout>(this);
    lines->setContentsMargins(2 * Grid, 2 * Grid, 2 * Grid, 2 * Grid);
    lines->setSpacing(Grid);
    auto* const row = Make<QHBoxLayout>();
    auto* const back = Make<QPushButton>(say(Key::HelpBack));
    back->setEnabled(false);
    back->setAutoDefault(false);
    connect(Page, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    connect(back, &QPushButton::clicked, Page, &QTextBrowser::backward);
    row->addWidget(back);
    row->addStretch(1);
    Missing->hide();
    row->addWidget(Missing);
    Wanted->setPlaceholderText(say(Key::HelpSearch));
    Wanted->setAccessibleName(say(Key::HelpSearch));
    Wanted->setMinimumWidth(28 * Grid);
    connect(Wanted, &QLineEdit::returnPressed, this, [this] { Find(); });
    connect(Wanted, &QLineEdit::textEdited, Missing, &QLabel::hide);
    row->addWidget(Wanted);
    lines->addLayout(row);
    Page->setAccessibleName(windowTitle());
    // The pages have no anchors of their own: a heading is found by its words.
    connect(Page, &QTextBrowser::sourceChanged, this,
            [this](const QUrl& url) { GoToHeading(url.fragment()); });
    Page->setSource(QUrl::fromLocalFile(manual));
    lines->addWidget(Page, 1);
    resize(100 * Grid, 80 * Grid);
    Page->setFocus();
}

void HelpWindow::BeginSearch() {
    Wanted->setFocus();
    Wanted->selectAll();
}

/// From where the last one was found; after the end of the page from its beginning.
void HelpWindow::Find() {
    if (Wanted->text().isEmpty()) return;
    bool found = Page->find(Wanted->text());
    if (!found) {
        Page->moveCursor(QTextCursor::Start);
        found = Page->find(Wanted->text());
    }
    Missing->setVisible(!found);
}

void HelpWindow::GoToHeading(const QString& anchor) {
    if (anchor.isEmpty()) return;
    const QString words = QString(anchor).replace('-', ' ');
    for (QTextBlock block = Page->document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) continue;
        if (block.text().compare(words, Qt::CaseInsensitive) != 0) continue;
        Page->moveCursor(QTextCursor::End);  // so that the heading comes to the top
        QTextCursor cursor(block);
        Page->setTextCursor(cursor);
        return;
    }
}

}  // namespace Corvetape
