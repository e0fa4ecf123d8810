#include "HostedWebBrowser.h"

#include <QFile>
#include <QTimer>
#include <QUrl>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>
#include <chrono>
#include <cmath>
#include <utility>

#include "BridgePort.h"
#include "EditedPage.h"
#include "ForeignChanges.h"
#include "HTMLDocument.h"
#include "OfflineInterceptor.h"
#include "TreeCodec.h"

// Outside of any namespace, as the macro wants it.
static void InitBridgeResources() {
  Q_INIT_RESOURCE(Bridge);
}

namespace {

QString ReadResource(const QString& name) {
  QFile file(name);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

constexpr QLatin1String emptyPage("about:blank");

// How long the second page of two may take behind the first.
constexpr int kSecondLoadMs = 2000;

// By how much a page's clock may lag behind the program's. No page comes into view that fast, and one that isn't in
// view yet gives way to the next: so the page told of is never the one before.
constexpr double kClockLagMs = 1;

// How often, and with which pause, a fresh page is asked whether it knows the view's size, and how many pixels it may
// be off by.
constexpr int kLayoutTries = 50;
constexpr int kLayoutPauseMs = 10;
constexpr double kSizeTolerance = 3;

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

}  // namespace

HostedWebBrowser::HostedWebBrowser(QWidget* parent)
    : WebBrowser(parent),
      view_(new QWebEngineView(parent)),
      profile_(new QWebEngineProfile(this)),
      interceptor_(new OfflineInterceptor(this)),
      input_(*view_, [this](int keyCode, bool shift) { return AnswerKey(keyCode, shift); }),
      renderer_([this] { Recover(); }),
      outbox_([this](const QString& script, std::function<void(const QVariant&)> result) {
        if (!result) return page_->runJavaScript(script, bridgeWorld);
        page_->runJavaScript(script, bridgeWorld, std::move(result));
      }) {
  InitBridgeResources();  // those of a static library have to be asked for
  profile_->setHttpCacheType(QWebEngineProfile::NoCache);
  profile_->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
  profile_->setUrlRequestInterceptor(interceptor_);
  QString source;
  for (const char* const file : {"BridgeTree.js", "BridgeStyle.js", "BridgePlaces.js", "BridgeChanges.js", "Bridge.js"})
    source += ReadResource(QStringLiteral(":/bridge/") + QLatin1String(file));
  profile_->scripts()->insert(BridgeScript(QStringLiteral("bridge"), source));
  view_->setContextMenuPolicy(Qt::PreventContextMenu);
  view_->setAcceptDrops(false);
  SetUpPage();
}

HostedWebBrowser::~HostedWebBrowser() {
  if (document_) document_->tree().SetPage(nullptr);
  outbox_.AbandonQuestions();  // a page that goes answers what is still open
  // The profile has to outlive its page.
  view_->setPage(nullptr);
  delete page_;
}

void HostedWebBrowser::Begin() {
  hasBegun_ = true;
  page_->Show(QUrl(emptyPage));
}

void HostedWebBrowser::MoveInto(QWidget* parent) {
  setParent(parent);
  view_->setParent(parent);
}

void HostedWebBrowser::SetUpPage() {
  isDead_ = false;
  input_.PageComes();
  page_ = new EditedPage(profile_, this);
  port_ = new BridgePort(page_);
  channel_ = new QWebChannel(page_);
  channel_->registerObject(QStringLiteral("port"), port_);
  page_->setWebChannel(channel_, bridgeWorld);
  connect(port_, &BridgePort::Received, this, &HostedWebBrowser::Receive);
  connect(page_, &QWebEnginePage::loadFinished, this, &HostedWebBrowser::LoadFinished);
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, [this] {
    isDead_ = true;
    // What goes into a frame is never reported, and it isn't meant for the page that comes.
    if (shown_.isFrameFocused) input_.inFlight() = {};
    input_.PageDied();
  });
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, &HostedWebBrowser::RendererDied, Qt::QueuedConnection);
  view_->setPage(page_);
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
void HostedWebBrowser::SetCovered(int pixels) {
  covered_ = pixels;
  if (load_ == Load::Done) outbox_.Post(Bridge::Cover(covered_));
}
void HostedWebBrowser::SetOffline(bool offline) {
  interceptor_->offline = offline;
}

// --- Loading

