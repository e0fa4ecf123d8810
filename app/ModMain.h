// Starts and ends the program: makes all windows in their order, connects them, and releases them. The only place that
// knows every window.
#pragma once

#include <QObject>
#include <memory>

#include "ControlHabits.h"
#include "WebBrowser.h"

class FOps;
class FPic;
class FSets;
class FSplash;
class FTip;
class FTools;
class FWeb;
class ModPics;
class RescueFile;
class fBitmap;
class fIconMaker;
struct Program;

class ModMain : public QObject {
  Q_OBJECT

 public:
  // Both must outlive the object.
  ModMain(Program& program, WebBrowserFactory makeBrowser);
  ~ModMain() override;

  // Makes and shows everything. False, with nothing shown or touched, when the program is running already.
  bool Main();

  // From now on what is in view is kept in a file of its own beside the project, written again at most each `periodMs`,
  // until the program ends as it should.
  void KeepRescueFile(int periodMs = 5000);

  // Asks about saving, tidies up, hides the windows and says Ended; nothing shows itself from then on. It returns with
  // all as it was when the user cancels. A command may be under way: whoever hears Ended ends the application's loop,
  // and calls ReleaseWindows when that has ended.
  void ExitProgram();

  // The desktop is about to end. Where the user may be asked, the question of the exit is asked and the save
  // that it offers is done; false when the user wants the desktop to go on. The program itself goes on in any case: the
  // end can still be called off elsewhere. Then comes the application's Quit event, which ends it unasked.
  bool CommitSession(bool mayAsk);

  // Ends as after "No", but without the question, for when nobody is there to answer it. The workspace stays, for what
  // can be rescued out of it; only a user who has just answered for the desktop's end wants it no more.
  void EndUnasked();

  // Never from inside a handler of one of the windows, nor from a loop that one of them runs.
  void ReleaseWindows();

  FWeb* Web() const { return web_.get(); }
  FOps* Ops() const { return ops_.get(); }
  FTools* Tools() const { return tools_.get(); }
  FSets* Sets() const { return sets_.get(); }
  FSplash* Splash() const { return splash_.get(); }
  FTip* Tip() const { return tip_.get(); }

 signals:
  // It is certain that the program isn't running yet; nothing has been made so far.
  void Beginning();
  void Ended();
  // A window has been made or released, for tests of the order.
  void WindowMade(const QString& name);
  void WindowReleased(const QString& name);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Connect();
  void Gather();
  bool AskAboutSaving();
  void End(bool keepsWorkspace);
  void LetGoOfRescueFile();
  void HideWindows();

  Program& program_;
  WebBrowserFactory makeBrowser_;
  ControlHabits habits_;
  bool exiting_ = false;
  bool isSessionEnding_ = false;
  bool hasAnswered_ = false;  // the question of the desktop's end
  std::unique_ptr<FSplash> splash_;
  std::unique_ptr<FSets> sets_;
  std::unique_ptr<FWeb> web_;
  std::unique_ptr<FPic> pic_;
  std::unique_ptr<FTools> tools_;
  std::unique_ptr<fBitmap> bitmap_;
  std::unique_ptr<fIconMaker> iconMaker_;
  std::unique_ptr<FOps> ops_;
  std::unique_ptr<FTip> tip_;
  std::unique_ptr<ModPics> pics_;
  std::unique_ptr<RescueFile> rescue_;
};
