#pragma once

#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestInterceptor>

namespace Corvetape {

/// Lets pages load from the web and from the program itself, and from nowhere else: no files of this
/// computer.
class WebOnly : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT

 public:
    void interceptRequest(QWebEngineUrlRequestInfo& request) override;
};

/// What all pages share: nothing of it is kept on the disk, and nothing is downloaded.
class RadioProfile : public QWebEngineProfile {
    Q_OBJECT

 public:
    RadioProfile();
    ~RadioProfile() override;
    RadioProfile(const RadioProfile&) = delete;
    RadioProfile& operator=(const RadioProfile&) = delete;

 signals:
    /// A page has offered a file for download and did not get it stored.
    void DownloadRefused();

 private:
    WebOnly Gate;
};

/// The one page. It gets no permission, no file to upload, no box and no second window: what would open in
/// one opens in this one, if the user asked for it. Boxes of a page would hold up its loading and the
/// window's close, again and again if the page wants it so.
class RadioPage : public QWebEnginePage {
    Q_OBJECT

 public:
    /// `profile` outlives it.
    explicit RadioPage(RadioProfile& profile);

 protected:
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& old,
                            const QStringList& types) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& usual,
                          QString* answer) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;
};

}  // namespace Corvetape
