#include "WindowsNames.h"

#include <QDir>
#include <algorithm>

#include "AsciiText.h"
#include "StringTable.h"

namespace {

bool IsForbidden(QChar c) {
  return c < u' ' || QStringView(u":*?\"<>|/\\").contains(c);
}

// A device answers to its name with any extension, and with blanks before the dot. COM and LPT take a digit from 1 on,
// or one of the three raised ones of Latin-1.
bool IsDevice(const QString& name) {
  QString stem = UpperAscii(name.left(name.indexOf(u'.')));
  while (stem.endsWith(u' ')) stem.chop(1);
  for (const char16_t* const device : {u"CON", u"PRN", u"AUX", u"NUL", u"CONIN$", u"CONOUT$"})
    if (stem == QStringView(device)) return true;
  return stem.size() == 4 && (stem.startsWith(u"COM") || stem.startsWith(u"LPT")) &&
         QStringView(u"123456789\u00B9\u00B2\u00B3").contains(stem.back());
}

}  // namespace

QString WindowsFileName(const QString& name) {
  if (name.isEmpty()) return name;
  QString made = name;
  std::replace_if(made.begin(), made.end(), IsForbidden, QChar(u'_'));
  if (made.back() == u'.' || made.back() == u' ') made.back() = u'_';
  return IsDevice(made) ? u'_' + made : made;
}

QString WhyNoFolderName(const QString& name) {
  constexpr qsizetype longest = 255;  // bytes of UTF-8 on Linux, and fewer letters than that on Windows
  if (name.isEmpty()) return QString();
  for (const QChar c : name) {
    if (c < u' ' || (c >= u'\x7f' && c < u'\xa0')) return StringText(FixedText::NameHasControl);
    if (IsForbidden(c)) return c + StringText(FixedText::NameHasCharacter);
  }
  if (name == u"." || name == u"..") return StringText(FixedText::NameIsDots);
  if (name.back() == u'.' || name.back() == u' ') return StringText(FixedText::NameEndsBadly);
  if (IsDevice(name)) return StringText(FixedText::NameIsDevice);
  return name.toUtf8().size() > longest ? StringText(FixedText::NameTooLong) : QString();
}

QString NameOfTwinIn(const QString& folder, const QString& name) {
  const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  if (names.contains(name)) return name;
  const auto twin = std::find_if(names.begin(), names.end(),
                                 [&](const QString& one) { return one.compare(name, Qt::CaseInsensitive) == 0; });
  return twin == names.end() ? name : *twin;
}
