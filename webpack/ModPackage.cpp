#include "ModPackage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringList>
#include <limits>

#include "AsciiText.h"
#include "CheckIconFile.h"
#include "Discard.h"
#include "IconImage.h"
#include "MessagePass.h"
#include "ModZip.h"
#include "PageText.h"
#include "PathRules.h"
#include "Program.h"
#include "Resource.h"
#include "Settings.h"
#include "StringTable.h"
#include "StripPicturePaths.h"

namespace {

QString ArchiveIn(const QString& workPath) {
  return PathRules::Join(workPath, QStringLiteral("card.zip"));
}

bool ReadWhole(const QString& path, QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return false;
  bytes = file.readAll();
  return file.error() == QFileDevice::NoError;
}

// Number in the name of a page's file; -1 when it isn't named like a page. It is the one character before ".html", so
// that Page12 counts as 2, and any name that ends in "d.html" counts as page 1: both are meant.
int PageNumberOf(const QString& pagePath) {
  if (pagePath.size() < 6) return -1;
  const QChar mark = pagePath.at(pagePath.size() - 6);
  if (mark == u'd') return 1;
  return mark >= u'0' && mark <= u'9' ? mark.unicode() - u'0' : -1;
}

// Strips one page, gives it its link and strikes the pictures that it uses.
void PreparePage(Program& program, const QString& pagePath, int pageCount, QSet<QString>& pictures) {
  QByteArray references;
  const QByteArray text = StripPicturePathsOfFile(program.Files, pagePath, references);
  if (text.isEmpty()) return;
  if (!references.isEmpty() && !pictures.isEmpty()) {
    for (const QByteArray& reference : references.split('*')) {
      // The names must be equal exactly, letter case and entities included, and that is meant.
      pictures.remove(DecodePageName(reference));
    }
  }
  const QByteArray linked = AddNextPageLink(program, pagePath, text, pageCount);
  // A page that can't be written, on a full disk say, stays as it was.
  program.Files.ReplaceTextFile(pagePath, linked);
}

AssemblyResult Assemble(Program& program, const QString& archivePath, const QString& targetPath, qint32& sizeBytes) {
  sizeBytes = 0;
  if (!program.Files.FileExists(archivePath)) return AssemblyResult::NoArchive;
  program.Files.DeleteFileIfAny(targetPath);
  program.platform.fileAttributes.Clear(archivePath);
  if (QFileInfo(archivePath).size() > std::numeric_limits<qint32>::max() - kStubSize) return AssemblyResult::Failed;
  QByteArray archive;
  if (!ReadWhole(archivePath, archive)) return AssemblyResult::Failed;

  QByteArray icon;
  if (program.CurIconName == QStringLiteral("Custom")) {
    if (!ReadCustomIconImage(program, icon)) return AssemblyResult::BadCustomIcon;
  } else {
    icon = Resource(program.CurIconName);
  }
  const QByteArray pieces[] = {
      Resource(QStringLiteral("STUB1")), Resource(QStringLiteral("STUB2")), icon,
      Resource(QStringLiteral("STUB4")), Resource(QStringLiteral("STUB5")), archive,
  };
  for (const QByteArray& piece : pieces) {
    if (piece.isNull()) return AssemblyResult::Failed;
  }
  QFile target(targetPath);
  if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate)) return AssemblyResult::Failed;
  for (const QByteArray& piece : pieces) {
    if (target.write(piece) != piece.size()) return AssemblyResult::Failed;
  }
  if (!target.flush()) return AssemblyResult::Failed;
  sizeBytes = static_cast<qint32>(archive.size()) + kStubSize;
  return AssemblyResult::Good;
}

}  // namespace

// A blank behind ".exe" makes it another ending, and that is meant.
PackFileNames ReadyPackFileNames(const QString& folder, const QString& fileName) {
  PackFileNames names{PathRules::DropTrailingSeparator(folder), fileName};
  if (names.MakeName.isEmpty()) names.MakeName = Settings::GreetName.defaultText;
  if (UpperAscii(names.MakeName.right(4)) != QStringLiteral(".EXE")) names.MakeName += QStringLiteral(".exe");
  return names;
}

