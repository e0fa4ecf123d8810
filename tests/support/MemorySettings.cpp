#include "MemorySettings.h"

namespace {
QString Address(const QString& appKey, const QString& section, const QString& key) {
  return appKey + u'|' + section + u'|' + key;
}
}  // namespace

QString MemorySettings::GetSetting(const QString& appKey, const QString& section, const QString& key,
                                   const QString& defaultText) const {
  return values_.value(Address(appKey, section, key), defaultText);
}

void MemorySettings::SaveSetting(const QString& appKey, const QString& section, const QString& key,
                                 const QString& value) {
  // Not null even for a null text: a written "" is not a missing key.
  values_[Address(appKey, section, key)] = value.isNull() ? QStringLiteral("") : value;
}
