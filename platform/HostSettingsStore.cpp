#include "HostSettingsStore.h"

#include <QStandardPaths>

namespace {

QString Address(const QString& appKey, const QString& section, const QString& key) {
  QString address = appKey + u'/' + section + u'/' + key;
  return address.replace(u'\\', u'/');
}

#ifdef Q_OS_WIN
constexpr QSettings::Format kFormat = QSettings::NativeFormat;
QString UserStore() {
  return QStringLiteral("HKEY_CURRENT_USER\\Software\\Corvane");
}
#else
constexpr QSettings::Format kFormat = QSettings::IniFormat;
QString UserStore() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/corvane/settings.ini");
}
#endif

}  // namespace

HostSettingsStore::HostSettingsStore() : store_(UserStore(), kFormat) {}

HostSettingsStore::HostSettingsStore(const QString& iniFile) : store_(iniFile, QSettings::IniFormat) {}

QString HostSettingsStore::GetSetting(const QString& appKey, const QString& section, const QString& key,
                                      const QString& defaultText) const {
  const QString address = Address(appKey, section, key);
  return store_.contains(address) ? store_.value(address).toString() : defaultText;
}

void HostSettingsStore::SaveSetting(const QString& appKey, const QString& section, const QString& key,
                                    const QString& value) {
  store_.setValue(Address(appKey, section, key), value);
}
