#include "EditedPage.h"

#include <QDir>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineHistory>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <utility>

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
#include <QWebEngineDesktopMediaRequest>
#include <QWebEnginePermission>
#endif

namespace {

struct Setting {
  QWebEngineSettings::WebAttribute attribute;
  bool on;
};
constexpr Setting settingsOfPage[] = {
    {QWebEngineSettings::ErrorPageEnabled, false},
    {QWebEngineSettings::PdfViewerEnabled, false},
    {QWebEngineSettings::PluginsEnabled, false},
    {QWebEngineSettings::AutoLoadIconsForPage, false},
    {QWebEngineSettings::FocusOnNavigationEnabled, false},
    {QWebEngineSettings::NavigateOnDropEnabled, false},
    {QWebEngineSettings::JavascriptCanOpenWindows, false},
    {QWebEngineSettings::JavascriptCanAccessClipboard, false},
    {QWebEngineSettings::JavascriptCanPaste, false},
    {QWebEngineSettings::LocalContentCanAccessRemoteUrls, false},
    // Without it a page shows no pictures; scripts are kept from files by the interceptor and by the rule for frames.
    {QWebEngineSettings::LocalContentCanAccessFileUrls, true},
    {QWebEngineSettings::LocalStorageEnabled, false},
    {QWebEngineSettings::FullScreenSupportEnabled, false},
    {QWebEngineSettings::ScreenCaptureEnabled, false},
    {QWebEngineSettings::WebGLEnabled, false},
    {QWebEngineSettings::HyperlinkAuditingEnabled, false},
    {QWebEngineSettings::DnsPrefetchEnabled, false},
    {QWebEngineSettings::AllowRunningInsecureContent, false},
    {QWebEngineSettings::AllowGeolocationOnInsecureOrigins, false},
    {QWebEngineSettings::AllowWindowActivationFromJavaScript, false},
    {QWebEngineSettings::PlaybackRequiresUserGesture, true},
    {QWebEngineSettings::WebRTCPublicInterfacesOnly, true},
};

}  // namespace

EditedPage::EditedPage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
  for (const Setting& one : settingsOfPage) settings()->setAttribute(one.attribute, one.on);
  settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
  setAudioMuted(true);
  DenyRequests();
  connect(this, &QWebEnginePage::loadFinished, this, [this] {
    isLeaving_ = false;  // of a load that ended before it was asked for
    history()->clear();
    setZoomFactor(1);
  });
}

void EditedPage::DenyRequests() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
  connect(this, &QWebEnginePage::permissionRequested, this, [](QWebEnginePermission permission) { permission.deny(); });
  connect(this, &QWebEnginePage::desktopMediaRequested, this,
          [](const QWebEngineDesktopMediaRequest& request) { request.cancel(); });
#else
  connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl& origin, Feature feature) {
    setFeaturePermission(origin, feature, PermissionDeniedByUser);
  });
#endif
  connect(this, &QWebEnginePage::fullScreenRequested, this,
          [](QWebEngineFullScreenRequest request) { request.reject(); });
}

// Frames show what lies with the page. A page in a frame of itself would be in it again, and again; and what else lies
// on the disk is none of a script's business, which may read in the frames of its page.
bool EditedPage::IsForFrames(const QUrl& url) const {
  if (!url.isLocalFile()) return true;
  const QString folder = shown_.adjusted(QUrl::RemoveFilename | QUrl::RemoveFragment | QUrl::RemoveQuery).toLocalFile();
  const QString file = QDir::cleanPath(url.toLocalFile());
  return file.startsWith(folder) && file != QDir::cleanPath(shown_.toLocalFile());
}

void EditedPage::Show(const QUrl& url) {
  expected_ = url;
  isHtmlExpected_ = false;
  isLeaving_ = true;
  load(url);
}

void EditedPage::ShowHtml(const QString& html, const QUrl& base) {
  expected_ = base;
  isHtmlExpected_ = true;
  isLeaving_ = true;
  setHtml(html, base);
}

bool EditedPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool isMainFrame) {
  if (!isMainFrame) return IsForFrames(url);
  const bool isOwn = isHtmlExpected_ ? url.scheme() == u"data" : url == expected_ && !expected_.isEmpty();
  if (!isOwn) return false;
  isHtmlExpected_ = isLeaving_ = false;
  shown_ = std::exchange(expected_, {});
  return true;
}
