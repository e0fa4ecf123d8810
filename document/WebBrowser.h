// The browser component that shows a page and exposes its document.
// Two implementations stand behind this interface: HostedWebBrowser, the real engine, and HeadlessWebBrowser, which
// needs no display and answers at once. Both have the same document model.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

class HTMLDocument;
class QWidget;

class WebBrowser : public QObject {
  Q_OBJECT

 public:
  // Flags of Navigate; the program always passes all three.
  enum Flag { NoHistory = 2, NoReadFromCache = 4, NoWriteToCache = 8 };

  using QObject::QObject;

  // Whether Navigate can show that file: it is a plain one, and reading it works. A folder, or a file on a medium that
  // fails, would come out as a page that isn't the user's, and be saved over what is there.
  static bool CanBeShown(const QString& path);

  // Loads a file by its path, or "about:blank". What can't be shown gives no document and an empty view. A second call
  // before the first page is there replaces it.
  virtual void Navigate(const QString& url, int flags) = 0;

  // The loaded page; null before the first one and after a load that failed. It is replaced at each document complete,
  // and valid until the next Navigate's page is there.
  virtual HTMLDocument* Document() const = 0;

  // While true, nothing is fetched but local files and what the page itself holds.
  virtual bool Offline() const = 0;
  virtual void SetOffline(bool offline) = 0;

  // Something lies over the view's lower edge, that many pixels high: text that is being typed is kept above it.
  virtual void SetCovered(int pixels) {}

  // What shows the page; null for a component without a display.
  virtual QWidget* Widget() { return nullptr; }
  virtual void FocusPage() {}

 signals:
  void BeforeNavigate2(const QString& url);
  // Once for each navigation of the main frame: the document is complete, or there is none.
  void DocumentComplete();
  // The same document is in view again after its renderer had died; Widget()'s inside is a new one.
  void Recovered();
};

using WebBrowserFactory = std::function<std::unique_ptr<WebBrowser>(QWidget* parent)>;
