#include "PageViewKinds.h"

#include <QComboBox>
#include <QDir>
#include <QJsonArray>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>

#include "FontSizeMap.h"
#include "HtmlParser.h"
#include "KindTable.h"
#include "OpenProjectPanel.h"
#include "PageFiles.h"
#include "PageText.h"
#include "RunningProgram.h"
#include "Serializer.h"
#include "StringTable.h"

namespace {

// Number of UTF-16 units that the first `characters` characters of a text take.
int UnitsOf(const QString& text, int characters) {
  int units = 0;
  while (characters-- > 0 && units < text.size()) units += text[units].isHighSurrogate() ? 2 : 1;
  return units;
}

CaseOutcome PlayKeys(const QJsonObject& one) {
  PageOnView page;
  page.ShowBody(one["body"].toString());
  const Node* const text = TextOf(page.Element("here"));
  if (!text || !page.PutPoint("here", UnitsOf(text->data(), one["at"].toInt()))) return {{"no text to type into"}, {}};
  QSignalSpy pressed(&page.view, &WBUC::KeyPress);
  for (const QJsonValue key : one["keys"].toArray()) page.browser->KeyUp(key[0].toInt(), key[1].toBool());
  QJsonArray skeys;
  for (const auto& arguments : pressed) skeys.append(arguments.at(0).toString());
  CaseCheck check;
  check.Equal("skeys", one["skeys"], skeys);
  check.Equal("body_after", one["body_after"], InnerHtml(page.Document().tree().bodyNode(), false));
  check.Equal("undo", "", page.habit.Broken());
  return check.Outcome();
}

CaseOutcome PlayFontSizeMap(const QJsonObject& one) {
  CaseCheck check;
  check.Equal("result", one["result"], FontSizeMap(one["value"].toString()));
  return check.Outcome();
}

QJsonValue RawAttribute(const Node* node, const QString& name) {
  const Attribute* const attribute = node->FindAttribute(name);
  return attribute ? QJsonValue(attribute->value.isNull() ? QString("") : attribute->value) : QJsonValue();
}

QJsonValue Declared(const QString& value) {
  return value.isEmpty() ? QJsonValue() : QJsonValue(value);
}

CaseOutcome PlayStamp(const QJsonObject& one) {
  PageOnView page;
  WBUC::Values& values = page.view.StoredValues();
  const std::pair<const char*, QString*> fields[] = {{"BodyFontName", &values.BodyFontName},
                                                     {"BodyFontSize", &values.BodyFontSize},
                                                     {"BodyFontColor", &values.BodyFontColor},
                                                     {"LinkColor", &values.LinkColor},
                                                     {"BGColor", &values.BGColor}};
  for (const auto& [name, field] : fields) *field = one["fields"][QLatin1String(name)].toString();
  page.Open(one["page"].toString().toUtf8(), one["new"].toBool());
  const HTMLBodyElement body = page.Document().body();
  if (!body) return {{"the page has no BODY"}, {}};
  CaseCheck check;
  const QJsonObject attributes = one["body_attributes"].toObject();
  for (const char* name : {"text", "link", "vlink", "bgcolor"})
    check.Equal(name, attributes[QLatin1String(name)], RawAttribute(body.node(), name));
  check.Equal("font-size", attributes["font-size"], Declared(body.style().fontSize()));
  check.Equal("font-family", attributes["font-family"], Declared(body.style().fontFamily()));
  for (const auto& [name, field] : fields) check.Equal(name, one["fields_after"][QLatin1String(name)], *field);
  return check.Outcome();
}

// Every file of a folder with what `tell` says of its bytes.
template <typename Tell>
QJsonObject FilesOf(const QString& folder, Tell tell) {
  QJsonObject files;
  for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System))
    files[file.fileName()] = tell(FileBytes(file.filePath()));
  return files;
}

CaseOutcome PlayNextPage(const QJsonObject& one) {
  TestProgram test;
  const QJsonObject files = one["files"].toObject();
  for (auto file = files.begin(); file != files.end(); ++file)
    if (!PutFile(test.WorkFile(file.key()), file->toString().toUtf8())) return {{}, "a file can't be written"};
  QString name = "untouched";
  CaseCheck check;
  check.Equal("last", one["last"], NextPageName(test.program, name));
  check.Equal("name", one["name"], name);
  check.Equal("after", one["after"], FilesOf(test.program.project.WorkPath(), [](const QByteArray& bytes) {
                return QString::fromUtf8(bytes);
              }));
  return check.Outcome();
}

QString LettersOfFile(const QByteArray& bytes) {
  HTMLDocument document;
  ParseDocument(DecodePage(bytes).text, document.tree());
  return ShownLetters(document);
}

// One run of the program from a fresh start, with the user's steps and what can be seen after each.
class CommandRun {
 public:
  CommandRun() {
    QDir(run_.program().project.CardPath()).removeRecursively();
    run_.Start();
    run_.Dialogs().WhileShown = [this] { TakeMessage(); };
  }

