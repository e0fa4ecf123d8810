// The one place where a page's text becomes the bytes of a file and comes back from them.
//
// What is written is ASCII, and so reads alike whatever a reader takes it for: characters above U+007E and controls are
// decimal references. Where none can stand (SCRIPT, STYLE, comments, names, and U+0080 to U+009F, whose references HTML
// reads as other characters), a character stays, the file is UTF-8 then, and its first META says so. So it is with
// controls, which some encodings read as others.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// --- Writing

// The part of HTML that a piece of text is to become.
enum class PagePart {
  Text,    // between tags: "&", "<" and ">" become references, too
  Value,   // between double quotes: "&" and the quotes do
  Markup,  // text that is HTML already
};

// Appends `text` as it stands in a page file. A "." beside a line end becomes a reference, as it would end a message.
void AppendPageText(QString& page, QStringView text, PagePart part);

// Whether the attribute is an address with a query above ASCII, which a browser sends in the page's own encoding.
bool DependsOnEncoding(QStringView attribute, QStringView value);

// The file of a page made with AppendPageText. `encoding`, where it isn't "", is what the file has to be read in.
QByteArray PageFileBytes(QString page, const QString& encoding);

// The file of a page whose source somebody has typed. `encoding` is that of the page which it was before.
QByteArray SourceFileBytes(const QString& source, const QString& encoding);

// The source as a text box can show it and give it back: line ends of other kinds than "\n" are references where they
// can be.
QString SourceToEdit(const QString& source);

// --- Reading

struct PageContent {
  QString text;
  QString encoding;  // by its name in browsers, as "windows-1252"
};

// A page file as a browser reads it: by its byte order mark, by what its META says, else as UTF-8 where that is valid
// and as Windows-1252 where it isn't.
PageContent DecodePage(const QByteArray& bytes);

// What the page's META says, as browsers look for it; "" when there is none.
QString EncodingSaid(QStringView page);

// --- Names and links in the bytes of a page file

// The bytes for typed text and markup, each character above U+007E as a reference.
QByteArray EncodePageText(const QString& text);

// The text of such bytes, or of a foreign page's: references above 127 are their characters, the rest is UTF-8 where
// that is valid, else Windows-1252. "&amp;" stays as it is, and that is meant.
QString DecodePageName(const QByteArray& bytes);

// All bytes by which a page file may hold the name, the usual ones first.
QList<QByteArray> PageNameForms(const QString& name);
