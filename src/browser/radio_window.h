#pragma once

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QWebEngineView>

#include "browser/radio_page.h"
#include "browser/recorder_link.h"

namespace Corvetape {

/// The window "Radio": one page, and what is needed to get along with it. What happens in it is reported to
/// the recorder; closing it ends the program.
class RadioWindow : public QMainWindow {
    Q_OBJECT

 public:
    /// Both outlive it.
    RadioWindow(RecorderLink& recorder, RadioProfile& profile);

    void Navigate(const QString& url);

    /// Evaluates a script in the page and sends its value.
    void Evaluate(int id, const QString& script);

    void ShowCaptions(const QJsonObject& captions);

 protected:
    void closeEvent(QCloseEvent* event) override;

 private:
    void MakeTools();
    void MakeCrashLine();
    void FollowPage();
    void ReportPage();
    void ReportEnd();
    void ShowCrash(QWebEnginePage::RenderProcessTerminationStatus status);

    RecorderLink& Recorder;
    RadioPage Page;
    QWebEngineView View;
    QLabel Address;
    QWidget CrashLine;
    QLabel CrashText;
    QAction Again;  ///< loads a page anew that has crashed
};

}  // namespace Corvetape