void HostedWebBrowser::Navigate(const QString& url, int) {
  emit BeforeNavigate2(url);
  outbox_.Flush();
  outbox_.DropQuestions();
  outbox_.Shut();
  input_.Forget();
  load_ = Load::Pending;
  navigation_ = {navigation_.number + 1, url, unheard_.contains(url)};
  shown_.token.clear();
  renderer_.SignOfLife();
  if (isDead_) RenewPage();
  const bool isBegun = std::exchange(hasBegun_, false);
  if (url == emptyPage) return isBegun ? void() : LoadWanted();
  if (CanBeShown(url)) return LoadWanted();
  ScheduleFailLoad();
}

void HostedWebBrowser::LoadWanted() {
  if (isDead_) RenewPage();
  navigation_.began = MillisecondsNow();
  const QString& path = navigation_.path;
  unheard_ += path;
  page_->Show(path == emptyPage ? QUrl(path) : QUrl::fromLocalFile(path));
}

void HostedWebBrowser::LoadFinished(bool good) {
  if (!good) ScheduleFailLoad();
}

// Not at once: of a renderer that dies while it loads the engine says first that the load failed, and that load is
// begun anew.
void HostedWebBrowser::ScheduleFailLoad() {
  if (load_ != Load::Pending || isDead_) return;
  const auto isPending = [this, number = navigation_.number] {
    return load_ == Load::Pending && !isDead_ && navigation_.number == number;
  };
  const auto fail = [this, isPending] {
    if (!isPending()) return;
    // A page that stopped its own load is there all the same, as far as it came.
    page_->runJavaScript(QStringLiteral("location.href"), bridgeWorld, [this, isPending](const QVariant& address) {
      if (!isPending()) return;
      if (!IsAddressWanted(address.toString())) return FailLoad();
      page_->runJavaScript(QStringLiteral("corvane.give()"), bridgeWorld, [this, isPending](const QVariant& given) {
        if (!given.toBool() && isPending()) FailLoad();
      });
    });
  };
  QMetaObject::invokeMethod(this, fail, Qt::QueuedConnection);
}

// The page before must not go on standing there as if it were the one that was asked for.
void HostedWebBrowser::FailLoad() {
  load_ = Load::None;
  unheard_.remove(navigation_.path);
  if (document_) document_->tree().SetPage(nullptr);
  document_.reset();
  if (isDead_) RenewPage();
  input_.Forget();
  page_->Show(QUrl(emptyPage));
  emit DocumentComplete();
}

bool HostedWebBrowser::IsAddressWanted(const QString& address) const {
  const QString& path = navigation_.path;
  return path == emptyPage ? address == path : QUrl::fromLocalFile(path).toLocalFile() == QUrl(address).toLocalFile();
}

// The page before may still have something to say, be it of the same file or the one in which a dead page was to be
// brought back. Only the last one counts: a page knows when its own navigation began.
bool HostedWebBrowser::IsWanted(const Bridge::TreeMessage& message) {
  if (!IsAddressWanted(message.address)) return false;
  if (!navigation_.isRepeated || message.began >= navigation_.began - kClockLagMs) return true;
  if (!std::exchange(navigation_.isAskedAgain, true)) LoadAgainLater();
  return false;
}

// As a page's clock may lag by more, the page passed over may have been the right one. It is then asked for again, once
// the engine has nothing more to load.
void HostedWebBrowser::LoadAgainLater() {
  QTimer::singleShot(kSecondLoadMs, this, [this, number = navigation_.number] {
    if (load_ != Load::Pending || navigation_.number != number) return;
    if (page_->isLoading()) return LoadAgainLater();
    navigation_.isRepeated = false;
    LoadWanted();
  });
}

void HostedWebBrowser::Show(const Bridge::TreeMessage& message, const QString& token) {
  int from = 0;
  Node* const root = DecodeTree(message.tree, from);
  if (!root) return;
  if (root->type() != Node::Type::Document) return DestroyTree(root);
  auto document = std::make_unique<HTMLDocument>();
  document->tree().Load(root);
  document->tree().SetQuirks(message.quirks);
  document->tree().SetEncoding(message.encoding);
  document->tree().SetScripting(true);
  document->tree().SetPage(this);
  if (document_) document_->tree().SetPage(nullptr);
  outbox_.DropQuestions();
  outbox_.Restart();
  outbox_.Open();
  input_.Forget();  // also what a renderer that died on the way to this page has missed
  shown_ = PageState();
  shown_.token = token;
  shown_.address = message.address;
  unheard_.clear();
  load_ = Load::Done;
  const std::unique_ptr<HTMLDocument> old = std::exchange(document_, std::move(document));
  emit DocumentComplete();
  if (covered_) outbox_.Post(Bridge::Cover(covered_));
  outbox_.Flush();
}

// --- From the page to the model

