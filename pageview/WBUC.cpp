#include "WBUC.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include "DroppedFile.h"
#include "FontSizeMap.h"
#include "PageText.h"
#include "Program.h"
#include "Serializer.h"
#include "Settings.h"
#include "Twips.h"

WBUC::WBUC(Program& program, const WebBrowserFactory& makeBrowser, QWidget* parent)
    : QWidget(parent),
      program_(program),
      WB2_(makeBrowser(this)),
      history_({[this] { return StateOfEditing(); }, [this](const EditState& state) { Restore(state); }}) {
  history_.SetEdited([this] { emit Edited(); });
  connect(WB2_.get(), &WebBrowser::BeforeNavigate2, this, &WBUC::UnHook);
  connect(WB2_.get(), &WebBrowser::DocumentComplete, this, &WBUC::OnDocumentComplete);
  connect(WB2_.get(), &WebBrowser::Recovered, this, [this] {
    UnHook();
    if (program_.Compat4On) HookBrowserWindow();
    TellInsertionPoint();
  });
  connect(&hook_, &RightButtonHook::Released, this, &WBUC::RightClick);
  connect(&keyPresses_, &KeyPressQueue::KeyPress, this, [this](const QString& sKey, QPoint position) {
    emit KeyPress(sKey, PixelsToTwips(position.x()), PixelsToTwips(position.y()));
  });
  InitControl();
}

WBUC::~WBUC() {
  WB2_->disconnect(this);
  keyPresses_.disconnect(this);
  WB2_->SetOffline(false);
  UnHook();
  if (DocReady_) {
    Doc_->ConnectEvents(nullptr);
    history_.Watch(nullptr);
  }
  ForgetPage();
  WB2_.reset();
}

void WBUC::InitControl() {
  IfNew_ = true;
  const SettingsStore& settings = program_.platform.settings;
  values_.BodyFontColor = Settings::GetWhole(settings, Settings::BCol);
  values_.BodyFontName = Settings::GetWhole(settings, Settings::BFace);
  values_.BodyFontSize = Settings::GetWhole(settings, Settings::BSz);
  values_.BGColor = QStringLiteral("#FFFFFF");
  values_.LinkColor = QStringLiteral("#0000FF");
  LayOverAll();
  setAcceptDrops(true);
  if (WB2_->Widget()) setFocusProxy(WB2_->Widget());
  WB2_->SetOffline(true);
  WB2_->Navigate(QStringLiteral("about:blank"),
                 WebBrowser::NoHistory | WebBrowser::NoReadFromCache | WebBrowser::NoWriteToCache);
}

void WBUC::ForgetPage() {
  DocReady_ = false;
  Body_ = {};
  CurrentElement_ = {};
  SelElement_ = {};
  CurrentTextRange_.reset();
}

HTMLBodyElement WBUC::Body() const {
  const Node* const body = Body_.node();
  return body && !body->IsAttached() ? Doc_->body() : Body_;
}

void WBUC::LayOverAll() {
  if (QWidget* view = WB2_->Widget()) view->setGeometry(rect());
}

void WBUC::resizeEvent(QResizeEvent*) {
  LayOverAll();
}

// Pictures that the page may hold; anything else that is dragged over it is refused.
static QStringList PicturesIn(const QMimeData* data) {
  QStringList paths;
  for (const QUrl& url : data ? data->urls() : QList<QUrl>()) {
    const QString path = url.toLocalFile();
    for (const char* const ending : {".gif", ".jpg", ".png"})
      if (path.endsWith(QLatin1String(ending), Qt::CaseInsensitive)) paths.append(path);
  }
  return paths;
}

void WBUC::dragEnterEvent(QDragEnterEvent* event) {
  if (DocReady_ && !PicturesIn(event->mimeData()).isEmpty()) AcceptCopy(*event);
}

void WBUC::dropEvent(QDropEvent* event) {
  const QStringList paths = PicturesIn(event->mimeData());
  if (!DocReady_ || paths.isEmpty()) return;
  AcceptCopy(*event);
  // Whoever gave them is answered before the user is asked anything.
  QMetaObject::invokeMethod(this, [this, paths] { emit PicturesDropped(paths); }, Qt::QueuedConnection);
}

HTMLDocument* WBUC::WBDocument() const {
  return DocReady_ ? Doc_ : nullptr;
}

