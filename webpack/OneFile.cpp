#include "OneFile.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>
#include <memory>
#include <vector>

#include "ModPackage.h"
#include "OneFilePage.h"
#include "OneFilePictures.h"
#include "PathRules.h"
#include "Program.h"
#include "ScratchFile.h"

namespace {

struct PageFile {
  QString name;
  QByteArray bytes;
};

// Number in a page's name as the program gives them, 0 for other names.
int NumberIn(const QString& name) {
  static const QRegularExpression numbered(QStringLiteral("^Page([2-9]|[1-9][0-9]{1,5})\\.html$"));
  if (name == Project::PageName(1)) return 1;
  return numbered.match(name).captured(1).toInt();
}

// The numbered pages by their numbers, the others behind them by their names. Nothing when one can't be read.
std::vector<PageFile> PagesOf(Program& program, const QByteArray& inView) {
  const Project& project = program.project;
  QStringList names;
  for (const QString& name : program.Files.FileNames(project.WorkPath()))
    if (name.endsWith(u".html", Qt::CaseInsensitive)) names.append(name);
  const QString current = Project::PageName(project.CurPageNo());
  if (!inView.isEmpty() && !names.contains(current)) names.append(current);
  const auto rank = [](const QString& name) { return NumberIn(name) > 0 ? NumberIn(name) : 1 << 30; };
  std::stable_sort(names.begin(), names.end(), [&](const QString& a, const QString& b) { return rank(a) < rank(b); });
  std::vector<PageFile> pages;
  for (const QString& name : names) {
    int errorCode = 0;
    pages.push_back({name, name == current && !inView.isEmpty()
                               ? inView
                               : program.Files.ReadTextFile(PathRules::Join(project.WorkPath(), name), errorCode)});
    if (errorCode != 0) return {};
  }
  return pages;
}

// Shows the page that the address asks for, also where the style sheet can't, and its title.
const char kScript[] = R"((function () {
  var pages = document.querySelectorAll("body>.page");
  function show() {
    var id = location.hash.slice(1), place = null;
    try { id = decodeURIComponent(id); } catch (e) { }
    place = id && (document.getElementById(id) || document.getElementsByName(id)[0]);
    var shown = place || pages[0];
    while (shown.parentNode && shown.parentNode !== document.body) shown = shown.parentNode;
    if (!shown.parentNode) shown = place = pages[0];
    for (var i = 0; i < pages.length; i++) pages[i].style.display = pages[i] === shown ? "block" : "none";
    document.title = shown.getAttribute("data-title");
    if (place && place !== shown) place.scrollIntoView(); else scrollTo(0, 0);
  }
  addEventListener("hashchange", show);
  show();
})();)";

// Without scripts the address alone chooses the page; where nothing has been asked for that is the first one. The pages
// may have classes of these names, but none of their elements is BODY's child.
const char kStyle[] = R"(body{margin:0}
body>.page{display:none;min-height:100vh;color:#000}
body>.page:before,body>.page:after{content:"";display:table;clear:both}
body>.page>.body{margin:8px}
body>#p1,body>.page:target{display:block}
body>.page:has(:target){display:block}
html:has(body>.page:not(#p1):target) #p1{display:none}
html:has(body>.page:not(#p1) :target) #p1{display:none}
@media (max-width:600px){img{max-width:100%;height:auto}}
)";

QString HashOf(const QByteArray& script) {
  return QString::fromLatin1(QCryptographicHash::hash(script, QCryptographicHash::Sha256).toBase64());
}

}  // namespace

bool SaveOneFile(Program& program, const QString& path, const QByteArray& inView) {
  std::vector<PageFile> files = PagesOf(program, inView);
  QMap<QString, int> numbers;
  QCryptographicHash all(QCryptographicHash::Sha256);
  for (std::size_t i = 0; i < files.size(); ++i) {
    numbers[files[i].name] = int(i) + 1;
    const bool hasNext = NumberIn(files[i].name) > 0 && i + 1 < files.size() && NumberIn(files[i + 1].name) > 0;
    if (hasNext) files[i].bytes = PutPageLink(program, files[i].bytes, files[i + 1].name);
    all.addData(files[i].bytes);
  }
  if (files.empty()) return false;
  // No page can hold its own fingerprint.
  OneFilePictures pictures(program.project.WorkPath(), u'@' + QString::fromLatin1(all.result().toHex()) + u'@');
  std::vector<std::unique_ptr<OneFilePage>> pages;
  for (const PageFile& file : files)
    pages.push_back(std::make_unique<OneFilePage>(file.name, file.bytes, int(pages.size()) + 1, numbers, pictures));
  QString styles, sections;
  for (const auto& page : pages) {
    // A sheet of its own each: what one of them leaves open ends with it.
    styles += QStringLiteral("<style>\n") + page->Styles() + QStringLiteral("</style>\n");
    sections += page->Section();
  }
  const QByteArray script(kScript);
  // Nothing runs but the script that stands here, whatever is hidden in the pages.
  const QString text =
      QStringLiteral(
          "<html>\n<head>\n<meta charset=\"utf-8\">\n"
          "<meta http-equiv=\"Content-Security-Policy\" content=\"script-src 'sha256-%1'; object-src 'none'; "
          "base-uri 'none'\">\n"
          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>")
          .arg(HashOf(script)) +
      pages.front()->Title().toHtmlEscaped() + QStringLiteral("</title>\n<style>\n:root{") + pictures.Declarations() +
      QStringLiteral("}\n") + QLatin1String(kStyle) + QStringLiteral("</style>\n") + styles +
      QStringLiteral("</head>\n<body>\n") + sections + QStringLiteral("<script>") + QLatin1String(script) +
      QStringLiteral("</script>\n</body>\n</html>\n");
  ScratchFile file(QFileInfo(path).path());
  return file.open() && pictures.Write(text, file) && file.MoveTo(path);
}
