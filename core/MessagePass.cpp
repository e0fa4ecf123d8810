#include "MessagePass.h"

#include <QCoreApplication>

void RunMessagePass() {
  QCoreApplication::processEvents();
}
