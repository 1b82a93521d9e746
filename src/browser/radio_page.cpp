#include "browser/radio_page.h"

#include <QWebEngineDownloadRequest>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineSettings>
#include <algorithm>
#include <array>

namespace Corvetape {

namespace {

constexpr std::array Schemes = {"http", "https", "ws", "wss", "data", "blob", "about", "corvetape"};

void Restrict(QWebEngineSettings& settings) {
    for (const auto wanted :
         {QWebEngineSettings::JavascriptCanOpenWindows, QWebEngineSettings::JavascriptCanAccessClipboard,
          QWebEngineSettings::JavascriptCanPaste, QWebEngineSettings::LocalContentCanAccessRemoteUrls,
          QWebEngineSettings::LocalContentCanAccessFileUrls, QWebEngineSettings::PluginsEnabled,
          QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::ScreenCaptureEnabled,
          QWebEngineSettings::FullScreenSupportEnabled, QWebEngineSettings::HyperlinkAuditingEnabled,
          QWebEngineSettings::AllowRunningInsecureContent,
          QWebEngineSettings::AllowWindowActivationFromJavaScript, QWebEngineSettings::NavigateOnDropEnabled,
          QWebEngineSettings::DnsPrefetchEnabled,
          // A radio that was launched is to play.
          QWebEngineSettings::PlaybackRequiresUserGesture}) {
        settings.setAttribute(wanted, false);
    }
    settings.setAttribute(QWebEngineSettings::WebRTCPublicInterfacesOnly, true);
    // No page starts another program.
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

}  // namespace

void WebOnly::interceptRequest(QWebEngineUrlRequestInfo& request) {
    const QString scheme = request.requestUrl().scheme();
    const bool known =
        std::ranges::any_of(Schemes, [&](const char* each) { return scheme == QLatin1String(each); });
    if (!known) request.block(true);
}

RadioProfile::RadioProfile() {
    setUrlRequestInterceptor(&Gate);
    Restrict(*settings());
    QObject::connect(this, &QWebEngineProfile::downloadRequested, this,
                     [this](QWebEngineDownloadRequest* download) {
                         download->cancel();
                         emit DownloadRefused();
                     });
}

RadioProfile::~RadioProfile() = default;

RadioPage::RadioPage(RadioProfile& profile) : QWebEnginePage(&profile) {
    QObject::connect(this, &QWebEnginePage::featurePermissionRequested, this,
                     [this](const QUrl& origin, Feature feature) {
                         setFeaturePermission(origin, feature, PermissionDeniedByUser);
                     });
    QObject::connect(this, &QWebEnginePage::quotaRequested, this,
                     [](QWebEngineQuotaRequest request) { request.reject(); });
    QObject::connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
                     [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
    QObject::connect(this, &QWebEnginePage::fileSystemAccessRequested, this,
                     [](QWebEngineFileSystemAccessRequest request) { request.reject(); });
    QObject::connect(this, &QWebEnginePage::newWindowRequested, this,
                     [this](QWebEngineNewWindowRequest& request) {
                         if (request.isUserInitiated()) setUrl(request.requestedUrl());
                     });
}

QStringList RadioPage::chooseFiles(FileSelectionMode /*mode*/, const QStringList& /*old*/,
                                   const QStringList& /*types*/) {
    return {};
}

void RadioPage::javaScriptAlert(const QUrl& /*origin*/, const QString& /*message*/) {}

bool RadioPage::javaScriptConfirm(const QUrl& /*origin*/, const QString& /*message*/) {
    return false;
}

bool RadioPage::javaScriptPrompt(const QUrl& /*origin*/, const QString& /*message*/, const QString& /*usual*/,
                                 QString* /*answer*/) {
    return false;
}

void RadioPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/, const QString& /*message*/,
                                         int /*line*/, const QString& /*source*/) {
    // Nobody reads what pages say to their authors.
}

}  // namespace Corvetape
