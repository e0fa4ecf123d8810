// The pictures of a project that is to become one HTML file: each of them is in it once, however often it is used.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <vector>

class OneFilePictures {
 public:
  // `folder` is that of the pages. `mark` is a text that stands in none of them.
  OneFilePictures(const QString& folder, const QString& mark);

  // Number of the picture that the page `page`, a name in the folder, shows by that address; -1 when there is none. One
  // that isn't where the address leads is looked for beside the pages, as web-packs do.
  int Find(const QString& page, const QString& address);

  // Tells of a use. Those in styles take it from a variable of the document, and so do all where there are several.
  void UseInTag(int picture) { ++pictures_[std::size_t(picture)].tags; }
  void UseInStyle(int picture) { ++pictures_[std::size_t(picture)].styles; }

  // To be asked when all uses have been told.
  bool IsShared(int picture) const;
  // The address for a tag that alone uses the picture, and the variable for all others.
  QString Address(int picture) const;
  static QString Variable(int picture);
  // Declares the variables.
  QString Declarations() const;

  // Writes `text` as UTF-8 with the pictures' bytes in their places; false when something can't be read or written.
  bool Write(const QString& text, QIODevice& file) const;

 private:
  struct Picture {
    QString path;
    const char* type;
    int tags = 0, styles = 0;
  };

  QString folder_;
  QString mark_;
  std::vector<Picture> pictures_;
  QMap<QString, int> byPath_;
};
