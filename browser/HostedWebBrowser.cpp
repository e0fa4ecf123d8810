#include "HostedWebBrowser.h"

#include <QApplication>
#include <QFile>
#include <QJsonObject>
#include <QKeyEvent>
#include <QUrl>
#include <QWebChannel>
#include <QWebEngineHistory>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>
#include <chrono>
#include <cmath>
#include <utility>

#include "BridgePort.h"
#include "ForeignChanges.h"
#include "HTMLDocument.h"
#include "OfflineInterceptor.h"
#include "TreeCodec.h"

// Outside of any namespace, as the macro wants it.
static void InitBridgeResources() {
  Q_INIT_RESOURCE(Bridge);
}

namespace {

// What a key is known by while it is down: its place on the keyboard. Events that Qt makes itself have none, and are
// known by their key, which must not be taken for the place of another one.
quint32 CodeOf(const QKeyEvent& key) {
  constexpr quint32 madeByQt = 0x80000000;
  return key.nativeScanCode() ? key.nativeScanCode() : madeByQt | quint32(key.key());
}

// Opens no windows and keeps what scripts log to itself.
class QuietPage : public QWebEnginePage {
 public:
  using QWebEnginePage::QWebEnginePage;

 protected:
  QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {}
};

QString ReadResource(const QString& name) {
  QFile file(name);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// How long the second page of two may take behind the first.
constexpr int kSecondLoadMs = 2000;

// Of the epoch, as a page's performance.timeOrigin counts.
double MillisecondsNow() {
  return std::chrono::duration<double, std::milli>(std::chrono::system_clock::now().time_since_epoch()).count();
}

QWebEngineScript BridgeScript(const QString& name, const QString& source) {
  QWebEngineScript script;
  script.setName(name);
  script.setSourceCode(source);
  script.setInjectionPoint(QWebEngineScript::DocumentCreation);
  script.setWorldId(bridgeWorld);
  script.setRunsOnSubFrames(false);
  return script;
}

int OldButton(int button) {
  constexpr int numbers[] = {1, 4, 2};
  return button >= 0 && button < 3 ? numbers[button] : 0;
}

std::optional<EventType> TypeOf(const QString& name) {
  struct Row {
    const char* name;
    EventType type;
  };
  constexpr Row rows[] = {{"click", EventType::Click},       {"dblclick", EventType::DoubleClick},
                          {"keyup", EventType::KeyUp},       {"mousedown", EventType::MouseDown},
                          {"mouseup", EventType::MouseUp},   {"mouseover", EventType::MouseOver},
                          {"mouseout", EventType::MouseOut}, {"contextmenu", EventType::ContextMenu}};
  for (const Row& row : rows)
    if (name == QLatin1String(row.name)) return row.type;
  return std::nullopt;
}

}  // namespace

HostedWebBrowser::HostedWebBrowser(QWidget* parent)
    : WebBrowser(parent),
      view_(new QWebEngineView(parent)),
      profile_(new QWebEngineProfile(this)),
      interceptor_(new OfflineInterceptor(this)) {
  InitBridgeResources();  // those of a static library have to be asked for
  profile_->setHttpCacheType(QWebEngineProfile::NoCache);
  profile_->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
  profile_->setUrlRequestInterceptor(interceptor_);
  QString source = ReadResource(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
  for (const char* const file : {"BridgeTree.js", "BridgePlaces.js", "BridgeChanges.js", "Bridge.js"})
    source += ReadResource(QStringLiteral(":/bridge/") + QLatin1String(file));
  profile_->scripts()->insert(BridgeScript(QStringLiteral("bridge"), source));
  view_->setContextMenuPolicy(Qt::PreventContextMenu);
  view_->setAcceptDrops(false);
  SetUpPage();
  recovery_.setSingleShot(true);
  connect(&recovery_, &QTimer::timeout, this, &HostedWebBrowser::Recover);
  qApp->installEventFilter(this);
}

HostedWebBrowser::~HostedWebBrowser() {
  if (document_) document_->tree().SetPage(nullptr);
  questions_.clear();  // a page that goes answers what is still open
  // The profile has to outlive its page.
  view_->setPage(nullptr);
  delete page_;
}

void HostedWebBrowser::SetUpPage() {
  isDead_ = false;
  page_ = new QuietPage(profile_, this);
  QWebEngineSettings* settings = page_->settings();
  settings->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
  settings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
  settings->setAttribute(QWebEngineSettings::PdfViewerEnabled, false);
  settings->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
  settings->setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, false);
  port_ = new BridgePort(page_);
  channel_ = new QWebChannel(page_);
  channel_->registerObject(QStringLiteral("port"), port_);
  page_->setWebChannel(channel_, bridgeWorld);
  connect(port_, &BridgePort::Received, this, &HostedWebBrowser::Receive);
  connect(page_, &QWebEnginePage::loadFinished, this, &HostedWebBrowser::LoadFinished);
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, [this] {
    isDead_ = true;
    if (IsPages(view_->window()->focusWidget())) hadFocus_ = true;  // what has it goes with the renderer
  });
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, &HostedWebBrowser::RendererDied, Qt::QueuedConnection);
  view_->setPage(page_);
}

