// What the live page is told of the model: operations by node number, gathered into numbered batches, and questions.
#include <QJsonDocument>
#include <QWebEnginePage>
#include <utility>

#include "BridgePort.h"
#include "HTMLDocument.h"
#include "HostedWebBrowser.h"
#include "TreeCodec.h"

namespace {

QJsonArray IdsOf(const Node* first, const Node* last) {
  QJsonArray ids;
  for (const Node* node = first; node; node = node == last ? nullptr : node->next) ids.append(node->id);
  return ids;
}

}  // namespace

void HostedWebBrowser::AddOperation(const QJsonArray& operation) {
  if (load_ != Load::Done) return;  // the model is sent whole, or goes
  operations_.append(operation);
  ScheduleFlush();
}

void HostedWebBrowser::Inserted(const Node* subtree) {
  QJsonArray flat;
  EncodeTree(subtree, flat);
  AddOperation({QStringLiteral("insert"), subtree->parent->id, subtree->next ? subtree->next->id : 0, flat});
}

void HostedWebBrowser::Removed(const Node* parent, NodeId node) {
  AddOperation({QStringLiteral("remove"), parent->id, node});
}

void HostedWebBrowser::AttributeSet(const Node* element, const QString& name, const QString& value) {
  AddOperation({QStringLiteral("set"), element->id, name, value});
}

void HostedWebBrowser::AttributeRemoved(const Node* element, const QString& name) {
  AddOperation({QStringLiteral("unset"), element->id, name});
}

// All that is moved is named, as the page's scripts may have put it elsewhere in the meantime.
void HostedWebBrowser::Wrapped(const Node* wrapper) {
  QJsonArray flat;
  EncodeAlone(wrapper, flat);
  AddOperation({QStringLiteral("wrap"), wrapper->parent->id, wrapper->next ? wrapper->next->id : 0, flat,
                IdsOf(wrapper->firstChild, wrapper->lastChild)});
}

void HostedWebBrowser::Unwrapped(NodeId element, const Node* parent, const Node* first, const Node* last) {
  AddOperation({QStringLiteral("unwrap"), parent->id, element, IdsOf(first, last)});
}

void HostedWebBrowser::DataReplaced(const Node* text, int offset, int count, const QString& data) {
  AddOperation({QStringLiteral("data"), text->id, offset, count, data});
}

void HostedWebBrowser::PlacesMoved(const TreeStep& step) {
  if (load_ == Load::Done) history_.Add(batch_ + 1, step);
}

void HostedWebBrowser::ShowSelection(const LiveRange* range) {
  if (load_ != Load::Done) return;
  Post(SelectMessage(range));
  ScheduleFlush();
}

void HostedWebBrowser::TakesKeys(bool on) {
  if (takesKeys_ == on) return;
  takesKeys_ = on;
  Post({QStringLiteral("keys"), on});
  ScheduleFlush();
}

void HostedWebBrowser::Measure(const BoundaryPoint& point, Answer answer) {
  if (load_ != Load::Done) return answer(std::nullopt);
  const QJsonArray place = Encode(point);
  Post({QStringLiteral("measure"), place.at(0), place.at(1)});
  questions_.push_back({++questionNumber_, std::move(answer)});
  Flush(questionNumber_);
}

QJsonArray HostedWebBrowser::SelectMessage(const LiveRange* range) {
  userSelectionsThen_ = userSelections_;
  QJsonArray message{QStringLiteral("select"), ++selectionNumber_, userSelections_};
  if (range && range->start) {
    message.append(Encode(range->start));
    message.append(Encode(range->end));
  }
  return message;
}

QJsonArray HostedWebBrowser::Encode(const BoundaryPoint& point) {
  return {point.container->id, point.IsInText() ? point.offset : point.before ? point.before->id : 0};
}

void HostedWebBrowser::Post(const QJsonArray& message) {
  if (!operations_.isEmpty()) {
    messages_.append(QJsonArray{QStringLiteral("batch"), ++batch_, heard_, operations_});
    operations_ = {};
  }
  if (!message.isEmpty()) messages_.append(message);
}

void HostedWebBrowser::ScheduleFlush() {
  if (std::exchange(flushScheduled_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        flushScheduled_ = false;
        Flush();
      },
      Qt::QueuedConnection);
}

void HostedWebBrowser::Flush(int question) {
  Post({});
  if (messages_.isEmpty() || load_ != Load::Done) return;
  const QJsonArray messages = std::exchange(messages_, {});
  const QString script = QStringLiteral("corvane.receive(") +
                         QString::fromUtf8(QJsonDocument(messages).toJson(QJsonDocument::Compact)) +
                         QStringLiteral(")");
  if (question == 0) return page_->runJavaScript(script, bridgeWorld);
  // The result comes back sooner than a message would.
  page_->runJavaScript(script, bridgeWorld, [this, question](const QVariant& place) { Measured(question, place); });
}

void HostedWebBrowser::DropQuestions() {
  for (Question& question : std::exchange(questions_, {})) question.answer(std::nullopt);
  treeQuestions_.clear();
}
