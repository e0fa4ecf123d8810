#include "OneLine.h"

#include <QLineEdit>
#include <algorithm>

QString OneLine(const QString& text) {
  const auto end =
      std::find_if(text.begin(), text.end(), [](QChar c) { return c == u'\r' || c == u'\n' || c.isNull(); });
  return text.left(end - text.begin());
}

void KeepOneLine(QLineEdit* box) {
  QObject::connect(box, &QLineEdit::textChanged, box, [box](const QString& text) {
    const QString line = OneLine(text);
    if (line != text) box->setText(line);
  });
}
