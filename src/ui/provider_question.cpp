#include "ui/provider_question.h"

#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "forms/dlg_provider.h"
#include "ui/binders.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/mnemonics.h"

namespace Corvetape {

void AskOver(QWidget* window, dlgProvider& dialog) {
    QDialog box(window);
    box.setObjectName(QString::fromStdString(dialog.Name()));
    box.setWindowTitle(QString::fromStdString(dialog.Caption()));
    Dress(box);
    auto* const lines = Make<QVBoxLayout>(&box);
    lines->setContentsMargins(3 * Grid, 3 * Grid, 3 * Grid, 3 * Grid);
    lines->setSpacing(2 * Grid);
    QLabel* const info = BoundTo(dialog.lblInfo);
    info->setWordWrap(true);
    info->setMinimumWidth(50 * Grid);
    lines->addWidget(info);
    auto* const choice = Make<QHBoxLayout>();
    choice->addWidget(BoundTo(dialog.Label1));
    choice->addWidget(BoundTo(dialog.cboProvider), 1);
    lines->addLayout(choice);
    auto* const buttons = Make<QHBoxLayout>();
    QPushButton* const accept = BoundTo(dialog.cmdOK);
    accept->setProperty("main", true);
    accept->setDefault(true);
    buttons->addStretch(1);
    buttons->addWidget(accept);
    buttons->addWidget(BoundTo(dialog.cmdCancel));
    lines->addLayout(buttons);
    dialog.Changed.Connect([&box, &dialog] {
        if (!dialog.Visible()) box.accept();
    });
    Make<Mnemonics>(&box);
    box.exec();
    dialog.Visible(false);  // closed by its frame, which answers nothing
}

}  // namespace Corvetape