bool HostedWebBrowser::IsPages(const QWidget* widget) const {
  return widget && (widget == view_ || view_->isAncestorOf(widget));
}

// The engine hides its widget when the renderer is gone, before or after it tells so, and whenever another takes its
// place. Qt would hand the keys to the next control in line then; nobody shall have them until the page is back.
void HostedWebBrowser::WidgetGoes(QWidget* widget) {
  if (!view_->isVisible() || view_->window()->focusWidget() != widget) return;
  hadFocus_ = true;
  widget->clearFocus();
}

void HostedWebBrowser::TakeKeysBack() {
  if (std::exchange(hadFocus_, false) && !view_->window()->focusWidget()) view_->setFocus();
}

bool HostedWebBrowser::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  // A window that is minimised tells it with events of the system's own and keeps its keys.
  if ((type == QEvent::Hide || type == QEvent::Show) && watched == view_->focusProxy() && !event->spontaneous()) {
    if (type == QEvent::Hide) WidgetGoes(view_->focusProxy());
    if (type == QEvent::Show && !isDead_) TakeKeysBack();
  }
  if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride) return false;
  if (!watched->isWidgetType()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  const quint32 code = CodeOf(*key);
  const QWidget* const page = view_->focusProxy();
  if (type == QEvent::KeyRelease) {
    if (watched != page || !keysElsewhere_.contains(code)) return false;
    if (!key->isAutoRepeat()) keysElsewhere_.remove(code);
    return true;
  }
  // What the page doesn't use goes on to the widgets around it. A key that is a shortcut is pressed nowhere.
  const bool isPages = watched == page || static_cast<QWidget*>(watched)->isAncestorOf(page);
  if (isPages && type == QEvent::KeyPress) {
    keysElsewhere_.remove(code);
  } else {
    keysElsewhere_.insert(code);
  }
  return false;
}

QWidget* HostedWebBrowser::Widget() {
  return view_;
}
void HostedWebBrowser::FocusPage() {
  view_->setFocus();
}
bool HostedWebBrowser::Offline() const {
  return interceptor_->offline;
}
void HostedWebBrowser::SetOffline(bool offline) {
  interceptor_->offline = offline;
}

void HostedWebBrowser::Navigate(const QString& url, int) {
  emit BeforeNavigate2(url);
  Flush();
  DropQuestions();
  isSecondLoad_ = load_ == Load::Pending && wanted_ == url;
  load_ = Load::Pending;
  wanted_ = url;
  token_.clear();
  deaths_ = 0;
  ++navigation_;
  if (isDead_) RenewPage();
  if (url == u"about:blank" || CanBeShown(url)) return LoadWanted();
  ScheduleFailLoad();
}

void HostedWebBrowser::LoadWanted() {
  if (isDead_) RenewPage();
  loadBegan_ = MillisecondsNow();
  page_->load(wanted_ == u"about:blank" ? QUrl(wanted_) : QUrl::fromLocalFile(wanted_));
}

void HostedWebBrowser::LoadFinished(bool good) {
  if (!good) ScheduleFailLoad();
}

// Not at once: of a renderer that dies while it loads the engine says first that the load failed, and that load is
// begun anew.
void HostedWebBrowser::ScheduleFailLoad() {
  if (load_ != Load::Pending || isDead_) return;
  const auto fail = [this, navigation = navigation_] {
    if (load_ == Load::Pending && !isDead_ && navigation_ == navigation) FailLoad();
  };
  QMetaObject::invokeMethod(this, fail, Qt::QueuedConnection);
}

// The page before must not go on standing there as if it were the one that was asked for.
void HostedWebBrowser::FailLoad() {
  load_ = Load::None;
  if (document_) document_->tree().SetPage(nullptr);
  document_.reset();
  if (isDead_) RenewPage();
  page_->load(QUrl(QStringLiteral("about:blank")));
  emit DocumentComplete();
}

