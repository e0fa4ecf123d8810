// Real clicks at random places meet changes at random places on their way, and land where the engine said.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <deque>
#include <map>
#include <random>

#include "HTMLDocumentEvents.h"
#include "HTMLTxtRange.h"
#include "HostedPage.h"
#include "RandomSeed.h"
#include "TreeBuilder.h"

namespace {

const char page[] =
    "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT ID=a SIZE=4>first block</FONT><BR>"
    "<FONT ID=b SIZE=4>second <B ID=c>bold</B></FONT><BR>plain text<BR></BODY></HTML>";

// Where a place is, by the indices of the nodes on the way to it: the form in which the page's own script tells it.
QString PathOf(const Node* container, int offset, const Node* body) {
  QString path = QStringLiteral(":") + QString::number(offset);
  for (const Node* node = container; node != body; node = node->parent())
    path.prepend(QStringLiteral(".") + QString::number(node->Index()));
  return path;
}

const char listener[] = R"(
  window.told = [];
  const pathOf = (container, offset) => {
    let path = ':' + offset;
    for (let node = container; node !== document.body; node = node.parentNode) {
      if (!node) return '';
      path = '.' + [...node.parentNode.childNodes].indexOf(node) + path;
    }
    return path;
  };
  const pathsOfSelection = () => {
    const selection = getSelection();
    if (!selection.rangeCount) return ['', ''];
    const range = selection.getRangeAt(0);
    return [pathOf(range.startContainer, range.startOffset), pathOf(range.endContainer, range.endOffset)];
  };
  const changes = () => +document.body.getAttribute('n');
  let atPress;
  addEventListener('mousedown', event => { if (event.isTrusted && event.button === 0) atPress = changes(); }, true);
  addEventListener('mouseup', event => {
    if (!event.isTrusted || event.button !== 0) return;
    const hit = document.caretRangeFromPoint(event.clientX, event.clientY);
    // Below its line the page itself has a place of its own, which isn't the engine's.
    const line = hit && hit.getClientRects()[0];
    const isBelow = [document.body, document.documentElement].includes(event.target) &&
      (!line || event.clientY >= line.bottom);
    told.push([changes(),
               isBelow ? 'below' : hit ? pathOf(hit.startContainer, hit.startOffset) : '']);
  }, true);
  // Not every release has one, and a click that the bridge makes up comes when the engine has done with the release. What
  // was selected by the press is the engine's own answer only while no change has been carried out since.
  addEventListener('click', event => {
    if (event.isTrusted && event.detail && atPress === changes()) told[told.length - 1].push(...pathsOfSelection());
  }, true);
)";

class RandomClicks : private HTMLDocumentEvents {
 public:
  RandomClicks(HostedPage& hosted, unsigned seed) : hosted_(hosted), random_(seed) {
    hosted_.document().ConnectEvents(this);
    hosted_.Script(QString::fromLatin1(listener));
    Number();
    hosted_.LiveHtml();
  }
  ~RandomClicks() override {
    hosted_.document().ConnectEvents(nullptr);
    for (Snapshot& snapshot : snapshots_) Drop(snapshot);
  }

  // Some clicks and drags with changes around them, then what has come of them.
  void Round() {
    int wanted = 0;
    for (int i = 0; i < 20; ++i) {
      if (Below(3) == 0) hosted_.KeepBusy(5 + Below(30));
      for (int changes = Below(3); changes > 0; --changes) Change();
      if (Below(3) != 0) {
        Press();
        ++wanted;
      }
      for (int turns = Below(3); turns > 0; --turns) QCoreApplication::processEvents();
      if (Below(4) == 0) HostedPage::WaitFor([&] { return int(arrived_.size()) == wanted; }, 200);
    }
    // Scripts overtake input.
    HostedPage::WaitFor([&] { return int(arrived_.size()) >= wanted; }, 10000);
    const QString live = hosted_.LiveHtml();
    ASSERT_EQ(hosted_.ModelHtml().toStdString(), live.toStdString());
    const QString told = hosted_.ScriptText(QStringLiteral("JSON.stringify(told.splice(0))"));
    const QJsonArray clicks = QJsonDocument::fromJson(told.toUtf8()).array();
    ASSERT_EQ(clicks.size(), int(arrived_.size()));
    EXPECT_EQ(wanted, int(arrived_.size())) << "clicks were lost";
    for (int i = 0; i < clicks.size(); ++i) Compare(clicks.at(i).toArray(), arrived_[std::size_t(i)]);
    arrived_.clear();
    while (snapshots_.size() > 1) {
      Drop(snapshots_.front());
      snapshots_.pop_front();
    }
  }

  int clicks = 0;
  int crossing = 0;    // of them met a change on their way,
  int moved = 0;       // and were brought to another place by it
  int selections = 0;  // that were compared
  int below = 0;       // of the clicks lay below the last line

