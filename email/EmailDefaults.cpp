#include "EmailDefaults.h"

#include "AsciiText.h"
#include "CodePage.h"
#include "Numbers.h"

namespace {

constexpr qsizetype kMostItems = 10;

// Each of the first items with a "*" behind it.
QString StarredItems(const QStringList& items) {
  QString list;
  for (const QString& item : items.first(std::min(kMostItems, items.size()))) list += item + u'*';
  return list;
}

}  // namespace

bool IsValidAddress(const QString& address) {
  const qsizetype at = address.indexOf(u'@');
  const qsizetype dot = at < 0 ? -1 : address.indexOf(u'.', at);
  const bool hasForm = at >= 1 && dot >= at + 2 && dot <= address.size() - 3;
  // What the code page hasn't would go out as "?", to somebody else.
  return hasForm && FromCodePage(ToCodePage(address)) == address;
}

QString RecentRecipients(const QStringList& items, const QString& to) {
  QString list = StarredItems(items);
  if (list.isEmpty()) return to;
  if (FindNoCase(list, to) < 0) list.prepend(to + u'*');
  return list.chopped(1);
}

QString RecentSenders(const QStringList& items, const QString& from) {
  const QString list = StarredItems(items);
  if (list.isEmpty()) return from;
  const QString starred = from + u'*';
  const QString kept = starred + ReplaceNoCase(list, starred, QString());
  // With nobody in the box the one "*" that is left stands in front.
  return from.isEmpty() ? kept.mid(1) : kept.chopped(1);
}

QString StoredPassword(const QString& password) {
  QStringList codes;
  for (const char c : ToCodePage(password)) codes += QString::number(uchar(c));
  return codes.join(u'.');
}

QString PasswordOf(const QString& stored) {
  QByteArray bytes;
  for (const QString& piece : stored.split(u'.')) {
    const auto code = ToInteger16(piece);
    if (code && *code >= 0 && *code <= 255) bytes += char(*code);
  }
  return FromCodePage(bytes);
}
