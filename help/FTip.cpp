#include "FTip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "Colors.h"
#include "TipText.h"

namespace {

// 0x00BBGGRR; the same on every desktop, like a note that sticks to it.
constexpr qint32 kInk = 0x800000;
constexpr qint32 kPaper = 0xecffff;

constexpr int kLettersWide = 62;
constexpr int kLinesHigh = 12;

}  // namespace

FTip::FTip() : HelpWindow(QStringLiteral("FTip"), QStringLiteral("Corvane - Quick Tips")) {
  auto* column = new QVBoxLayout(this);
  LabTitle = new QLabel;
  LabTitle->setObjectName(QStringLiteral("LabTitle"));
  LabTitle->setTextFormat(Qt::PlainText);
  LabTitle->setWordWrap(true);
  QFont bold = LabTitle->font();
  bold.setBold(true);
  LabTitle->setFont(bold);
  column->addWidget(LabTitle);

  TTip = new QPlainTextEdit;
  TTip->setObjectName(QStringLiteral("TTip"));
  TTip->setAccessibleName(QStringLiteral("Answer"));
  TTip->setReadOnly(true);
  TTip->setTabChangesFocus(true);
  TTip->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  TTip->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  QFont letters = TTip->font();
  letters.setFamilies({QStringLiteral("Verdana"), letters.family()});
  TTip->setFont(letters);
  QPalette note = TTip->palette();
  note.setColor(QPalette::Base, QColor(ColorToHtml(kPaper)));
  note.setColor(QPalette::Text, QColor(ColorToHtml(kInk)));
  TTip->setPalette(note);
  const QFontMetrics measure(letters);
  TTip->setMinimumSize(kLettersWide * measure.averageCharWidth(), kLinesHigh * measure.lineSpacing());
  column->addWidget(TTip, 1);

  column->addLayout(NewButtonRow());
  adjustSize();
}

void FTip::ShowTip(int Index, const QString& Caption) {
  const QString text = TipText(Index);
  if (text.isEmpty()) return;
  LabTitle->setText(Caption);
  TTip->setPlainText(text);
  ComeUp();
}