 private:
  // Every place of the page as it was behind one of the changes, and where that is now.
  struct Snapshot {
    int number;
    std::shared_ptr<QHash<QString, std::size_t>> paths;  // each one's index in the lists
    std::vector<BoundaryPoint> then;
    std::vector<std::unique_ptr<LiveRange>> now;
  };
  // What was told of a click, and where the places of the snapshots were at that moment. Only to be compared: nodes may
  // have gone since.
  struct Arrived {
    BoundaryPoint caret;
    LiveRange selection;
    int selectedAt;
    int number;  // of the last change
    struct Places {
      std::shared_ptr<QHash<QString, std::size_t>> paths;
      std::vector<BoundaryPoint> then, now;
    };
    std::map<int, Places> places;
  };

  int Below(int bound) { return int(random_() % unsigned(bound)); }

  const Node* Any(bool text) {
    std::vector<const Node*> nodes;
    const Node* const body = hosted_.document().tree().bodyNode();
    for (const Node* node = body->firstChild(); node; node = NextInTree(node, body))
      if (text ? node->IsText() : node->IsElement() && node->firstChild()) nodes.push_back(node);
    return nodes.empty() ? nullptr : nodes[std::size_t(Below(int(nodes.size())))];
  }

  QString Markup() {
    static const QStringList pieces = {QStringLiteral("x"),
                                       QStringLiteral("some more text "),
                                       QStringLiteral("<BR>"),
                                       QStringLiteral("<FONT COLOR=\"#FF0000\">red text</FONT>"),
                                       QStringLiteral("t<B>bold</B>u<BR>"),
                                       QStringLiteral("<IMG SRC=\"p.png\" WIDTH=20 HEIGHT=20>"),
                                       QStringLiteral("<P>par <I>italic</I> par</P>"),
                                       QStringLiteral("<!--c-->line<BR>line")};
    return pieces[Below(int(pieces.size()))];
  }

  std::shared_ptr<HTMLTxtRange> AnyRange(int length) {
    auto range = hosted_.document().body().createTextRange();
    if (const Node* const text = Any(true)) {
      range->moveToElementText(HTMLElement(text->parent()));
      range->move(QStringLiteral("character"), Below(12));
      range->moveEnd(QStringLiteral("character"), Below(length + 1));
    } else {
      range->move(QStringLiteral("textedit"), 1);
    }
    return range;
  }

  void Change() {
    HTMLDocument& document = hosted_.document();
    Gateway& gateway = document.gateway();
    const int size = int(document.body().outerHTML().size());
    if (size < 200 || size > 2000) {
      document.body().createTextRange()->pasteHTML(QString());
      for (int pieces = 0; pieces < 12; ++pieces)
        document.body().insertAdjacentHTML(QStringLiteral("BeforeEnd"), Markup());
      return Number();
    }
    const Node* const text = Any(true);
    const Node* const element = Any(false);
    switch (Below(20)) {
      case 0:
      case 10:
      case 11:
        AnyRange(0)->pasteHTML(Markup());
        break;
      case 1:
      case 12:
        AnyRange(6)->pasteHTML(Markup());
        break;
      case 2:
      case 13:
        AnyRange(9)->pasteHTML(QString());
        break;
      case 3:
      case 14:
      case 15:
        if (text && text->Length() > 1) gateway.SplitText(text, 1 + Below(text->Length() - 1));
        break;
      case 4:
      case 16:
      case 17:
        for (const Node* node = text; node; node = node->next())
          if (node->IsText() && node->next() && node->next()->IsText()) {
            gateway.JoinWithNext(node);
            break;
          }
        break;
      case 5:
        if (element) gateway.Unwrap(element);
        break;
      case 6:
        if (element) HTMLElement(element).setOuterHTML(QString());
        break;
      case 7:
        AnyRange(9)->select();
        selectedAt_ = number_ + 1;
        break;
      case 8:
      case 18:
        if (text)
          gateway.Wrap(text, text->next() && Below(2) ? text->next() : text, TreeBuilder::Element(Known().font));
        break;
      case 19:
        document.body().setAttribute(QStringLiteral("title"), QString::number(number_));
        break;
      default: {
        static const QStringList commands = {QStringLiteral("Bold"), QStringLiteral("ForeColor"),
                                             QStringLiteral("FontSize"), QStringLiteral("CreateLink")};
        static const QStringList values = {QString(), QStringLiteral("#00FF00"), QStringLiteral("5"),
                                           QStringLiteral("y.html")};
        const int at = Below(int(commands.size()));
        if (AnyRange(9)->execCommand(commands[at], false, values[at])) selectedAt_ = number_ + 1;
        break;
      }
    }
    Number();
  }

