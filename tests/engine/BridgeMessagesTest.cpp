// Both ends of the wire know the same words, and what goes over it comes in the order in which it happened.
#include "BridgeMessages.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

#include "BridgeInbox.h"
#include "BridgeOutbox.h"
#include "QtPrinters.h"
#include "TestPage.h"
#include "TreeBuilder.h"

namespace {

QString Script(const char* name) {
  QFile file(QStringLiteral(BRIDGE_SCRIPTS "/") + QLatin1String(name));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
  return QString::fromUtf8(file.readAll());
}

QStringList Captured(const QString& text, const char* pattern) {
  QStringList found;
  for (auto it = QRegularExpression(QLatin1String(pattern)).globalMatch(text); it.hasNext();)
    found.append(it.next().captured(1));
  found.sort();
  found.removeDuplicates();
  return found;
}

QStringList Sorted(QStringList words) {
  words.sort();
  return words;
}

// What a page would be sent, message by message.
class SentMessages {
 public:
  BridgeOutbox outbox{[this](const QString& script, std::function<void(const QVariant&)> result) {
    const QString array = script.mid(script.indexOf(u'('));
    for (const QJsonValue& one : QJsonDocument::fromJson(array.mid(1, array.size() - 2).toUtf8()).array())
      sent.push_back(one.toArray());
    if (result) answer = std::move(result);
  }};
  std::vector<QJsonArray> Take() { return std::exchange(sent, {}); }
  std::vector<QJsonArray> sent;
  std::function<void(const QVariant&)> answer;
};

class TellingPage : public ReplicaPage {
 public:
  TellingPage(const PageTree& tree, BridgeOutbox& outbox) : ReplicaPage(tree), outbox_(outbox) {}
  void Changed(const TreeStep& step) override { outbox_.Add(step); }

 private:
  BridgeOutbox& outbox_;
};

TEST(BridgeMessages, TheScriptsSendAndTakeTheSameWords) {
  const QString all = Script("Bridge.js") + Script("BridgeChanges.js");
  EXPECT_EQ(Captured(all, "send\\('(\\w+)'"), Sorted(Bridge::WordsOfPage()));
  EXPECT_EQ(Captured(Script("Bridge.js"), "case '(\\w+)':"), Sorted(Bridge::WordsOfProgram()));
}

TEST(BridgeMessages, TheScriptsCarryOutEveryOperation) {
  TestPage page("ab<b x=1>cd</b>ef");
  SentMessages messages;
  TellingPage telling(page.document.tree(), messages.outbox);
  page.document.tree().SetPage(&telling);
  Gateway& gateway = page.document.gateway();
  const Node* const text = page.Text("ab");
  gateway.SplitText(text, 1);
  gateway.JoinWithNext(text);
  gateway.Insert(page.Find("B"), nullptr, TreeBuilder::Element(Known().a));
  gateway.Wrap(text, text, TreeBuilder::Element(Known().font));
  gateway.Unwrap(page.Find("FONT"));
  gateway.SetAttribute(page.Find("B"), "x", "2");
  gateway.RemoveAttribute(page.Find("B"), "x");
  gateway.Remove(page.Find("B"));
  messages.outbox.Open();
  messages.outbox.Flush();
  const auto sent = messages.Take();
  ASSERT_EQ(sent.size(), 1U);
  QStringList words;
  for (const QJsonValue& operation : sent[0].at(3).toArray()) words.append(operation.toArray().at(0).toString());
  EXPECT_EQ(words,
            (QStringList{"insert", "data", "data", "remove", "insert", "wrap", "unwrap", "set", "unset", "remove"}));
  words.removeDuplicates();
  EXPECT_EQ(Captured(Script("BridgeChanges.js"), "case '(\\w+)':"), Sorted(words));
  page.document.tree().SetPage(nullptr);
}

TEST(BridgeMessages, WhatIsNoMessageIsNothing) {
  for (const QJsonArray& message : {QJsonArray(), QJsonArray{"token"}, QJsonArray{"token", "unknown", 1},
                                    QJsonArray{"token", "event", QJsonObject{{"type", "wheel"}}}})
    EXPECT_TRUE(std::holds_alternative<std::monostate>(Bridge::Decode(message)));
}

TEST(BridgeMessages, AnEventIsReadWhole) {
  const QJsonObject event{{"type", "click"},
                          {"target", QJsonArray{7, 5}},
                          {"x", 10.5},
                          {"y", 20},
                          {"button", 2},
                          {"keyCode", 65},
                          {"shift", true},
                          {"applied", 3},
                          {"scroll", QJsonArray{1, 2}},
                          {"selection", QJsonArray{4, 6, QJsonArray{8, 1}, QJsonArray{8, 2, 9, 0}}},
                          {"caret", QJsonArray{QJsonArray{8, 1}, 30, 40}},
                          {"onText", true}};
  const Bridge::FromPage what = Bridge::Decode({"token", "event", event});
  const auto* message = std::get_if<Bridge::EventMessage>(&what);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->type, EventType::Click);
  EXPECT_EQ(message->target, (std::vector<NodeId>{7, 5}));
  EXPECT_EQ(message->client, QPointF(10.5, 20));
  EXPECT_EQ(message->button, 2);
  EXPECT_EQ(message->keyCode, 65);
  EXPECT_TRUE(message->shift);
  EXPECT_EQ(message->applied, 3);
  EXPECT_EQ(message->scroll, QPoint(1, 2));
  EXPECT_EQ(message->selection.programs, 4);
  EXPECT_EQ(message->selection.users, 6);
  ASSERT_TRUE(message->selection.range);
  EXPECT_EQ(message->selection.range->first, (Bridge::Places{{8, 1}}));
  EXPECT_EQ(message->selection.range->second, (Bridge::Places{{8, 2}, {9, 0}}));
  EXPECT_EQ(message->caret, (Bridge::Places{{8, 1}}));
  EXPECT_EQ(message->caretPosition, QPointF(30, 40));
  EXPECT_TRUE(message->onText);
}

