#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTest>
#include <QTimer>
#include <functional>

#include "HostDialogs.h"
#include "ModBrowse.h"
#include "TestPlatform.h"

namespace {

// What the user does with the dialog once it is up.
using Doings = std::function<void(QColorDialog&)>;

class ColorDialog : public ::testing::Test {
 protected:
  ColorDialog() {
    owner_.setGeometry(40, 60, 300, 200);
    owner_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&owner_));
  }

  // The program on the real dialogs.
  TestPlatform doubles_;
  HostDialogs dialogs_;
  Platform services_{doubles_.attributes, doubles_.access,      doubles_.settings, dialogs_,
                     doubles_.shell,      doubles_.instance,    doubles_.folders,  doubles_.sockets,
                     doubles_.network,    doubles_.mailAccount, doubles_.stamps};
  Program program_{services_};
  QWidget owner_;

  qint32 Choose(qint32 start, const Doings& doings) {
    QTimer timer;
    bool seen = false;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
      if (!dialog || seen) return;
      seen = true;
      timer.stop();
      if (!QTest::qWaitForWindowExposed(dialog)) {
        ADD_FAILURE() << "the dialog doesn't show";
        dialog->reject();
        return;
      }
      doings(*dialog);
    });
    timer.start(0);
    const qint32 color = ShowColorDialog(program_, &owner_, start);
    EXPECT_TRUE(seen);
    return color;
  }

  static QPushButton* Button(const QColorDialog& dialog, const QString& text) {
    for (auto* button : dialog.findChildren<QPushButton*>())
      if (button->text() == text) return button;
    return nullptr;
  }
  static void Store(QColorDialog& dialog) {
    auto* const button = Button(dialog, "Save This Color");
    ASSERT_TRUE(button && button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
  }
  static void End(QColorDialog& dialog, QDialogButtonBox::StandardButton button) {
    auto* const box = dialog.findChild<QDialogButtonBox*>();
    if (!box) return dialog.reject();
    QTest::mouseClick(box->button(button), Qt::LeftButton);
  }
  static void Accept(QColorDialog& dialog) { End(dialog, QDialogButtonBox::Ok); }
  static void Cancel(QColorDialog& dialog) { End(dialog, QDialogButtonBox::Cancel); }
};

TEST_F(ColorDialog, StartsOnTheGivenColorAndGivesItWithRedInTheLowByte) {
  EXPECT_EQ(0x030201, Choose(0x030201, [](QColorDialog& dialog) {
              EXPECT_EQ(QColor(1, 2, 3), dialog.currentColor());
              Accept(dialog);
            }));
  EXPECT_EQ(0xc08000, Choose(0x030201, [](QColorDialog& dialog) {
              dialog.setCurrentColor(QColor(0, 0x80, 0xc0));
              Accept(dialog);
            }));
}

TEST_F(ColorDialog, CancelIsMinusOneAndBlackIsZero) {
  EXPECT_EQ(-1, Choose(0xffffff, Cancel));
  EXPECT_EQ(-1, Choose(0xffffff, [](QColorDialog& dialog) { dialog.close(); }));
  EXPECT_EQ(0, Choose(0, Accept));
  EXPECT_EQ(0, Choose(-5, Accept));
}

TEST_F(ColorDialog, SaveThisColorStoresIntoTheProgramsColors) {
  Choose(0x030201, [](QColorDialog& dialog) {
    EXPECT_EQ(nullptr, Button(dialog, "&Add to Custom Colors"));
    Store(dialog);
    Accept(dialog);
  });
  EXPECT_EQ(1, std::count(program_.CustColors.begin(), program_.CustColors.end(), 0x030201));
}

// Meant in ShowColorDialog: a colour that was saved in the dialog stays saved after Cancel.
TEST_F(ColorDialog, AColorSavedBeforeCancelIsKeptToo) {
  EXPECT_EQ(-1, Choose(0x0a0b0c, [](QColorDialog& dialog) {
    Store(dialog);
    Cancel(dialog);
  }));
  EXPECT_EQ(1, std::count(program_.CustColors.begin(), program_.CustColors.end(), 0x0a0b0c));
}

TEST_F(ColorDialog, ShowsTheProgramsOwnColorsAndLeavesThemAsTheyAre) {
  for (std::size_t i = 0; i < program_.CustColors.size(); ++i) program_.CustColors[i] = 0x010000 * qint32(i) + 0x0203;
  program_.CustColors[7] = -9;
  const CustomColors before = program_.CustColors;
  Choose(0, [](QColorDialog& dialog) {
    EXPECT_EQ(16, QColorDialog::customCount());
    EXPECT_EQ(QColor(3, 2, 0), QColorDialog::customColor(0));
    EXPECT_EQ(QColor(0, 0, 0), QColorDialog::customColor(7));
    EXPECT_EQ(QColor(3, 2, 15), QColorDialog::customColor(15));
    Accept(dialog);
  });
  EXPECT_EQ(before, program_.CustColors);
}

// Qt keeps them in a file that all its programs share.
TEST_F(ColorDialog, LeavesTheColorsOfOtherProgramsAlone) {
  QList<QColor> ofUser;
  for (int i = 0; i < QColorDialog::customCount(); ++i) {
    ofUser.append(QColor(10 * i, 200, i));
    QColorDialog::setCustomColor(i, ofUser.last());
  }
  Choose(0x030201, [](QColorDialog& dialog) {
    Store(dialog);
    Accept(dialog);
  });
  for (int i = 0; i < QColorDialog::customCount(); ++i) EXPECT_EQ(ofUser[i], QColorDialog::customColor(i)) << i;
}

TEST_F(ColorDialog, OpensInTheMiddleOfTheScreenWithItsWholeContent) {
  Choose(0, [this](QColorDialog& dialog) {
    EXPECT_TRUE(dialog.testOption(QColorDialog::DontUseNativeDialog));
    EXPECT_EQ(&owner_, dialog.parentWidget());
    EXPECT_TRUE(dialog.isModal());
    // The half for mixing a colour.
    const auto numbers = dialog.findChildren<QSpinBox*>();
    EXPECT_EQ(6, std::count_if(numbers.begin(), numbers.end(), [](const QSpinBox* box) { return box->isVisible(); }));
    // A window manager may round by a pixel.
    const QPoint off = dialog.frameGeometry().center() - QApplication::primaryScreen()->geometry().center();
    EXPECT_LE(off.manhattanLength(), 2) << off.x() << ", " << off.y();
    Cancel(dialog);
  });
}

}  // namespace