  // Tells the page how far it has come, and keeps every place of this moment.
  void Number() {
    HTMLDocument& document = hosted_.document();
    document.body().setAttribute(QStringLiteral("n"), QString::number(++number_));
    Snapshot snapshot{number_, std::make_shared<QHash<QString, std::size_t>>(), {}, {}};
    const Node* const body = document.tree().bodyNode();
    const auto keep = [&](const BoundaryPoint& point) {
      snapshot.paths->insert(PathOf(point.container, point.DomOffset(), body), snapshot.now.size());
      snapshot.then.push_back(point);
      snapshot.now.push_back(std::make_unique<LiveRange>(LiveRange{point, point}));
      document.tree().AddRange(snapshot.now.back().get());
    };
    for (const Node* node = body; node; node = NextInTree(node, body)) {
      if (node->IsText()) {
        for (int at = 0; at <= node->Length(); ++at) keep(BoundaryPoint::InText(node, at));
      } else {
        for (const Node* child = node->firstChild(); child; child = child->next()) keep(BoundaryPoint::Before(child));
        keep(BoundaryPoint::AtEnd(node));
      }
    }
    snapshots_.push_back(std::move(snapshot));
  }
  void Drop(Snapshot& snapshot) {
    for (auto& range : snapshot.now) hosted_.document().tree().RemoveRange(range.get());
  }

  void Press() {
    QWidget* const input = hosted_.Input();
    const auto anywhere = [this] { return QPoint(5 + Below(300), 5 + Below(220)); };
    const QPoint from = anywhere();
    const QPoint to = Below(4) == 0 ? anywhere() : from;
    QTest::mousePress(input, Qt::LeftButton, {}, from);
    if (Below(4) == 0) {
      if (Below(2)) Change();
      for (int turns = 1 + Below(3); turns > 0; --turns) HostedPage::WaitFor([] { return false; }, 1);
      if (Below(2)) Change();
    }
    if (to != from) {
      QTest::mouseMove(input, (from + to) / 2);
      QTest::mouseMove(input, to);
    }
    QTest::mouseRelease(input, Qt::LeftButton, {}, to);
  }

  void Compare(const QJsonArray& told, const Arrived& arrived) {
    ++clicks;
    const auto found = arrived.places.find(told.at(0).toInt());
    ASSERT_NE(found, arrived.places.end());
    const Arrived::Places& places = found->second;
    const auto indexOf = [&](int part) { return places.paths->value(told.at(part).toString(), places.now.size()); };
    const auto placeAt = [&](int part) {
      return indexOf(part) < places.now.size() ? places.now[indexOf(part)] : BoundaryPoint();
    };
    const bool isBelow = told.at(1).toString() == u"below";
    const BoundaryPoint wanted = isBelow ? arrived.caret : placeAt(1);
    if (isBelow) ++below;
    const std::string about = "click " + std::to_string(clicks) + " at " + told.at(1).toString().toStdString();
    ASSERT_TRUE(wanted) << about;
    EXPECT_EQ(wanted.container, arrived.caret.container) << about;
    EXPECT_EQ(wanted.offset, arrived.caret.offset) << about;
    EXPECT_EQ(wanted.before, arrived.caret.before) << about;
    if (told.at(0).toInt() < arrived.number) {
      ++crossing;
      if (!isBelow && wanted != places.then[indexOf(1)]) ++moved;
    }
    // What the program selects after the user did stands.
    if (told.size() < 4 || arrived.selectedAt > told.at(0).toInt()) return;
    ++selections;
    EXPECT_EQ(placeAt(2), arrived.selection.start) << about;
    EXPECT_EQ(placeAt(3), arrived.selection.end) << about;
  }

  bool onclick() override {
    Arrived arrived{hosted_.document().parentWindow().event().caret(),
                    hosted_.document().selection().range(),
                    selectedAt_,
                    number_,
                    {}};
    for (const Snapshot& snapshot : snapshots_) {
      Arrived::Places& places = arrived.places[snapshot.number];
      places = {snapshot.paths, snapshot.then, {}};
      for (const auto& range : snapshot.now) places.now.push_back(range->start);
    }
    arrived_.push_back(std::move(arrived));
    return false;
  }
  bool ondblclick() override { return false; }
  void onkeyup() override {}
  void onmousedown() override {}
  void onmouseup() override {}
  void onmouseout() override {}
  void onmouseover() override {}
  bool oncontextmenu() override { return false; }

  HostedPage& hosted_;
  std::mt19937 random_;
  int number_ = 0;
  int selectedAt_ = 0;  // number of the change in which the program selected something
  std::deque<Snapshot> snapshots_;
  std::vector<Arrived> arrived_;
};

}  // namespace

// CORVANE_RANDOM_CLICKS asks for more of them.
TEST(HostedPlacesAtRandom, EveryClickThatMeetsAChangeLandsWhereTheEngineSaid) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  const int wanted = qEnvironmentVariableIntValue("CORVANE_RANDOM_CLICKS");
  const int clicks = wanted > 0 ? wanted : 150;
  RandomClicks random(hosted, RandomSeed("Random clicks"));
  while (random.clicks < clicks) {
    random.Round();
    if (testing::Test::HasFailure()) break;
  }
  std::printf("%d clicks, %d met a change on their way, %d moved with it, %d selections, %d below the text\n",
              random.clicks, random.crossing, random.moved, random.selections, random.below);
  EXPECT_GT(random.crossing, clicks / 10);
  EXPECT_GT(random.selections, clicks / 10);
  EXPECT_LT(random.below, random.clicks / 2);
}