void HostedWebBrowser::Receive(const QJsonArray& message) {
  const Bridge::FromPage what = Bridge::Decode(message);
  const QString token = Bridge::TokenOf(message);
  if (const auto* tree = std::get_if<Bridge::TreeMessage>(&what)) {
    if (load_ == Load::Recovering) {
      shown_.token = token;
      return Adopt();
    }
    // None is the empty page behind a load that failed.
    if (load_ == Load::Pending && IsWanted(*tree)) Show(*tree, token);
    return;
  }
  if (token != shown_.token || !document_ || load_ != Load::Done) return;  // of a page that is no longer in view
  std::visit([this](const auto& one) { Hear(one); }, what);
}

void HostedWebBrowser::Hear(const Bridge::ToldMessage& message) {
  renderer_.SignOfLife();
  outbox_.Told(message.question, message.tree);
}

void HostedWebBrowser::Hear(const Bridge::ChangesMessage& message) {
  const int batch = outbox_.CloseBatch();
  // A report older than our last batch will come again, with what that batch has made of it.
  if (message.applied != batch) return;
  outbox_.SetHeard(message.number);
  outbox_.history().Forget(batch);
  ApplyForeignChanges(document_->gateway(), message.changes);
  outbox_.Post(Bridge::Heard(message.number));
}

BridgeInbox HostedWebBrowser::inbox() const {
  return {document_->tree(), outbox_.history()};
}

void HostedWebBrowser::Hear(const Bridge::SelectionMessage& message) {
  HearSelection(message.selection, message.applied);
}

void HostedWebBrowser::HearSelection(const Bridge::Selection& selection, int applied) {
  if (applied < shown_.adopted) return;
  outbox_.history().Forget(applied);
  // What the program has selected since stays, unless the user has been at it again in the meantime.
  const bool crossing = selection.programs != shown_.selectionNumber;
  if (crossing && selection.users <= shown_.userSelectionsThen) return;
  shown_.userSelections = selection.users;
  const LiveRange range = inbox().RangeOf(selection);
  document_->selection().Mirror(range);
  // The page keeps it too, but what the program does to the texts in it would move it there.
  if (crossing && range.start) ShowSelection(&range);
}

void HostedWebBrowser::Hear(const Bridge::EventMessage& message) {
  // The mouse over the page is told by the engine alone; all else takes somebody who works with the page.
  if (message.type != EventType::MouseOver && message.type != EventType::MouseOut) renderer_.SignOfLife();
  const bool isAnswered = message.type == EventType::KeyUp && !input_.inFlight().KeyReported(message.keyCode);
  if (message.applied < shown_.adopted) return;  // of the empty page that the model was on its way into
  shown_.scroll = message.scroll;
  HearSelection(message.selection, message.applied);
  if (isAnswered) return;
  document_->Dispatch(inbox().EventOf(message, view_->zoomFactor()));
  // The bridge takes a click for one that places the insertion point until it hears otherwise.
  if (message.type == EventType::Click && load_ == Load::Done) outbox_.Post(Bridge::Keys(shown_.takesKeys));
}

void HostedWebBrowser::Hear(const Bridge::HandledMessage& message) {
  input_.inFlight().MouseReported(message.isRelease ? InputInFlight::Kind::Release : InputInFlight::Kind::Press);
}

void HostedWebBrowser::Hear(const Bridge::ScrollMessage& message) {
  if (message.applied >= shown_.adopted) shown_.scroll = message.scroll;
}

// What goes into a frame isn't reported.
void HostedWebBrowser::Hear(const Bridge::FocusMessage& message) {
  shown_.isFrameFocused = message.isInFrame;
  if (message.isInFrame) input_.inFlight().ForgetAnswered();
}

bool HostedWebBrowser::AnswerKey(int keyCode, bool shift) {
  if (!document_ || shown_.isFrameFocused || (load_ != Load::Done && load_ != Load::Recovering)) return false;
  HTMLEventObj event(EventType::KeyUp);
  event.On(document_->body()).Key(keyCode, shift);
  document_->Dispatch(std::move(event));
  return true;
}

// --- From the model to the page

void HostedWebBrowser::Changed(const TreeStep& step) {
  if (load_ == Load::Done) outbox_.Add(step);  // else the model is sent whole, or goes
}

void HostedWebBrowser::ShowSelection(const LiveRange* range) {
  if (load_ == Load::Done) outbox_.Post(SelectMessage(range));
}

void HostedWebBrowser::TakesKeys(bool on) {
  if (std::exchange(shown_.takesKeys, on) != on) outbox_.Post(Bridge::Keys(on));
}

