#include "HelpWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

#include "WindowOrder.h"

QHBoxLayout* HelpWindow::NewButtonRow() {
  bClose = new QPushButton(QStringLiteral("OK"));
  bClose->setObjectName(QStringLiteral("bClose"));
  bClose->setAutoDefault(true);
  connect(bClose, &QPushButton::clicked, this, &QWidget::hide);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(bClose);
  return row;
}

void HelpWindow::ComeUp() {
  ShowInFront(*this);
  bClose->setFocus();
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) hide();
  ShellWindow::keyPressEvent(event);
}
