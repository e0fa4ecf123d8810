#include "OneFilePictures.h"

#include <QFile>
#include <QFileInfo>

#include "PathRules.h"

namespace {

struct PictureType {
  QLatin1String ending;
  const char* type;
};
constexpr PictureType kTypes[] = {
    {QLatin1String("gif"), "image/gif"},     {QLatin1String("jpg"), "image/jpeg"},
    {QLatin1String("jpeg"), "image/jpeg"},   {QLatin1String("jpe"), "image/jpeg"},
    {QLatin1String("png"), "image/png"},     {QLatin1String("bmp"), "image/bmp"},
    {QLatin1String("ico"), "image/x-icon"},  {QLatin1String("webp"), "image/webp"},
    {QLatin1String("svg"), "image/svg+xml"}, {QLatin1String("avif"), "image/avif"},
};

const char* TypeOf(const QString& path) {
  const QString ending = QFileInfo(path).suffix().toLower();
  for (const PictureType& type : kTypes)
    if (ending == type.ending) return type.type;
  return nullptr;
}

bool WriteBase64(const QString& path, QIODevice& file) {
  QFile picture(path);
  if (!picture.open(QIODevice::ReadOnly)) return false;
  constexpr qint64 block = 3 << 16;  // no padding between blocks
  for (;;) {
    const QByteArray bytes = picture.read(block);
    if (bytes.isEmpty()) return picture.error() == QFileDevice::NoError;
    const QByteArray text = bytes.toBase64();
    if (file.write(text) != text.size()) return false;
  }
}

}  // namespace

OneFilePictures::OneFilePictures(const QString& folder, const QString& mark) : folder_(folder), mark_(mark) {}

int OneFilePictures::Find(const QString& page, const QString& address) {
  const QUrl url = QUrl::fromLocalFile(PathRules::Join(folder_, page)).resolved(QUrl(address.trimmed()));
  if (!url.isLocalFile()) return -1;
  const QString within = QFileInfo(folder_).canonicalFilePath() + u'/';
  // As the address says, then by its last part as it stands: a name may look like an address with escapes.
  const QString last = address.mid(PathRules::LastSeparator(address) + 1);
  for (const QString& path : {url.toLocalFile(), PathRules::Join(folder_, last),
                              PathRules::Join(folder_, QUrl::fromPercentEncoding(last.toUtf8()))}) {
    const QFileInfo file(path);
    const char* const type = TypeOf(path);
    // Nothing from outside of the project goes out with it.
    if (!type || !file.isFile() || !file.canonicalFilePath().startsWith(within)) continue;
    const QString whole = file.canonicalFilePath();
    const auto known = byPath_.constFind(whole);
    if (known != byPath_.constEnd()) return *known;
    pictures_.push_back({whole, type});
    return byPath_[whole] = int(pictures_.size()) - 1;
  }
  return -1;
}

bool OneFilePictures::IsShared(int picture) const {
  const Picture& one = pictures_[std::size_t(picture)];
  return one.styles > 0 || one.tags > 1;
}

QString OneFilePictures::Address(int picture) const {
  return mark_ + QString::number(picture) + u';';
}

QString OneFilePictures::Variable(int picture) {
  return QStringLiteral("var(--picture%1)").arg(picture + 1);
}

QString OneFilePictures::Declarations() const {
  QString text;
  for (int picture = 0; picture < int(pictures_.size()); ++picture)
    if (IsShared(picture)) text += QStringLiteral("--picture%1:url(\"%2\");").arg(picture + 1).arg(Address(picture));
  return text;
}

bool OneFilePictures::Write(const QString& text, QIODevice& file) const {
  const QByteArray bytes = text.toUtf8(), mark = mark_.toUtf8();
  qsizetype from = 0;
  for (;;) {
    const qsizetype at = bytes.indexOf(mark, from);
    const qsizetype length = (at < 0 ? bytes.size() : at) - from;
    if (file.write(bytes.constData() + from, length) != length) return false;
    if (at < 0) return true;
    const qsizetype number = at + mark.size(), end = bytes.indexOf(';', number);
    const Picture& picture = pictures_[bytes.mid(number, end - number).toULong()];
    const QByteArray head = QByteArrayLiteral("data:") + picture.type + ";base64,";
    if (file.write(head) != head.size() || !WriteBase64(picture.path, file)) return false;
    from = end + 1;
  }
}
