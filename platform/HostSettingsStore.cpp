#include "HostSettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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

constexpr QFile::Permissions kOwnersFile = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions kOwnersFolder = kOwnersFile | QFile::ExeOwner;

// Takes from all others what they may do there. The owner's own rights stay as they are.
void KeepToOwner(const QString& path) {
  const QFile::Permissions all = QFile::permissions(path);
  constexpr QFile::Permissions others =
      QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
  if (all & others) QFile::setPermissions(path, all & kOwnersFolder);
}

}  // namespace

HostSettingsStore::HostSettingsStore() : store_(UserStore(), kFormat), file_(UserStore()) {
#ifdef Q_OS_WIN
  file_.clear();  // the registry is each user's own
#endif
  KeepToOwner();
}

HostSettingsStore::HostSettingsStore(const QString& iniFile)
    : store_(iniFile, QSettings::IniFormat), file_(iniFile), isFolderShared_(true) {
  KeepToOwner();
}

void HostSettingsStore::KeepToOwner() const {
  if (file_.isEmpty()) return;
  const QString folder = QFileInfo(file_).path();
  if (!isFolderShared_ && QFileInfo::exists(folder)) ::KeepToOwner(folder);
  if (QFileInfo::exists(file_)) ::KeepToOwner(file_);
}

// Made with no rights for others from its first moment; whoever writes it keeps what it has.
void HostSettingsStore::MakeFile() const {
  if (file_.isEmpty() || QFileInfo::exists(file_)) return;
  const QDir folder = QFileInfo(file_).dir();
  if (!folder.exists()) {
    QDir().mkpath(QFileInfo(folder.path()).path());
    QDir().mkdir(folder.path(), kOwnersFolder);
  }
  QFile file(file_);
  (void)file.open(QIODevice::WriteOnly | QIODevice::NewOnly, kOwnersFile);
}

QString HostSettingsStore::GetSetting(const QString& appKey, const QString& section, const QString& key,
                                      const QString& defaultText) const {
  const QString address = Address(appKey, section, key);
  if (!store_.contains(address)) return defaultText;
  const QVariant value = store_.value(address);
  // A text with commas that somebody wrote by hand without quotes comes as a list.
  return value.typeId() == QMetaType::QStringList ? value.toStringList().join(QStringLiteral(", ")) : value.toString();
}

void HostSettingsStore::SaveSetting(const QString& appKey, const QString& section, const QString& key,
                                    const QString& value) {
  MakeFile();
  store_.setValue(Address(appKey, section, key), value);
}
