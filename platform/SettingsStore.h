#pragma once

#include <QString>

// A per-user store of strings, addressed by application key, section and key. A section may have sub-sections,
// separated by "\". Writing creates what is needed; a stored "" is not the same as a missing key.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // The stored text, or `defaultText` when there is no such key.
  virtual QString GetSetting(const QString& appKey, const QString& section, const QString& key,
                             const QString& defaultText) const = 0;

  // A failure to write isn't reported.
  virtual void SaveSetting(const QString& appKey, const QString& section, const QString& key, const QString& value) = 0;
};
