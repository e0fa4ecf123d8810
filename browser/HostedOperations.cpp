// What the live page is told of the model: operations by node number, gathered into numbered batches, and questions.
#include <QJsonDocument>
#include <QWebEnginePage>
#include <utility>

#include "BridgePort.h"
#include "HTMLDocument.h"
#include "HostedWebBrowser.h"
#include "TreeCodec.h"

namespace {

QJsonArray Ids(const std::vector<NodeId>& nodes) {
  QJsonArray ids;
  for (const NodeId id : nodes) ids.append(id);
  return ids;
}

QJsonArray Flat(const Node* tree) {
  QJsonArray flat;
  EncodeTree(tree, flat);
  return flat;
}

QJsonArray FlatAlone(const Node* element) {
  QJsonArray flat;
  EncodeAlone(element, flat);
  return flat;
}

// The operations by which the live page follows a step. All that is moved is named, as the page's scripts may have put
// it elsewhere in the meantime.
std::vector<QJsonArray> OperationsOf(const TreeStep& step) {
  using Operations = std::vector<QJsonArray>;
  const auto data = [](NodeId text, int offset, int count, const QString& inserted) {
    return QJsonArray{QStringLiteral("data"), text, offset, count, inserted};
  };
  const auto insert = [](const Node* top) {
    const Node* const next = top->next();
    return QJsonArray{QStringLiteral("insert"), top->parent()->id(), next ? next->id() : 0, Flat(top)};
  };
  const auto remove = [](NodeId parent, NodeId node) { return QJsonArray{QStringLiteral("remove"), parent, node}; };
  return std::visit(
      StepCases{
          [&](const ReplaceStep& s) { return Operations{data(s.text, s.offset, int(s.removed.size()), s.inserted)}; },
          [&](const SplitStep& s) {
            return Operations{insert(s.node.get()), data(s.text, s.offset, s.node->Length(), {})};
          },
          [&](const JoinStep& s) {
            Operations operations;
            if (s.node->Length() > 0) operations.push_back(data(s.text, s.length, 0, s.node->data()));
            operations.push_back(remove(s.parent, s.rest));
            return operations;
          },
          [&](const InsertStep& s) { return Operations{insert(s.node.get())}; },
          [&](const RemoveStep& s) { return Operations{remove(s.parent, s.nodes.front())}; },
          [](const WrapStep& s) {
            return Operations{{QStringLiteral("wrap"), s.parent, s.next, FlatAlone(s.node.get()), Ids(s.children)}};
          },
          [](const UnwrapStep& s) {
            return Operations{{QStringLiteral("unwrap"), s.parent, s.element, Ids(s.children)}};
          },
          [](const AttributeStep& s) {
            return s.after ? Operations{{QStringLiteral("set"), s.element, s.name, *s.after}}
                           : Operations{{QStringLiteral("unset"), s.element, s.name}};
          }},
      step);
}

}  // namespace

void HostedWebBrowser::Changed(const TreeStep& step) {
  if (load_ != Load::Done) return;  // the model is sent whole, or goes
  history_.Add(batch_ + 1, step);
  for (const QJsonArray& operation : OperationsOf(step)) operations_.append(operation);
  ScheduleFlush();
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
  return {point.container->id(), point.IsInText() ? point.offset : point.before ? point.before->id() : 0};
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
