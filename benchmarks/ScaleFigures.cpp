// What grows how: each figure is that of something ten times as large, and its peer the same of the smaller one, times
// ten. So 1.0 is as fast as the input grows, less is slower, and more is a growth that hurts one day.
// scale_bytes_… has a page of 10 MB in few nodes against 1 MB, scale_nodes_… one of 100,000 nodes against 10,000:
// …_page, from a blank page to this one and back, this one written; …_save; …_undo, taking back a colour over the whole
// page until that is seen; …_key, a letter in the middle. scale_project_… has a project of 1,000 pages and 10,000 small
// pictures against 100 and 1,000: …_page, from one page to another; …_save, the project saved under a name.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <cstdlib>
#include <functional>
#include <string>

#include "Figure.h"
#include "LetterPage.h"
#include "ProjectWindow.h"
#include "TypedKeys.h"
#include "WholePage.h"

namespace {

constexpr int kTimes = 10;
constexpr int kTurns = 5;

void Expect(bool good, const char* what) {
  if (good) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::exit(1);
}

double Milliseconds(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return double(clock.nsecsElapsed()) / 1e6;
}

int NodesBelow(const Node* node) {
  int count = 0;
  for (const Node* child = node->firstChild(); child; child = child->next()) count += 1 + NodesBelow(child);
  return count;
}

// A letter with that many nodes.
QByteArray MakeNodePage(int nodes) {
  constexpr double bytesPerNode = 26.46;
  return MakePage(int(nodes * bytesPerNode));
}

struct PageTimes {
  double page, save, undo, key;
};

PageTimes WorkOn(ProjectWindow& window, int number, int nodes) {
  PageTimes times{};
  constexpr int restMs = 50;
  times.page = window.SwitchTo(number, restMs);
  const int found = NodesBelow(window.view().WBDocument()->tree().bodyNode());
  if (std::abs(found - nodes) > nodes / 20) std::fprintf(stderr, "%d nodes in place of %d\n", found, nodes);
  Expect(std::abs(found - nodes) <= nodes / 20, "a page of as many nodes");
  {
    TypedKeys keys(window.view());
    keys.Key();
    std::vector<double> typed;
    for (int i = 0; i < 5; ++i) Pause(40), typed.push_back(keys.Key());
    times.key = Median(typed);
  }
  const QString before = window.view().Source();
  ColorWhole(window.view(), QStringLiteral("#FF0000"));
  Expect(window.view().Source() != before, "a colour over the page");
  times.undo = UndoWhole(window.view());
  Expect(window.view().Source() == before, "the page without its colour");
  times.save = Milliseconds([&] { window.web().mSavePage(); });
  times.page += window.SwitchTo(1, restMs);
  return times;
}

void ScalePage(const std::string& name, const QByteArray& small, const QByteArray& large, int smallNodes) {
  TestProgram test;
  ProjectWindow window(test);
  Expect(PutFile(test.WorkFile(QStringLiteral("Page2.html")), small) &&
             PutFile(test.WorkFile(QStringLiteral("Page3.html")), large),
         "the pages' files");
  Figure page(name + "_page"), save(name + "_save"), undo(name + "_undo"), key(name + "_key");
  WorkOn(window, 2, smallNodes);  // warms up
  for (int turn = 0; turn < kTurns; ++turn) {
    const PageTimes one = WorkOn(window, 2, smallNodes), ten = WorkOn(window, 3, smallNodes * kTimes);
    page.Add(ten.page, kTimes * one.page);
    save.Add(ten.save, kTimes * one.save);
    undo.Add(ten.undo, kTimes * one.undo);
    key.Add(ten.key, kTimes * one.key);
  }
  for (const Figure* figure : {&page, &save, &undo, &key}) figure->Print();
}

// Ten pictures on each page, and the link to the next one.
class LargeProject {
 public:
  explicit LargeProject(int pages) : pages_(pages) {
    const QByteArray picture = "GIF89a" + QByteArray(1000, 'p');
    for (int page = 1; page <= pages; ++page) {
      QByteArray body;
      for (int i = 0; i < 10; ++i) {
        const QByteArray name = QByteArray::number(page) + '_' + QByteArray::number(i) + ".gif";
        Expect(PutFile(test_.WorkFile(QString::fromLatin1(name)), picture), "a picture's file");
        body += "<img src=\"" + name + "\" width=\"16\" />";
      }
      body += "<A HREF=\"Page" + QByteArray::number(page + 1) + ".html\">Next Page</A>";
      Expect(PutFile(test_.WorkFile(Project::PageName(page)), "<html><head></head><body>" + body + "</body></html>"),
             "a page's file");
    }
  }

  double Switch(int page) {
    const double ms = window_.SwitchTo(page);
    Expect(test_.program.project.CurPageNo() == page, "the other page");
    return ms;
  }

  double Save() {
    Project& project = test_.program.project;
    // What was saved before stays: just behind the removal of many files the disk looks long for room for others.
    const QString name = QStringLiteral("mine%1").arg(++saves_);
    test_.platform.dialogs.Texts = {name};
    const double ms = Milliseconds([&] { window_.web().SaveProject(); });
    const QDir folder(project.WorkPath());
    Expect(folder.dirName() == name && int(folder.count()) - 2 == pages_ * 11, "a saved project");
    project.SavedAs(Project::UnsavedName(), project.CardPath());
    return ms;
  }

 private:
  TestProgram test_;
  // Its load steps make the folder, so it comes first.
  ProjectWindow window_{test_};
  int pages_;
  int saves_ = 0;
};

void ScaleProject() {
  constexpr int pages = 100;
  LargeProject small(pages), large(pages * kTimes);
  Figure page("scale_project_page"), save("scale_project_save");
  small.Switch(30), large.Switch(30);  // warms up
  for (int turn = 0; turn < kTurns; ++turn) {
    const int number = turn % 2 == 0 ? 20 : 30;
    const double one = small.Switch(number), ten = large.Switch(number);
    const double oneSaved = small.Save(), tenSaved = large.Save();
    page.Add(ten, kTimes * one);
    save.Add(tenSaved, kTimes * oneSaved);
  }
  page.Print();
  save.Print();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  constexpr int bytes = 1000000, blockNodes = 3, blockBytes = 2070, nodes = 10000;
  ScalePage("scale_bytes", MakeTextPage(bytes), MakeTextPage(bytes * kTimes), bytes / blockBytes * blockNodes);
  ScalePage("scale_nodes", MakeNodePage(nodes), MakeNodePage(nodes * kTimes), nodes);
  ScaleProject();
}