void HostedWebBrowser::Outline(const Node* element) {
  const NodeId id = element && element->IsAttached() ? element->id() : 0;
  if (std::exchange(shown_.outlined, id) == 0 && id == 0) return;
  if (load_ == Load::Done) outbox_.Post(Bridge::Outline(id));
}

void HostedWebBrowser::Measure(const BoundaryPoint& point, Answer answer) {
  if (load_ != Load::Done) return answer(std::nullopt);
  outbox_.Measure(point, [this, answer = std::move(answer)](std::optional<QPoint> place) {
    const double zoom = view_->zoomFactor();
    if (place) place = QPoint(int(std::nearbyint(place->x() * zoom)), int(std::nearbyint(place->y() * zoom)));
    answer(place);
  });
}

QJsonArray HostedWebBrowser::SelectMessage(const LiveRange* range) {
  shown_.userSelectionsThen = shown_.userSelections;
  return Bridge::Select(++shown_.selectionNumber, shown_.userSelections, range);
}

// --- A renderer that died loses nothing: a page that was loading is begun anew, and the model of one that was in view
// is written into a fresh one

// The channel of a page whose renderer died doesn't always come back, so there is a new one for both.
void HostedWebBrowser::RenewPage() {
  EditedPage* const dead = page_;
  dead->disconnect(this);
  SetUpPage();
  dead->deleteLater();
  input_.TakeBack();
}

void HostedWebBrowser::RendererDied() {
  if (!isDead_) return;  // a new page has taken its place already
  outbox_.DropQuestions();
  shown_.token.clear();
  const bool isOneTooMany = renderer_.Died();
  if (load_ == Load::Pending) return isOneTooMany ? FailLoad() : LoadWanted();
  if (!document_) return;
  shown_.isFrameFocused = false;
  load_ = Load::Recovering;
  outbox_.Shut();
  outbox_.Forget();
  renderer_.ScheduleRecovery();
}

// A page without content, in the right mode and place; the model follows when its bridge reports.
void HostedWebBrowser::Recover() {
  if (load_ != Load::Recovering) return;
  RenewPage();
  unheard_ += navigation_.path;
  const QString type = document_->tree().quirks() ? QString() : QStringLiteral("<!DOCTYPE html>");
  page_->ShowHtml(type + QStringLiteral("<html><head></head><body></body></html>"), QUrl(shown_.address));
}

void HostedWebBrowser::Adopt() {
  unheard_.clear();
  load_ = Load::Done;
  outbox_.Forget();
  outbox_.SetHeard(0);
  shown_.adopted = outbox_.SkipBatch();
  shown_.userSelections = 0;
  outbox_.Open();
  outbox_.Post(Bridge::Adopt(document_->tree().root(), shown_.scroll, shown_.adopted, document_->tree().FreePageId()));
  outbox_.Post(Bridge::Keys(shown_.takesKeys));
  outbox_.Post(Bridge::Cover(covered_));
  if (shown_.outlined) outbox_.Post(Bridge::Outline(shown_.outlined));
  outbox_.Post(SelectMessage(&document_->selection().range()));
  outbox_.Flush();
  GoOnOnceLaidOut(shown_.token, kLayoutTries);
  emit Recovered();
}

// Input would overtake what has been sent, and a fresh page takes a moment to hear of the view's size: a click outside
// of that hits nothing.
void HostedWebBrowser::GoOnOnceLaidOut(const QString& token, int tries) {
  page_->runJavaScript(QStringLiteral("innerHeight"), bridgeWorld, [this, token, tries](const QVariant& height) {
    if (isDead_ || token != shown_.token) return;
    const double missing = view_->height() - height.toDouble() * view_->zoomFactor();
    if (tries == 0 || missing < kSizeTolerance) return input_.GoOn();
    QTimer::singleShot(kLayoutPauseMs, this, [this, token, tries] {
      if (!isDead_ && token == shown_.token) GoOnOnceLaidOut(token, tries - 1);
    });
  });
}

// --- For tests

bool HostedWebBrowser::IsQuiet() const {
  return load_ == Load::Done && outbox_.IsEmpty() && !input_.inFlight().IsWaiting();
}

void HostedWebBrowser::TellTree(std::function<void(const QJsonArray&)> answer) {
  outbox_.Tell(std::move(answer));
}

void HostedWebBrowser::RunPageScript(const QString& script) {
  page_->runJavaScript(script, QWebEngineScript::MainWorld);
}

QWebEnginePage* HostedWebBrowser::enginePage() const {
  return page_;
}
