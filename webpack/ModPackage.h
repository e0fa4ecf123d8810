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

// Builds the web-pack `fileName` in `folder` from WorkPath. 0 when it is made, with its size in bytes; otherwise n from
// 1 to 7, for which string 127 + n tells the user what happened. The pages stay as the build has rewritten them.
int CreateWebPack(Program& program, const QString& folder, const QString& fileName, qint32& sizeBytes);

// Rewrites every page file of WorkPath with bare picture names and the link to the next page, and deletes the pictures
// that no page uses. Without a page file nothing happens.
void PreparePackPages(Program& program);

// The page with the link to its next page put before </BODY>; unchanged when it has one with this text, is the last
// page, has no </BODY>, or isn't named like a page.
QByteArray AddNextPageLink(const Program& program, const QString& pagePath, const QByteArray& html, int pageCount);

// Writes stub, icon and WorkPath's `card.zip` into the target: 0 good, with its size in bytes; 1 no archive, 2 custom
// icon not usable, 3 anything else, with size 0 and perhaps a half-written target.
int AssembleWebPack(Program& program, const QString& targetPath, qint32& sizeBytes);

// The 744 bytes of the assigned custom icon; false when there is none that can be used.
bool ReadCustomIconImage(Program& program, QByteArray& image);
