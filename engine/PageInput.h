// What of the user's hands reaches the page's view. Nothing that would make a browser of it: no mouse button for back
// and forward, no zoom, no drop. Of the keys only those that went down in the page: one that went down in another
// control, window or program comes up unheard. A key that the program can answer by itself, because nothing that was
// done before it is still under way, is answered before the page gets it.
// While the page has lost its renderer nobody else gets its keys and clicks: they are kept for the page that comes.
#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "InputInFlight.h"

class QKeyEvent;
class QMouseEvent;
class QTouchEvent;
class QWebEngineView;
class QWidget;

class PageInput : public QObject {
 public:
  // Answers the release of a key in the program; false leaves that to the page's report.
  using Answer = std::function<bool(int keyCode, bool shift)>;

  // Watches all input of the program. The view must outlive it.
  PageInput(QWebEngineView& view, Answer answer);

  // The renderer is gone, and with it the widget that had the keys; a new page is on its way into the view; and it is
  // there.
  void PageDied();
  void PageComes() { isDead_ = false; }
  void TakeBack();
  // The page in view is the model's again: it gets what was kept.
  void GoOn();
  // Another page is asked for: what was done to the one before concerns nobody any more.
  void Forget();

  InputInFlight& inFlight() { return inFlight_; }
  const InputInFlight& inFlight() const { return inFlight_; }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  static bool IsForBrowsers(const QEvent& event);
  bool FilterKey(QWidget* watched, const QKeyEvent& key);
  bool FilterMouse(QWidget* watched, const QMouseEvent& mouse);
  bool FilterTouch(QWidget* watched, QTouchEvent& touch);
  void NotePress(const QKeyEvent& key, bool inPage);
  void NoteForeign(quint32 code);
  void LookForReleases();
  bool ComesFromPage(const QKeyEvent& key);
  bool Release(const QKeyEvent& key);
  void ProgramChanged(Qt::ApplicationState state);
  void WidgetGoes(QWidget* widget);
  bool IsPages(const QWidget* widget) const;  // the view itself or what is in it
  bool GetsKeysFor(const QWidget* widget) const;

  QWebEngineView& view_;
  Answer answer_;
  QHash<quint32, bool> down_;  // the keys that are down, by scan code or key; whether they went down in the page
  QTimer releases_;            // runs while keys are down that went down elsewhere
  QSet<quint32> up_;           // those of them that the keyboard told to be up at the last look
  InputInFlight inFlight_;
  std::vector<std::unique_ptr<QEvent>> kept_;
  bool isKeeping_ = false;
  bool isReplaying_ = false;
  bool isButtonDown_ = false;  // the left one, so that the user may be selecting
  std::optional<int> finger_;  // the first of those that came down last
  bool isDead_ = false;        // the page in view has lost its renderer,
  bool hadFocus_ = false;      // and the keys went to it
};
