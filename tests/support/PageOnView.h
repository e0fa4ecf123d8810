// A page view on the headless component, with what the user's doings need to be told in a test.
#pragma once

#include "HTMLDocument.h"
#include "HeadlessWebBrowser.h"
#include "TestPlatform.h"
#include "UndoHabit.h"
#include "WBUC.h"

// Makes the component and keeps a pointer to it in `made`, for tests that act as the user.
inline WebBrowserFactory MakeHeadless(HeadlessWebBrowser*& made) {
  return [&made](QWidget*) {
    auto browser = std::make_unique<HeadlessWebBrowser>();
    made = browser.get();
    return browser;
  };
}

inline QString PageAround(const QString& body) {
  return QStringLiteral("<HTML><HEAD><TITLE></TITLE></HEAD><BODY>%1</BODY></HTML>").arg(body);
}

// The element with that id; none when there is no such element.
inline HTMLElement ElementById(const HTMLDocument& document, const QString& id) {
  const HTMLElementCollection all = document.all();
  for (int i = 0; i < all.length(); ++i)
    if (all.item(i).id() == id) return all.item(i);
  return {};
}

// The element's own first text; null when it has none.
inline const Node* TextOf(const HTMLElement& element) {
  const Node* child = element ? element.node()->firstChild() : nullptr;
  while (child && !child->IsText()) child = child->next();
  return child;
}

class PageOnView {
 public:
  TestProgram test;
  HeadlessWebBrowser* browser = nullptr;
  WBUC view{test.program, MakeHeadless(browser)};
  UndoHabit habit{view};

  HTMLDocument& Document() { return *browser->Document(); }
  HTMLElement Element(const QString& id) { return ElementById(Document(), id); }

  // Shows a page with this body, stamped with the stored values as a new one.
  void ShowBody(const QString& body) { browser->SetHtml(PageAround(body)); }

  // Writes the page to a file and opens it.
  void Open(const QByteArray& page, bool isNew) {
    const QString path = test.WorkFile(QStringLiteral("page.html"));
    PutFile(path, page);
    view.Navo(path, isNew);
    browser->Finish();
  }

  // The insertion point inside the element's own first text, without a click. `at` counts UTF-16 units.
  bool PutPoint(const QString& id, int at) {
    const Node* const text = TextOf(Element(id));
    if (!text) return false;
    const BoundaryPoint point = BoundaryPoint::InText(text, at);
    view.SetCurrentTextRange(std::make_shared<HTMLTxtRange>(Document(), LiveRange{point, point}));
    return true;
  }
};
