#include <random>

#include "FolderModel.h"
#include "FoldersFixture.h"
#include "RandomSeed.h"

namespace {

// Page and project commands in any order, against the plain model after each of them.
class RandomCommands : public FoldersTest {
 protected:
  using Random = std::minstd_rand;

  // One command, for both; its name.
  QString Step(Random& random) {
    static const QStringList names = {"ann", "bob", " pad ", ".dot", "no/way", "Project1", "a.b", ""};
    const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
    const auto pickNames = [&] {
      QStringList picked;
      for (int i = pick(3); i >= 0; --i) picked.append(names[pick(int(names.size()))]);
      return picked;
    };
    Answer({});
    switch (pick(20)) {
      case 0:
      case 1:
      case 2: {
        const QString letters(1 + pick(2), QChar(u'a' + pick(26)));
        model_.Type(letters);
        run_.Type(letters);
        return "type " + letters;
      }
      case 3:
      case 4:
      case 5:
        model_.NewPage();
        run_.Choose("mNewPage");
        return "new page";
      case 6:
        model_.Save();
        run_.Choose("mSavePage");
        return "save";
      case 7:
        model_.Refresh();
        run_.Choose("mRefresh");
        return "refresh";
      case 8:
        model_.DeletePage();
        run_.Choose("mDelPage");
        return "delete page";
      case 9:
      case 10:
      case 11: {
        const int index = pick(8) == 0 ? pick(30) : pick(5);
        model_.Choose(index);
        GoToPage(index + 1);
        return QString("choose %1").arg(index);
      }
      case 12: {
        const QString letters(3, QChar(u'a' + pick(26)));
        EXPECT_TRUE(PutFile(run_.test.Path("elsewhere/chosen.html"), PageAround(letters).toUtf8()));
        Answer({}, {run_.test.Path("elsewhere/chosen.html")});
        model_.OpenFile(letters);
        run_.Choose("mOpenFile");
        return "open file";
      }
      case 13: {
        const bool ok = pick(3) > 0;
        Answer({ok ? MessageAnswer::Ok : MessageAnswer::Cancel});
        model_.NewProject(ok);
        run_.Choose("mNewProject");
        return "new project";
      }
      case 14:
      case 15: {
        const QStringList answers = pickNames();
        const bool replace = pick(2) > 0;
        Answer({replace ? MessageAnswer::Ok : MessageAnswer::Cancel}, answers);
        model_.SaveProject(answers, replace);
        run_.Choose("mSaveProject");
        return "save project " + answers.join(u'|');
      }
      case 16:
      case 17:
      case 18: {
        const QStringList rows = model_.Projects();
        const bool comesUp = model_.OpenPanel();
        QSignalSpy asked(&Web(), &FWeb::OpsRequested);
        run_.Choose("mOpenProject");
        EXPECT_EQ(comesUp, !asked.isEmpty());
        if (!comesUp) return "no panel";
        const QString row = rows[pick(int(rows.size()))];
        const bool deletes = pick(4) == 0;
        const bool ok = pick(3) > 0;
        const auto items = Panel().BoxProj->findItems(row, Qt::MatchExactly | Qt::MatchCaseSensitive);
        EXPECT_EQ(1, items.size());
        if (items.isEmpty()) return "no row " + row;
        Panel().BoxProj->setCurrentItem(items.first());
        Answer({ok ? MessageAnswer::Ok : MessageAnswer::Cancel});
        if (deletes)
          model_.DeleteRow(row, ok);
        else
          model_.OpenRow(row);
        Panel().bOpenProj[deletes ? 2 : 0]->click();
        run_.Settle();
        return (deletes ? "delete project " : "open project ") + row;
      }
      default: {
        // Someone else changes the folder: a page goes, or a stray file comes.
        const QString name = pick(2) == 0
                                 ? QString("stray%1.html").arg(pick(2))
                                 : (pick(3) == 0 ? QString("wgcard.html") : QString("Page%1.html").arg(2 + pick(4)));
        const QString path = model_.workPath + u'/' + name;
        if (model_.files.remove(path) > 0) {
          QFile::remove(run_.PathInApp(path));
          return "gone " + path;
        }
        if (!model_.folders.contains(model_.workPath) || !name.startsWith(QLatin1String("stray"))) return "nothing";
        model_.files[path] = "stray";
        EXPECT_TRUE(PutFile(run_.PathInApp(path), PageAround("stray").toUtf8()));
        return "stray " + path;
      }
    }
  }

  void Compare(bool afterExit = false) {
    QMap<QString, QString> files;
    QSet<QString> folders = {""};
    const Tree tree = TreeOf();
    for (auto i = tree.begin(); i != tree.end(); ++i) {
      if (i.key().endsWith(u'/')) folders.insert(i.key().chopped(1));
      const qsizetype at = i.key().lastIndexOf(u'/');
      if (at > 0 && i.key().endsWith(QLatin1String(".html")))
        files[i.key()] = LettersIn(i.key().left(at)).value(i.key().mid(at + 1));
    }
    EXPECT_EQ(model_.files, files);
    EXPECT_EQ(model_.folders, folders);
    if (afterExit) return;
    EXPECT_EQ(model_.curPageNo, run_.program().project.CurPageNo());
    EXPECT_EQ(model_.list, Web().BoxPage->currentIndex());
    // Which writes fail is no part of the model.
    EXPECT_EQ("Corvane - " + model_.caption, Web().windowTitle().remove(" (page not written)"));
    EXPECT_EQ(model_.projectName, run_.program().project.ProjectName());
    EXPECT_EQ(run_.PathInApp(model_.workPath), run_.program().project.WorkPath());
    EXPECT_EQ(run_.PathInApp(model_.curPageFile), run_.program().project.CurPageFile());
    EXPECT_EQ(model_.busy, Web().Busy);
    const bool shows = !View().Source().isEmpty();
    EXPECT_EQ(model_.view.has_value(), shows);
    if (shows && model_.view) {
      EXPECT_EQ(*model_.view, LettersInView());
    }
  }

  void Sequence(unsigned seed) {
    Random random(seed);
    QStringList done;
    const int steps = 8 + int(random() % 10);
    for (int step = 0; step < steps; ++step) {
      done.append(Step(random));
      Compare();
      if (HasFailure()) break;
    }
    if (!HasFailure()) {
      const QChar answer = QStringLiteral("ync").at(int(random() % 3));
      Answer({answer == u'y'   ? MessageAnswer::Yes
              : answer == u'n' ? MessageAnswer::No
                               : MessageAnswer::Cancel,
              MessageAnswer::Ok},
             {"end"});
      model_.Exit(answer, {"end"}, true);
      ASSERT_TRUE(run_.Choose("mExit"));
      done.append(QString("exit ") + answer);
      EXPECT_EQ(model_.ended, run_.ended);
      Compare(run_.ended);
    }
    if (HasFailure()) ADD_FAILURE() << "seed " << seed << ": " << qPrintable(done.join(", "));
  }

  FolderModel model_;
};

// A program for each sequence.
class RandomSequence : public RandomCommands {
 public:
  void TestBody() override {}
  using RandomCommands::Sequence;
};

TEST(RandomSequences, FoldersAndStateAgreeWithThePlainModelAtEveryStep) {
  for (const unsigned seed : RandomSeeds("RandomSequences", 1000)) {
    RandomSequence().Sequence(seed);
    if (::testing::Test::HasFailure()) return;
  }
}

}  // namespace
