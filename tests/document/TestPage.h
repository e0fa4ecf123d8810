// Pages for tests: made from HTML with places marked in it, shown with places marked, and checked for soundness.
#pragma once

#include <QHash>
#include <QStringList>
#include <memory>
#include <vector>

#include "HTMLDocument.h"
#include "HTMLTxtRange.h"
#include "LivePage.h"

// A live page that does nothing but what it is told, so that a test can see whether it would end up like the model.
class ReplicaPage : public LivePage {
 public:
  explicit ReplicaPage(const PageTree& tree);

  void Changed(const TreeStep& step) override;
  void ShowSelection(const LiveRange* range) override { selectionShown = range != nullptr; }
  void TakesKeys(bool) override {}
  void Outline(const Node*) override {}
  void Measure(const BoundaryPoint&, Answer answer) override { answer(position); }

  // Where this page and the model differ; empty when they don't.
  QString DifferenceTo(const PageTree& tree) const;

  bool selectionShown = false;
  std::optional<QPoint> position;

 private:
  struct Copy {
    QString name;  // of an element; "#" for anything else
    QString data;
    std::vector<std::pair<QString, QString>> attributes;
    std::vector<NodeId> children;
  };
  void Add(const Node* subtree);
  void Play(const ReplaceStep& step);
  void Play(const SplitStep& step);
  void Play(const JoinStep& step);
  void Play(const InsertStep& step);
  void Play(const RemoveStep& step);
  void Play(const WrapStep& step);
  void Play(const UnwrapStep& step);
  void Play(const AttributeStep& step);
  QHash<NodeId, Copy> copies_;
};

// What must hold of every document at all times, as a list of what doesn't. `pageMayHaveTexts`: scripts of the page
// have changed it, so that texts may be empty or stand side by side.
QStringList ProblemsOf(const HTMLDocument& document, bool pageMayHaveTexts = false);

// Where the page that a file of this document gives differs from it; empty when it doesn't.
QString DifferenceAfterSaving(const HTMLDocument& document);

class TestPage {
 public:
  // A page with this BODY content. "^" marks places: one for a collapsed range, two for its ends.
  explicit TestPage(const QString& bodyContent);

  HTMLDocument document;
  std::unique_ptr<ReplicaPage> page;
  LiveRange marked;

  std::shared_ptr<HTMLTxtRange> Range();                          // at the marks
  const Node* Find(const QString& tagName, int index = 0) const;  // null when there is none
  HTMLElement Element(const QString& tagName, int index = 0) const { return HTMLElement(Find(tagName, index)); }
  const Node* Text(const QString& data) const;  // the text node that contains this
  QString Body() const;                         // content of BODY
  // Content of BODY, tags without attributes, with "^" at the range's places.
  QString Show(const LiveRange& range) const;
  QString Show(const BoundaryPoint& point) const { return Show(LiveRange{point, point}); }
  QStringList Problems();

  // For the end of an edit: content of BODY with attributes and with "^" at the range's places. What isn't in order
  // follows: the model's own bookkeeping, a point or the selection in a wrong place, a live page that differs, a file
  // that reads as another page.
  QString After(const LiveRange& range);
};
