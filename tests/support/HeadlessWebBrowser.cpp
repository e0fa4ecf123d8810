#include "HeadlessWebBrowser.h"

#include <QFile>
#include <QUrl>

#include "GridLayout.h"
#include "HTMLDocument.h"
#include "HtmlParser.h"
#include "PageText.h"

// There is nobody to tell of changes; only questions have to be answered.
class HeadlessWebBrowser::Page : public LivePage {
 public:
  explicit Page(const PageTree& tree) : tree_(tree) {}
  void Changed(const TreeStep&) override {}
  void ShowSelection(const LiveRange*) override {}
  void TakesKeys(bool) override {}
  void Outline(const Node*) override {}
  void Measure(const BoundaryPoint& point, Answer answer) override { answer(GridLayout(tree_).PositionOf(point)); }

 private:
  const PageTree& tree_;
};

HeadlessWebBrowser::HeadlessWebBrowser(QObject* parent) : WebBrowser(parent) {}
HeadlessWebBrowser::~HeadlessWebBrowser() = default;

void HeadlessWebBrowser::Navigate(const QString& url, int) {
  emit BeforeNavigate2(url);
  pending_ = url;
  QMetaObject::invokeMethod(this, &HeadlessWebBrowser::Finish, Qt::QueuedConnection);
}

void HeadlessWebBrowser::Finish() {
  if (!pending_) return;
  const QString url = *std::exchange(pending_, std::nullopt);
  if (url == u"about:blank") return SetHtml(QString());
  QFile file(url);
  if (!CanBeShown(url) || !file.open(QIODevice::ReadOnly)) {
    page_.reset();
    document_.reset();
    emit DocumentComplete();
    return;
  }
  const PageContent content = DecodePage(file.readAll());
  SetHtml(content.text, content.encoding);
}

void HeadlessWebBrowser::SetHtml(const QString& html, const QString& encoding) {
  pending_.reset();
  page_.reset();
  auto document = std::make_unique<HTMLDocument>();
  ParseDocument(html, document->tree());
  document->tree().SetEncoding(encoding);
  page_ = std::make_unique<Page>(document->tree());
  document->tree().SetPage(page_.get());
  document_ = std::move(document);
  emit DocumentComplete();
}

HTMLEventObj HeadlessWebBrowser::At(EventType type, QPoint point, int button) const {
  const GridLayout::Hit hit = GridLayout(document_->tree()).At(point);
  HTMLEventObj event(type);
  event.At(point.x(), point.y()).On(HTMLElement(hit.element)).Button(button).Caret(hit.caret, hit.caretPosition);
  return event;
}

void HeadlessWebBrowser::MouseDown(QPoint point, int button) {
  if (!document_) return;
  if (button == 1) document_->selection().Mirror({});
  document_->Dispatch(At(EventType::MouseDown, point, button));
}

void HeadlessWebBrowser::MouseUp(QPoint point, int button) {
  if (document_) document_->Dispatch(At(EventType::MouseUp, point, button));
}

void HeadlessWebBrowser::Click(QPoint point) {
  MouseDown(point);
  MouseUp(point);
  if (!document_) return;
  HTMLEventObj event = At(EventType::Click, point, 1);
  document_->selection().Mirror({event.caret(), event.caret()});
  document_->Dispatch(std::move(event));
}

void HeadlessWebBrowser::DoubleClick(QPoint point) {
  Click(point);
  Click(point);
  if (document_) document_->Dispatch(At(EventType::DoubleClick, point, 1));
}

void HeadlessWebBrowser::RightClick(QPoint point) {
  MouseDown(point, 2);
  if (document_) document_->Dispatch(At(EventType::ContextMenu, point, 2));
  MouseUp(point, 2);
}

void HeadlessWebBrowser::MouseOver(QPoint point) {
  if (document_) document_->Dispatch(At(EventType::MouseOver, point, 0));
}

void HeadlessWebBrowser::MouseOut(QPoint point) {
  if (document_) document_->Dispatch(At(EventType::MouseOut, point, 0));
}

void HeadlessWebBrowser::KeyUp(int keyCode, bool shift) {
  if (document_) document_->Dispatch(HTMLEventObj(EventType::KeyUp).On(document_->body()).Key(keyCode, shift));
}

void HeadlessWebBrowser::Drag(QPoint from, QPoint to) {
  if (!document_) return;
  MouseDown(from);
  MouseUp(to);
  LiveRange range{GridLayout(document_->tree()).At(from).caret, GridLayout(document_->tree()).At(to).caret};
  if (ComparePoints(document_->tree().order(), range.start, range.end) > 0) std::swap(range.start, range.end);
  document_->selection().Mirror(range);
  document_->Dispatch(At(EventType::Click, to, 1));
}

std::optional<QPoint> HeadlessWebBrowser::PointAt(const BoundaryPoint& point) const {
  if (!document_) return std::nullopt;
  const auto corner = GridLayout(document_->tree()).PositionOf(point);
  if (!corner) return std::nullopt;
  return *corner + QPoint(1, GridLayout::cellHeight / 2);
}
