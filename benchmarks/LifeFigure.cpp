// memory_8h, a long day's work: 1,000 changes between ten pages of 36 kB, and on each page a hundred keys, half of them
// letters and half of them taking these back, so that the pages stay as they are. Ours is what all processes hold in
// memory then, at rest with a blank page; the peer is the same after the first tenth of that work. It takes a quarter
// of an hour. bench_memory_8h N makes do with N page changes, to try it.
#include <QApplication>
#include <cstdlib>
#include <vector>

#include "Figure.h"
#include "LetterPage.h"
#include "ProcessMemory.h"
#include "ProjectWindow.h"
#include "TypedKeys.h"

namespace {

constexpr int kPages = 10;
constexpr int kPageBytes = 36000;
constexpr int kLetters = 50;  // on a visit of a page, and as many keys take them back
constexpr int kVisits = 1000;
constexpr int kLooks = 5;

double MemoryAtRest(ProjectWindow& window) {
  constexpr int restMs = 5000;  // the engine gives memory back only after a while
  window.SwitchTo(1, restMs);
  return MemoryOfAll();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const int visits = argc > 1 ? std::max(10 * kLooks, std::atoi(argv[1])) : kVisits;
  TestProgram test;
  ProjectWindow window(test);
  for (int page = 2; page < 2 + kPages; ++page)
    if (!PutFile(test.WorkFile(Project::PageName(page)), MakePage(kPageBytes))) return 1;
  const int tenth = visits / 10;
  std::vector<double> early, late;
  for (int visit = 1; visit <= visits; ++visit) {
    const int page = 2 + visit % kPages;
    window.SwitchTo(page, 0);
    const qsizetype before = window.view().Source().size();
    TypedKeys keys(window.view(), 50);
    for (int i = 0; i < kLetters; ++i) keys.Key(TypedKey::Letter, 0);
    const qsizetype most = window.view().Source().size();
    for (int i = 0; i < kLetters; ++i) keys.Key(TypedKey::Backspace, 0);
    const qsizetype after = window.view().Source().size();
    if (test.program.project.CurPageNo() != page || most != before + kLetters || after != before) {
      std::fprintf(stderr, "page %d has %lld letters, then %lld, then %lld\n", page, qlonglong(before), qlonglong(most),
                   qlonglong(after));
      return 1;
    }
    const bool isEarly = visit <= tenth, isLate = visit > visits - tenth;
    if ((!isEarly && !isLate) || visit % (tenth / kLooks) != 0) continue;
    auto& looks = isEarly ? early : late;
    if (int(looks.size()) < kLooks) looks.push_back(MemoryAtRest(window));
    std::fprintf(stderr, "%d page changes, %d keys: %.1f MB\n", visit, visit * 2 * kLetters, looks.back());
  }
  Figure figure("memory_8h", "MB");
  for (std::size_t look = 0; look < early.size(); ++look) figure.Add(late.at(look), early[look]);
  figure.Print();
}
