#include "Stamps.h"

#include <QUuid>

QString HostStamps::NewGuid() {
  return QUuid::createUuid().toString().toUpper();
}

QDateTime HostStamps::Now() {
  return QDateTime::currentDateTimeUtc();
}
