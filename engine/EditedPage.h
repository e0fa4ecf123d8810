// The engine's page for a local file that is edited: it shows what the program asks for and nothing else, opens no
// windows, and neither a script nor a hand gets it to leave, to ask, to read the user's files or to start programs.
// docs/engine.md has the whole list.
#pragma once

#include <QUrl>
#include <QWebEnginePage>

class EditedPage : public QWebEnginePage {
 public:
  EditedPage(QWebEngineProfile* profile, QObject* parent);

  // The only ways by which another document comes into the main frame.
  void Show(const QUrl& url);
  void ShowHtml(const QString& html, const QUrl& base);

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
  QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
  QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }
  void javaScriptAlert(const QUrl&, const QString&) override {}
  // Also asked when a page wants to be asked before it is left, which is so only while the program leaves it.
  bool javaScriptConfirm(const QUrl&, const QString&) override { return isLeaving_; }
  bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override { return false; }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {}

 private:
  void DenyRequests();
  bool IsForFrames(const QUrl& url) const;

  QUrl expected_;  // the program's own navigation, until the engine has asked for it
  bool isHtmlExpected_ = false;
  bool isLeaving_ = false;  // until the page before has let go
  QUrl shown_;
};