TEST(BridgeOutbox, ChangesGoInBatchesBetweenTheMessages) {
  TestPage page("ab");
  SentMessages messages;
  TellingPage telling(page.document.tree(), messages.outbox);
  page.document.tree().SetPage(&telling);
  messages.outbox.Open();
  page.document.gateway().ReplaceData(page.Text("ab"), 0, 0, "1");
  page.document.gateway().ReplaceData(page.Text("ab"), 0, 0, "2");
  messages.outbox.SetHeard(5);
  messages.outbox.Post(Bridge::Keys(true));
  page.document.gateway().ReplaceData(page.Text("ab"), 0, 0, "3");
  EXPECT_TRUE(messages.sent.empty()) << "not before the event at hand has ended";
  QCoreApplication::processEvents();
  const auto sent = messages.Take();
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_EQ(sent[0].at(0).toString(), "batch");
  EXPECT_EQ(sent[0].at(1).toInt(), 1);
  EXPECT_EQ(sent[0].at(2).toInt(), 5);
  EXPECT_EQ(sent[0].at(3).toArray().size(), 2);
  EXPECT_EQ(sent[1], Bridge::Keys(true));
  EXPECT_EQ(sent[2].at(1).toInt(), 2);
  EXPECT_TRUE(messages.outbox.IsEmpty());
  page.document.tree().SetPage(nullptr);
}

TEST(BridgeOutbox, AQuestionIsSentAtOnceAndAnsweredOnce) {
  const TestPage page("a^b");
  SentMessages messages;
  messages.outbox.Open();
  std::vector<std::optional<QPoint>> answers;
  const auto ask = [&] {
    messages.outbox.Measure(page.marked.start, [&](std::optional<QPoint> place) { answers.push_back(place); });
  };
  ask();
  const auto first = messages.answer;
  ask();
  EXPECT_EQ(messages.Take().size(), 2U);
  messages.answer(QVariantList{3, 4});
  EXPECT_EQ(answers, (std::vector<std::optional<QPoint>>{std::nullopt, QPoint(3, 4)}))
      << "a later answer ends the earlier one";
  first(QVariantList{1, 2});
  EXPECT_EQ(answers.size(), 2U);
  ask();
  messages.outbox.DropQuestions();
  EXPECT_EQ(answers.size(), 3U);
  EXPECT_FALSE(answers[2]);
}

TEST(BridgeOutbox, NothingIsSentWhileItIsShut) {
  SentMessages messages;
  messages.outbox.Post(Bridge::Keys(true));
  messages.outbox.Flush();
  EXPECT_TRUE(messages.sent.empty());
  messages.outbox.Open();
  messages.outbox.Flush();
  EXPECT_EQ(messages.Take().size(), 1U);
  messages.outbox.Post(Bridge::Keys(false));
  messages.outbox.Forget();
  messages.outbox.Flush();
  EXPECT_TRUE(messages.sent.empty());
}

// The page names a node that the program hasn't heard of, and behind it one that it has.
TEST(BridgeInbox, TheFirstNameThatIsKnownCounts) {
  const TestPage page("ab<b>cd</b>");
  const PlaceHistory history;
  const BridgeInbox inbox(page.document.tree(), history);
  const NodeId text = page.Text("ab")->id();
  EXPECT_EQ(inbox.PointOf({{9999, 1}, {text, 1}}), BoundaryPoint::InText(page.Text("ab"), 1));
  EXPECT_EQ(inbox.PointOf({{text, 77}}), BoundaryPoint::InText(page.Text("ab"), 2)) << "no further than the text's end";
  EXPECT_EQ(inbox.PointOf({{9999, 1}}), BoundaryPoint());
  EXPECT_EQ(inbox.NodeOf({9999, page.Find("B")->id()}), page.Find("B"));
  EXPECT_EQ(inbox.RangeOf({0, 0, {{{{text, 2}}, {{text, 1}}}}}).start, BoundaryPoint())
      << "ends that passed each other";
}

}  // namespace
