#include "ModMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QLineEdit>

#include "ControlLook.h"
#include "FOps.h"
#include "FPic.h"
#include "FSets.h"
#include "FSplash.h"
#include "FTip.h"
#include "FTools.h"
#include "FWeb.h"
#include "ModPics.h"
#include "ModSettings.h"
#include "PackPanel.h"
#include "Program.h"
#include "RescueFile.h"
#include "Settings.h"
#include "StringTable.h"
#include "Swatch.h"
#include "WindowOrder.h"
#include "WindowPlace.h"
#include "fBitmap.h"
#include "fIconMaker.h"

ModMain::ModMain(Program& program, WebBrowserFactory makeBrowser)
    : program_(program), makeBrowser_(std::move(makeBrowser)) {
  qApp->installEventFilter(this);
}

ModMain::~ModMain() {
  ReleaseWindows();
}

bool ModMain::Main() {
  program_.AppStarted = false;
  SingleInstance& instance = program_.platform.singleInstance;
  if (!instance.Acquire() || !instance.AcquireFolder(program_.platform.folders.AppPath())) return false;
  emit Beginning();
  const auto make = [this](auto& window, auto&&... arguments) {
    using Window = typename std::remove_reference_t<decltype(window)>::element_type;
    window = std::make_unique<Window>(std::forward<decltype(arguments)>(arguments)...);
    emit WindowMade(window->objectName());
  };
  make(splash_, program_);
  SetControlLook(splash_.get(), QStringLiteral("framed"));
  program_.AppPath = program_.platform.folders.AppPath();
  program_.project.EnterWorkspace();
  KeepLeftOvers(program_);
  make(sets_, program_);
  program_.Compat4On = Settings::Get(program_.platform.settings, Settings::Compat4) == u"yes";
  sets_->Ck4->setChecked(program_.Compat4On);
  make(web_, program_, makeBrowser_);
  make(pic_, program_);
  make(tools_, program_, *web_);
  SetControlLook(tools_.get(), QStringLiteral("framed"));
  make(bitmap_);
  make(iconMaker_, program_);
  make(ops_, program_, *web_);
  make(tip_);
  pics_ = std::make_unique<ModPics>(program_, *bitmap_);
  tools_->SetPictures(*pics_);
  pic_->SetPictures(*pics_, *bitmap_);
  Connect();
  LoadWinSettings(program_, *web_, *tools_);
  LoadPackSettings(program_, *sets_);
  LoadCustomColors(program_);
  web_->show();
  Gather();
  program_.AppStarted = true;
  return true;
}

void ModMain::KeepRescueFile(int periodMs) {
  rescue_ = std::make_unique<RescueFile>(program_, *web_->jWB, periodMs);
  connect(web_->jWB, &WBUC::DocComplete, rescue_.get(), [this] { LetGoOfRescueFile(); });
  connect(web_.get(), &FWeb::PageNotWritten, rescue_.get(), &RescueFile::TakeUnwritten);
  connect(web_.get(), &FWeb::UnwrittenPageGivenUp, rescue_.get(), [this] {
    rescue_->Hurry();
    rescue_->Leave();
  });
}

void ModMain::LetGoOfRescueFile() {
  web_->IsPageWritten() ? rescue_->Drop() : rescue_->Leave();
}

// The tool window has a place of its own, and the editors are windows of their own.
void ModMain::Gather() {
  for (QWidget* const window : std::initializer_list<QWidget*>{sets_.get(), splash_.get(), ops_.get(), tip_.get()}) {
    KeepInFrontOf(*window, *web_);
    OpenOver(*window, *web_);
  }
  KeepInFrontOf(*tools_, *web_);
  OpenOver(*pic_, *web_);
  OpenOver(*iconMaker_, *web_);
}

