#include <QByteArray>
#include <QList>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "AsciiText.h"
#include "RandomSeed.h"
#include "StripPicturePaths.h"

// Random pages against what always holds of StripPicturePaths, under the sanitizers: FuzzStrip [ITERATIONS [SEED]].
namespace {

constexpr long kIterations = 90000;

class PageMaker {
 public:
  explicit PageMaker(unsigned seed) : random_(seed) {}

  QByteArray Next() {
    static const char* const kTokens[] = {"<IMG ",
                                          "<img",
                                          "<BODY ",
                                          "<bod",
                                          "SRC=",
                                          "src=",
                                          "BACKGROUND=",
                                          "\"",
                                          "\"",
                                          "/",
                                          "\\",
                                          " ",
                                          " ",
                                          ">",
                                          "<",
                                          "*",
                                          "a.gif",
                                          "p/q/b.jpg",
                                          "file:///C:/x/",
                                          "WIDTH=5",
                                          "</BODY>",
                                          "\r\n",
                                          "&amp;",
                                          "'",
                                          "<TABLE BACKGROUND=\"t/u.gif\" >",
                                          "<IMG SRC=\"x/y z.png\" >"};
    QByteArray page;
    const int length = Below(60);
    for (int at = 0; at < length; ++at) {
      if (Below(5) == 0) {
        page.append(char(Below(256)));
      } else {
        page.append(kTokens[Below(std::size(kTokens))]);
      }
    }
    return page;
  }

 private:
  int Below(size_t bound) { return int(random_() % bound); }

  std::mt19937 random_;
};

// What is wrong with the routine's answer, or null.
const char* Wrong(const QByteArray& page) {
  QByteArray pictures = "untouched";
  const QByteArray text = StripPicturePaths(page, pictures);
  if (text.count('<') != page.count('<')) return "a tag's beginning came or went";
  const QList<QByteArray> before = page.split('<');
  const QList<QByteArray> after = text.split('<');
  qsizetype mayChange = 0;
  for (qsizetype at = 0; at < before.size(); ++at) {
    const QByteArray tag = UpperAscii(before.at(at).left(3));
    const bool candidate = tag == "IMG" || tag == "BOD";
    if (candidate) ++mayChange;
    if (!candidate && before.at(at) != after.at(at)) return "another tag changed";
    if (after.at(at).size() > before.at(at).size() + 2) return "a piece grew by more than its quotes";
  }
  if (pictures == "untouched") return "the list wasn't set";
  if (pictures.contains('/') || pictures.contains('"') || pictures.contains(' ') || pictures.contains('>')) {
    return "a name holds what ends it";
  }
  if (!page.contains('*') && !pictures.isEmpty() && pictures != "*" && pictures.split('*').size() > mayChange) {
    return "more names than tags";
  }
  QByteArray again;
  if (StripPicturePaths(text, again) != text) return "a second pass changes the text";
  if (again != pictures) return "a second pass changes the list";
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  const long iterations = argc > 1 ? std::atol(argv[1]) : kIterations;
  const unsigned seed = argc > 2 ? unsigned(std::atol(argv[2])) : RandomSeed("fuzz_strip");
  PageMaker maker(seed);
  for (long at = 0; at < iterations; ++at) {
    const QByteArray page = maker.Next();
    if (const char* wrong = Wrong(page)) {
      std::fprintf(stderr, "seed %u, page %ld: %s\n%s\n", seed, at, wrong, page.toHex(' ').constData());
      return 1;
    }
  }
  std::printf("%ld pages, seed %u: all well\n", iterations, seed);
  return iterations > 0 ? 0 : 2;
}
