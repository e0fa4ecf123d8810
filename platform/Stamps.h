#pragma once

#include <QDateTime>
#include <QString>

// What the system gives anew at each call: a random id and the present time.
class Stamps {
 public:
  virtual ~Stamps() = default;

  // 128 random bits in the usual form, "{6B29FC40-CA47-1067-B31D-00DD010662DA}"; "" on failure.
  virtual QString NewGuid() = 0;

  // In Coordinated Universal Time; invalid on failure.
  virtual QDateTime Now() = 0;
};

// Those of the system that the program runs on.
class HostStamps : public Stamps {
 public:
  QString NewGuid() override;
  QDateTime Now() override;
};