void ModMain::Connect() {
  connect(web_.get(), &FWeb::ExitRequested, this, &ModMain::ExitProgram);
  connect(web_.get(), &FWeb::OpsRequested, ops_.get(), &FOps::ShowOps);
  const auto hideTools = [this] {
    if (!tools_->isVisible()) return;
    SetNotTopmost(tools_.get());
    tools_->hide();
  };
  connect(web_.get(), &FWeb::HideToolsRequested, this, hideTools);
  connect(&bitmap_->Notices, &PictureNotices::HideToolsRequested, this, hideTools);
  connect(web_.get(), &FWeb::PicEditorRequested, pic_.get(), [this, hideTools] {
    hideTools();
    pic_->Open();
  });
  connect(web_.get(), &FWeb::IconEditorRequested, iconMaker_.get(), [this] {
    // Whatever was drawn in it is thrown away without a question.
    iconMaker_->ResetEditor();
    ShowInFront(*iconMaker_);
  });
  connect(web_.get(), &FWeb::SettingsRequested, sets_.get(), [this] { ShowInFront(*sets_); });
  connect(sets_.get(), &FSets::UnHookRequested, web_->jWB, &WBUC::UnHook);
  connect(ops_->FrOps0, &PackPanel::CardFolderChosen, sets_->tPath, &QLineEdit::setText);
  connect(web_.get(), &FWeb::AboutRequested, splash_.get(), &FSplash::ShowAbout);
  connect(web_.get(), &FWeb::TipRequested, tip_.get(), &FTip::ShowTip);
  web_->SetTools(tools_.get());
  FTools* const tools = tools_.get();
  connect(web_.get(), &FWeb::ToolRequested, tools, &FTools::ShowTool);
  connect(web_.get(), &FWeb::AddPictureRequested, tools, [this] { tools_->AddPicture(web_.get()); });
  connect(web_.get(), &FWeb::PicturesDropped, tools, &FTools::AddPictures);
  connect(web_.get(), &FWeb::TablePropsRequested, tools, &FTools::LoadTableProps);
  connect(web_.get(), &FWeb::PagePropsRequested, tools, &FTools::OpenPageProps);
  connect(web_.get(), &FWeb::SourceRequested, tools, &FTools::ShowSource);
  connect(web_.get(), &FWeb::PageTextColorChanged, tools,
          [tools](qint32 color) { tools->BoxColor[2]->SetColor(color); });
}

// Whether anything changed plays no part: the name alone picks the question, and its box has no picture. True to go on.
bool ModMain::AskAboutSaving() {
  Dialogs& dialogs = program_.platform.dialogs;
  if (!program_.project.IsUnsaved()) {
    const auto answer = dialogs.ShowMessage(web_.get(), StringText(FixedText::SaveChangesToPage), MessageIcon::None,
                                            MessageButtons::YesNoCancel);
    if (answer == MessageAnswer::Yes) web_->SavePage(program_.project.CurPageNo(), false);
    return answer != MessageAnswer::Cancel;
  }
  const auto answer = dialogs.ShowMessage(web_.get(), StringText(TextNumber::SaveBeforeClosing), MessageIcon::None,
                                          MessageButtons::YesNoCancel);
  // Copies the files as they stand; the page in view isn't written, and giving up the save doesn't stop the exit.
  if (answer == MessageAnswer::Yes) web_->SaveProject();
  return answer != MessageAnswer::Cancel;
}

void ModMain::ExitProgram() {
  if (exiting_ || !web_) return;
  // While it asked, the program may have been ended from outside.
  if (AskAboutSaving() && !exiting_) End(false);
}

bool ModMain::CommitSession(bool mayAsk) {
  if (exiting_ || !web_) return true;
  if (mayAsk && !AskAboutSaving()) return false;
  if (exiting_) return true;
  hasAnswered_ = mayAsk;
  isSessionEnding_ = true;
  return true;
}

void ModMain::EndUnasked() {
  if (!exiting_ && web_) End(!hasAnswered_);
}

// A desktop that was to end goes on when the user does.
bool ModMain::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::KeyPress:
      isSessionEnding_ = hasAnswered_ = false;
      break;
    case QEvent::Quit:
      if (watched != qApp || !isSessionEnding_) break;
      EndUnasked();
      return true;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void ModMain::End(bool keepsWorkspace) {
  exiting_ = true;
  if (rescue_) keepsWorkspace ? rescue_->Hurry() : LetGoOfRescueFile();
  if (!keepsWorkspace) program_.project.RemoveWorkspace();
  SaveWinSettings(program_, *web_, *tools_);
  SaveCustomColors(program_);
  web_->jWB->UnHook();
  ops_->MUC.CloseDown();
  web_->LetClose();
  HideWindows();
  emit Ended();
}

// A command may be on the stack below, in a pass of messages or behind a box or menu of its own. It goes on to its end
// with windows that are there, but nobody sees them any more, and each box that it asks for is cancelled.
void ModMain::HideWindows() {
  program_.platform.dialogs.CancelAll();
  QWidget* const windows[] = {tip_.get(),   ops_.get(),    splash_.get(),    pic_.get(), web_.get(),
                              tools_.get(), bitmap_.get(), iconMaker_.get(), sets_.get()};
  for (QWidget* const window : windows) {
    window->hide();
    window->setAttribute(Qt::WA_DontShowOnScreen);
  }
}

void ModMain::ReleaseWindows() {
  const auto release = [this](auto& window) {
    if (!window) return;
    const QString name = window->objectName();
    window.reset();
    emit WindowReleased(name);
  };
  rescue_.reset();
  release(tip_);
  release(ops_);
  release(splash_);
  release(pic_);
  release(web_);
  release(tools_);
  release(bitmap_);
  release(iconMaker_);
  release(sets_);
}
