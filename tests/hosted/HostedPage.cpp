#include "HostedPage.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <csignal>

#include "Serializer.h"
#include "TreeCodec.h"

HostedPage::HostedPage(Kind kind) {
  window_.resize(800, 600);
  if (kind == Bare) {
    browser_ = new HostedWebBrowser(&window_);
    browser_->Widget()->setGeometry(0, 0, 800, 600);
  } else {
    program_ = std::make_unique<TestProgram>();
    const WebBrowserFactory factory = [this](QWidget* parent) {
      auto made = std::make_unique<HostedWebBrowser>(parent);
      browser_ = made.get();
      return made;
    };
    view_ = std::make_unique<WBUC>(program_->program, factory, &window_);
    view_->setGeometry(0, 0, 800, 600);
  }
  window_.show();
}

HostedPage::~HostedPage() {
  if (!view_) delete browser_;
  view_.reset();  // before the window that it stands in
}

QString HostedPage::File(const QString& name, const QByteArray& bytes) {
  QFile file(scratch_.filePath(name));
  if (!file.open(QIODevice::WriteOnly)) qFatal("no scratch file");
  file.write(bytes);
  return file.fileName();
}

bool HostedPage::WaitFor(const std::function<bool()>& done, int ms) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < ms) {
    QTimer wake;  // so that the wait ends even when nothing happens
    wake.setSingleShot(true);
    wake.start(20);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return done();
}

bool HostedPage::Load(const QString& path) {
  bool complete = false;
  const auto connection =
      QObject::connect(browser_, &WebBrowser::DocumentComplete, browser_, [&complete] { complete = true; });
  browser_->Navigate(path, 14);
  WaitFor([&] { return complete; });
  QObject::disconnect(connection);
  if (!complete || !browser_->Document()) return false;
  AwaitSize();
  return true;
}

void HostedPage::AwaitSize() {
  WaitFor([&] { return ScriptText(QStringLiteral("String(innerHeight)")).toDouble() >= Input()->height() - 3; }, 2000);
}

void HostedPage::Script(const QString& script) {
  bool ran = false;
  browser_->enginePage()->runJavaScript(script + QStringLiteral("\n;0"), [&ran](const QVariant&) { ran = true; });
  WaitFor([&] { return ran; });
}

void HostedPage::KeepBusy(int ms) {
  browser_->RunPageScript(
      QStringLiteral("(() => { const end = performance.now() + %1; while (performance.now() < end); })()").arg(ms));
}

QString HostedPage::ScriptText(const QString& expression) {
  QString text;
  bool ran = false;
  browser_->enginePage()->runJavaScript(expression, [&](const QVariant& value) {
    text = value.toString();
    ran = true;
  });
  WaitFor([&] { return ran; });
  return text;
}

QString LiveHtmlOf(HostedWebBrowser& browser) {
  QString html;
  bool told = false;
  browser.TellTree([&](const QJsonArray& flat) {
    int from = 0;
    Node* const tree = DecodeTree(flat, from);
    for (const Node* child = tree ? tree->firstChild() : nullptr; child; child = child->next())
      if (child->IsElement()) html = OuterHtml(child, true);
    if (tree) DestroyTree(tree);
    told = true;
  });
  HostedPage::WaitFor([&] { return told; });
  return html;
}

QString HostedPage::LiveHtml() {
  return LiveHtmlOf(*browser_);
}

QString HostedPage::ModelHtml() {
  return document().documentElement().outerHTML();
}

bool HostedPage::KillRenderer() {
  bool back = false;
  const auto connection = QObject::connect(browser_, &HostedWebBrowser::Recovered, browser_, [&back] { back = true; });
  ::kill(pid_t(browser_->enginePage()->renderProcessPid()), SIGKILL);
  WaitFor([&] { return back; });
  QObject::disconnect(connection);
  return back;
}

QWidget* HostedPage::Input() {
  QWidget* const view = browser_->Widget();
  return view->focusProxy() ? view->focusProxy() : view;
}

QPoint HostedPage::PointOf(const QString& jsNode, int offset) {
  const QString answer = ScriptText(
      QStringLiteral("(() => { const r = document.createRange(); r.setStart(%1, %2); r.setEnd(%1, %2 + 1);"
                     "const b = r.getBoundingClientRect(); return [b.left + 1, b.top + b.height / 2].join(); })()")
          .arg(jsNode)
          .arg(offset));
  const QStringList parts = answer.split(u',');
  return parts.size() == 2 ? QPoint(int(parts[0].toDouble()), int(parts[1].toDouble())) : QPoint(-1, -1);
}
