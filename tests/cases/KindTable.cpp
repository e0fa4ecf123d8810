#include "KindTable.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

QString Shown(const QJsonValue& value) {
  if (value.isUndefined()) return QStringLiteral("(no such field)");
  const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
  return QString::fromUtf8(text.mid(1, text.size() - 2));
}

}  // namespace

void CaseCheck::Equal(const QString& field, const QJsonValue& expected, const QJsonValue& got) {
  if (expected == got && !expected.isUndefined()) return;
  differences_.append(QStringLiteral("%1: expected %2\n    got %3").arg(field, Shown(expected), Shown(got)));
}

const KindTable::Player* KindTable::Find(const QString& kind) const {
  const auto found = players_.constFind(kind);
  return found == players_.constEnd() ? nullptr : &found.value();
}

QByteArray BytesOf(const QJsonValue& byteText) {
  return byteText.toString().toLatin1();
}

QJsonValue ByteText(const QByteArray& bytes) {
  return QString::fromLatin1(bytes);
}
