// What the user has done to the open page, command by command, so that it can be undone and done again.
// It keeps the gateway's own steps and plays their inverses. What the page's scripts change in between stays: an entry
// that such a change gets in the way of is forgotten, with all that lies beyond it. Beside the tree an entry knows what
// the user had in hand before and after it.
#pragma once

#include <QString>
#include <deque>
#include <functional>
#include <optional>
#include <unordered_set>
#include <vector>

#include "Gateway.h"
#include "HTMLElement.h"
#include "PageValues.h"

// What the user works on. Places are told by numbers, which hold for as long as the page is open.
struct EditState {
  struct Stretch {
    NodePlace start, end;
  };
  std::optional<Stretch> insertionPoint;
  std::optional<Stretch> selection;
  HTMLElement currentElement;
  HTMLElement selectedElement;
  QString currentTag;
  PageValues values;
};

class EditHistory : public StepListener {
 public:
  // Who tells what the user has in hand, and takes it up again. Both are called while the page is open only.
  struct Owner {
    std::function<EditState()> save;
    std::function<void(const EditState&)> restore;
  };
  explicit EditHistory(Owner owner);

  // Begins anew, with the page that this gateway changes; null for none.
  void Watch(Gateway* gateway);
  // The same where the page has gone already.
  void Abandon();

  // What is played while one lives is one entry. One inside another is part of that. `name` is what the user reads.
  // Letters that follow each other without a long rest are one entry, which is called by its first letter.
  class Command {
   public:
    enum class Kind { Whole, FirstLetter, Letter };
    Command(EditHistory& history, const QString& name, Kind kind = Kind::Whole);
    ~Command();
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

   private:
    EditHistory& history_;
    const Kind kind_;
  };

  // The next letter begins an entry of its own.
  void EndRun() { isRunOpen_ = false; }

  // The name of what would be undone or redone next; null where there is nothing.
  QString UndoName() const { return done_.empty() ? QString() : done_.back().name; }
  QString RedoName() const { return undone_.empty() ? QString() : undone_.back().name; }
  bool CanUndo() const { return !done_.empty() && depth_ == 0; }
  bool CanRedo() const { return !undone_.empty() && depth_ == 0; }

  // Nothing happens where there is nothing, or while a command is under way.
  void Undo();
  void Redo();

  // Whether undoing all of it gives the page as it was loaded.
  bool IsWhole() const { return isWhole_; }

  // An estimate of the memory that all this takes, in bytes. Above the limit the oldest entries go.
  qint64 Size() const { return size_; }
  void SetLimit(qint64 bytes) { limit_ = bytes; }
  static constexpr qint64 kLimit = 64 << 20;

  // A rest after which letters begin an entry of their own, and the clock that tells; both in milliseconds.
  static constexpr qint64 kRestMs = 2000;
  void SetClock(std::function<qint64()> clock) { clock_ = std::move(clock); }

  // Called after each step by whomsoever.
  void SetEdited(std::function<void()> edited) { edited_ = std::move(edited); }

  void Played(TreeStep&& step, Gateway::Origin origin) override;

 private:
  struct Entry {
    QString name;
    EditState before, after;
    std::vector<TreeStep> steps;
    qint64 size = 0;
    // What its steps rely on, and the gaps that close when it is played next; made when they are first asked for.
    struct Footing {
      std::unordered_set<quint64> reliesOn, closes;
    };
    std::optional<Footing> footing;
  };

  void Open(const QString& name, Command::Kind kind);
  void Close(Command::Kind kind);
  void Record(TreeStep&& step);
  void Replay(std::deque<Entry>& from, std::deque<Entry>& to, bool back);
  void Forget(std::deque<Entry>& entries, std::size_t count);
  void KeepWithinLimit();
  void DropWhatIsInTheWayOf(const TreeStep& step);
  static bool IsInTheWay(Entry& entry, bool back, std::vector<quint64>& touched);

  Owner owner_;
  Gateway* gateway_ = nullptr;
  std::deque<Entry> done_;    // the last one is undone next
  std::deque<Entry> undone_;  // the last one is redone next

  // Of the command under way:
  int depth_ = 0;
  QString name_;
  std::optional<EditState> before_;
  bool hasEntry_ = false;    // the last one of done_ is its
  bool isTooLarge_ = false;  // there is no room for it

  bool isRunOpen_ = false;  // the last one of done_ is letters, and more of them may come
  bool isLoose_ = false;    // the last one of done_ came without a command, and more of it may come
  bool isReplaying_ = false;
  bool isWhole_ = true;
  qint64 lastLetter_ = 0;
  qint64 size_ = 0;
  qint64 limit_ = kLimit;
  std::function<qint64()> clock_;
  std::function<void()> edited_;
};
