#pragma once

#include <QMap>

#include "SettingsStore.h"

// A settings store that lives as long as the object, empty at first.
class MemorySettings : public SettingsStore {
 public:
  QString GetSetting(const QString& appKey, const QString& section, const QString& key,
                     const QString& defaultText) const override;
  void SaveSetting(const QString& appKey, const QString& section, const QString& key, const QString& value) override;

  // All that was written, under "appKey|section|key".
  const QMap<QString, QString>& Values() const { return values_; }

 private:
  QMap<QString, QString> values_;
};
