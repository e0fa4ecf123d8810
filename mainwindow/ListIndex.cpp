#include "ListIndex.h"

#include <QComboBox>

void SetIndex(QComboBox* box, int index) {
  if (index >= 0 && index < box->count()) box->setCurrentIndex(index);
}
