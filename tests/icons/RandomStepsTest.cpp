#include <random>

#include "IconFixture.h"
#include "PictureFiles.h"
#include "RandomSeed.h"
#include "SlowModel.h"

namespace {

class RandomSteps : public IconTest {
 protected:
  int Below(int bound) { return int(random_() % unsigned(bound)); }
  // Now and then outside of the area.
  QPoint AnyPlace() {
    const auto one = [this] { return Below(6) ? Below(224) : Below(360) - 70; };
    const int x = one();
    return {x, one()};
  }
  // Near the first one, for dots, snapping lines and small shapes.
  QPoint PlaceNear(QPoint at) {
    if (Below(2)) return AnyPlace();
    const int x = at.x() + Below(29) - 14;
    return {x, at.y() + Below(29) - 14};
  }

  static int Number(Qt::MouseButton button) {
    return button == Qt::LeftButton    ? SlowModel::Left
           : button == Qt::RightButton ? SlowModel::Right
                                       : SlowModel::Middle;
  }
  Qt::MouseButton AnyButton() {
    const int which = Below(12);
    return which == 0 ? Qt::RightButton : which == 1 ? Qt::MiddleButton : Qt::LeftButton;
  }

  void Draw() {
    const int tool = Below(5), width = Below(2) ? 1 : 1 + Below(4);
    Use(Tool(tool));
    UseWidth(width);
    model_.tool = tool;
    model_.width = width;
    if (Below(5)) {
      const int box = Below(16);
      UseColor(ColorBox(box));
      model_.color = PixelOf(kColorRow[std::size_t(box)]) & 0xFFFFFF;
    } else {
      UseSeeThrough();
      model_.color = 0xE1E1E1;
    }
    const Qt::MouseButton button = AnyButton();
    const QPoint from = AnyPlace();
    Press(from, button);
    model_.Press(Number(button), from.x(), from.y());
    QPoint to = from;
    for (int moves = Below(4); moves > 0; --moves) {
      to = PlaceNear(from);
      MoveTo(to, button);
      model_.Move(Number(button), to.x(), to.y());
    }
    if (Below(3)) to = PlaceNear(from);
    const Qt::MouseButton last = Below(30) ? button : AnyButton();
    Release(to, last);
    model_.Release(Number(last), to.x(), to.y());
  }

  void Step() {
    const int what = Below(100);
    if (what < 70) {
      Draw();
    } else if (what < 82) {
      const int direction = Below(4);
      editor_.bMoveIm[std::size_t(direction)]->click();
      model_.MoveImage(direction);
    } else if (what < 94) {
      editor_.bUndo->click();
      model_.Undo();
    } else if (what < 95) {
      editor_.bclear->click();
      model_.Clear();
    } else if (what < 97) {
      const QImage bitmap = AnyPicture();
      QGuiApplication::clipboard()->setImage(bitmap);
      editor_.mPaste();
      model_.Paste(bitmap);
    } else if (what < 98) {
      const QImage picture = AnyPicture();
      Open(File("picture.bmp", EncodedPicture(picture, "bmp")));
      model_.OpenPicture(picture);
    } else {
      const QByteArray bytes = Saved();
      ASSERT_EQ(model_.File(), bytes);
      if (Below(2)) return;
      Open(test_.Path("saved.ico"));
      model_.OpenIcon(bytes);
    }
  }

  QImage AnyPicture() {
    QImage picture(1 + Below(50), 1 + Below(50), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) picture.setPixel(x, y, 0xFF000000 | (random_() & 0xFFFFFF));
    return picture;
  }

  template <int Side>
  static void ExpectEqual(const char* name, const SlowModel::Plane<Side>& plane, const Surface* surface) {
    const QImage image = surface->Image();
    ASSERT_EQ(QSize(Side, Side), image.size());
    for (int y = 0; y < Side; ++y) {
      const auto* const line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      for (int x = 0; x < Side; ++x)
        if (plane[std::size_t(y)][std::size_t(x)] != (line[x] & 0xFFFFFF)) FAIL() << name << ' ' << x << ' ' << y;
    }
  }
  void ExpectEqualToModel() {
    ASSERT_NO_FATAL_FAILURE(ExpectEqual<32>("Pic1", model_.now.seen, planes_.Pic1));
    ASSERT_NO_FATAL_FAILURE(ExpectEqual<32>("Pic1Black", model_.now.colors, planes_.Pic1Black));
    ASSERT_NO_FATAL_FAILURE(ExpectEqual<32>("Pic2", model_.now.mask, planes_.Pic2));
    ASSERT_NO_FATAL_FAILURE(ExpectEqual<224>("PicBig", model_.now.work, planes_.PicBig));
    ASSERT_EQ(model_.canUndo, UndoEnabled());
  }

  std::mt19937 random_;
  SlowModel model_;
};

TEST_F(RandomSteps, PlanesFileAndUndoAgreeWithAPlainModel) {
  constexpr int runs = 20, steps = 500;
  for (const unsigned seed : RandomSeeds("Steps of drawing", runs)) {
    random_.seed(seed);
    editor_.ResetEditor();
    model_ = SlowModel();
    for (int step = 0; step < steps; ++step) {
      ASSERT_NO_FATAL_FAILURE(Step()) << "seed " << seed << ", step " << step;
      ASSERT_NO_FATAL_FAILURE(ExpectEqualToModel()) << "seed " << seed << ", step " << step;
    }
  }
  EXPECT_TRUE(Messages().isEmpty());
}

}  // namespace