// --- From the page to the model

void HostedWebBrowser::Receive(const QJsonArray& message) {
  const QString token = message.at(0).toString();
  const QString word = message.at(1).toString();
  if (word == u"tree") return ReceiveTree(token, message);
  if (token != token_ || !document_ || load_ != Load::Done) return;  // of a page that is no longer in view
  if (word == u"event") {
    ReceiveEvent(message.at(2).toObject());
  } else if (word == u"selection") {
    ReceiveSelection(message.at(2).toArray(), message.at(3).toInt());
  } else if (word == u"changes") {
    ReceiveChanges(message);
  } else if (word == u"told") {
    if (treeQuestions_.empty() || treeQuestions_.front().first != message.at(2).toInt()) return;
    deaths_ = 0;
    const auto answer = treeQuestions_.front().second;
    treeQuestions_.pop_front();
    answer(message.at(3).toArray());
  }
}

void HostedWebBrowser::ReceiveTree(const QString& token, const QJsonArray& message) {
  if (load_ == Load::None) return;  // the empty page behind a load that failed
  if (load_ == Load::Recovering) return Adopt(token);
  const QString address = message.at(3).toString();
  if (load_ == Load::Pending) {
    // The page before may have gone elsewhere by itself.
    const QUrl url(address);
    const bool asked = wanted_ == u"about:blank" ? address == wanted_
                                                 : QUrl::fromLocalFile(wanted_).toLocalFile() == url.toLocalFile();
    if (!asked) return;
    // Of two loads of one file in a row only the second counts. A page knows when its own navigation began; as its
    // clock may lag, one that never comes behind the one passed over here is asked for again.
    if (std::exchange(isSecondLoad_, false) && message.at(2).toDouble() < loadBegan_) {
      QTimer::singleShot(kSecondLoadMs, this, [this, navigation = navigation_] {
        if (load_ == Load::Pending && navigation_ == navigation) LoadWanted();
      });
      return;
    }
  }
  int from = 0;
  Node* const root = DecodeTree(message.at(5).toArray(), from);
  if (!root) return;
  if (root->type() != Node::Type::Document) return DestroyTree(root);
  auto document = std::make_unique<HTMLDocument>();
  document->tree().Load(root);
  document->tree().SetQuirks(message.at(4).toBool());
  document->tree().SetEncoding(message.at(6).toString());
  document->tree().SetScripting(true);
  document->tree().SetPage(this);
  if (document_) document_->tree().SetPage(nullptr);
  DropQuestions();
  operations_ = {};
  messages_ = {};
  history_.Clear();
  batch_ = heard_ = adopted_ = selectionNumber_ = userSelections_ = userSelectionsThen_ = 0;
  takesKeys_ = false;
  scroll_ = {};
  token_ = token;
  base_ = address;
  load_ = Load::Done;
  std::unique_ptr<HTMLDocument> old = std::exchange(document_, std::move(document));
  emit DocumentComplete();
  Flush();
}

void HostedWebBrowser::ReceiveChanges(const QJsonArray& message) {
  const int number = message.at(2).toInt();
  Post({});
  // A report older than our last batch will come again, with what that batch has made of it.
  if (message.at(3).toInt() != batch_) return;
  heard_ = number;
  history_.Forget(batch_);
  ApplyForeignChanges(document_->gateway(), message.at(4).toObject());
  Post({QStringLiteral("heard"), heard_});
  ScheduleFlush();
}

BoundaryPoint HostedWebBrowser::PointOf(const QJsonArray& place) const {
  // The second pair, where there is one, is for a program that hasn't heard of what the first one names.
  for (qsizetype at = 0; at + 1 < place.size(); at += 2) {
    const NodePlace now = history_.Now(NodePlace{place.at(at).toInt(), place.at(at + 1).toInt()});
    const Node* const container = document_->tree().FindNode(now.container);
    if (!container) continue;
    if (container->IsText()) return BoundaryPoint::InText(container, std::clamp(now.rest, 0, container->Length()));
    const Node* const before = now.rest ? document_->tree().FindNode(now.rest) : nullptr;
    const bool fits = now.rest == 0 || (before && before->parent() == container);
    if (fits || at + 2 >= place.size()) return {container, 0, fits ? before : nullptr};
  }
  return {};
}

const Node* HostedWebBrowser::NodeOf(const QJsonArray& node) const {
  for (const QJsonValue& id : node)
    if (const Node* const found = document_->tree().FindNode(history_.Now(NodeId(id.toInt())))) return found;
  return nullptr;
}

