// The browser component over Qt WebEngine.
// The page is a plain page in browse mode; a bridge script in an isolated world reports what it is and what happens in
// it. The document model is built from that report, every change to it is sent back in numbered batches, and what the
// page's own scripts change is brought into it. A renderer that dies loses nothing: the model is written into a fresh
// one.
#pragma once

#include <QJsonArray>
#include <QPoint>
#include <QSet>
#include <QString>
#include <functional>
#include <memory>

#include "BridgeInbox.h"
#include "BridgeMessages.h"
#include "BridgeOutbox.h"
#include "LivePage.h"
#include "PageInput.h"
#include "RendererWatch.h"
#include "WebBrowser.h"

class BridgePort;
class EditedPage;
class HTMLDocument;
class OfflineInterceptor;
class QWebChannel;
class QWebEnginePage;
class QWebEngineProfile;
class QWebEngineView;

class HostedWebBrowser : public WebBrowser, private LivePage {
  Q_OBJECT

 public:
  explicit HostedWebBrowser(QWidget* parent);
  ~HostedWebBrowser() override;

  // Has the engine begin to load the empty page, for which the page view asks first of all. Before the event loop turns
  // again somebody has to navigate.
  void Begin();
  // Makes the object and its widget those of `parent`.
  void MoveInto(QWidget* parent);

  void Navigate(const QString& url, int flags) override;
  HTMLDocument* Document() const override { return document_.get(); }
  bool Offline() const override;
  void SetOffline(bool offline) override;
  void SetCovered(int pixels) override;
  QWidget* Widget() override;
  void FocusPage() override;

  // For tests of the agreement between model and live page. Quiet: nothing is under way in either direction.
  bool IsQuiet() const;
  // Asks for the live page's whole tree in the form of TreeCodec.h.
  void TellTree(std::function<void(const QJsonArray&)> answer);
  // Runs a script as the page's own.
  void RunPageScript(const QString& script);
  QWebEnginePage* enginePage() const;

 private:
  enum class Load { None, Pending, Recovering, Done };

  // The page that was asked for last.
  struct Navigation {
    int number = 0;
    QString path;             // or "about:blank"
    bool isRepeated = false;  // another page of that path may still tell of itself first
    bool isAskedAgain = false;
    double began = 0;  // when the engine was told to load, in milliseconds of the epoch
  };

  // What is known of the page in view.
  struct PageState {
    QString token;  // of its bridge, which alone is listened to
    QString address;
    QPoint scroll;
    int adopted = 0;  // the batch that stands for the model as a whole, which a page that was brought back got
    bool takesKeys = false;
    NodeId outlined = 0;          // the element that is
    bool isFrameFocused = false;  // keys go into a frame of it
    // The page counts what its user selects, the program what it selects itself; who was last is told by both.
    int selectionNumber = 0;     // of the program's last one
    int userSelections = 0;      // that have been heard of,
    int userSelectionsThen = 0;  // and had been when the program selected last
  };

  // What the model tells.
  void Changed(const TreeStep& step) override;
  void ShowSelection(const LiveRange* range) override;
  void TakesKeys(bool on) override;
  void Outline(const Node* element) override;
  void Measure(const BoundaryPoint& point, Answer answer) override;

  // What the page tells.
  void Receive(const QJsonArray& message);
  void Hear(const std::monostate&) {}
  void Hear(const Bridge::TreeMessage&) {}  // shown, or passed over
  void Hear(const Bridge::EventMessage& message);
  void Hear(const Bridge::SelectionMessage& message);
  void Hear(const Bridge::ChangesMessage& message);
  void Hear(const Bridge::ToldMessage& message);
  void Hear(const Bridge::HandledMessage& message);
  void Hear(const Bridge::ScrollMessage& message);
  void Hear(const Bridge::FocusMessage& message);
  void HearSelection(const Bridge::Selection& selection, int applied);

  void SetUpPage();
  void RenewPage();
  void LoadWanted();
  void LoadAgainLater();
  bool IsWanted(const Bridge::TreeMessage& message);
  bool IsAddressWanted(const QString& address) const;
  void Show(const Bridge::TreeMessage& message, const QString& token);
  void LoadFinished(bool good);
  void ScheduleFailLoad();
  void RendererDied();
  void Recover();
  void Adopt();
  void GoOnOnceLaidOut(const QString& token, int tries);
  void FailLoad();

  // A key that is answered without the page's report.
  bool AnswerKey(int keyCode, bool shift);

  BridgeInbox inbox() const;
  QJsonArray SelectMessage(const LiveRange* range);

  QWebEngineView* view_;
  QWebEngineProfile* profile_;
  EditedPage* page_ = nullptr;
  QWebChannel* channel_ = nullptr;
  BridgePort* port_ = nullptr;
  OfflineInterceptor* interceptor_;
  PageInput input_;
  RendererWatch renderer_;
  BridgeOutbox outbox_;

  std::unique_ptr<HTMLDocument> document_;
  Load load_ = Load::None;
  Navigation navigation_;
  QSet<QString> unheard_;  // paths that the engine was told to load since a page has told of itself
  bool hasBegun_ = false;  // the engine is on its way to the empty page, for which nobody has asked yet
  PageState shown_;
  int covered_ = 0;      // of the view's lower edge, in pixels
  bool isDead_ = false;  // the page in view has lost its renderer
};
