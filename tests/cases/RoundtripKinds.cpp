#include "RoundtripKinds.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWidget>
#include <algorithm>
#include <memory>

#include "HTMLDocument.h"
#include "HostedWebBrowser.h"
#include "KindTable.h"
#include "Serializer.h"

namespace {

constexpr int kPatienceMs = 12000;
constexpr int kAnyNumber = 1 << 30;

// A picture of one dot.
constexpr unsigned char kDot[] = {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0,   0x80, 0, 0,  0, 0,
                                  0,   255, 255, 255, '!', 249, 4, 1, 0, 0,   0,    0, 44, 0, 0,
                                  0,   0,   1,   0,   1,   0,   0, 2, 2, 'D', 1,    0, ';'};

// Everything that is asked of a loaded page, by a script of its own: the model isn't taken for a witness of itself.
// A tree is one line for each node, from HTML down; `withMeta` false leaves out what says the encoding.
constexpr char kAsking[] = R"js(
(() => {
  const isMeta = n => n.nodeType === 1 && n.localName === 'meta' &&
      (n.hasAttribute('charset') || /^content-type$/i.test(n.getAttribute('http-equiv') || ''));
  const q = text => JSON.stringify(text).replace(/[\u0080-\uffff]/g, c => '\\u' + c.charCodeAt(0).toString(16).padStart(4, '0'));
  const tree = withMeta => {
    const lines = [];
    let text = null, textDepth = 0;
    const flush = () => { if (text) lines.push(textDepth + ' text ' + q(text)); text = null; };
    const stack = [[document.documentElement, 0]];
    while (stack.length) {
      const [node, depth, label] = stack.pop();
      if (label) { flush(); lines.push(depth + ' ' + label); continue; }
      if (node.nodeType === 3 || node.nodeType === 4) {
        if (text !== null && textDepth !== depth) flush();
        text = (text || '') + node.data; textDepth = depth;
        continue;
      }
      if (!withMeta && isMeta(node)) continue;
      flush();
      if (node.nodeType === 8) { lines.push(depth + ' comment ' + q(node.data)); continue; }
      if (node.nodeType === 7) { lines.push(depth + ' comment ""'); continue; }
      if (node.nodeType !== 1) continue;
      const space = {'http://www.w3.org/1999/xhtml': 'html', 'http://www.w3.org/2000/svg': 'svg',
                     'http://www.w3.org/1998/Math/MathML': 'math'}[node.namespaceURI] || 'html';
      const attributes = [...node.attributes].map(a => q(a.name) + '=' + q(a.value)).sort();
      lines.push([depth, space, q(node.prefix ? node.nodeName : node.localName), ...attributes].join(' '));
      if (node.localName === 'template' && space === 'html') {
        stack.push([null, depth, 'end of content']);
        const inner = [...node.childNodes].reverse().map(n => [n, depth + 1]);
        const content = [...node.content.childNodes].reverse().map(n => [n, depth + 1]);
        stack.push(...inner, [null, depth, 'content'], ...content);
      } else {
        stack.push([null, depth, 'end']);
        for (const child of [...node.childNodes].reverse()) stack.push([child, depth + 1]);
      }
    }
    flush();
    return lines.filter(line => !/^\d+ end$/.test(line)).join('\n');
  };
  const all = root => {
    const found = [];
    const visit = node => {
      if (node.nodeType === 1) found.push(node);
      if (node.localName === 'template' && node.content) for (const n of node.content.childNodes) visit(n);
      for (const n of node.childNodes) visit(n);
    };
    if (root) visit(root);
    return found;
  };
  const comments = [];
  {
    const visit = node => {
      if (node.nodeType === 8) comments.push(node.data);
      if (node.localName === 'template' && node.content) for (const n of node.content.childNodes) visit(n);
      for (const n of node.childNodes) visit(n);
    };
    visit(document.documentElement);
  }
  let elements = all(document.documentElement);
  // One more META than before isn't counted.
  if (elements.filter(isMeta).length > METAS) elements = elements.filter(e => e !== elements.find(isMeta));
  const find = at => {
    if (at[0] === '#') return elements.find(e => e.id === at.slice(1));
    const [name, index] = [at.slice(0, at.lastIndexOf(':')), Number(at.slice(at.lastIndexOf(':') + 1))];
    return elements.filter(e => e.localName === name)[index];
  };
  const textOf = element => element.localName === 'template' && element.content
      ? element.content.textContent + element.textContent : element.textContent;
  const failures = [];
  for (const probe of PROBES) {
    const tell = got => failures.push(JSON.stringify(probe) + ' got ' + q(String(got)));
    if ('comment' in probe) {
      if (comments[probe.comment] !== probe.value) tell(comments[probe.comment]);
      continue;
    }
    const element = find(probe.at);
    if (!element) { tell('no such element'); continue; }
    if ('attribute' in probe) {
      if (element.getAttribute(probe.attribute) !== probe.value) tell(element.getAttribute(probe.attribute));
    } else if ('picture' in probe) {
      const file = new URL(encodeURIComponent(probe.picture), location.href).href;
      const alike = href => decodeURIComponent(href.replace(/[?#].*$/, ''));
      let got = element.src;
      try { if (alike(element.src) === alike(file)) got = null; } catch (e) {}
      const width = element.naturalWidth !== undefined ? element.naturalWidth : element.width;
      if (got !== null) tell(got); else if (!(width > 0)) tell('not shown');
    } else if (textOf(element) !== probe.value) tell(textOf(element));
  }
  const addresses = [];
  for (const e of elements) {
    if (e.localName === 'img' || (e.localName === 'input' && /^image$/i.test(e.getAttribute('type') || '')))
      addresses.push(e.getAttribute('src') === null ? '' : e.src);
    const back = e.getAttribute('background');
    if (back !== null) { const a = document.createElement('a'); a.href = back; addresses.push(a.href); }
  }
  const metas = all(document.documentElement).filter(isMeta).map(e => e.outerHTML).join('\n');
  let outside = 0;
  for (const n of document.childNodes) if (n.nodeType === 8) ++outside;
  return [tree(true), tree(false), failures.join('\n'), addresses.join('\n'), metas,
          document.doctype ? 'type' : '', document.compatMode, String(outside), document.characterSet];
})()
)js";

struct Answer {
  QString tree, treeWithoutMeta, failures, addresses, metas, type, mode, commentsOutside, encoding;
};

// The same lines for the model's tree.
class ModelTree {
 public:
  explicit ModelTree(const Node* html) {
    if (html) Visit(html, 0);
    Flush();
  }
  QString Lines() const { return lines_.join(u'\n'); }

 private:
  static QString Quoted(const QString& text) {
    QString out = QStringLiteral("\"");
    for (const QChar c : text) {
      switch (c.unicode()) {
        case '"':
          out += QLatin1String("\\\"");
          break;
        case '\\':
          out += QLatin1String("\\\\");
          break;
        case '\b':
          out += QLatin1String("\\b");
          break;
        case '\f':
          out += QLatin1String("\\f");
          break;
        case '\n':
          out += QLatin1String("\\n");
          break;
        case '\r':
          out += QLatin1String("\\r");
          break;
        case '\t':
          out += QLatin1String("\\t");
          break;
        default:
          if (c.unicode() < 0x20 || c.unicode() >= 0x80) {
            out += QStringLiteral("\\u%1").arg(uint(c.unicode()), 4, 16, QLatin1Char('0'));
          } else {
            out += c;
          }
      }
    }
    return out + u'"';
  }

  void Flush() {
    if (!text_.isEmpty()) lines_ += QStringLiteral("%1 text %2").arg(textDepth_).arg(Quoted(text_));
    text_.clear();
  }

  void Children(const Node* parent, int depth) {
    for (const Node* child = parent->firstChild(); child; child = child->next()) Visit(child, depth);
  }

  // Recursive: the engine itself nests no deeper than 512.
  void Visit(const Node* node, int depth) {
    if (node->IsText()) {
      if (textDepth_ != depth) Flush();
      text_ += node->data();
      textDepth_ = depth;
      return;
    }
    Flush();
    if (node->type() == Node::Type::Comment)
      lines_ += QStringLiteral("%1 comment %2").arg(depth).arg(Quoted(node->data()));
    if (!node->IsElement()) return;
    static const char* const spaces[] = {"html", "svg", "math"};
    QStringList attributes;
    for (const Attribute& one : node->attributes()) attributes += Quoted(one.name) + u'=' + Quoted(one.value);
    std::sort(attributes.begin(), attributes.end());
    lines_ += (QStringList{QString::number(depth), QString::fromLatin1(spaces[int(node->tag()->space)]),
                           Quoted(node->tag()->localName)} +
               attributes)
                  .join(u' ');
    if (node->content()) {
      Children(node->content(), depth + 1);
      Flush();
      lines_ += QString::number(depth) + QLatin1String(" content");
    }
    Children(node, depth + 1);
    Flush();
    if (node->content()) lines_ += QString::number(depth) + QLatin1String(" end of content");
  }

  QStringList lines_;
  QString text_;
  int textDepth_ = 0;
};

bool WaitFor(const std::function<bool()>& done) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < kPatienceMs) {
    QTimer wake;
    wake.setSingleShot(true);
    wake.start(20);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return done();
}

// The engine in a shown window; a new one after each that failed.
class Engine {
 public:
  Engine() {
    window_.resize(400, 300);
    browser_ = new HostedWebBrowser(&window_);
    browser_->Widget()->setGeometry(0, 0, 400, 300);
    QObject::connect(browser_->enginePage(), &QWebEnginePage::renderProcessTerminated, &window_,
                     [this] { isDead_ = true; });
    QObject::connect(browser_, &WebBrowser::DocumentComplete, &window_, [this] { isComplete_ = true; });
    window_.show();
  }
  ~Engine() { delete browser_; }

  // "" or what went wrong.
  QString Load(const QString& path) {
    isComplete_ = false;
    browser_->Navigate(path, 14);
    const bool done = WaitFor([this] { return isComplete_ || isDead_; });
    if (isDead_) return QStringLiteral("the renderer died");
    if (!done) return QStringLiteral("no load within %1 ms").arg(kPatienceMs);
    return browser_->Document() ? QString() : QStringLiteral("no document");
  }

  QByteArray Save() { return FileHtml(browser_->Document()->tree()); }
  QString Model() const { return ModelTree(browser_->Document()->tree().htmlNode()).Lines(); }
  bool IsDead() const { return isDead_; }

  // `metas`: how many METAs are known to say the encoding; another one isn't counted where elements are.
  Answer Ask(const QJsonArray& probes, int metas = kAnyNumber) {
    QString script = QString::fromLatin1(kAsking);
    script.replace(QLatin1String("PROBES"), QString::fromUtf8(QJsonDocument(probes).toJson(QJsonDocument::Compact)));
    script.replace(QLatin1String("METAS"), QString::number(metas));
    auto parts = std::make_shared<std::optional<QVariantList>>();
    browser_->enginePage()->runJavaScript(script, QWebEngineScript::ApplicationWorld + 1,
                                          [parts](const QVariant& value) { *parts = value.toList(); });
    WaitFor([&] { return parts->has_value() || isDead_; });
    Answer answer;
    QString* const fields[] = {&answer.tree,      &answer.treeWithoutMeta, &answer.failures,
                               &answer.addresses, &answer.metas,           &answer.type,
                               &answer.mode,      &answer.commentsOutside, &answer.encoding};
    const QVariantList list = parts->value_or(QVariantList());
    for (qsizetype i = 0; i < list.size() && i < qsizetype(std::size(fields)); ++i) *fields[i] = list.at(i).toString();
    return answer;
  }

 private:
  QWidget window_;
  HostedWebBrowser* browser_;
  bool isComplete_ = false;
  bool isDead_ = false;
};

void WriteFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("no scratch file");
}

// The first lines at which two trees part.
QString FirstDifference(const QString& one, const QString& other) {
  const QStringList a = one.split(u'\n');
  const QStringList b = other.split(u'\n');
  for (qsizetype i = 0; i < std::max(a.size(), b.size()); ++i)
    if (a.value(i) != b.value(i)) return a.value(i).left(300) + QLatin1String("\n    | ") + b.value(i).left(300);
  return {};
}

class Play {
 public:
  Play(std::unique_ptr<Engine>& engine, const QJsonObject& one) : engine_(engine), one_(one) {
    for (const QJsonValue& flag : one["flags"].toArray()) flags_ += flag.toString();
  }

