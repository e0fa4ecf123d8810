// What the program and the bridge in the live page tell each other. A message is a JSON array whose first item is a
// word.
//
// To the program, behind the token of the page's bridge:
//   tree       milliseconds since the epoch when the navigation began, address, whether in quirks mode, the tree (see
//              TreeCodec.h), encoding
//   event      {type, target, x, y, button, keyCode, shift, selection, applied, scroll, caret, onText}
//   handled    whether a mouse button's release, and not a press: no events come of it any more
//   selection  selection, applied
//   scroll     scroll, applied
//   focus      whether a frame of the page has the keys
//   changes    number, applied, changes (see ForeignChanges.h)
//   told       number of the question, the tree
//
// The tree comes once, when the page is loaded; `changes` tells what the page's own scripts have done to it; `told`
// answers a `tell`.
//
// To the page:
//   batch      number, number of the last `changes` heard of, operations (see BridgeOutbox.cpp)
//   heard      number of the last `changes` heard of
//   select     number of the selection, user's selections heard of, and two places where there is one
//   measure    place
//   keys       whether released keys go into the text
//   cover      pixels at the view's lower edge over which something lies
//   outline    the number of an element that gets a line round it, or 0
//   adopt      the tree, scroll, batch, the first number that is free
//   tell       number of the question
//
// The flush that ends in a `measure` is answered at once; where it changes the page, the place is brought into view
// first.
//  `adopt` has the page take the program's tree for its own.
//
// `applied` is the number of the last batch that the page had carried out. A place is a node's number and an offset in
// text or the number of the child behind it, 0 at the end. The page names places, and nodes, twice where the program
// may not have heard of the first: [number, rest, number, rest]. A selection is [number of the program's last one that
// the page has heard of, number of the user's own since the page came], and its two places where there is one.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QPointF>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "HTMLWindow2.h"
#include "TreeStep.h"

namespace Bridge {

using Places = std::vector<NodePlace>;  // of which the first that the program knows is meant

struct Selection {
  int programs = 0;
  int users = 0;
  std::optional<std::pair<Places, Places>> range;
};

struct TreeMessage {
  double began;
  QString address;
  bool quirks;
  QJsonArray tree;
  QString encoding;
};
struct EventMessage {
  EventType type;
  std::vector<NodeId> target;
  QPointF client;  // in pixels of the page
  int button;      // as DOM events count: 0 left, 1 middle, 2 right
  int keyCode;
  bool shift;
  Selection selection;
  int applied;
  QPoint scroll;  // in pixels of the page
  Places caret;   // none where the page has no answer
  QPointF caretPosition;
  bool onText;  // the mouse is over the text that the caret is in
};
struct HandledMessage {
  bool isRelease;
};
struct ScrollMessage {
  QPoint scroll;
  int applied;
};
struct FocusMessage {
  bool isInFrame;
};
struct SelectionMessage {
  Selection selection;
  int applied;
};
struct ChangesMessage {
  int number;
  int applied;
  QJsonObject changes;
};
struct ToldMessage {
  int question;
  QJsonArray tree;
};
// Nothing for a message that isn't one of these.
using FromPage = std::variant<std::monostate, TreeMessage, EventMessage, HandledMessage, SelectionMessage,
                              ScrollMessage, FocusMessage, ChangesMessage, ToldMessage>;

QString TokenOf(const QJsonArray& message);
FromPage Decode(const QJsonArray& message);

QJsonArray Batch(int number, int heard, const QJsonArray& operations);
QJsonArray Heard(int number);
QJsonArray Select(int number, int users, const LiveRange* range);
QJsonArray Measure(const BoundaryPoint& place);
QJsonArray Keys(bool taken);
QJsonArray Cover(int pixels);
// 0 for no element.
QJsonArray Outline(NodeId element);
// `freeId`: what the page itself adds is numbered from there.
QJsonArray Adopt(const Node* tree, QPoint scroll, int batch, NodeId freeId);
QJsonArray Tell(int question);

// The words of the table above, for who wants to compare: to the program, to the page.
QStringList WordsOfPage();
QStringList WordsOfProgram();

}  // namespace Bridge
