#include "HostShell.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

namespace {

bool IsAddress(const QString& file) {
  return file.startsWith(QStringLiteral("https://"));
}

}  // namespace

bool HostShell::MoveToTrash(const QString& path) {
  return QFile::moveToTrash(path);
}

#ifdef Q_OS_WIN

#include <windows.h>

#include <shellapi.h>

#include <QWidget>

namespace {

int ShowCommand(ShowMode mode) {
  return mode == ShowMode::Maximised ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
}

}  // namespace

int HostShell::OpenFile(QWidget* owner, const QString& file, const QString& folder, ShowMode mode) {
  const auto wide = [](const QString& text) { return reinterpret_cast<const wchar_t*>(text.utf16()); };
  const HWND window = owner ? reinterpret_cast<HWND>(owner->window()->winId()) : nullptr;
  const QString nativeFile = IsAddress(file) ? file : QDir::toNativeSeparators(file);
  const QString nativeFolder = QDir::toNativeSeparators(folder);
  const HINSTANCE result = ShellExecuteW(window, nullptr, wide(nativeFile), nullptr,
                                         nativeFolder.isEmpty() ? nullptr : wide(nativeFolder), ShowCommand(mode));
  return int(reinterpret_cast<INT_PTR>(result));
}

bool HostShell::StartProgram(const QString& path, ShowMode mode) {
  const QFileInfo program(path);
  if (!program.isFile()) return false;
  QProcess process;
  process.setProgram(program.absoluteFilePath());
  process.setWorkingDirectory(program.absolutePath());
  process.setCreateProcessArgumentsModifier([mode](QProcess::CreateProcessArguments* arguments) {
    arguments->startupInfo->dwFlags |= STARTF_USESHOWWINDOW;
    arguments->startupInfo->wShowWindow = static_cast<WORD>(ShowCommand(mode));
  });
  return process.startDetached();
}

bool HostShell::RunsWindowsPrograms() const {
  return true;
}

#else

bool HostShell::RunsWindowsPrograms() const {
  return false;
}

namespace {

#ifdef Q_OS_MACOS
QString OpenerName() {
  return QStringLiteral("open");
}
#else
QString OpenerName() {
  return QStringLiteral("xdg-open");
}
#endif

}  // namespace

int HostShell::OpenFile(QWidget*, const QString& file, const QString& folder, ShowMode) {
  const bool isAddress = IsAddress(file);
  const QString path = isAddress          ? file
                       : folder.isEmpty() ? QFileInfo(file).absoluteFilePath()
                                          : QDir(folder).absoluteFilePath(file);
  const QString opener = QStandardPaths::findExecutable(OpenerName());
  if (opener.isEmpty() || (!isAddress && !QFileInfo::exists(path))) return 2;
  auto* process = new QProcess;
  if (!folder.isEmpty()) process->setWorkingDirectory(folder);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  process->start(opener, {path});
  if (process->state() != QProcess::NotRunning) {
    // The windows go on being drawn meanwhile; what the user does to them waits.
    QEventLoop loop;
    QObject::connect(process, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    QTimer::singleShot(patienceMs_, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
  }
  if (process->state() == QProcess::NotRunning) {
    const bool opened = process->error() == QProcess::UnknownError && process->exitStatus() == QProcess::NormalExit &&
                        process->exitCode() == 0;
    delete process;
    return opened ? kFirstSuccess : 31;
  }
  // The viewer runs below the opener and would be killed with it, so the object goes only when the opener has ended.
  QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
  return kFirstSuccess;
}

bool HostShell::StartProgram(const QString& path, ShowMode) {
  return QFileInfo(path).isFile() &&
         QProcess::startDetached(QFileInfo(path).absoluteFilePath(), {}, QFileInfo(path).absolutePath());
}

#endif