PackResult CreateWebPack(Program& program, const QString& folder, const QString& fileName, qint32& sizeBytes) {
  QString target = folder;
  if (!PathRules::EndsInSeparator(target)) target += QDir::separator();
  target += fileName;
  // Another project may be opened while messages run; the build keeps to this one.
  const QString workPath = program.project.WorkPath();
  PreparePackPages(program);
  const QStringList names = program.Files.FileNames(workPath);
  if (names.isEmpty()) return PackResult::NoFiles;
  const int32_t zipped = ZipWorkFiles(program, names, int32_t(names.size()));
  // The archive stays after a failure and the next build deletes it, and that is meant.
  if (zipped == ZipResult::kCannotOpen) return PackResult::FileInUse;
  if (zipped != ZipResult::kGood) return PackResult::NotCompressed;
  program.Files.DeleteFileIfAny(target);
  RunMessagePass();
  switch (Assemble(program, ArchiveIn(workPath), target, sizeBytes)) {
    case AssemblyResult::Good:
      break;
    case AssemblyResult::NoArchive:
      return PackResult::NoArchive;
    case AssemblyResult::BadCustomIcon:
      return PackResult::BadCustomIcon;
    case AssemblyResult::Failed:
      return PackResult::NotWritten;
  }
  program.Files.DeleteFileIfAny(ArchiveIn(workPath));
  return PackResult::Made;
}

void PreparePackPages(Program& program) {
  QString list;
  if (program.Files.ListFiles(program.project.WorkPath(), QString(), list) == 0) return;
  QStringList pages;
  QSet<QString> pictures;
  for (const QString& name : list.split(u'*')) {
    const QString ending = UpperAscii(name.right(4));
    if (ending == QStringLiteral("HTML")) {
      pages.append(name);
    } else if (ending == QStringLiteral(".GIF") || ending == QStringLiteral(".JPG") ||
               ending == QStringLiteral(".PNG") || ending == QStringLiteral("JPEG")) {
      pictures.insert(name);
    }
  }
  if (pages.isEmpty()) return;
  for (const QString& page : pages) {
    PreparePage(program, PathRules::Join(program.project.WorkPath(), page), int(pages.size()), pictures);
  }
  for (const QString& picture : pictures) {
    DiscardFile(program, PathRules::Join(program.project.WorkPath(), picture));
  }
}

QByteArray PutPageLink(const Program& program, const QByteArray& html, const QString& next) {
  const QByteArray linkText = EncodePageText(program.LinkTextValue);
  // Both as they are read, since either may be written with references.
  if (FindNoCase(DecodePageName(html), DecodePageName(linkText) + QStringLiteral("</A>")) >= 0) return html;
  const qsizetype bodyEnd = FindNoCase(html, QByteArrayLiteral("</BODY>"));
  if (bodyEnd < 0) return html;
  const QByteArray link = program.BrClear + "<BR>" + StringText(TextNumber::NextPageLink).toLatin1() + next.toLatin1() +
                          "\">" + linkText + "</A></FONT></DIV><BR><BR>";
  return html.left(bodyEnd) + link + html.mid(bodyEnd);
}

QByteArray AddNextPageLink(const Program& program, const QString& pagePath, const QByteArray& html, int pageCount) {
  const int pageNumber = PageNumberOf(pagePath);
  if (pageNumber < 0 || pageNumber >= pageCount) return html;
  return PutPageLink(program, html, QStringLiteral("Page%1.html").arg(pageNumber + 1));
}

AssemblyResult AssembleWebPack(Program& program, const QString& targetPath, qint32& sizeBytes) {
  return Assemble(program, ArchiveIn(program.project.WorkPath()), targetPath, sizeBytes);
}

bool ReadCustomIconImage(Program& program, QByteArray& image) {
  const QString name = Settings::Get(program.platform.settings, Settings::CustomIcon);
  if (name.isEmpty()) return false;
  const QString path = PathRules::Join(program.IconFolder(), name);
  if (!program.Files.FileExists(path)) return false;
  QString message;
  if (CheckIconFile(program.Files, path, message) != 0) return false;
  program.platform.fileAttributes.Clear(path);
  QByteArray file;
  if (!ReadWhole(path, file) || file.size() < kIconHeadSize + kIconImageSize) return false;
  image = file.mid(kIconHeadSize, kIconImageSize);
  return true;
}
