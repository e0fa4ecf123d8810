#include "BridgeMessages.h"

#include "TreeCodec.h"

namespace Bridge {

namespace {

Places PlacesOf(const QJsonArray& numbers) {
  Places places;
  for (qsizetype at = 0; at + 1 < numbers.size(); at += 2)
    places.push_back({numbers.at(at).toInt(), numbers.at(at + 1).toInt()});
  return places;
}

Selection SelectionOf(const QJsonArray& parts) {
  Selection selection{parts.at(0).toInt(), parts.at(1).toInt(), {}};
  if (parts.size() == 4) selection.range = {PlacesOf(parts.at(2).toArray()), PlacesOf(parts.at(3).toArray())};
  return selection;
}

std::optional<EventType> TypeOf(const QString& name) {
  struct Row {
    const char* name;
    EventType type;
  };
  constexpr Row rows[] = {{"click", EventType::Click},       {"dblclick", EventType::DoubleClick},
                          {"keyup", EventType::KeyUp},       {"mousedown", EventType::MouseDown},
                          {"mouseup", EventType::MouseUp},   {"mouseover", EventType::MouseOver},
                          {"mouseout", EventType::MouseOut}, {"contextmenu", EventType::ContextMenu}};
  for (const Row& row : rows)
    if (name == QLatin1String(row.name)) return row.type;
  return std::nullopt;
}

QPoint PixelsOf(const QJsonArray& pair) {
  return {int(pair.at(0).toDouble()), int(pair.at(1).toDouble())};
}

FromPage DecodeTreeMessage(const QJsonArray& m) {
  return TreeMessage{m.at(2).toDouble(), m.at(3).toString(), m.at(4).toBool(), m.at(5).toArray(), m.at(6).toString()};
}

FromPage DecodeEvent(const QJsonArray& m) {
  const QJsonObject event = m.at(2).toObject();
  const auto type = TypeOf(event[QLatin1String("type")].toString());
  if (!type) return {};
  std::vector<NodeId> target;
  for (const QJsonValue& id : event[QLatin1String("target")].toArray()) target.push_back(id.toInt());
  const QJsonArray caret = event[QLatin1String("caret")].toArray();
  return EventMessage{*type,
                      std::move(target),
                      {event[QLatin1String("x")].toDouble(), event[QLatin1String("y")].toDouble()},
                      event[QLatin1String("button")].toInt(),
                      event[QLatin1String("keyCode")].toInt(),
                      event[QLatin1String("shift")].toBool(),
                      SelectionOf(event[QLatin1String("selection")].toArray()),
                      event[QLatin1String("applied")].toInt(),
                      PixelsOf(event[QLatin1String("scroll")].toArray()),
                      PlacesOf(caret.at(0).toArray()),
                      {caret.at(1).toDouble(), caret.at(2).toDouble()},
                      event[QLatin1String("onText")].toBool()};
}

FromPage DecodeHandled(const QJsonArray& m) {
  return HandledMessage{m.at(2).toBool()};
}

FromPage DecodeScroll(const QJsonArray& m) {
  return ScrollMessage{PixelsOf(m.at(2).toArray()), m.at(3).toInt()};
}

FromPage DecodeFocus(const QJsonArray& m) {
  return FocusMessage{m.at(2).toBool()};
}

FromPage DecodeSelection(const QJsonArray& m) {
  return SelectionMessage{SelectionOf(m.at(2).toArray()), m.at(3).toInt()};
}

FromPage DecodeChanges(const QJsonArray& m) {
  return ChangesMessage{m.at(2).toInt(), m.at(3).toInt(), m.at(4).toObject()};
}

FromPage DecodeTold(const QJsonArray& m) {
  return ToldMessage{m.at(2).toInt(), m.at(3).toArray()};
}

struct WordRow {
  const char* word;
  FromPage (*decode)(const QJsonArray& message);
};
constexpr WordRow wordsOfPage[] = {{"tree", DecodeTreeMessage},    {"event", DecodeEvent},   {"handled", DecodeHandled},
                                   {"selection", DecodeSelection}, {"scroll", DecodeScroll}, {"focus", DecodeFocus},
                                   {"changes", DecodeChanges},     {"told", DecodeTold}};

constexpr const char* batchWord = "batch";
constexpr const char* heardWord = "heard";
constexpr const char* selectWord = "select";
constexpr const char* measureWord = "measure";
constexpr const char* keysWord = "keys";
constexpr const char* coverWord = "cover";
constexpr const char* outlineWord = "outline";
constexpr const char* adoptWord = "adopt";
constexpr const char* tellWord = "tell";

QJsonArray Named(const BoundaryPoint& point) {
  return {point.container->id(), point.IsInText() ? point.offset : point.before ? point.before->id() : 0};
}

}  // namespace

QString TokenOf(const QJsonArray& message) {
  return message.at(0).toString();
}

FromPage Decode(const QJsonArray& message) {
  const QString word = message.at(1).toString();
  for (const WordRow& row : wordsOfPage)
    if (word == QLatin1String(row.word)) return row.decode(message);
  return {};
}

QJsonArray Batch(int number, int heard, const QJsonArray& operations) {
  return {batchWord, number, heard, operations};
}

QJsonArray Heard(int number) {
  return {heardWord, number};
}

QJsonArray Select(int number, int users, const LiveRange* range) {
  QJsonArray message{selectWord, number, users};
  if (range && range->start) {
    message.append(Named(range->start));
    message.append(Named(range->end));
  }
  return message;
}

QJsonArray Measure(const BoundaryPoint& place) {
  const QJsonArray named = Named(place);
  return {measureWord, named.at(0), named.at(1)};
}

QJsonArray Keys(bool taken) {
  return {keysWord, taken};
}

QJsonArray Cover(int pixels) {
  return {coverWord, pixels};
}

QJsonArray Outline(NodeId element) {
  return {outlineWord, element};
}

QJsonArray Adopt(const Node* tree, QPoint scroll, int batch, NodeId freeId) {
  QJsonArray flat;
  EncodeTree(tree, flat);
  return {adoptWord, flat, QJsonArray{scroll.x(), scroll.y()}, batch, freeId};
}

QJsonArray Tell(int question) {
  return {tellWord, question};
}

QStringList WordsOfPage() {
  QStringList words;
  for (const WordRow& row : wordsOfPage) words.append(QLatin1String(row.word));
  return words;
}

QStringList WordsOfProgram() {
  return {batchWord, heardWord, selectWord, measureWord, keysWord, coverWord, outlineWord, adoptWord, tellWord};
}

}  // namespace Bridge
