// Gives every program that is linked with this file a home of its own before `main` begins, so that no test reads or
// writes the settings, histories and caches of whoever runs it. The folder goes when the program ends.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <optional>

namespace {

void Keep(const char* name, const QByteArray& value) {
  if (QFile::exists(QFile::decodeName(value))) qputenv(name, value);
}

class OwnHome {
 public:
  OwnHome() {
    // Somebody has given it one already; two would be one more on a test's small disk.
    const QByteArray given = qgetenv("CORVANE_OWN_HOME");
    if (!given.isEmpty() && given == qgetenv("HOME")) return;
    KeepDisplay();
    folder_.emplace(QDir::tempPath() + "/corvane-home-XXXXXX");
    const QByteArray home = QFile::encodeName(folder_->path());
    qputenv("HOME", home);
    // With it Windows and others find it, too.
    qputenv("USERPROFILE", home);
    for (const auto& [name, below] :
         {std::pair("XDG_CONFIG_HOME", "/.config"), std::pair("XDG_DATA_HOME", "/.local/share"),
          std::pair("XDG_STATE_HOME", "/.local/state"), std::pair("XDG_CACHE_HOME", "/.cache"),
          std::pair("XDG_RUNTIME_DIR", "/runtime")})
      qputenv(name, home + below);
    QDir().mkpath(folder_->filePath("runtime"));
    QFile::setPermissions(folder_->filePath("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  // A process that split off and ends on its own still shares the folder.
  ~OwnHome() {
    if (folder_) folder_->setAutoRemove(QCoreApplication::applicationPid() == owner_);
  }

 private:
  // The key to the user's display is in the home, its socket in the folder of what runs.
  void KeepDisplay() {
    if (qEnvironmentVariableIsEmpty("XAUTHORITY")) Keep("XAUTHORITY", qgetenv("HOME") + "/.Xauthority");
    const QByteArray display = qgetenv("WAYLAND_DISPLAY");
    if (!display.isEmpty() && !display.startsWith('/'))
      Keep("WAYLAND_DISPLAY", qgetenv("XDG_RUNTIME_DIR") + '/' + display);
  }

  qint64 owner_ = QCoreApplication::applicationPid();
  std::optional<QTemporaryDir> folder_;
};

const OwnHome home;

}  // namespace
