#pragma once

#include <QSettings>

#include "SettingsStore.h"

// The store on disk: the user's registry on Windows, an INI file in the user's configuration folder elsewhere. What
// was saved is on disk once the event loop has run or the object is gone.
class HostSettingsStore : public SettingsStore {
 public:
  // The user's own store.
  HostSettingsStore();
  // A store in an INI file of the caller's choice, made at the first write.
  explicit HostSettingsStore(const QString& iniFile);

  QString GetSetting(const QString& appKey, const QString& section, const QString& key,
                     const QString& defaultText) const override;
  void SaveSetting(const QString& appKey, const QString& section, const QString& key, const QString& value) override;

 private:
  QSettings store_;
};
