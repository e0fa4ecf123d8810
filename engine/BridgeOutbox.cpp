#include "BridgeOutbox.h"

#include <QJsonDocument>
#include <utility>

#include "BridgeMessages.h"
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

// The operations by which the live page follows a step, each a word and what it is about:
//   insert  parent, before, tree            remove  parent, node
//   wrap    parent, before, element, nodes  unwrap  parent, element, nodes that come out
//   set     element, name, value[, index]   unset   element, name
//   data    text, offset, count, data
// All that is moved is named, as the page's scripts may have put it elsewhere in the meantime. An attribute that is new
// has an index among the others.
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
            if (!s.after) return Operations{{QStringLiteral("unset"), s.element, s.name}};
            QJsonArray set{QStringLiteral("set"), s.element, s.name, *s.after};
            if (!s.before) set.append(s.index);
            return Operations{set};
          }},
      step);
}

}  // namespace

void BridgeOutbox::Add(const TreeStep& step) {
  history_.Add(batch_ + 1, step);
  for (const QJsonArray& operation : OperationsOf(step)) operations_.append(operation);
  ScheduleFlush();
}

int BridgeOutbox::CloseBatch() {
  if (!operations_.isEmpty()) messages_.append(Bridge::Batch(++batch_, heard_, std::exchange(operations_, {})));
  return batch_;
}

void BridgeOutbox::Post(const QJsonArray& message) {
  CloseBatch();
  messages_.append(message);
  ScheduleFlush();
}

void BridgeOutbox::Measure(const BoundaryPoint& place, LivePage::Answer answer) {
  CloseBatch();
  messages_.append(Bridge::Measure(place));
  questions_.push_back({++questionNumber_, std::move(answer)});
  SendAll(questionNumber_);
}

void BridgeOutbox::Tell(TreeAnswer answer) {
  treeQuestions_.emplace_back(++questionNumber_, std::move(answer));
  CloseBatch();
  messages_.append(Bridge::Tell(questionNumber_));
  Flush();
}

void BridgeOutbox::Told(int question, const QJsonArray& tree) {
  if (treeQuestions_.empty() || treeQuestions_.front().first != question) return;
  const TreeAnswer answer = std::move(treeQuestions_.front().second);
  treeQuestions_.pop_front();
  answer(tree);
}

void BridgeOutbox::ScheduleFlush() {
  if (std::exchange(flushScheduled_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        flushScheduled_ = false;
        Flush();
      },
      Qt::QueuedConnection);
}

void BridgeOutbox::Flush() {
  SendAll(0);
}

// `question` is the number of the one that the last message asks, if any.
void BridgeOutbox::SendAll(int question) {
  CloseBatch();
  if (messages_.isEmpty() || !isOpen_) return;
  const QString script = QStringLiteral("corvane.receive(") +
                         QString::fromUtf8(QJsonDocument(std::exchange(messages_, {})).toJson(QJsonDocument::Compact)) +
                         QStringLiteral(")");
  if (question == 0) return send_(script, {});
  // The result comes back sooner than a message would.
  send_(script, [this, question](const QVariant& place) { Measured(question, place); });
}

void BridgeOutbox::Measured(int question, const QVariant& place) {
  const QVariantList parts = place.toList();
  while (!questions_.empty() && questions_.front().number <= question) {
    const Question asked = std::move(questions_.front());
    questions_.pop_front();
    const bool answered = asked.number == question && parts.size() == 2;
    asked.answer(answered ? std::optional(QPoint(parts[0].toInt(), parts[1].toInt())) : std::nullopt);
  }
}

void BridgeOutbox::DropQuestions() {
  for (Question& question : std::exchange(questions_, {})) question.answer(std::nullopt);
  treeQuestions_.clear();
}

void BridgeOutbox::Forget() {
  operations_ = {};
  messages_ = {};
  history_.Clear();
}

void BridgeOutbox::Restart() {
  Forget();
  batch_ = heard_ = 0;
}
