#include "ElementKinds.h"

#include "KindTable.h"
#include "PageOnView.h"
#include "Serializer.h"
#include "WorkOps.h"

namespace {

constexpr int fromTagClip = 1;

// One operation on a page. The routines give the result code, or null where there is none.
class Operation {
 public:
  Operation(PageOnView& page, const QJsonObject& op) : page_(page), op_(op) {}

  // Undefined for an operation that isn't known.
  QJsonValue Do() {
    const QString name = Text("name");
    if (name == u"MoveElementOneElement") {
      DoubleClick(Text("id"));
      return page_.view.MoveElementOneElement(op_["direction"].toInt());
    }
    if (name == u"MoveElementOneSpace") {
      MakeCurrent(op_["id"]);
      page_.view.MoveElementOneSpace(op_["direction"].toInt());
    } else if (name == u"AddTable") {
      AddTable();
    } else if (name == u"InsertPageHTML") {
      MakeCurrent(op_["id"]);
      InsertPageHTML(page_.view, Text("html"));
    } else if (name == u"CutPaste") {
      CutPaste();
    } else if (name == u"AddNewElement") {
      page_.view.AddNewElement(Text("html"));
    } else {
      return QJsonValue(QJsonValue::Undefined);
    }
    return {};
  }

 private:
  QString Text(const char* field) const { return op_[QLatin1String(field)].toString(); }

  void DoubleClick(const QString& id) {
    page_.Document().Dispatch(HTMLEventObj(EventType::DoubleClick).On(page_.Element(id)).Button(1));
  }

  // No id: a page that was just opened has no current element, and a press of the mouse takes it away.
  void MakeCurrent(const QJsonValue& id) {
    if (id.isNull()) {
      page_.Document().Dispatch(HTMLEventObj(EventType::MouseDown).On(page_.Document().body()).Button(1));
    } else {
      page_.view.SetCurrentElement(page_.Element(id.toString()));
    }
  }

  void AddTable() {
    WBUC::Values& values = page_.view.StoredValues();
    values.BodyFontName = Text("BodyFontName");
    values.BodyFontSize = Text("BodyFontSize");
    values.BodyFontColor = Text("BodyFontColor");
    page_.view.AddTable(Text("sWide"), Text("sHigh"), Text("sBorder"), Text("sColor"), Text("sHPos"), Text("sTDHPos"),
                        Text("sTDVPos"), Text("sPadding"));
  }

  void CutPaste() {
    DoubleClick(Text("id"));
    page_.view.Cut();
    if (op_["then"] != op_["id"]) MakeCurrent(op_["then"]);
    page_.view.Paste(fromTagClip);
  }

  PageOnView& page_;
  const QJsonObject op_;
};

CaseOutcome PlayElements(const QJsonObject& one) {
  PageOnView page;
  page.ShowBody(one["body"].toString());
  const QJsonObject op = one["op"].toObject();
  for (const char* field : {"id", "then"}) {
    const QJsonValue id = op[QLatin1String(field)];
    if (id.isString() && !page.Element(id.toString())) return {{"no element " + id.toString()}, {}};
  }
  const QJsonValue result = Operation(page, op).Do();
  if (result.isUndefined()) return {{"unknown operation " + op["name"].toString()}, {}};
  CaseCheck check;
  check.Equal("result", one["result"], result);
  check.Equal("body_after", one["body_after"], InnerHtml(page.Document().tree().bodyNode(), false));
  check.Equal("undo", "", page.habit.Broken());
  return check.Outcome();
}

}  // namespace

void RegisterElementKinds(KindTable& table) {
  table.Add("elements", PlayElements);
}
