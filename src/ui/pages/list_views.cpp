#include "ui/pages/list_views.h"

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/text/like.h"
#include "core/version.h"
#include "ui/binding.h"
#include "ui/form_page.h"
#include "ui/list_drops.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/shown_text.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

QWidget* Row(std::initializer_list<QWidget*> widgets) {
    auto* const whole = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(whole);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Grid);
    for (QWidget* widget : widgets) row->addWidget(widget);
    row->addStretch(1);
    return whole;
}

/// What a list says while it has no entries.
class EmptyHint : public QLabel {
 public:
    EmptyHint(QListView* list, const QString& text) : QLabel(text, list->viewport()), List(*list) {
        setObjectName("emptyHint");
        setProperty("dim", true);
        setAlignment(Qt::AlignCenter);
        setWordWrap(true);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        list->viewport()->installEventFilter(this);
        connect(list->model(), &QAbstractItemModel::modelReset, this, [this] { Place(); });
        connect(list->model(), &QAbstractItemModel::rowsInserted, this, [this] { Place(); });
        connect(list->model(), &QAbstractItemModel::rowsRemoved, this, [this] { Place(); });
        Place();
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Resize) Place();
        return false;
    }

 private:
    void Place() {
        setGeometry(List.viewport()->rect());
        setVisible(List.model()->rowCount() == 0);
    }

    const QListView& List;
};

/// What a pattern means that looks like a slip, while it is typed.
QLabel* PatternHint(const UiParts& parts, TextBox& typed) {
    QLabel* const hint = DimText(parts.Say(Key::OpenBracket));
    hint->setObjectName(WidgetName(typed) + "_hint");
    hint->hide();
    typed.Change.Connect([kept = QPointer<QLabel>(hint), &typed] {
        if (kept) kept->setVisible(LikePattern(typed.Text()).HasOpenBracket());
    });
    return hint;
}

QWidget* WatchView(const UiParts& parts, size_t list, const char* name, const char* line) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(name), parts.Say(line));
    QListView* const entries = BoundTo(form.lstWatch[list]);
    const auto kind = static_cast<WatchListKind>(list);
    Make<ListDrops>(entries, parts.Lists, kind);
    entries->setAccessibleName(QString::fromStdString(form.lblWatch[list].Caption()));
    Make<EmptyHint>(entries, parts.Say(Key::EmptyList));
    page->AddFilling(CaptionOf(form.lblWatch[list], entries), 0);
    page->AddFilling(entries, 1);
    auto* const added = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(added);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Grid);
    QLineEdit* const text = BoundTo(form.txtWatch[list]);
    QLabel* const caption = BoundTo(form.lblNewWatch[list]);
    caption->setBuddy(text);
    row->addWidget(caption);
    row->addWidget(text, 1);
    row->addWidget(BoundTo(form.cmdAddToWatchList[list]));
    text->setAccessibleName(QString::fromStdString(form.lblNewWatch[list].Caption()));
    QObject::connect(text, &QLineEdit::returnPressed,
                     [&lists = parts.Lists, kind] { lists.EnterPressed(kind); });
    page->AddFilling(added, 0);
    page->AddFilling(PatternHint(parts, form.txtWatch[list]), 0);
    page->AddFilling(Row({BoundTo(form.cmdDeleteFromWatchList[list]), BoundTo(form.cmdEditWatchList[list])}),
                     0);
    if (list == 1) page->AddFilling(BoundTo(form.chkAutoExclude), 0);
    return page;
}

}  // namespace

QWidget* MakeLogView(const UiParts& parts) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(Key::LogName), parts.Say(Key::LogLine));
    QPlainTextEdit* const log = BoundToLines(form.txtLogFile);
    log->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    page->AddFilling(CaptionOf(form.fraLogFile, log), 0);
    page->AddFilling(log, 1);
    page->AddFilling(Row({BoundTo(form.cmdOpenLogFile), BoundTo(form.cmdDeleteLogFiles)}), 0);
    return page;
}

QWidget* MakeIncludeView(const UiParts& parts) {
    return WatchView(parts, 0, Key::IncludeName, Key::IncludeLine);
}

QWidget* MakeExcludeView(const UiParts& parts) {
    return WatchView(parts, 1, Key::ExcludeName, Key::ExcludeLine);
}

QWidget* MakeAboutView(const UiParts& parts) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(Key::AboutName), parts.Say(Key::AboutLine));
    Card& card = page->AddCard({});
    auto* const logo = Make<QLabel>();
    logo->setObjectName("picLogo");
    logo->setPixmap(QIcon(":/ui/icons/corvetape.svg").pixmap(12 * Grid, 12 * Grid));
    auto* const name = Make<QLabel>(ProgramTitle);
    name->setFont(ScaledFont(2, QFont::Bold));
    QLabel* const version = BoundTo(form.lblVersion);
    version->setProperty("dim", true);
    auto* const names = Make<QWidget>();
    auto* const lines = Make<QVBoxLayout>(names);
    lines->setContentsMargins(Grid, 0, 0, 0);
    lines->setSpacing(0);
    lines->addStretch(1);
    lines->addWidget(name);
    lines->addWidget(version);
    lines->addStretch(1);
    card.AddRow({logo, names});
    card.AddRow({BoundToLink(form.lblHomePage), BoundToLink(form.lblMailTo), BoundToLink(form.txtlblF1)},
                3 * Grid);
    auto* const later = Make<QLabel>(parts.Say(Key::AssistantLaterLine));
    later->setObjectName("assistantLater");
    later->setProperty("dim", true);
    card.AddWidget(later);
    card.AddRow({BoundTo(form.cmdNews), NotBuilt(BoundTo(form.cmdCheckUpdateNow), parts.Say)});
    form.txtlblF1.Click.Connect([&keys = parts.Keys, &tabs = form.tbsMain] {
        keys.Press(HelpKey::F12, false, tabs.Selected() != nullptr ? tabs.Selected()->Tag : "");
    });
    page->Finish();
    return page;
}

}  // namespace Corvetape
