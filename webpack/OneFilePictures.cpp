#include "OneFilePictures.h"

#include <QFile>
#include <QFileInfo>
#include <deque>
#include <future>

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
  if (!picture.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return false;
  // No padding between blocks, and none so large that its memory would be fetched from the system each time.
  QByteArray bytes(3 << 13, Qt::Uninitialized);
  for (;;) {
    qint64 filled = 0, got = 0;
    while (filled < bytes.size() && (got = picture.read(bytes.data() + filled, bytes.size() - filled)) > 0)
      filled += got;
    if (got < 0) return false;
    if (filled == 0) return true;
    const QByteArray text = QByteArray::fromRawData(bytes.constData(), qsizetype(filled)).toBase64();
    if (file.write(text) != text.size()) return false;
  }
}

constexpr std::size_t kPicturesAhead = 6;
constexpr qint64 kWorthAThread = 50000;  // bytes
constexpr qint64 kSmallPicture = 8 << 20;

// "" for a picture that is larger or can't be read.
QByteArray EncodeSmall(const QString& path) {
  QFile picture(path);
  if (!picture.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || picture.size() > kSmallPicture) return QByteArray();
  const QByteArray bytes = picture.readAll();
  return picture.error() == QFileDevice::NoError ? bytes.toBase64() : QByteArray();
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
  struct Place {
    qsizetype from, to;  // the mark's
    int picture;
  };
  std::vector<Place> places;
  for (qsizetype at = bytes.indexOf(mark); at >= 0; at = bytes.indexOf(mark, places.back().to)) {
    const qsizetype number = at + mark.size(), end = bytes.indexOf(';', number);
    places.push_back({at, end + 1, bytes.mid(number, end - number).toInt()});
  }
  // Small pictures are read and encoded ahead of their turn, on all cores; the smallest at their turn, as a thread
  // takes longer to begin.
  std::deque<std::future<QByteArray>> ahead;
  std::size_t begun = 0;
  const auto pathOf = [&](std::size_t place) { return pictures_[std::size_t(places[place].picture)].path; };
  qsizetype from = 0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    for (; begun < places.size() && ahead.size() < kPicturesAhead; ++begun) {
      const QString& path = pathOf(begun);
      const bool isWorthAThread = QFileInfo(path).size() >= kWorthAThread;
      ahead.push_back(std::async(isWorthAThread ? std::launch::async : std::launch::deferred, EncodeSmall, path));
    }
    const QByteArray encoded = ahead.front().get();
    ahead.pop_front();
    const qsizetype length = places[i].from - from;
    const QByteArray head =
        QByteArrayLiteral("data:") + pictures_[std::size_t(places[i].picture)].type + QByteArrayLiteral(";base64,");
    if (file.write(bytes.constData() + from, length) != length || file.write(head) != head.size()) return false;
    if (encoded.isEmpty() ? !WriteBase64(pathOf(i), file) : file.write(encoded) != encoded.size()) return false;
    from = places[i].to;
  }
  return file.write(bytes.constData() + from, bytes.size() - from) == bytes.size() - from;
}
