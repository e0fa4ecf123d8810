#pragma once

#include <QSettings>

#include "SettingsStore.h"

// The store on disk: the user's registry on Windows, an INI file in the user's configuration folder elsewhere. What
// was saved is on disk once the event loop has run or the object is gone. Nobody else may read the file, as a password
// stands in it: an older one that others may read is mended, with its folder.
class HostSettingsStore : public SettingsStore {
 public:
  // The user's own store.
  HostSettingsStore();
  // A store in an INI file of the caller's choice, made at the first write. Its folder is left as it is.
  explicit HostSettingsStore(const QString& iniFile);

  QString GetSetting(const QString& appKey, const QString& section, const QString& key,
                     const QString& defaultText) const override;
  void SaveSetting(const QString& appKey, const QString& section, const QString& key, const QString& value) override;

 private:
  void KeepToOwner() const;
  void MakeFile() const;

  QSettings store_;
  QString file_;  // "" where it is none
  bool isFolderShared_ = false;
};
