// One page of a project that is to become one HTML file: its part of that file and the styles of this part. Nothing of
// the page runs there, and nothing of it reaches another page.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <vector>

#include "HTMLDocument.h"
#include "OneFilePictures.h"
#include "ScopedStyles.h"

class OneFilePage {
 public:
  // `file` is the page's name in the project, `number` its place in the new file, from 1. `numbers` has those of all
  // pages by their names. Tells `pictures` of all that it uses.
  OneFilePage(const QString& file, const QByteArray& bytes, int number, const QMap<QString, int>& numbers,
              OneFilePictures& pictures);

  // The id of a page's part, by which links lead to it.
  static QString Id(int number) { return QStringLiteral("p%1").arg(number); }

  QString Title() const { return title_; }

  // To be asked when all pages have told their pictures.
  QString Section();
  QString Styles() const;

 private:
  // Chooses the page's part, and no element of any page, whatever its class.
  QString Part() const { return QStringLiteral("body>.") + Id(number_); }
  void Tidy(const Node* element);
  void TidyAttribute(const Node* element, const Attribute& attribute);
  void FollowLink(const Node* element, const Attribute& attribute);
  void TakeSheet(const Node* element);
  void TakeBody();
  void AddStyle(const Node* element, const QString& declaration);
  bool IsPictureOf(const Node* element, const QString& attribute) const;

  QString file_;
  int number_;
  const QMap<QString, int>& numbers_;
  OneFilePictures& pictures_;
  StyleScope scope_;
  HTMLDocument document_;
  // Tags that show a picture.
  struct Use {
    const Node* element;
    QString attribute;
    int picture;
  };
  std::vector<Use> uses_;
  QString title_;
  QString sheets_;       // in the order of the page, kept to its part
  QString background_;   // of the whole window
  QString page_, body_;  // declarations of the page's part and of its inner one
  QString rules_;        // of links and tables
  QString bodyAttributes_;
};
