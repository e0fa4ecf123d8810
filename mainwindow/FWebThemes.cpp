// Themes dress the page in view: a background picture and a text colour. Nothing is saved by it.
#include <QMenu>

#include "Colors.h"
#include "FWeb.h"
#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"

namespace {

struct ThemeRow {
  const char* picture;
  const char* color;
};

constexpr ThemeRow themes[] = {
    {"rainbow.jpg", "#0000FF"}, {"heart.jpg", "#FF0080"},    {"silver.jpg", "#565F7E"}, {"forest.jpg", "#F9F3EE"},
    {"ruby.jpg", "#FFFFFF"},    {"deepblue.jpg", "#A6D0FF"}, {"stars.jpg", "#FFFFFF"},
};
constexpr ThemeRow stationery[] = {
    {"parchment.jpg", "#3D0264"}, {"white.jpg", "#565F7E"}, {"brocade.jpg", "#A68A7B"}, {"brocblue.jpg", "#470176"},
    {"brocred.jpg", "#740140"},   {"paper.jpg", "#A68A7B"}, {"pink.jpg", "#71005A"},
};
constexpr int hearts = 1;

// A file of that name in the folder of the pages stays.
void CopyIfMissing(Program& program, const QString& source, const QString& name) {
  const QString target = PathRules::Join(program.project.WorkPath(), name);
  if (!program.Files.FileExists(target)) program.Files.CopyFileOver(source, target);
}

}  // namespace

void FWeb::SetThemeBitmaps() {
  int number = 0;
  for (const char* const menu : {"mThemesMain", "mTheme2"})
    for (QAction* const entry : Entry(menu)->menu()->actions())
      if (!entry->menu()) entry->setIcon(QIcon(QStringLiteral(":/themes/%1.svg").arg(number++)));
}

// False, and the page stays as it is, when the picture is missing.
bool FWeb::ApplyTheme(const QString& picture, const QString& color, bool removesHeartFirst) {
  const QString sample = PathRules::Join(PathRules::Join(program_.AppPath, QStringLiteral("samples")), picture);
  if (!program_.Files.FileExists(sample)) {
    program_.platform.dialogs.ShowMessage(
        this, StringText(TextNumber::ThemeFileBefore) + picture + StringText(TextNumber::ThemeFileAfter));
    return false;
  }
  const auto step = jWB->UndoStep(QStringLiteral("Theme"));
  if (removesHeartFirst) RemoveHeartPic();
  CopyIfMissing(program_, sample, picture);
  jWB->SetBackPic(picture);
  jWB->SetBodyFontColor(color);
  emit PageTextColorChanged(HtmlToColor(color));
  return true;
}

void FWeb::mmtheme(int Index) {
  const ThemeRow& theme = themes[Index];
  const auto step = jWB->UndoStep(QStringLiteral("Theme"));
  if (!ApplyTheme(QString::fromLatin1(theme.picture), QString::fromLatin1(theme.color), false)) return;
  if (Index != hearts) return RemoveHeartPic();
  const QString name = QStringLiteral("hearttop.gif");
  const QString sample = PathRules::Join(PathRules::Join(program_.AppPath, QStringLiteral("samples")), name);
  if (!program_.Files.FileExists(sample)) return;
  CopyIfMissing(program_, sample, name);
  jWB->AddNewElement(StringText(TextNumber::HeartPicture));
}

void FWeb::mmthemeS(int Index) {
  const ThemeRow& theme = stationery[Index];
  ApplyTheme(QString::fromLatin1(theme.picture), QString::fromLatin1(theme.color), true);
}

// The number of elements is taken once, and a removal moves the next one under the hand, so some may stay.
void FWeb::RemoveHeartPic() {
  const HTMLDocument* const document = jWB->WBDocument();
  if (!document) return;
  const HTMLElementCollection all = document->all();
  const int length = all.length();
  for (int i = 0; i < length; ++i) {
    const HTMLElement element = all.item(i);
    if (element.id() == u"heartpic") jWB->DeleteElement(element);
  }
}