  CaseOutcome Run() {
    Judge();
    if (!outcome_.differences.isEmpty()) outcome_.differences.prepend(one_["name"].toString());
    return outcome_;
  }

 private:
  bool Has(const char* flag) const { return flags_.contains(QLatin1String(flag)); }
  void Fail(const QString& what) { outcome_.differences += what; }

  // False, with the reason told, when the page doesn't come.
  bool Load(const QByteArray& bytes, const char* which) {
    WriteFile(folder_.filePath(QStringLiteral("page.html")), bytes);
    if (!engine_ || engine_->IsDead()) engine_ = std::make_unique<Engine>();
    const QString problem = engine_->Load(folder_.filePath(QStringLiteral("page.html")));
    if (problem.isEmpty()) return true;
    Fail(QLatin1String(which) + QLatin1String(": ") + problem);
    engine_.reset();
    return false;
  }

  void CompareModel(const Answer& live, const char* which) {
    const QString model = engine_->Model();
    if (model != live.tree)
      Fail(QLatin1String(which) + QLatin1String(": model and live page differ at\n    ") +
           FirstDifference(model, live.tree));
  }

  void Judge() {
    const QString name = one_["name"].toString();
    for (const QJsonValue& picture : one_["pictures"].toArray())
      WriteFile(folder_.filePath(picture.toString()), QByteArray(reinterpret_cast<const char*>(kDot), sizeof kDot));
    const bool comparesTrees = !Has("scripts") && !Has("shadow");
    const QJsonObject expect = one_["expect"].toObject();
    QJsonArray loaded = expect["loaded"].toArray();
    QJsonArray kept = expect.contains(QLatin1String("kept")) ? expect["kept"].toArray() : loaded;

    QString wanted;
    if (one_.contains(QLatin1String("source"))) {
      if (!Load("\xEF\xBB\xBF" + one_["source"].toString().toUtf8(), "source")) return;
      wanted = engine_->Ask({}).tree;
    }
    if (!Load(QByteArray::fromBase64(one_["bytes"].toString().toLatin1()), "load")) return;
    const Answer first = engine_->Ask(loaded);
    if (!wanted.isEmpty() && first.tree != wanted) {
      if (Has("guess")) {
        loaded = kept = {};
        outcome_.remarks += QStringLiteral("guessed otherwise");
      } else if (comparesTrees) {
        Fail(QLatin1String("load: not the tree of the source:\n    ") + FirstDifference(wanted, first.tree));
      }
    }
    if (!loaded.isEmpty() && !first.failures.isEmpty()) Fail(QLatin1String("load: ") + first.failures);
    if (comparesTrees) CompareModel(first, "load");
    const QByteArray firstSave = engine_->Save();

    if (!Load(firstSave, "second load")) return;
    const Answer second = engine_->Ask(kept, first.metas.isEmpty() ? 0 : int(first.metas.count(u'\n')) + 1);
    const QByteArray secondSave = engine_->Save();
    if (comparesTrees) {
      const bool restated = first.metas != second.metas;
      const QString before = restated ? first.treeWithoutMeta : first.tree;
      const QString after = restated ? second.treeWithoutMeta : second.tree;
      if (before != after) Fail(QLatin1String("after saving:\n    ") + FirstDifference(before, after));
      CompareModel(second, "second load");
      if (restated) outcome_.remarks += QStringLiteral("encoding restated");
      if (first.addresses != second.addresses)
        Fail(QLatin1String("addresses of pictures:\n    ") + FirstDifference(first.addresses, second.addresses));
    }
    if (!kept.isEmpty() && !second.failures.isEmpty()) Fail(QLatin1String("after saving: ") + second.failures);

    if (!Load(secondSave, "third load")) return;
    const QByteArray thirdSave = engine_->Save();
    if (comparesTrees && thirdSave != secondSave)
      Fail(QStringLiteral("the third save differs from the second: %1 and %2 bytes\n    ")
               .arg(secondSave.size())
               .arg(thirdSave.size()) +
           FirstDifference(QString::fromUtf8(secondSave), QString::fromUtf8(thirdSave)));
    if (comparesTrees && thirdSave.size() > secondSave.size()) Fail(QStringLiteral("it grows"));
    if (comparesTrees && first.type != second.type) outcome_.remarks += QStringLiteral("document type not kept");
    if (comparesTrees && first.mode != second.mode) outcome_.remarks += QStringLiteral("mode not kept");
    if (comparesTrees && first.commentsOutside != second.commentsOutside)
      outcome_.remarks += QStringLiteral("comments outside HTML not kept");
  }

  std::unique_ptr<Engine>& engine_;
  const QJsonObject& one_;
  QStringList flags_;
  QTemporaryDir folder_;
  CaseOutcome outcome_;
};

}  // namespace

void RegisterRoundtripKinds(KindTable& table) {
  table.Add(QStringLiteral("roundtrip"), [engine = std::make_shared<std::unique_ptr<Engine>>()](
                                             const QJsonObject& one) { return Play(*engine, one).Run(); });
}

void PrepareEngineForCases() {
  const auto set = [](const char* name, const char* value) {
    if (qEnvironmentVariableIsEmpty(name)) qputenv(name, value);
  };
  if (geteuid() == 0) set("QTWEBENGINE_DISABLE_SANDBOX", "1");
  if (!QFileInfo::exists(QStringLiteral("/dev/dri"))) {
    set("QT_QUICK_BACKEND", "software");
    set("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu");
  }
}
