// What of the user's hands reaches the page's view. Nothing that would make a browser of it: no mouse button for back
// and forward, no zoom, no drop. And keys only when they are its own: the release of a key that went down elsewhere, as
// one that picked an entry of a menu, is kept from it, and while the page has lost its widget nobody else gets the keys
// that it had.
#pragma once

#include <QObject>
#include <QSet>

class QWidget;
class QWebEngineView;

class PageInput : public QObject {
 public:
  // Watches all keys of the program. The view must outlive it.
  explicit PageInput(QWebEngineView& view);

  // The renderer is gone, and with it the widget that had the keys; a new page is on its way into the view; and it is
  // there.
  void PageDied();
  void PageComes() { isDead_ = false; }
  void TakeBack();

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  static bool IsForBrowsers(const QEvent& event);
  void WidgetGoes(QWidget* widget);
  bool IsPages(const QWidget* widget) const;  // the view itself or what is in it

  QWebEngineView& view_;
  QSet<quint32> downElsewhere_;  // by scan code or key
  bool isDead_ = false;          // the page in view has lost its renderer,
  bool hadFocus_ = false;        // and the keys went to it
};