void WBUC::Navo(const QString& sPath, bool isNew) {
  keyPresses_.Flush();
  UnHook();
  if (DocReady_) history_.Watch(nullptr);
  ForgetPage();
  IfNew_ = isNew;
  CurrentElementTag_.clear();
  WB2_->Navigate(sPath, WebBrowser::NoHistory | WebBrowser::NoReadFromCache | WebBrowser::NoWriteToCache);
  Location_ = sPath;
}

void WBUC::OnDocumentComplete() {
  UnHook();
  history_.Abandon();
  ForgetPage();
  Doc_ = WB2_->Document();
  if (!Doc_) return;
  Doc_->ConnectEvents(this);
  DocReady_ = true;
  if (program_.Compat4On) HookBrowserWindow();
  Body_ = Doc_->body();
  if (IfNew_) {
    StampValues();
  } else {
    ReadValues();
  }
  history_.Watch(&Doc_->gateway());
  emit DocComplete();
}

void WBUC::StampValues() {
  Body_.setText(values_.BodyFontColor);
  Body_.setLink(values_.LinkColor);
  Body_.setVLink(values_.LinkColor);
  Body_.style().setFontSize(FontSizeMap(values_.BodyFontSize));
  Body_.style().setFontFamily(values_.BodyFontName);
  Doc_->setBgColor(values_.BGColor);
}

// Each value goes through its own writer, so opening a page changes it. The background colour isn't read: BGColor()
// goes on giving that of before.
void WBUC::ReadValues() {
  SetBodyFontColor(Body_.text());
  SetLinkColor(Body_.link());
  SetBodyFontName(Body_.style().fontFamily());
  SetBodyFontSize(FontSizeMap(Body_.style().fontSize()));
}

void WBUC::HookBrowserWindow() {
  QWidget* const view = WB2_->Widget();
  hook_.Install(view && view->focusProxy() ? view->focusProxy() : view);
}

void WBUC::UnHook() {
  hook_.Remove();
}

QString WBUC::Title() const {
  return Doc_ ? Doc_->title() : QString();
}

void WBUC::SetTitle(const QString& title) {
  const auto step = UndoStep(QStringLiteral("Page Title"));
  if (Doc_) Doc_->setTitle(title);
}

void WBUC::SetBGColor(const QString& color) {
  if (!DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Back Color"));
  values_.BGColor = color;
  Doc_->setBgColor(color);
}

QString WBUC::BackPic() const {
  return DocReady_ ? Body().getAttribute(QStringLiteral("Background"), 0) : QString();
}

void WBUC::SetBackPic(const QString& picture) {
  if (!DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Back Picture"));
  if (picture.isEmpty()) {
    Body().removeAttribute(QStringLiteral("Background"), 0);
  } else {
    Body().setBackground(picture);
  }
}

QString WBUC::BodyFontName() const {
  return DocReady_ ? values_.BodyFontName : QString();
}

void WBUC::SetBodyFontName(const QString& name) {
  if (!DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Body Font Face"));
  values_.BodyFontName = name;
  Body().style().setFontFamily(name);
}

QString WBUC::BodyFontSize() const {
  return DocReady_ ? values_.BodyFontSize : QString();
}

void WBUC::SetBodyFontSize(const QString& size) {
  if (!DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Body Font Size"));
  values_.BodyFontSize = size;
  Body().style().setFontSize(FontSizeMap(size));
}

QString WBUC::BodyFontColor() const {
  return DocReady_ ? values_.BodyFontColor : QString();
}

void WBUC::SetBodyFontColor(const QString& color) {
  const auto step = UndoStep(QStringLiteral("Body Text Color"));
  values_.BodyFontColor = color;
  if (DocReady_) Body().setText(color);
}

void WBUC::SetLinkColor(const QString& color) {
  if (!DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Link Color"));
  values_.LinkColor = color;
  Body().setLink(color);
  Body().setVLink(color);
}

QString WBUC::Source() const {
  return DocReady_ ? Doc_->documentElement().outerHTML() : QString();
}

QByteArray WBUC::SourceForFile() const {
  return DocReady_ ? FileHtml(Doc_->tree()) : QByteArray();
}

QByteArray WBUC::FileOfSource(const QString& source) const {
  return SourceFileBytes(source, DocReady_ ? Doc_->tree().encoding() : QString());
}
