#include "ModSettings.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QRadioButton>
#include <QScreen>

#include "Colors.h"
#include "FSets.h"
#include "FTools.h"
#include "FWeb.h"
#include "ListIndex.h"
#include "Numbers.h"
#include "PackIcons.h"
#include "PathRules.h"
#include "Program.h"
#include "ReadPicture.h"
#include "Settings.h"
#include "Swatch.h"
#include "Twips.h"

namespace {

int WholeOrZero(const QString& text) {
  return ToInteger32(text).value_or(0);
}

// No desktop makes a window larger than itself, and the memory for one would end the program.
QSize Bounded(const QWidget& window, int width, int height) {
  constexpr int leastBound = 8192;
  const QSize desktop = window.screen() ? window.screen()->virtualSize() : QSize();
  return QSize(width, height).boundedTo(desktop.expandedTo({leastBound, leastBound}));
}

}  // namespace

// The stored face itself isn't looked at: it is the page view's, and the two lists go by their index.
void LoadWinSettings(Program& program, FWeb& web, FTools& tools) {
  const SettingsStore& store = program.platform.settings;
  if (const auto size = NumericValue(Settings::Get(store, Settings::BSz))) {
    const double index = RoundEven(*size - 1);
    if (index >= 0 && index < web.BoxSize->count()) SetIndex(web.BoxSize, int(index));
  }
  web.BoxColor[0]->SetColor(HtmlToColor(Settings::Get(store, Settings::BCol)));
  if (const auto face = ToInteger16(Settings::Get(store, Settings::BFaceDex))) {
    const int index = std::max<int>(0, *face);
    SetIndex(tools.BoxFace, index);
    SetIndex(web.BoxFace, index);
  }
  if (Settings::Get(store, Settings::Winset) != u"0") return;
  const int height = WholeOrZero(Settings::Get(store, Settings::H1));
  const int width = WholeOrZero(Settings::Get(store, Settings::W1));
  if (width <= 0 || height <= 0) return;
  web.setWindowState(Qt::WindowNoState);
  web.resize(Bounded(web, TwipsToPixels(width), TwipsToPixels(height)));
}

// The page in view tells how new pages look in the next run, whatever page it is; without a document it tells "".
void SaveWinSettings(Program& program, const FWeb& web, const FTools& tools) {
  SettingsStore& store = program.platform.settings;
  Settings::Save(store, Settings::BCol, web.jWB->BodyFontColor());
  Settings::Save(store, Settings::BFace, web.jWB->BodyFontName());
  Settings::Save(store, Settings::BSz, web.jWB->BodyFontSize());
  // The list of the tool window, not that of the main window.
  const int face = tools.BoxFace->currentIndex();
  if (face != -1) Settings::Save(store, Settings::BFaceDex, QString::number(face));
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

// Name and number of the icon are two settings of their own. Only a custom icon without its file puts both back; a
// pair that doesn't belong together stays.
void LoadPackSettings(Program& program, FSets& sets) {
  const SettingsStore& store = program.platform.settings;
  const QString folder = Settings::Get(store, Settings::CardFol);
  program.CardFolder = program.Files.FolderExists(folder) ? folder : program.DesktopPath;
  sets.tPath->setText(program.CardFolder);
  program.LinkTextValue = Settings::Get(store, Settings::LinkText);
  sets.tLink->setText(program.LinkTextValue);
  program.CurIconName = Settings::Get(store, Settings::CurIcon);
  int number = ToInteger16(Settings::Get(store, Settings::CurIconNum)).value_or(0);
  if (number > kCustomIcon || number < 0) number = 0;
  sets.OpIco[std::size_t(number)]->setChecked(true);
  if (number != kCustomIcon) return;
  const QString icon = PathRules::Join(program.IconFolder(), Settings::Get(store, Settings::CustomIcon));
  if (program.Files.FileExists(icon)) {
    const QPixmap picture = QPixmap::fromImage(ReadPicture(icon));
    if (!picture.isNull()) sets.ImCustom->setPixmap(picture);
    return;
  }
  program.CurIconName = QStringLiteral("WP");
  sets.OpIco[0]->setChecked(true);
}