void HostedWebBrowser::ReceiveSelection(const QJsonArray& selection, int applied) {
  if (applied < adopted_) return;
  history_.Forget(applied);
  // What the program has selected since stays, unless the user has been at it again in the meantime.
  const int userSelections = selection.at(1).toInt();
  const bool crossing = selection.at(0).toInt() != selectionNumber_;
  if (crossing && userSelections <= userSelectionsThen_) return;
  userSelections_ = userSelections;
  LiveRange range;
  if (selection.size() == 4) {
    range.start = PointOf(selection.at(2).toArray());
    range.end = PointOf(selection.at(3).toArray());
    if (!range.start || !range.end || ComparePoints(document_->tree().order(), range.start, range.end) > 0) range = {};
  }
  document_->selection().Mirror(range);
  // The page keeps it too, but what the program does to the texts in it would move it there.
  if (crossing && range.start) ShowSelection(&range);
}

const Node* HostedWebBrowser::TargetOf(const QJsonObject& event, const BoundaryPoint& caret) const {
  if (event[QLatin1String("onText")].toBool() && caret.IsInText()) return caret.container->parent();
  const Node* const target = NodeOf(event[QLatin1String("target")].toArray());
  return target && target->IsElement() ? target : nullptr;
}

void HostedWebBrowser::ReceiveEvent(const QJsonObject& event) {
  const auto type = TypeOf(event[QLatin1String("type")].toString());
  if (!type) return;
  // The mouse over the page is told by the engine alone; all else takes somebody who works with the page.
  if (*type != EventType::MouseOver && *type != EventType::MouseOut) deaths_ = 0;
  const int applied = event[QLatin1String("applied")].toInt();
  const bool isEarly = applied < adopted_;  // of the empty page that the model was on its way into
  if (isEarly && *type != EventType::KeyUp) return;
  const QJsonArray scroll = event[QLatin1String("scroll")].toArray();
  if (!isEarly) scroll_ = {int(scroll.at(0).toDouble()), int(scroll.at(1).toDouble())};
  ReceiveSelection(event[QLatin1String("selection")].toArray(), applied);
  const double zoom = view_->zoomFactor();
  const auto pixels = [zoom](const QJsonValue& value) { return int(std::nearbyint(value.toDouble() * zoom)); };
  const QJsonArray caret = event[QLatin1String("caret")].toArray();
  const BoundaryPoint place = PointOf(caret.at(0).toArray());
  HTMLEventObj message(*type);
  message.At(pixels(event[QLatin1String("x")]), pixels(event[QLatin1String("y")]))
      .On(HTMLElement(isEarly ? nullptr : TargetOf(event, place)))
      .Key(event[QLatin1String("keyCode")].toInt(), event[QLatin1String("shift")].toBool());
  if (*type != EventType::KeyUp) message.Button(OldButton(event[QLatin1String("button")].toInt()));
  if (place) message.Caret(place, QPoint(pixels(caret.at(1)), pixels(caret.at(2))));
  document_->Dispatch(std::move(message));
  if (*type == EventType::Click && load_ == Load::Done) {
    // The bridge takes a click for one that places the insertion point until it hears otherwise.
    Post({QStringLiteral("keys"), takesKeys_});
    ScheduleFlush();
  }
}

void HostedWebBrowser::Measured(int question, const QVariant& place) {
  const QVariantList parts = place.toList();
  const double zoom = view_->zoomFactor();
  const auto pixels = [zoom](const QVariant& value) { return int(std::nearbyint(value.toDouble() * zoom)); };
  while (!questions_.empty() && questions_.front().number <= question) {
    const Question asked = std::move(questions_.front());
    questions_.pop_front();
    const bool answered = asked.number == question && parts.size() == 2;
    asked.answer(answered ? std::optional(QPoint(pixels(parts[0]), pixels(parts[1]))) : std::nullopt);
  }
}

// --- For tests

bool HostedWebBrowser::IsQuiet() const {
  return load_ == Load::Done && operations_.isEmpty() && messages_.isEmpty() && questions_.empty();
}

void HostedWebBrowser::TellTree(std::function<void(const QJsonArray&)> answer) {
  treeQuestions_.emplace_back(++questionNumber_, std::move(answer));
  Post({QStringLiteral("tell"), questionNumber_});
  Flush();
}

void HostedWebBrowser::RunPageScript(const QString& script) {
  page_->runJavaScript(script, QWebEngineScript::MainWorld);
}
