#include "browser/radio_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QJsonValue>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "browser/make.h"
#include "platform/browser_protocol.h"

namespace Corvetape {

namespace {

constexpr int Margin = 8;
constexpr int WholeProgress = 100;
constexpr QSize UsualSize(960, 640);

QJsonObject Line(const char* kind) {
    return {{BrowserProtocol::Kind, kind}};
}

QString Cut(const QString& text) {
    return text.left(BrowserProtocol::LongestText);
}

void Caption(QAction* action, const QJsonValue& text) {
    if (!text.toString().isEmpty()) action->setText(text.toString());
}

}  // namespace

RadioWindow::RadioWindow(RecorderLink& recorder, RadioProfile& profile) : Recorder(recorder), Page(profile) {
    setWindowTitle("Radio");
    resize(UsualSize);
    View.setPage(&Page);
    MakeTools();
    MakeCrashLine();
    auto* const middle = MakeFor<QWidget>(this);
    auto* const column = MakeFor<QVBoxLayout>(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(&CrashLine);
    column->addWidget(&View, 1);
    setCentralWidget(middle);
    FollowPage();
}

void RadioWindow::MakeTools() {
    QToolBar* const tools = addToolBar("Radio");
    tools->setMovable(false);
    tools->setContextMenuPolicy(Qt::PreventContextMenu);
    const std::pair<QWebEnginePage::WebAction, const char*> buttons[] = {
        {QWebEnginePage::Back, ":/icons/back.svg"},
        {QWebEnginePage::Forward, ":/icons/forward.svg"},
        {QWebEnginePage::Reload, ":/icons/reload.svg"},
        {QWebEnginePage::Stop, ":/icons/stop.svg"}};
    for (const auto& [kind, picture] : buttons) {
        QAction* const action = Page.action(kind);
        action->setIcon(QIcon(picture));
        tools->addAction(action);
    }
    Address.setTextFormat(Qt::PlainText);
    Address.setTextInteractionFlags(Qt::TextSelectableByMouse);
    Address.setMargin(Margin);
    Address.setMinimumWidth(1);  // a long address does not widen the window
    tools->addWidget(&Address);
}

void RadioWindow::MakeCrashLine() {
    auto* const row = MakeFor<QHBoxLayout>(&CrashLine);
    auto* const button = MakeFor<QToolButton>(&CrashLine);
    button->setDefaultAction(&Again);
    Again.setIcon(QIcon(":/icons/reload.svg"));
    Again.setText("Reload");
    CrashText.setText("The page has crashed.");
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    row->addWidget(&CrashText);
    row->addWidget(button);
    row->addStretch();
    CrashLine.hide();
    QObject::connect(&Again, &QAction::triggered, this,
                     [this] { Page.triggerAction(QWebEnginePage::Reload); });
}

void RadioWindow::FollowPage() {
    QObject::connect(&Page, &QWebEnginePage::titleChanged, this, &RadioWindow::ReportPage);
    QObject::connect(&Page, &QWebEnginePage::urlChanged, this, &RadioWindow::ReportPage);
    QObject::connect(&Page, &QWebEnginePage::loadStarted, this, [this] {
        CrashLine.hide();
        QJsonObject status = Line(BrowserProtocol::Status);
        status[BrowserProtocol::Text] = Cut(Page.requestedUrl().toDisplayString());
        Recorder.Send(status);
    });
    QObject::connect(&Page, &QWebEnginePage::loadProgress, this, [this](int percent) {
        QJsonObject progress = Line(BrowserProtocol::Progress);
        progress[BrowserProtocol::Value] = percent;
        progress[BrowserProtocol::Maximum] = WholeProgress;
        Recorder.Send(progress);
    });
    QObject::connect(&Page, &QWebEnginePage::loadFinished, this, &RadioWindow::ReportEnd);
    QObject::connect(&Page, &QWebEnginePage::renderProcessTerminated, this, &RadioWindow::ShowCrash);
}

void RadioWindow::ReportPage() {
    const QString title = Page.title();
    setWindowTitle(title.isEmpty() ? QString("Radio") : Cut(title).replace("[*]", "[*][*]") + " - Radio");
    Address.setText(Page.url().toDisplayString());
    QJsonObject page = Line(BrowserProtocol::Page);
    page[BrowserProtocol::Url] = Cut(Page.url().toString());
    page[BrowserProtocol::Title] = Cut(title);
    Recorder.Send(page);
}

void RadioWindow::ReportEnd() {
    ReportPage();
    QJsonObject progress = Line(BrowserProtocol::Progress);
    progress[BrowserProtocol::Value] = -1;
    progress[BrowserProtocol::Maximum] = WholeProgress;
    Recorder.Send(progress);
    Recorder.Send(Line(BrowserProtocol::Loaded));
}

void RadioWindow::ShowCrash(QWebEnginePage::RenderProcessTerminationStatus status) {
    if (status == QWebEnginePage::NormalTerminationStatus) return;
    CrashLine.show();
    Recorder.Send(Line(BrowserProtocol::Crashed));
}

void RadioWindow::Navigate(const QString& url) {
    Page.setUrl(QUrl(url, QUrl::TolerantMode));
    show();
    raise();
}

void RadioWindow::Evaluate(int id, const QString& script) {
    // In the world of the page's own scripts, as in other browsers: profiles name what they have made.
    Page.runJavaScript(script, 0, [this, id](const QVariant& value) {
        QJsonObject answer = Line(BrowserProtocol::Answer);
        answer[BrowserProtocol::Id] = id;
        if (value.isValid()) answer[BrowserProtocol::Value] = QJsonValue::fromVariant(value);
        Recorder.Send(answer);
    });
}

void RadioWindow::ShowCaptions(const QJsonObject& captions) {
    Caption(Page.action(QWebEnginePage::Back), captions[BrowserProtocol::Back]);
    Caption(Page.action(QWebEnginePage::Forward), captions[BrowserProtocol::Forward]);
    Caption(Page.action(QWebEnginePage::Reload), captions[BrowserProtocol::Reload]);
    Caption(Page.action(QWebEnginePage::Stop), captions[BrowserProtocol::Stop]);
    Caption(&Again, captions[BrowserProtocol::Reload]);
    const QString crashed = captions[BrowserProtocol::CrashedCaption].toString();
    if (!crashed.isEmpty()) CrashText.setText(crashed);
}

void RadioWindow::closeEvent(QCloseEvent* event) {
    Recorder.Send(Line(BrowserProtocol::Closed));
    Recorder.Flush();
    event->accept();
}

}  // namespace Corvetape
