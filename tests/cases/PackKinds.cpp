#include "PackKinds.h"

#include "CheckIconFile.h"
#include "KindTable.h"
#include "ModPackage.h"
#include "TestPlatform.h"

namespace {

CaseOutcome PlayNextLink(const QJsonObject& one) {
  TestProgram test;
  test.program.LinkTextValue = one["link_text"].toString();
  CaseCheck check;
  check.Equal(
      "result", one["result"],
      ByteText(AddNextPageLink(test.program, one["path"].toString(), BytesOf(one["html"]), one["page_count"].toInt())));
  return check.Outcome();
}

CaseOutcome PlayFileNames(const QJsonObject& one) {
  CaseCheck check;
  const QJsonValue routine = one["routine"];
  if (routine == QLatin1String("pack")) {
    const PackFileNames names = ReadyPackFileNames(one["folder"].toString(), one["file_name"].toString());
    check.Equal("folder_result", one["folder_result"], names.MakePath);
    check.Equal("file_name_result", one["file_name_result"], names.MakeName);
  } else if (routine == QLatin1String("picture")) {
    check.Equal("name", one["name"], PictureFileName(one["path"].toString()));
  } else {
    check.Equal("routine", routine, "FileNameOf");
    check.Equal("name", one["name"], FileNameOf(one["path"].toString()));
  }
  return check.Outcome();
}

CaseOutcome PlayCheckIcon(const QJsonObject& one) {
  TestProgram test;
  const QString path = test.Path("icons/" + one["name"].toString());
  const QByteArray bytes = QByteArray::fromHex(one["bytes"].toString().toLatin1());
  if (!one["bytes"].isNull() && !PutFile(path, bytes)) return {{}, "the icon can't be written"};
  QString message = "untouched";
  CaseCheck check;
  check.Equal("code", one["code"], CheckIconFile(test.program.Files, path, message));
  check.Equal("message", one["message"].toString().replace("<path>", path), message);
  return check.Outcome();
}

}  // namespace

void RegisterPackKinds(KindTable& table) {
  table.Add("nextlink", PlayNextLink);
  table.Add("filenames", PlayFileNames);
  table.Add("checkicon", PlayCheckIcon);
}