  // False for a step that isn't known.
  bool Do(const QJsonObject& step) {
    run_.Dialogs().Answers.clear();
    run_.Dialogs().Texts.clear();
    messages_.clear();
    const QString what = step["do"].toString();
    if (what == u"type") {
      run_.Type(step["text"].toString());
    } else if (what == u"boxpage") {
      run_.Web().BoxPage->setCurrentIndex(step["index"].toInt());
    } else if (what == u"openfile") {
      const QString file = run_.test.Path("elsewhere/chosen.html");
      PutFile(file, PageAround(step["text"].toString()).toUtf8());
      run_.Dialogs().Texts = {file};
      run_.Choose("mOpenFile");
    } else if (what == u"saveproject" || what == u"exit") {
      if (what == u"exit") run_.Dialogs().Answers.append(AnswerOf(step["answer"]));
      run_.Dialogs().Answers.append(AnswerOf(step["replace"]));
      for (const QJsonValue name : step["names"].toArray()) run_.Dialogs().Texts.append(name.toString());
      run_.Choose(what == u"exit" ? "mExit" : "mSaveProject");
    } else if (what == u"openproject") {
      ChooseProject(step["select"], step["button"] == QLatin1String("ok") ? 0 : 1);
    } else if (what == u"deleteproject") {
      run_.Dialogs().Answers = {AnswerOf(step["answer"])};
      ChooseProject(step["select"], 2);
    } else {
      static const QMap<QString, QString> menus = {{"newpage", "mNewPage"},
                                                   {"savepage", "mSavePage"},
                                                   {"refresh", "mRefresh"},
                                                   {"delpage", "mDelPage"},
                                                   {"newproject", "mNewProject"}};
      if (!menus.contains(what)) return false;
      if (what == u"newproject") run_.Dialogs().Answers = {AnswerOf(step["answer"])};
      run_.Choose(menus[what]);
    }
    run_.Settle();
    return true;
  }

  void Check(CaseCheck& check, const QString& where, const QJsonObject& expect) {
    const auto equal = [&](const char* field, const QJsonValue& got) {
      check.Equal(where + QLatin1String(field), expect[QLatin1String(field)], run_.ended ? QJsonValue() : got);
    };
    const Program& program = run_.program();
    const QDir card(program.project.CardPath());
    check.Equal(where + "card", expect["card"],
                card.exists() ? QJsonValue(FilesOf(program.project.CardPath(), LettersOfFile)) : QJsonValue());
    QJsonObject saved;
    const QDir savedFolder(run_.PathInApp("saved"));
    for (const QString& name : savedFolder.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
      saved[name] = FilesOf(savedFolder.filePath(name), LettersOfFile);
    check.Equal(where + "saved", expect["saved"], saved);
    check.Equal(where + "messages", expect["messages"], Messages(expect["messages"].toArray()));
    equal("page", program.project.CurPageNo());
    equal("project", program.project.ProjectName());
    equal("workpath", InApp(program.project.WorkPath()));
    equal("file", InApp(program.project.CurPageFile()));
    const FWeb* const web = run_.modMain.Web();
    equal("box", web ? web->BoxPage->currentIndex() : -1);
    equal("busy", web && web->Busy);
    equal("view",
          web && !web->jWB->Source().isEmpty() ? QJsonValue(ShownLetters(*web->jWB->WBDocument())) : QJsonValue());
  }

 private:
  static MessageAnswer AnswerOf(const QJsonValue& answer) {
    const QString text = answer.toString();
    if (text == u"yes") return MessageAnswer::Yes;
    if (text == u"no") return MessageAnswer::No;
    return text == u"ok" ? MessageAnswer::Ok : MessageAnswer::Cancel;
  }

  QString InApp(const QString& path) const { return path.mid(run_.test.program.AppPath.size() + 1); }

  void ChooseProject(const QJsonValue& select, int button) {
    QSignalSpy asked(&run_.Web(), &FWeb::OpsRequested);
    run_.Choose("mOpenProject");
    if (asked.isEmpty()) return;
    OpenProjectPanel& panel = *run_.modMain.Ops()->FrOps1;
    if (select.isString()) {
      const auto rows = panel.BoxProj->findItems(select.toString(), Qt::MatchExactly | Qt::MatchCaseSensitive);
      if (rows.isEmpty()) {
        messages_.append("(no such row: " + select.toString() + ")");
        return;
      }
      panel.BoxProj->setCurrentItem(rows.first());
    }
    panel.bOpenProj[std::size_t(button)]->click();
  }

  // Boxes and name prompts in the order in which they came up; path dialogs don't count.
  void TakeMessage() {
    const ScriptedDialogs& dialogs = run_.Dialogs();
    if (dialogs.Boxes.size() > boxes_) {
      messages_.append(dialogs.Boxes.last().text);
    } else if (dialogs.Questions.last().kind == ScriptedDialogs::Question::Kind::Text) {
      messages_.append(dialogs.Questions.last().prompt);
    }
    boxes_ = dialogs.Boxes.size();
  }

  // A text for which the case has its number is told by that.
  QJsonArray Messages(const QJsonArray& expected) const {
    QJsonArray shown;
    for (qsizetype i = 0; i < messages_.size(); ++i) {
      const QJsonValue wanted = i < expected.size() ? expected.at(i) : QJsonValue();
      shown.append(wanted.isDouble() && StringText(wanted.toInt()) == messages_[i] ? wanted : messages_[i]);
    }
    return shown;
  }

  RunningProgram run_;
  QStringList messages_;
  qsizetype boxes_ = 0;
};

CaseOutcome PlayCommands(const QJsonObject& one) {
  CommandRun run;
  CaseCheck check;
  const QJsonArray steps = one["steps"].toArray();
  if (steps.isEmpty()) return {{"no steps"}, {}};
  for (qsizetype i = 0; i < steps.size(); ++i) {
    const QJsonObject step = steps.at(i).toObject();
    if (!run.Do(step)) return {{"unknown step " + step["do"].toString()}, {}};
    run.Check(check, QString("step %1 (%2) ").arg(i).arg(step["do"].toString()), step["expect"].toObject());
  }
  return check.Outcome();
}

}  // namespace

void RegisterPageViewKinds(KindTable& table) {
  table.Add("keys", PlayKeys);
  table.Add("fontsizemap", PlayFontSizeMap);
  table.Add("stamp", PlayStamp);
  table.Add("nextpage", PlayNextPage);
  table.Add("commands", PlayCommands);
}
