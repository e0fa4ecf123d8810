#include "PackCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <memory>

#include "PathRules.h"
#include "Project.h"

extern "C" {
#include "ArchiveReader.h"
#include "EntryName.h"
}

namespace {

// A file that the stub makes, and the one that it was made of. The pack itself may have been made beside them.
QMap<QString, QString> FilesToCome(const QString& workPath, const QString& packPath) {
  QMap<QString, QString> files;
  for (const QString& name : QDir(workPath).entryList(QDir::Files | QDir::Hidden)) {
    if (QFileInfo(PathRules::Join(workPath, name)) == QFileInfo(packPath)) continue;
    const QByteArray bytes = name.toUtf8();
    QByteArray plain(bytes.size() + 2, '\0');
    if (MakePlainFileName(bytes.constData(), uint32_t(bytes.size()), 1, plain.data()))
      files[QString::fromUtf8(plain.constData())] = name;
  }
  return files;
}

class Check {
 public:
  Check(const QString& packPath, const QString& workPath)
      : pack_(packPath), workPath_(workPath), files_(FilesToCome(workPath, packPath)) {}

  QString Run() {
    const QString own = QFileInfo(pack_).fileName();
    if (!pack_.open(QIODevice::ReadOnly)) return own;
    const auto work = std::make_unique<ArchiveWork>();
    const ArchiveIo io = {this, ReadAt, Create, Write, Close};
    const bool isComplete = ExtractArchive(work.get(), &io, uint64_t(pack_.size())) == ArchiveComplete;
    if (!different_.isEmpty()) return different_;
    if (!isComplete) return own;
    for (auto file = files_.begin(); file != files_.end(); ++file)
      if (!seen_.contains(file.key().toLower())) return file.value();
    if (!seen_.contains(Project::PageName(1))) return Project::PageName(1);
    return BrokenLink();
  }

 private:
  static uint32_t ReadAt(void* context, uint64_t offset, void* bytes, uint32_t count) {
    QFile& pack = static_cast<Check*>(context)->pack_;
    return pack.seek(qint64(offset)) ? uint32_t(std::max<qint64>(0, pack.read(static_cast<char*>(bytes), count))) : 0;
  }

  static int Create(void* context, const char* name, int) {
    auto* const self = static_cast<Check*>(context);
    self->name_ = QString::fromUtf8(name);
    // Names that differ only in case are one file there, and the second one stays.
    const QString key = self->name_.toLower();
    self->isEqual_ = self->files_.contains(self->name_) && !self->seen_.contains(key);
    self->seen_.insert(key, self->files_.value(self->name_));
    self->original_.setFileName(PathRules::Join(self->workPath_, self->files_.value(self->name_)));
    self->isEqual_ = self->isEqual_ && self->original_.open(QIODevice::ReadOnly);
    return 1;
  }

  static int Write(void* context, const void* bytes, uint32_t count) {
    auto* const self = static_cast<Check*>(context);
    self->isEqual_ = self->isEqual_ && self->original_.read(qint64(count)) ==
                                           QByteArray::fromRawData(static_cast<const char*>(bytes), qsizetype(count));
    return 1;
  }

  static int Close(void* context, uint16_t, uint16_t) {
    auto* const self = static_cast<Check*>(context);
    self->isEqual_ = self->isEqual_ && self->original_.atEnd();
    self->original_.close();
    if (!self->isEqual_ && self->different_.isEmpty()) self->different_ = self->name_;
    return 1;
  }

  // Page 10 is taken for page 0, and so is linked to a page that nobody has; that is how packs are made.
  static bool IsMeant(const QString& page, const QString& next) {
    return page.endsWith(QStringLiteral("0.html"), Qt::CaseInsensitive) && next.toLower() == u"page1.html";
  }

  // The page to which a page's link leads without being there.
  QString BrokenLink() const {
    static const QRegularExpression link(QStringLiteral("<a [^>]*href=\"(Page[0-9]+\\.html)\""),
                                         QRegularExpression::CaseInsensitiveOption);
    QStringList toRead = {seen_.value(Project::PageName(1))};
    QSet<QString> read;
    while (!toRead.isEmpty()) {
      const QString name = toRead.takeFirst();
      if (read.contains(name)) continue;
      read.insert(name);
      QFile page(PathRules::Join(workPath_, name));
      if (!page.open(QIODevice::ReadOnly)) return name;
      for (auto links = link.globalMatch(QString::fromLatin1(page.readAll())); links.hasNext();) {
        const QString next = links.next().captured(1);
        if (const auto there = seen_.find(next.toLower()); there != seen_.end()) {
          toRead.append(there.value());
        } else if (!IsMeant(name, next)) {
          return next;
        }
      }
    }
    return QString();
  }

  QFile pack_;
  QString workPath_;
  QMap<QString, QString> files_;  // by the names at the recipient's
  QMap<QString, QString> seen_;   // what has come, in small letters, and the name here
  QString name_;                  // of the file at hand
  QFile original_;
  bool isEqual_ = true;
  QString different_;
};

}  // namespace

QString CheckPack(const QString& packPath, const QString& workPath) {
  return Check(packPath, workPath).Run();
}
