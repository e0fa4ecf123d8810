// The window that tells about the program: when it shows what, and where its links lead.
#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QFrame>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

#include "FSplash.h"
#include "FitsAtEveryFontSize.h"
#include "HotLink.h"
#include "RunningProgram.h"

namespace {

class AboutWindow : public ::testing::Test {
 protected:
  void MoveMouseOver(QWidget* widget, QPoint at = QPoint(3, 3)) {
    QMouseEvent move(QEvent::MouseMove, QPointF(at), widget->mapToGlobal(QPointF(at)), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
  }
  bool HasOwnPointer() const { return splash_.cursor().shape() == Qt::BitmapCursor; }
  const QList<RecordingShell::Call>& Opened() const { return test_.platform.shell.Opened; }
  static QImage Seen(QWidget& widget) { return widget.grab().toImage(); }

  TestProgram test_;
  FSplash splash_{test_.program};
};

TEST_F(AboutWindow, VersionAndThanksStayInViewAfterTheFirstAbout) {
  splash_.show();
  EXPECT_FALSE(splash_.FrAbout->isVisible()) << "not by showing the window alone";
  splash_.hide();
  splash_.ShowAbout();
  EXPECT_TRUE(splash_.FrAbout->isVisible());
  QTest::mouseClick(splash_.bClose, Qt::LeftButton);
  EXPECT_FALSE(splash_.isVisible());
  EXPECT_FALSE(splash_.FrAbout->isHidden());
  splash_.show();
  EXPECT_TRUE(splash_.FrAbout->isVisible());
  splash_.close();
  splash_.ShowAbout();
  EXPECT_TRUE(splash_.FrAbout->isVisible());
}

TEST_F(AboutWindow, SaysWhatTheProgramIsFor) {
  QStringList texts;
  for (const QLabel* label : splash_.Label2) texts += label->text();
  EXPECT_EQ("Send a website packed into a single, self-opening \"web-pack\" file.", texts[0]);
  EXPECT_TRUE(texts[1].contains("logo") && texts[1].contains("web site")) << qPrintable(texts[1]);
  EXPECT_EQ(
      QStringList({"Use it for:", "Greeting cards", "Personal Correspondence", "Business brochures", "Newsletters",
                   "Love Letters", "Sales Brochures", "Resumes", "Photo Albums", "Catalogs", "Price Lists"}),
      texts.mid(2));
  EXPECT_EQ("Corvane 2", splash_.Label3->text());
  QStringList about;
  for (const QLabel* label : splash_.FrAbout->findChildren<QLabel*>()) about += label->text();
  ASSERT_EQ(4, about.size());
  EXPECT_EQ("Version " CORVANE_VERSION, about[0]);
  EXPECT_TRUE(about[1].contains("Corvane"));
  EXPECT_TRUE(about[2].contains("Independent JPEG Group for the JPG format functionality"));
  EXPECT_EQ(
      "Thank you to Info-ZIP for the use of their compression code and library. (The Info-ZIP license can be found in "
      "the Corvane program folder.)",
      about[3]);
}

TEST_F(AboutWindow, LogoAndNameLeadToTheWebPageAndNothingElseDoes) {
  splash_.ShowAbout();
  test_.platform.shell.OpenResult = 2;  // isn't looked at
  for (QWidget* link : {static_cast<QWidget*>(splash_.Image1), static_cast<QWidget*>(splash_.Label3)}) {
    test_.platform.shell.Opened.clear();
    QTest::mouseClick(link, Qt::LeftButton);
    ASSERT_EQ(1, Opened().size());
    EXPECT_TRUE(Opened()[0].file.startsWith("https://"));
    EXPECT_EQ("", Opened()[0].folder);
    EXPECT_EQ(ShowMode::Normal, Opened()[0].mode);
    link->setFocus();
    QTest::keyClick(link, Qt::Key_Space);
    EXPECT_EQ(2, Opened().size()) << "by the keys too";
  }
  EXPECT_TRUE(test_.platform.dialogs.Boxes.isEmpty());
  test_.platform.shell.Opened.clear();
  for (QLabel* label : splash_.Label2) QTest::mouseClick(label, Qt::LeftButton);
  QTest::mouseClick(&splash_, Qt::LeftButton, {}, QPoint(2, 2));
  EXPECT_TRUE(Opened().isEmpty());
}

// Meant in FSplash::mouseMoveEvent: the pointer of the links stays until the mouse reaches the bare window.
TEST_F(AboutWindow, ThePointerOfTheLinksStaysUntilTheBareWindowIsReached) {
  splash_.ShowAbout();
  EXPECT_FALSE(HasOwnPointer());
  for (QWidget* link : {static_cast<QWidget*>(splash_.Image1), static_cast<QWidget*>(splash_.Label3)}) {
    MoveMouseOver(link);
    EXPECT_TRUE(HasOwnPointer());
    EXPECT_FALSE(splash_.cursor().pixmap().isNull());
    for (QLabel* label : splash_.Label2) MoveMouseOver(label);
    MoveMouseOver(splash_.FrAbout);
    MoveMouseOver(splash_.bClose);
    EXPECT_TRUE(HasOwnPointer()) << "other controls leave it as it is";
    MoveMouseOver(&splash_, QPoint(1, 1));
    EXPECT_FALSE(HasOwnPointer());
  }
}

TEST_F(AboutWindow, LogoAndPointerAreThere) {
  for (const int side : {16, 24, 32, 96}) {
    const QImage logo = FSplash::Logo().pixmap(side).toImage();
    ASSERT_EQ(QSize(side, side), logo.size());
    QSet<QRgb> colors;
    for (int y = 0; y < side; ++y)
      for (int x = 0; x < side; ++x) colors.insert(logo.pixel(x, y));
    EXPECT_GT(colors.size(), 4) << side;
  }
}

TEST_F(AboutWindow, ClosingOnlyHides) {
  splash_.ShowAbout();
  QCloseEvent close;
  QApplication::sendEvent(&splash_, &close);
  EXPECT_FALSE(close.isAccepted());
  EXPECT_FALSE(splash_.isVisible());
  splash_.show();
  QTest::keyClick(splash_.bClose, Qt::Key_Escape);
  EXPECT_FALSE(splash_.isVisible());
}

TEST_F(AboutWindow, NothingIsCutOffFrom8To14Points) {
  ExpectFitsAtEveryFontSize([this] {
    auto splash = std::make_unique<FSplash>(test_.program);
    splash->ShowAbout();
    return splash;
  });
}

TEST(AboutMenu, TheWindowIsMadeAtStartAndStaysHiddenUntilItIsAskedFor) {
  RunningProgram run;
  ASSERT_TRUE(run.Start());
  FSplash& splash = *run.modMain.Splash();
  EXPECT_FALSE(splash.isVisible());
  EXPECT_TRUE(splash.FrAbout->isHidden());
  ASSERT_TRUE(run.Choose("mAboutCVN"));
  EXPECT_TRUE(splash.isVisible());
  EXPECT_FALSE(splash.isModal());
  EXPECT_TRUE(splash.FrAbout->isVisible());
}

TEST_F(AboutWindow, ALinkWithTheKeysShowsIt) {
  splash_.ShowAbout();
  splash_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&splash_));
  for (HotLink* const link : {splash_.Image1, splash_.Label3}) {
    splash_.bClose->setFocus();
    const QImage before = Seen(*link);
    for (int tabs = 0; tabs < 5 && !link->hasFocus(); ++tabs) QTest::keyClick(splash_.focusWidget(), Qt::Key_Tab);
    ASSERT_TRUE(link->hasFocus());
    EXPECT_NE(before, Seen(*link)) << qPrintable(link->objectName());
  }
}

}  // namespace
