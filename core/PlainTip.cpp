#include "PlainTip.h"

#include <QTextDocument>

QString PlainTip(const QString& text) {
  return text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}
