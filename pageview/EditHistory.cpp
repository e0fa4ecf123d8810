#include "EditHistory.h"

#include <algorithm>
#include <chrono>

namespace {

// Something that a step relies on, or that a change of the page's own touches.
enum class Thing : quint64 { Presence = 1, Data, Attributes, Children, Gap };

// Two things with one key cost an entry of the history at worst.
quint64 KeyOf(Thing thing, NodeId first, NodeId second = 0) {
  return quint64(thing) * 0x9E3779B97F4A7C15ull ^ (quint64(quint32(first)) << 32 | quint32(second));
}

// Where something is put in: before a node, or at the end of its parent.
quint64 GapKey(NodeId parent, NodeId before) {
  return before ? KeyOf(Thing::Gap, 0, before) : KeyOf(Thing::Gap, parent, 0);
}

// `keys`, and the nodes of a tree. The page may bring one of them back by itself when a script has moved it while the
// program took it out, and there can't be two.
std::vector<quint64> Presences(const NodeRef& top, std::vector<quint64> keys) {
  for (const Node* node = top.get(); node; node = NextInTree(node, top.get()))
    keys.push_back(KeyOf(Thing::Presence, node->id()));
  return keys;
}

std::vector<quint64> Reliances(const TreeStep& step) {
  const auto there = [](NodeId id) { return KeyOf(Thing::Presence, id); };
  const auto texts = [&](NodeId text, NodeId rest) {
    return std::vector{there(text), there(rest), KeyOf(Thing::Data, text), KeyOf(Thing::Data, rest), GapKey(0, rest)};
  };
  // All that is in one of the two may change places.
  const auto elements = [&](NodeId parent, NodeId element, NodeId next) {
    return std::vector{there(parent), there(element), there(next), KeyOf(Thing::Children, parent),
                       KeyOf(Thing::Children, element)};
  };
  return std::visit(
      StepCases{
          [&](const ReplaceStep& s) { return std::vector{there(s.text), KeyOf(Thing::Data, s.text)}; },
          [&](const SplitStep& s) { return texts(s.text, s.rest); },
          [&](const JoinStep& s) { return texts(s.text, s.rest); },
          [&](const InsertStep& s) {
            return Presences(s.node, {there(s.parent), there(s.before), GapKey(s.parent, s.before)});
          },
          [&](const RemoveStep& s) {
            return Presences(s.node, {there(s.parent), there(s.next), GapKey(s.parent, s.next)});
          },
          [&](const WrapStep& s) { return elements(s.parent, s.wrapper, s.next); },
          [&](const UnwrapStep& s) { return elements(s.parent, s.element, s.next); },
          [&](const AttributeStep& s) { return std::vector{there(s.element), KeyOf(Thing::Attributes, s.element)}; }},
      step);
}

std::vector<quint64> Touched(const TreeStep& step) {
  return std::visit(StepCases{[](const ReplaceStep& s) { return std::vector{KeyOf(Thing::Data, s.text)}; },
                              [](const InsertStep& s) {
                                return Presences(s.node,
                                                 {GapKey(s.parent, s.before), KeyOf(Thing::Children, s.parent)});
                              },
                              [](const RemoveStep& s) {
                                std::vector<quint64> keys{KeyOf(Thing::Children, s.parent)};
                                for (const NodeId id : s.nodes) keys.push_back(KeyOf(Thing::Presence, id));
                                return keys;
                              },
                              [](const AttributeStep& s) { return std::vector{KeyOf(Thing::Attributes, s.element)}; },
                              // The page's own changes don't come as these.
                              [](const auto&) { return std::vector<quint64>(); }},
                    step);
}

// The gaps that become one when a step, or its inverse where it goes back, takes something out of the tree.
struct JoinedGaps {
  quint64 before, behind;
};
std::optional<JoinedGaps> GapsJoined(const TreeStep& step, bool back) {
  if (const auto* insert = std::get_if<InsertStep>(&step); insert && back)
    return JoinedGaps{GapKey(insert->parent, insert->top), GapKey(insert->parent, insert->before)};
  if (const auto* remove = std::get_if<RemoveStep>(&step); remove && !back)
    return JoinedGaps{GapKey(remove->parent, remove->nodes.front()), GapKey(remove->parent, remove->next)};
  return std::nullopt;
}

qint64 SizeOf(const NodeRef& top) {
  qint64 size = 0;
  for (const Node* node = top.get(); node; node = NextInTree(node, top.get())) {
    size += qint64(sizeof(Node)) + 2 * node->Length();
    for (const Attribute& attribute : node->attributes())
      size += qint64(sizeof(Attribute)) + 2 * (attribute.name.size() + attribute.value.size());
  }
  return size;
}

qint64 SizeOf(const TreeStep& step) {
  return qint64(sizeof(TreeStep)) +
         std::visit(StepCases{[](const ReplaceStep& s) { return 2 * qint64(s.removed.size() + s.inserted.size()); },
                              [](const AttributeStep& s) {
                                return 2 * qint64(s.name.size() + s.before.value_or(QString()).size() +
                                                  s.after.value_or(QString()).size());
                              },
                              [](const RemoveStep& s) { return SizeOf(s.node) + 4 * qint64(s.nodes.size()); },
                              [](const auto& s) { return SizeOf(s.node); }},
                    step);
}

// Whether the step has become part of the one before, as a letter behind a letter does.
bool Continues(TreeStep& before, const TreeStep& step) {
  auto* const letters = std::get_if<ReplaceStep>(&before);
  const auto* const letter = std::get_if<ReplaceStep>(&step);
  if (!letters || !letter || letters->text != letter->text || !letter->removed.isEmpty() ||
      letter->offset != letters->offset + letters->inserted.size())
    return false;
  letters->inserted += letter->inserted;
  return true;
}

qint64 MillisecondsNow() {
  using std::chrono::steady_clock;
  return std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

EditHistory::Command::Command(EditHistory& history, const QString& name, Kind kind) : history_(history), kind_(kind) {
  history_.Open(name, kind_);
}

EditHistory::Command::~Command() {
  history_.Close(kind_);
}

EditHistory::EditHistory(Owner owner) : owner_(std::move(owner)), clock_(MillisecondsNow) {}

void EditHistory::Watch(Gateway* gateway) {
  if (gateway_ && gateway_ != gateway) gateway_->SetListener(nullptr);
  Abandon();
  gateway_ = gateway;
  if (gateway_) gateway_->SetListener(this);
}

void EditHistory::Abandon() {
  gateway_ = nullptr;
  done_.clear();
  undone_.clear();
  before_.reset();
  hasEntry_ = isTooLarge_ = isRunOpen_ = isLoose_ = false;
  size_ = 0;
  isWhole_ = true;
}

void EditHistory::Open(const QString& name, Command::Kind kind) {
  if (++depth_ > 1 || !gateway_) return;
  isLoose_ = false;
  isTooLarge_ = false;
  if (kind == Command::Kind::Letter && isRunOpen_ && clock_() - lastLetter_ < kRestMs) {
    hasEntry_ = true;
    return;
  }
  isRunOpen_ = false;
  name_ = name;
  before_ = owner_.save();
}

void EditHistory::Close(Command::Kind kind) {
  if (--depth_ > 0 || !gateway_) return;
  if (hasEntry_) done_.back().after = owner_.save();
  isRunOpen_ = hasEntry_ && kind != Command::Kind::Whole;
  if (isRunOpen_) lastLetter_ = clock_();
  hasEntry_ = false;
  before_.reset();
}

void EditHistory::Played(TreeStep&& step, Gateway::Origin origin) {
  if (edited_) edited_();
  if (isReplaying_) return;
  if (origin == Gateway::Origin::Page) {
    isWhole_ = false;
    DropWhatIsInTheWayOf(step);
  } else {
    Record(std::move(step));
  }
}

void EditHistory::Record(TreeStep&& step) {
  Forget(undone_, undone_.size());
  if (isTooLarge_) return;
  const bool isLoose = depth_ == 0;
  if (isLoose ? !isLoose_ : !hasEntry_) {
    const EditState state = owner_.save();
    done_.push_back({isLoose ? QString() : name_, before_.value_or(state), state, {}, 0, {}});
    hasEntry_ = !isLoose;
    isLoose_ = isLoose;
    isRunOpen_ = false;
  }
  Entry& entry = done_.back();
  entry.footing.reset();
  qint64 size = SizeOf(step);
  if (!entry.steps.empty() && Continues(entry.steps.back(), step)) {
    size -= qint64(sizeof(TreeStep));
  } else {
    entry.steps.push_back(std::move(step));
  }
  entry.size += size;
  size_ += size;
  KeepWithinLimit();
}

// Part of a command can't be undone, so one that is too large alone goes as a whole.
void EditHistory::KeepWithinLimit() {
  while (size_ > limit_ && !done_.empty()) {
    isTooLarge_ = done_.size() == 1 && hasEntry_;
    isWhole_ = false;
    if (done_.size() == 1) hasEntry_ = isLoose_ = isRunOpen_ = false;
    Forget(done_, 1);
  }
}

void EditHistory::Forget(std::deque<Entry>& entries, std::size_t count) {
  for (; count > 0; --count) {
    size_ -= entries.front().size;
    entries.pop_front();
  }
}

void EditHistory::Undo() {
  if (CanUndo()) Replay(done_, undone_, true);
}

void EditHistory::Redo() {
  if (CanRedo()) Replay(undone_, done_, false);
}

void EditHistory::Replay(std::deque<Entry>& from, std::deque<Entry>& to, bool back) {
  isRunOpen_ = isLoose_ = false;
  to.push_back(std::move(from.back()));
  from.pop_back();
  Entry& entry = to.back();
  entry.footing.reset();
  isReplaying_ = true;
  if (back) {
    std::for_each(entry.steps.rbegin(), entry.steps.rend(),
                  [&](const TreeStep& step) { gateway_->Play(Inverse(step)); });
  } else {
    for (const TreeStep& step : entry.steps) gateway_->Play(Again(step));
  }
  isReplaying_ = false;
  EditState state = back ? entry.before : entry.after;
  // A value that the entry left alone may have been given anew since, to a page that had it already.
  const PageValues now = owner_.save().values;
  for (QString PageValues::* const value : kPageValues)
    if (entry.before.values.*value == entry.after.values.*value) state.values.*value = now.*value;
  owner_.restore(state);
}

// Entries are reached from the back, so those before the one in whose way the change is are out of reach as well.
void EditHistory::DropWhatIsInTheWayOf(const TreeStep& step) {
  if (done_.empty() && undone_.empty()) return;
  for (std::deque<Entry>* entries : {&done_, &undone_}) {
    std::vector<quint64> touched = Touched(step);
    const auto last = std::find_if(entries->rbegin(), entries->rend(),
                                   [&](Entry& entry) { return IsInTheWay(entry, entries == &done_, touched); });
    Forget(*entries, std::size_t(entries->rend() - last));
  }
  if (done_.empty()) hasEntry_ = isRunOpen_ = isLoose_ = false;
}

// `touched` goes on as it will be when the entry has been played: what lies in a gap before something that goes then
// lies in the gap before what followed that.
bool EditHistory::IsInTheWay(Entry& entry, bool back, std::vector<quint64>& touched) {
  if (!entry.footing) {
    entry.footing.emplace();
    for (const TreeStep& step : entry.steps) {
      for (const quint64 key : Reliances(step)) entry.footing->reliesOn.insert(key);
      if (const auto gaps = GapsJoined(step, back)) entry.footing->closes.insert(gaps->before);
    }
  }
  const auto isAnyIn = [&](const auto& keys) {
    return std::any_of(touched.begin(), touched.end(), [&](quint64 key) { return keys.contains(key); });
  };
  if (isAnyIn(entry.footing->reliesOn)) return true;
  if (!isAnyIn(entry.footing->closes)) return false;
  const auto isInTheWay = [&](const TreeStep& step) {
    const std::vector<quint64> keys = Reliances(step);
    if (std::find_first_of(keys.begin(), keys.end(), touched.begin(), touched.end()) != keys.end()) return true;
    const auto gaps = GapsJoined(step, back);
    if (gaps && std::find(touched.begin(), touched.end(), gaps->before) != touched.end())
      touched.push_back(gaps->behind);
    return false;
  };
  return back ? std::any_of(entry.steps.rbegin(), entry.steps.rend(), isInTheWay)
              : std::any_of(entry.steps.begin(), entry.steps.end(), isInTheWay);
}
