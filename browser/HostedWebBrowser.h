// The browser component over Qt WebEngine.
// The page is a plain page in browse mode; a bridge script in an isolated world reports what it is and what happens in
// it. The document model is built from that report, every change to it is sent back in numbered batches, and what the
// page's own scripts change is brought into it. A renderer that dies loses nothing: the model is written into a fresh
// one.
#pragma once

#include <QElapsedTimer>
#include <QJsonArray>
#include <QPoint>
#include <QSet>
#include <QString>
#include <QTimer>
#include <deque>
#include <memory>
#include <optional>

#include "LivePage.h"
#include "PlaceHistory.h"
#include "WebBrowser.h"

class BridgePort;
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

  void Navigate(const QString& url, int flags) override;
  HTMLDocument* Document() const override { return document_.get(); }
  bool Offline() const override;
  void SetOffline(bool offline) override;
  QWidget* Widget() override;
  void FocusPage() override;

  // For tests of the agreement between model and live page. Quiet: nothing is under way in either direction.
  bool IsQuiet() const;
  // Asks for the live page's whole tree in the form of TreeCodec.h.
  void TellTree(std::function<void(const QJsonArray&)> answer);
  // Runs a script as the page's own.
  void RunPageScript(const QString& script);
  QWebEnginePage* enginePage() const { return page_; }

 private:
  enum class Load { None, Pending, Recovering, Done };

  // What the model tells.
  void Changed(const TreeStep& step) override;
  void ShowSelection(const LiveRange* range) override;
  void TakesKeys(bool on) override;
  void Measure(const BoundaryPoint& point, Answer answer) override;

  // What the page tells.
  void Receive(const QJsonArray& message);
  void ReceiveTree(const QString& token, const QJsonArray& message);
  void ReceiveChanges(const QJsonArray& message);
  void ReceiveEvent(const QJsonObject& event);
  void ReceiveSelection(const QJsonArray& selection, int applied);
  void Measured(int question, const QVariant& place);

  // Keeps from the page the release of a key that went down elsewhere, as one that picked an entry of a menu; and the
  // keys from other controls while the page has lost its widget.
  bool eventFilter(QObject* watched, QEvent* event) override;

  void SetUpPage();
  void RenewPage();
  void WidgetGoes(QWidget* widget);
  void TakeKeysBack();
  bool IsPages(const QWidget* widget) const;  // the view itself or what is in it
  void LoadWanted();
  void LoadFinished(bool good);
  void ScheduleFailLoad();
  void RendererDied();
  void Recover();
  void Adopt(const QString& token);
  void FailLoad();

  void Post(const QJsonArray& message);  // at the next flush, behind the changes so far
  void Flush(int question = 0);          // the number of the one that the last message asks, if any
  void ScheduleFlush();
  void DropQuestions();
  // Where the page's places and nodes are now; none for what the model has never heard of.
  BoundaryPoint PointOf(const QJsonArray& place) const;
  const Node* NodeOf(const QJsonArray& node) const;
  // The element under the mouse: that around the text which was hit, if it was, else the one that was named.
  const Node* TargetOf(const QJsonObject& event, const BoundaryPoint& caret) const;
  QJsonArray SelectMessage(const LiveRange* range);
  static QJsonArray Encode(const BoundaryPoint& point);

  QWebEngineView* view_;
  QWebEngineProfile* profile_;
  QWebEnginePage* page_ = nullptr;
  QWebChannel* channel_ = nullptr;
  BridgePort* port_ = nullptr;
  OfflineInterceptor* interceptor_;

  std::unique_ptr<HTMLDocument> document_;
  Load load_ = Load::None;
  int navigation_ = 0;         // number of the last one
  bool isSecondLoad_ = false;  // of one file, asked for before the page of the first was there
  double loadBegan_ = 0;       // when the engine was told to load, in milliseconds of the epoch
  QString wanted_;             // path of the pending navigation
  QString token_;              // of the page's bridge that is listened to
  QString base_;               // URL of the page in view
  QPoint scroll_;

  QJsonArray operations_;  // changes not yet posted
  QJsonArray messages_;    // not yet sent
  bool flushScheduled_ = false;
  int batch_ = 0;    // number of the last batch sent
  int heard_ = 0;    // number of the last report of foreign changes
  int adopted_ = 0;  // the one that stands for the model as a whole, which a page that was brought back got
  PlaceHistory history_;
  bool takesKeys_ = false;

  // The page counts what its user selects, the program what it selects itself; who was last is told by both.
  int selectionNumber_ = 0;     // of the program's last one
  int userSelections_ = 0;      // that have been heard of,
  int userSelectionsThen_ = 0;  // and had been when the program selected last

  struct Question {
    int number;
    Answer answer;
  };
  std::deque<Question> questions_;
  int questionNumber_ = 0;
  std::deque<std::pair<int, std::function<void(const QJsonArray&)>>> treeQuestions_;

  QSet<quint32> keysElsewhere_;  // that are down, by scan code or key

  bool isDead_ = false;    // the page in view has lost its renderer,
  bool hadFocus_ = false;  // and the keys went to it
  QElapsedTimer sinceDeath_;
  int deaths_ = 0;  // in quick succession, without a sign of life in between
  QTimer recovery_;
};
