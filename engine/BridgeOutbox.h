// What goes to the live page: changes of the model as operations in numbered batches, messages, and questions, in the
// order in which they came. It is all sent at the end of the event at hand, or at once with a question.
// Beside it stand the places that the page may name before it has carried out what is under way.
#pragma once

#include <QJsonArray>
#include <QObject>
#include <QPoint>
#include <QVariant>
#include <deque>
#include <functional>
#include <optional>

#include "LivePage.h"
#include "PlaceHistory.h"

class BridgeOutbox : public QObject {
 public:
  // Hands the page a script; `result` gets what it gives, if that is asked for.
  using Send = std::function<void(const QString& script, std::function<void(const QVariant&)> result)>;
  using TreeAnswer = std::function<void(const QJsonArray&)>;

  explicit BridgeOutbox(Send send) : send_(std::move(send)) {}

  // While it is shut nothing is sent, as there is no page to hear it.
  void Open() { isOpen_ = true; }
  void Shut() { isOpen_ = false; }

  // A change, as the next part of a batch.
  void Add(const TreeStep& step);

  // A message behind the changes so far.
  void Post(const QJsonArray& message);

  // The same, sent at once; the page's answer counts in its own pixels.
  void Measure(const BoundaryPoint& place, LivePage::Answer answer);
  // Asks for the live page's whole tree.
  void Tell(TreeAnswer answer);
  void Told(int question, const QJsonArray& tree);

  void Flush();

  // Everything that is not sent yet is forgotten, and the places with it; open questions stay.
  void Forget();
  // The same for another page, whose batches are counted from here.
  void Restart();
  // The next messages begin with a batch that stands for the model as a whole. Returns its number.
  int SkipBatch() { return ++batch_; }
  // Answers what is still open with nothing; or lets go of it without a word.
  void DropQuestions();
  void AbandonQuestions() { questions_.clear(); }

  // Number of the last batch, once all that has come so far is in one.
  int CloseBatch();
  // Of the last report of changes that has been heard of, which is told with each batch.
  void SetHeard(int number) { heard_ = number; }

  PlaceHistory& history() { return history_; }
  const PlaceHistory& history() const { return history_; }

  bool IsEmpty() const { return operations_.isEmpty() && messages_.isEmpty() && questions_.empty(); }

 private:
  struct Question {
    int number;
    LivePage::Answer answer;
  };

  void SendAll(int question);
  void ScheduleFlush();
  void Measured(int question, const QVariant& place);

  Send send_;
  bool isOpen_ = false;
  QJsonArray operations_;  // changes not yet in a batch
  QJsonArray messages_;    // not yet sent
  bool flushScheduled_ = false;
  int batch_ = 0;
  int heard_ = 0;
  PlaceHistory history_;
  std::deque<Question> questions_;
  int questionNumber_ = 0;
  std::deque<std::pair<int, TreeAnswer>> treeQuestions_;
};
