// The browser component without a display: libgumbo reads the pages, a grid of cells lays them out, and every question
// is answered at once. Nearly all tests run on it.
#pragma once

#include <memory>
#include <optional>

#include "HTMLWindow2.h"
#include "LivePage.h"
#include "WebBrowser.h"

class HTMLDocument;

class HeadlessWebBrowser : public WebBrowser {
  Q_OBJECT

 public:
  explicit HeadlessWebBrowser(QObject* parent = nullptr);
  ~HeadlessWebBrowser() override;

  void Navigate(const QString& url, int flags) override;
  HTMLDocument* Document() const override { return document_.get(); }
  bool Offline() const override { return offline_; }
  void SetOffline(bool offline) override { offline_ = offline; }

  // Finishes a pending Navigate now instead of at the next turn of the event loop.
  void Finish();

  // Shows a page that is no file.
  void SetHtml(const QString& html, const QString& encoding = {});

  // The user's doings, as the page would report them. Points are pixels in the view.
  void MouseDown(QPoint point, int button = 1);
  void MouseUp(QPoint point, int button = 1);
  void Click(QPoint point);        // press, release, click
  void DoubleClick(QPoint point);  // all that comes before it included
  void RightClick(QPoint point);
  void MouseOver(QPoint point);
  void MouseOut(QPoint point);
  void KeyUp(int keyCode, bool shift = false);
  // Selects text as a drag from one place to the other does, with the click that ends it.
  void Drag(QPoint from, QPoint to);

  // A point of the view just before the character at `offset` of a text.
  std::optional<QPoint> PointAt(const BoundaryPoint& point) const;

 private:
  class Page;
  HTMLEventObj At(EventType type, QPoint point, int button) const;

  std::unique_ptr<HTMLDocument> document_;
  std::unique_ptr<Page> page_;
  std::optional<QString> pending_;
  bool offline_ = false;
};
