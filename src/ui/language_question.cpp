#include "ui/language_question.h"

#include <QComboBox>
#include <QIcon>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/binders.h"
#include "ui/look.h"
#include "ui/make.h"

namespace Corvetape {

namespace {

/// A question that its form ends, and the user only if there is an answer.
class LanguageBox : public QDialog {
 public:
    LanguageBox(dlgLanguage& form, LanguageChoice& choice) : Choice(choice) {
        setObjectName(QString::fromStdString(form.Name()));
        setWindowTitle(QString::fromStdString(form.Caption()));
        setWindowIcon(QIcon(":/ui/icons/corvetape.svg"));
        Dress(*this);
        auto* const lines = Make<QVBoxLayout>(this);
        lines->setContentsMargins(3 * Grid, 3 * Grid, 3 * Grid, 3 * Grid);
        lines->setSpacing(2 * Grid);
        QLabel* const words = BoundTo(form.Label1);
        lines->addWidget(words);
        QComboBox* const languages = BoundTo(form.cboLanguage);
        languages->setAccessibleName(words->text());
        lines->addWidget(languages);
        QPushButton* const accept = BoundTo(form.cmdOK);
        accept->setProperty("main", true);
        accept->setDefault(true);
        lines->addWidget(accept, 0, Qt::AlignRight);
        form.Changed.Connect([kept = QPointer<LanguageBox>(this), &form] {
            if (kept && !form.Visible()) kept->accept();
        });
        languages->setFocus();
    }

    void reject() override {
        if (Choice.MayClose()) QDialog::reject();
    }

 private:
    LanguageChoice& Choice;
};

}  // namespace

void AskForLanguage(dlgLanguage& form, LanguageChoice& choice) {
    form.Visible(true);
    LanguageBox(form, choice).exec();
    form.Visible(false);
}

}  // namespace Corvetape
