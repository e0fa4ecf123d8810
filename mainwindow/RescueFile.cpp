#include "RescueFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <chrono>

#include "PathRules.h"
#include "Program.h"
#include "ScratchFile.h"
#include "Serializer.h"
#include "StringTable.h"
#include "WBUC.h"

namespace {

// How long after an edit its write begins, if the one before isn't too near.
constexpr int kRestMs = 1000;
constexpr int kKeptFolders = 10;
// How often the page is begun to be read on the other thread, before it is read on its own.
constexpr int kAttempts = 4;
constexpr int kLongestProject = 60;  // of its name, in UTF-16 units

qint64 MillisecondsNow() {
  using std::chrono::steady_clock;
  return std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

QString RescueFolder(const Program& program) {
  return PathRules::Join(program.AppPath, QStringLiteral("rescue"));
}

// Of a page that was never saved at all there is nothing to keep.
bool HoldsMoreThanABlankPage(Program& program, const QString& folder) {
  ModFileOps& files = program.Files;
  const QStringList names = files.FileNames(folder);
  if (names.isEmpty()) return false;
  if (names.size() > 1 || names.first() != Project::PageName(1)) return true;
  int error = 0;
  const QByteArray page = files.ReadTextFile(PathRules::Join(folder, names.first()), error);
  if (page.isEmpty()) return false;
  const QByteArray blank = files.ReadTextFile(PathRules::Join(program.AppPath, QStringLiteral("blank.html")), error);
  return page != (error == 0 ? blank : StringText(TextNumber::BlankPage).toUtf8());
}

// Of the folders that were made here, known by their names; the newest is there whatever the clock says.
void KeepTheLast(Program& program, const QString& folder, const QString& newest) {
  static const QRegularExpression moment(
      QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d( \\(\\d+\\))?$"));
  int count = 0;
  QString listed = folder;
  QStringList older = program.Files.ListFolders(listed, count).filter(moment);
  older.removeAll(QFileInfo(newest).fileName());
  older.sort();
  while (older.size() >= kKeptFolders) program.Files.RemoveTree(PathRules::Join(folder, older.takeFirst()));
}

}  // namespace

void KeepLeftOvers(Program& program) {
  ModFileOps& files = program.Files;
  const QString card = program.project.CardPath();
  const QString rescue = RescueFolder(program);
  const bool hasPages = files.FolderExists(card) && HoldsMoreThanABlankPage(program, card);
  QString list;
  const bool hasRescue = files.FolderExists(rescue) && files.ListFiles(rescue, QStringLiteral("html"), list) > 0;
  if (hasPages || hasRescue) {
    const QString rescued = PathRules::Join(program.AppPath, QStringLiteral("rescued"));
    files.EnsureFolder(rescued);
    const QString moment = program.platform.stamps.Now().toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    QString target = PathRules::Join(rescued, moment);
    for (int number = 2; files.FolderExists(target); ++number)
      target = PathRules::Join(rescued, QStringLiteral("%1 (%2)").arg(moment).arg(number));
    // A disk too full for another folder lets one have another name.
    if (!files.FolderExists(rescued)) target = rescued;
    if (hasPages) {
      files.Attributes().Clear(card);
      if (!QDir().rename(card, target)) files.CopyFolderFiles(card, target);
    }
    files.EnsureFolder(target);
    if (hasRescue && !files.FolderExists(target)) QDir().rename(rescue, target);
    if (hasRescue && files.FolderExists(rescue))
      for (const QString& name : list.split(u'*'))
        if (!QFile::rename(PathRules::Join(rescue, name), PathRules::Join(target, name))) return;  // kept where it is
    KeepTheLast(program, rescued, target);
  }
  files.RemoveTree(rescue);
}

RescueFile::RescueFile(Program& program, WBUC& view, int periodMs)
    : program_(program), view_(view), lastWrite_(MillisecondsNow() - periodMs), periodMs_(periodMs) {
  disk_.setMaxThreadCount(1);
  disk_.setExpiryTimeout(-1);
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &RescueFile::Write);
  connect(&view_, &WBUC::Edited, this, &RescueFile::Schedule);
  const QString folder = RescueFolder(program_);
  for (const QString& name : QDir(folder).entryList(QDir::Files)) left_ += PathRules::Join(folder, name);
}

RescueFile::~RescueFile() {
  disk_.waitForDone();
}

void RescueFile::Schedule() {
  if (timer_.isActive()) return;
  const qint64 wait = lastWrite_ + periodMs_ - MillisecondsNow();
  timer_.start(int(std::max<qint64>(wait, std::min(kRestMs, periodMs_ / 5))));
}

void RescueFile::Write() {
  if (disk_.activeThreadCount() > 0) return timer_.start(periodMs_);  // a slow disk
  attemptsLeft_ = kAttempts;
  Attempt();
}

void RescueFile::Attempt() {
  timer_.stop();
  lastWrite_ = MillisecondsNow();
  ++attempt_;
  const HTMLDocument* const document = view_.WBDocument();
  if (!document) return;
  if (const QString stem = StemNow(); path_.isEmpty() || stem_ != stem) {
    const QString before = path_;
    stem_ = stem;
    path_ = FreePath();
    // The project has got another name with its first save.
    if (!before.isEmpty()) disk_.start([before, path = path_] { QFile::rename(before, path); });
  }
  if (attemptsLeft_-- == 0) {
    disk_.start([page = PageForFile(document->tree()), path = path_] { Put(page, path); });
    return;
  }
  disk_.start([this, attempt = attempt_, lease = document->tree().Lend(), path = path_] {
    if (const std::optional<PageToWrite> page = PageForFile(*lease)) return Put(*page, path);
    givenUp_ = attempt;
    QMetaObject::invokeMethod(this, &RescueFile::AttemptAgain, Qt::QueuedConnection);
  });
}

void RescueFile::AttemptAgain() {
  if (givenUp_ == attempt_) Attempt();
}

void RescueFile::Put(const PageToWrite& page, const QString& path) {
  const QString folder = QFileInfo(path).path();
  QDir().mkpath(folder);
  const QByteArray bytes = page.Bytes();
  ScratchFile file(folder);
  if (file.open() && file.write(bytes) == bytes.size()) file.MoveTo(path);
}

QString RescueFile::StemNow() const {
  const QString folder = RescueFolder(program_);
  QString project = program_.project.ProjectName().left(kLongestProject);
  if (!project.isEmpty() && project.back().isHighSurrogate()) project.chop(1);  // no half of a character
  const QString stem = PathRules::Join(folder, project);
  const QString name = Project::PageName(program_.project.CurPageNo()).section(u'.', 0, -2);
  return QStringLiteral("%1 - %2 (not saved)").arg(stem, name);
}

// Asks its own list and not the disk, which may be slow, or still have to remove what was dropped. Two names that
// differ in case alone are one file on some disks.
QString RescueFile::FreePath() const {
  QString path = stem_ + QStringLiteral(".html");
  for (int number = 2; left_.contains(path, Qt::CaseInsensitive); ++number)
    path = QStringLiteral("%1 (%2).html").arg(stem_).arg(number);
  return path;
}

bool RescueFile::IsDue() const {
  return timer_.isActive() || givenUp_ == attempt_;
}

void RescueFile::WriteAtOnce() {
  attemptsLeft_ = 0;
  Attempt();
}

void RescueFile::Hurry() {
  disk_.waitForDone();
  if (IsDue()) WriteAtOnce();
}

void RescueFile::TakeUnwritten() {
  disk_.waitForDone();
  const auto isGone = [](const QString& path) {
    const QFileInfo own(path);
    return !own.isFile() || own.size() == 0;
  };
  // Behind a project's first save these are two files, and either may have been written to.
  const Project& project = program_.project;
  const bool isLost = isGone(project.CurPageFile()) || isGone(project.PageFile(project.CurPageNo()));
  if ((path_.isEmpty() && isLost) || IsDue()) WriteAtOnce();
}

void RescueFile::Leave() {
  if (!path_.isEmpty()) left_ += path_;
  Forget();
}

void RescueFile::Drop() {
  if (!path_.isEmpty()) disk_.start([path = path_] { QFile::remove(path); });
  Forget();
}

void RescueFile::Forget() {
  timer_.stop();
  ++attempt_;
  path_.clear();
}
