#include "SettingsKinds.h"

#include <QDir>
#include <QJsonArray>

#include "Colors.h"
#include "KindTable.h"
#include "RunningProgram.h"
#include "Settings.h"
#include "SettingsControls.h"
#include "Swatch.h"
#include "Twips.h"

namespace {

// One start of the program from a given store, with the controls' values from before the settings were loaded.
class SettingsRun {
 public:
  explicit SettingsRun(const QJsonObject& one) : one_(one) {
    QObject::connect(&run_.modMain, &ModMain::WindowMade, &run_.modMain, [this](const QString& window) {
      if (window == u"FTools") faceOfTools_ = FaceList(run_.modMain)->currentIndex();
      if (window != u"FWeb") return;
      faceOfWeb_ = run_.Web().BoxFace->currentIndex();
      size_ = run_.Web().size();
    });
  }

  // False when the files and folders of the case can't be made.
  bool Start() {
    bool made = QDir().mkpath(Real("TMP"));
    if (!one_["desktop"].toBool()) made = QDir(run_.test.platform.folders.DesktopPath).removeRecursively() && made;
    for (const QJsonValue folder : one_["folders"].toArray()) made = QDir().mkpath(Real(folder.toString())) && made;
    for (const QJsonValue file : one_["files"].toArray()) made = PutFile(Real(file.toString()), IconFile()) && made;
    const QJsonObject store = one_["store"].toObject();
    for (auto entry = store.begin(); entry != store.end(); ++entry) {
      const QString value = entry->toString();
      run_.test.platform.settings.SaveSetting(Settings::AppKey, Settings::Section, entry.key(),
                                              entry.key() == Settings::CardFol.name ? Real(value) : value);
    }
    return made && run_.Start();
  }

  CaseOutcome Compare() {
    const QJsonObject expected = one_["expected"].toObject();
    const FWeb& web = run_.Web();
    const Program& program = run_.program();
    CaseCheck check;
    check.Equal("BoxSize", expected["BoxSize"], web.BoxSize->currentIndex());
    check.Equal("BoxColor", expected["BoxColor"], ColorToHtml(web.BoxColor[0]->Color()));
    check.Equal("BoxFace_FWeb", expected["BoxFace_FWeb"],
                OrDesign(expected["BoxFace_FWeb"], web.BoxFace->currentIndex(), faceOfWeb_));
    check.Equal("BoxFace_FTools", expected["BoxFace_FTools"],
                OrDesign(expected["BoxFace_FTools"], FaceList(run_.modMain)->currentIndex(), faceOfTools_));
    const QJsonObject window = expected["window"].toObject();
    const QSize size = web.isMaximized() ? web.normalGeometry().size() : web.size();
    check.Equal("state", window["state"],
                web.isMinimized() ? "minimised" : (web.isMaximized() ? "maximised" : "normal"));
    check.Equal("width", window["width"], Length(window["width"], size.width(), size_.width()));
    check.Equal("height", window["height"], Length(window["height"], size.height(), size_.height()));
    const QString folder = expected["CardFolder"].toString();
    check.Equal("CardFolder", folder == u"desktop" ? run_.test.platform.folders.DesktopPath : Real(folder),
                program.CardFolder);
    check.Equal("tPath", program.CardFolder, SetsControl<QLineEdit>(run_.modMain, "tPath")->text());
    check.Equal("LinkTextValue", expected["LinkTextValue"], program.LinkTextValue);
    check.Equal("tLink", expected["LinkTextValue"], SetsControl<QLineEdit>(run_.modMain, "tLink")->text());
    check.Equal("CurIconName", expected["CurIconName"], program.CurIconName);
    check.Equal("OpIco", expected["OpIco"], SelectedIcon(run_.modMain));
    return check.Outcome();
  }

 private:
  // "design" where that is wanted and the value is that of before.
  static QJsonValue OrDesign(const QJsonValue& wanted, int value, int before) {
    return wanted == QLatin1String("design") && value == before ? wanted : QJsonValue(value);
  }
  // In twips. The screen has whole pixels only, so a wanted length counts as that of its pixels.
  static QJsonValue Length(const QJsonValue& wanted, int pixels, int before) {
    if (wanted.isDouble() && TwipsToPixels(wanted.toDouble()) == pixels) return wanted;
    return wanted.isDouble() ? QJsonValue(PixelsToTwips(pixels)) : OrDesign(wanted, pixels, before);
  }

  QString Real(const QString& path) const {
    for (const auto& [sign, folder] : {std::pair<QString, QString>{"TMP", run_.test.Path("scratch")},
                                       std::pair<QString, QString>{"APP", run_.test.program.AppPath}})
      if (path == sign || path.startsWith(sign + u'/')) return QDir::toNativeSeparators(folder + path.mid(3));
    return path;
  }

  QJsonObject one_;
  RunningProgram run_;
  int faceOfWeb_ = 0;
  int faceOfTools_ = 0;
  QSize size_;
};

CaseOutcome PlaySettings(const QJsonObject& one) {
  SettingsRun run(one);
  if (!run.Start()) return {{"the start failed"}, {}};
  return run.Compare();
}

}  // namespace

void RegisterSettingsKinds(KindTable& table) {
  table.Add("settings", PlaySettings);
}
