#include "CoreKinds.h"

#include "Colors.h"
#include "KindTable.h"
#include "StripPicturePaths.h"
#include "TestPlatform.h"

namespace {

// The routine gives the same for a text and for a file that holds it.
CaseOutcome PlayStrip(const QJsonObject& one) {
  CaseCheck check;
  const QByteArray html = BytesOf(one["html"]);
  QByteArray pictures = "untouched";
  check.Equal("text", one["text"], ByteText(StripPicturePaths(html, pictures)));
  check.Equal("pictures", one["pictures"], ByteText(pictures));

  TestProgram test;
  const QString page = test.WorkFile("wgcard.html");
  if (!PutFile(page, html)) return {{}, "the page can't be written"};
  pictures = "untouched";
  check.Equal("text of a file", one["text"], ByteText(StripPicturePathsOfFile(test.program.Files, page, pictures)));
  check.Equal("pictures of a file", one["pictures"], ByteText(pictures));
  return check.Outcome();
}

CaseOutcome PlayColors(const QJsonObject& one) {
  CaseCheck check;
  if (one["routine"] == QLatin1String("ColorToHtml")) {
    check.Equal("text", one["text"], ColorToHtml(one["color"].toInt()));
  } else {
    check.Equal("routine", one["routine"], "HtmlToColor");
    check.Equal("color", one["color"], HtmlToColor(one["text"].toString()));
  }
  return check.Outcome();
}

}  // namespace

void RegisterCoreKinds(KindTable& table) {
  table.Add("strip", PlayStrip);
  table.Add("colors", PlayColors);
}
