// A hosted page in a shown window, with what a test does to it: loads, real mouse and key events, waiting for the
// engine's answers with a bound, and the comparison of model and live page.
#pragma once

#include <QPoint>
#include <QString>
#include <QTemporaryDir>
#include <QWidget>
#include <functional>
#include <memory>

#include "HTMLDocument.h"
#include "HostedWebBrowser.h"
#include "TestPlatform.h"
#include "WBUC.h"

// The live page's tree, written by the model's own serialiser; waits until all that is under way has arrived.
QString LiveHtmlOf(HostedWebBrowser& browser);

class HostedPage {
 public:
  static constexpr int patienceMs = 180000;

  HostedPage() : HostedPage(Bare) {}
  ~HostedPage();

  HostedWebBrowser& browser() { return *browser_; }
  HTMLDocument& document() { return *browser_->Document(); }
  QWidget& window() { return window_; }

  // A page file in a scratch folder.
  QString File(const QString& name, const QByteArray& bytes);
  QString Folder() const { return scratch_.path(); }
  // Loads a file and waits; false when no document came.
  bool Load(const QString& path);
  bool LoadHtml(const QByteArray& html) { return Load(File(QStringLiteral("page.html"), html)); }

  static bool WaitFor(const std::function<bool()>& done, int ms = patienceMs);

  // Runs a script of the page's own and waits until it has run.
  void Script(const QString& script);
  QString ScriptText(const QString& expression);
  // The renderer hears nothing for that long: what the user does and what the program does waits for it together.
  void KeepBusy(int ms);

  QString LiveHtml();
  QString ModelHtml();

  // Kills the renderer and waits until the page is back.
  bool KillRenderer();

  // What takes the engine's input.
  QWidget* Input();
  // Middle left of the character at `offset` of a text, as the engine lays it out.
  QPoint PointOf(const QString& jsNode, int offset);

 protected:
  // No user is as fast as a test: a fresh renderer may not have heard of the window's size yet.
  void AwaitSize();

  enum Kind { Bare, InPageView };
  // The page alone, or with the page view around it that edits it.
  explicit HostedPage(Kind kind);
  std::unique_ptr<TestProgram> program_;
  std::unique_ptr<WBUC> view_;

 private:
  QTemporaryDir scratch_;
  QWidget window_;
  HostedWebBrowser* browser_ = nullptr;
};
