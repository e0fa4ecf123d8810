#include "ModSettings.h"

#include <QComboBox>

#include "Colors.h"
#include "FWeb.h"
#include "ListIndex.h"
#include "Numbers.h"
#include "PathRules.h"
#include "Program.h"
#include "Settings.h"
#include "Swatch.h"
#include "Twips.h"

namespace {

int WholeOrZero(const QString& text) {
  return ToInteger32(text).value_or(0);
}

}  // namespace

void LoadWinSettings(Program& program, FWeb& web) {
  const SettingsStore& store = program.platform.settings;
  if (const auto size = ToInteger16(Settings::Get(store, Settings::BSz))) SetIndex(web.BoxSize, *size - 1);
  web.BoxColor[0]->SetColor(HtmlToColor(Settings::Get(store, Settings::BCol)));
  if (const auto face = ToInteger16(Settings::Get(store, Settings::BFaceDex)))
    SetIndex(web.BoxFace, std::max<int>(0, *face));
  if (Settings::Get(store, Settings::Winset) != u"0") return;
  const int height = WholeOrZero(Settings::Get(store, Settings::H1));
  const int width = WholeOrZero(Settings::Get(store, Settings::W1));
  if (width <= 0 || height <= 0) return;
  web.setWindowState(Qt::WindowNoState);
  web.resize(TwipsToPixels(width), TwipsToPixels(height));
}

void SaveWinSettings(Program& program, const FWeb& web) {
  SettingsStore& store = program.platform.settings;
  Settings::Save(store, Settings::BCol, web.jWB->BodyFontColor());
  Settings::Save(store, Settings::BFace, web.jWB->BodyFontName());
  Settings::Save(store, Settings::BSz, web.jWB->BodyFontSize());
  if (web.isMinimized()) return;
  if (web.isMaximized()) {
    Settings::Save(store, Settings::Winset, QStringLiteral("2"));
    return;
  }
  Settings::Save(store, Settings::Winset, QStringLiteral("0"));
  Settings::Save(store, Settings::W1, QString::number(PixelsToTwips(web.width())));
  Settings::Save(store, Settings::H1, QString::number(PixelsToTwips(web.height())));
}

void LoadCustomColors(Program& program) {
  for (std::size_t i = 0; i < program.CustColors.size(); ++i) {
    const QString text = program.platform.settings.GetSetting(Settings::AppKey, Settings::CustColorsSection,
                                                              QString::number(i), QStringLiteral("0"));
    if (const auto color = ToInteger32(text)) program.CustColors[i] = *color;
  }
}

void SaveCustomColors(Program& program) {
  for (std::size_t i = 0; i < program.CustColors.size(); ++i)
    program.platform.settings.SaveSetting(Settings::AppKey, Settings::CustColorsSection, QString::number(i),
                                          QString::number(program.CustColors[i]));
}

void LoadPackSettings(Program& program) {
  const SettingsStore& store = program.platform.settings;
  program.CardFolder = Settings::Get(store, Settings::CardFol);
  if (!program.Files.FolderExists(program.CardFolder)) program.CardFolder = program.DesktopPath;
  program.LinkTextValue = Settings::Get(store, Settings::LinkText);
  program.CurIconName = Settings::Get(store, Settings::CurIcon);
  int number = ToInteger16(Settings::Get(store, Settings::CurIconNum)).value_or(0);
  if (number > 10 || number < 0) number = 0;
  const QString icons = PathRules::Join(program.AppPath, QStringLiteral("icons"));
  if (number == 10 && !program.Files.FileExists(PathRules::Join(icons, Settings::Get(store, Settings::CustomIcon))))
    program.CurIconName = QStringLiteral("WP");
}
