#pragma once

#include <QByteArray>
#include <QString>

struct Program;

// Makes web-packs: one self-opening executable that holds all pages and pictures of the project.

// Length in bytes of the five pieces in front of the archive.
inline constexpr qint32 kStubSize = 0x13000;

// Folder and name of a web-pack as the panel's boxes have them, made ready for the build.
struct PackFileNames {
  QString MakePath;
  QString MakeName;
};

// An empty name becomes "Greeting.exe", a name that doesn't end in ".exe" gets it, and one separator at the end of the
// folder goes. Nothing is trimmed.
PackFileNames ReadyPackFileNames(const QString& folder, const QString& fileName);

// How a build ends. The numbers are fixed: each failure's text stands that many after the text for a bad folder.
enum class PackResult {
  Made = 0,
  UnknownError = 1,  // has a text, and no build ends so
  NotCompressed = 2,
  NotWritten = 3,
  NoArchive = 4,
  NoFiles = 5,
  BadCustomIcon = 6,
  FileInUse = 7,
};

// Builds the web-pack `fileName` in `folder` from WorkPath, and tells its size in bytes when it is made. The pages stay
// as the build has rewritten them.
PackResult CreateWebPack(Program& program, const QString& folder, const QString& fileName, qint32& sizeBytes);

// Rewrites every page file of WorkPath with bare picture names and the link to the next page, and deletes the pictures
// that no page uses. Without a page file nothing happens.
void PreparePackPages(Program& program);

// The page with the link to its next page put before </BODY>; unchanged when it has one with this text, is the last
// page, has no </BODY>, or isn't named like a page.
QByteArray AddNextPageLink(const Program& program, const QString& pagePath, const QByteArray& html, int pageCount);

// The page with a link to the page file `next` put before </BODY>; unchanged when it has one with this text or no
// </BODY>.
QByteArray PutPageLink(const Program& program, const QByteArray& html, const QString& next);

// How the last step of a build ends; the numbers are fixed.
enum class AssemblyResult { Good = 0, NoArchive = 1, BadCustomIcon = 2, Failed = 3 };

// Writes stub, icon and WorkPath's `card.zip` into the target, and tells its size in bytes. A failure gives size 0 and
// perhaps a half-written target.
AssemblyResult AssembleWebPack(Program& program, const QString& targetPath, qint32& sizeBytes);

// The 744 bytes of the assigned custom icon; false when there is none that can be used.
bool ReadCustomIconImage(Program& program, QByteArray& image);
