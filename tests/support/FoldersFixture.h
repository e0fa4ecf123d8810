// The program on the headless component, with what its folders hold at any moment.
#pragma once

#include <QComboBox>
#include <QDirIterator>
#include <QListWidget>
#include <QMap>
#include <QPushButton>

#include "OpenProjectPanel.h"
#include "ProgramFixture.h"

class FoldersTest : public ProgramTest {
 protected:
  // Path below a folder -> bytes; a folder stands with a "/" behind it.
  using Tree = QMap<QString, QByteArray>;

  FoldersTest() { EXPECT_TRUE(run_.Start()); }

  // All files and folders below a folder of the program; "" is the program's own.
  Tree TreeOf(const QString& folder = QString()) const {
    const QString root = run_.PathInApp(folder);
    Tree tree;
    QDirIterator all(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (all.hasNext()) {
      const QString path = all.next();
      // The list of what is hidden belongs to the system.
      if (all.fileName() == QLatin1String(".hidden")) continue;
      const QString name = QDir(root).relativeFilePath(path);
      if (all.fileInfo().isDir())
        tree[name + u'/'] = QByteArray();
      else
        tree[name] = FileBytes(path);
    }
    return tree;
  }
  // Only files and folders of which `after` differs from `before`; what has gone is told as "<gone>".
  static Tree Changes(const Tree& before, const Tree& after) {
    Tree changes;
    for (auto i = after.begin(); i != after.end(); ++i)
      if (!before.contains(i.key()) || before[i.key()] != i.value()) changes[i.key()] = i.value();
    for (auto i = before.begin(); i != before.end(); ++i)
      if (!after.contains(i.key())) changes[i.key()] = "<gone>";
    return changes;
  }

  QByteArray InView() const { return run_.modMain.Web()->jWB->SourceForFile(); }
  QString LettersInView() { return ShownLetters(*View().WBDocument()); }

  // Types each text on a page of its own; the last page stays in view and isn't written.
  void MakePages(const QStringList& texts) {
    for (qsizetype i = 0; i < texts.size(); ++i) {
      if (i > 0) {
        ASSERT_TRUE(run_.Choose("mNewPage"));
      }
      run_.Type(texts[i]);
    }
  }
  void GoToPage(int page) {
    Web().BoxPage->setCurrentIndex(page - 1);
    run_.Settle();
  }
  // The letters of every page file of a folder, by name.
  QMap<QString, QString> LettersIn(const QString& folder) {
    QMap<QString, QString> letters;
    for (const QString& name : Names(folder)) {
      if (!name.endsWith(QLatin1String(".html"))) continue;
      QByteArray text = FileIn(folder + u'/' + name);
      text = text.mid(text.toLower().indexOf("<body"));
      text = text.mid(text.indexOf('>') + 1);
      QString shown;
      bool inTag = false;
      for (const char c : text.left(text.toLower().indexOf("</body"))) {
        if (c == '<') inTag = true;
        if (!inTag && c >= 'a' && c <= 'z') shown.append(QLatin1Char(c));
        if (c == '>') inTag = false;
      }
      letters[name] = shown;
    }
    return letters;
  }

  OpenProjectPanel& Panel() { return *run_.modMain.Ops()->FrOps1; }
  // Opens the panel and presses a button of it with that row selected.
  void InPanel(const QString& row, int button, const QList<MessageAnswer>& answers = {}) {
    Answer(answers);
    ASSERT_TRUE(run_.Choose("mOpenProject"));
    const auto rows = Panel().BoxProj->findItems(row, Qt::MatchExactly | Qt::MatchCaseSensitive);
    ASSERT_EQ(1, rows.size()) << qPrintable(row);
    Panel().BoxProj->setCurrentItem(rows.first());
    Panel().bOpenProj[std::size_t(button)]->click();
    run_.Settle();
  }
  void OpenSaved(const QString& row) { InPanel(row, 0); }
  void DeleteSaved(const QString& row, MessageAnswer answer = MessageAnswer::Ok) { InPanel(row, 2, {answer}); }

  // Puts a picture file into the folder of the pages and shows it in the page in view.
  void AddPicture(const QString& name, const QString& source) {
    ASSERT_TRUE(PutFile(run_.test.WorkFile(name), name.toUtf8()));
    View().AddNewElement(QStringLiteral("<IMG SRC=\"%1\">").arg(source));
  }
};
