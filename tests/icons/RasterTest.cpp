#include "RasterCalls.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QStringList>
#include <algorithm>

namespace {

constexpr QRgb kInk = qRgb(1, 2, 3), kGround = qRgb(9, 9, 9);

QImage Paper(int width = 24, int height = 16) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(kGround);
  return image;
}

QStringList Rows(const QImage& image, const QRect& part) {
  QStringList rows;
  for (int y = part.top(); y <= part.bottom(); ++y) {
    QString row;
    for (int x = part.left(); x <= part.right(); ++x) row += image.pixel(x, y) == kInk ? u'#' : u'.';
    rows << row;
  }
  return rows;
}

QStringList Ellipse(int width, int height, Filling filling, int penWidth = 1) {
  QImage image = Paper(40, 40);
  DrawForm(image, Form::Ellipse, {4, 4}, {4 + width, 4 + height}, {penWidth, kInk}, filling);
  return Rows(image, QRect(4, 4, width, height));
}

TEST(Raster, ALineLeavesOutItsEndPoint) {
  for (const auto& [from, to] : {std::pair(QPoint(2, 2), QPoint(6, 2)),
                                 {QPoint(2, 2), QPoint(2, 6)},
                                 {QPoint(6, 6), QPoint(2, 2)},
                                 {QPoint(2, 5), QPoint(9, 2)}}) {
    QImage image = Paper();
    LineTo(image, from, to, {1, kInk});
    EXPECT_EQ(kInk, image.pixel(from));
    EXPECT_EQ(kGround, image.pixel(to));
  }
}

TEST(Raster, ALineIsConnectedAndAsLongAsItsLongerSide) {
  for (int x = 0; x <= 20; ++x)
    for (int y = 0; y <= 15; ++y) {
      QImage image = Paper();
      LineTo(image, {10, 7}, {x, y}, {1, kInk});
      int count = 0;
      for (int py = 0; py < 16; ++py)
        for (int px = 0; px < 24; ++px) count += image.pixel(px, py) == kInk;
      EXPECT_EQ(std::max({std::abs(x - 10), std::abs(y - 7), 1}), count) << x << ' ' << y;
    }
}

TEST(Raster, ALineWithoutLengthIsOneStamp) {
  struct Row {
    int width;
    QStringList stamp;
  };
  for (const Row& row : {Row{1, {"....", "....", "..#.", "...."}}, Row{2, {"....", ".##.", ".##.", "...."}},
                         Row{3, {"....", "..#.", ".###", "..#."}}, Row{4, {".##.", "####", "####", ".##."}}}) {
    QImage image = Paper();
    LineTo(image, {5, 5}, {5, 5}, {row.width, kInk});
    EXPECT_EQ(row.stamp, Rows(image, QRect(3, 3, 4, 4))) << row.width;
  }
}

TEST(Raster, AWideLineIsStampsAllTheWay) {
  QImage image = Paper();
  LineTo(image, {3, 4}, {8, 4}, {3, kInk});
  EXPECT_EQ(QStringList({".........", "..#####..", ".#######.", "..#####..", "........."}),
            Rows(image, QRect(1, 2, 9, 5)));
}

TEST(Raster, FormsLeaveOutTheLargerColumnAndRowInAnyOrderOfCorners) {
  for (const auto& [corner, opposite] : {std::pair(QPoint(2, 3), QPoint(7, 8)),
                                         {QPoint(7, 8), QPoint(2, 3)},
                                         {QPoint(7, 3), QPoint(2, 8)},
                                         {QPoint(2, 8), QPoint(7, 3)}}) {
    QImage image = Paper();
    DrawForm(image, Form::Rectangle, corner, opposite, {1, kInk}, Filling::Empty);
    EXPECT_EQ(QStringList({"......", "#####.", "#...#.", "#...#.", "#...#.", "#####."}),
              Rows(image, QRect(2, 2, 6, 6)));
    EXPECT_EQ(QStringList({"......"}), Rows(image, QRect(2, 8, 6, 1)));
  }
}

TEST(Raster, FormsWithoutWidthOrHeightDrawNothing) {
  for (const Form form : {Form::Rectangle, Form::Ellipse})
    for (const QPoint opposite : {QPoint(5, 5), QPoint(9, 5), QPoint(5, 9)})
      for (const int width : {1, 4}) {
        QImage image = Paper();
        DrawForm(image, form, {5, 5}, opposite, {width, kInk}, Filling::Solid);
        EXPECT_EQ(Paper(), image);
      }
}

TEST(Raster, AnEmptyFormLeavesItsInsideAsItWas) {
  QImage image = Paper();
  SetPixel(image, {5, 5}, qRgb(200, 0, 0));
  DrawForm(image, Form::Rectangle, {2, 2}, {9, 9}, {1, kInk}, Filling::Empty);
  DrawForm(image, Form::Ellipse, {2, 2}, {9, 9}, {1, kInk}, Filling::Empty);
  EXPECT_EQ(qRgb(200, 0, 0), image.pixel(5, 5));
  DrawForm(image, Form::Ellipse, {2, 2}, {9, 9}, {1, kInk}, Filling::Solid);
  EXPECT_EQ(kInk, image.pixel(5, 5));
}

TEST(Raster, SmallEllipsesAreRound) {
  EXPECT_EQ(QStringList({"#"}), Ellipse(1, 1, Filling::Empty));
  EXPECT_EQ(QStringList({"##", "##"}), Ellipse(2, 2, Filling::Empty));
  EXPECT_EQ(QStringList({".#.", "#.#", ".#."}), Ellipse(3, 3, Filling::Empty));
  EXPECT_EQ(QStringList({".#.", "###", ".#."}), Ellipse(3, 3, Filling::Solid));
  EXPECT_EQ(QStringList({".##.", "#..#", "#..#", ".##."}), Ellipse(4, 4, Filling::Empty));
  EXPECT_EQ(QStringList({".###.", "#...#", "#...#", "#...#", ".###."}), Ellipse(5, 5, Filling::Empty));
  EXPECT_EQ(
      QStringList({"..####..", ".#....#.", "#......#", "#......#", "#......#", "#......#", ".#....#.", "..####.."}),
      Ellipse(8, 8, Filling::Empty));
  EXPECT_EQ(QStringList({"#####"}), Ellipse(5, 1, Filling::Empty));
}

// Of all sizes that the editor can draw.
TEST(Raster, EllipsesFillTheirBoxAreEvenAndClosed) {
  for (int width = 1; width <= 32; ++width)
    for (int height = 1; height <= 32; ++height) {
      const QStringList solid = Ellipse(width, height, Filling::Solid),
                        outline = Ellipse(width, height, Filling::Empty);
      QStringList turned = solid;
      std::reverse(turned.begin(), turned.end());
      ASSERT_EQ(solid, turned) << width << ' ' << height;
      for (QString& row : turned) std::reverse(row.begin(), row.end());
      ASSERT_EQ(solid, turned) << width << ' ' << height;
      ASSERT_TRUE(solid.first().contains(u'#'));
      ASSERT_TRUE(std::any_of(solid.begin(), solid.end(), [](const QString& row) { return row.startsWith(u'#'); }));
      for (int y = 0; y < height; ++y) {
        const auto first = solid[y].indexOf(u'#'), last = solid[y].lastIndexOf(u'#');
        ASSERT_FALSE(solid[y].mid(first, last - first + 1).contains(u'.')) << width << ' ' << height;
        // The outline has the row's ends, and nothing beyond them.
        ASSERT_EQ(first, outline[y].indexOf(u'#'));
        ASSERT_EQ(last, outline[y].lastIndexOf(u'#'));
        // No gap from row to row.
        if (y > 0) {
          ASSERT_LE(std::max(first, solid[y - 1].indexOf(u'#')), std::min(last, solid[y - 1].lastIndexOf(u'#')));
        }
      }
    }
}

TEST(Raster, WhatFallsOutsideIsLeftOut) {
  QImage image = Paper();
  SetPixel(image, {-1, 0}, kInk);
  SetPixel(image, {24, 0}, kInk);
  SetPixel(image, {0, 16}, kInk);
  EXPECT_EQ(Paper(), image);
  LineTo(image, {-4000, 3}, {4000, 3}, {1, kInk});
  EXPECT_EQ(QStringList({QString(24, u'#')}), Rows(image, QRect(0, 3, 24, 1)));
  DrawForm(image, Form::Rectangle, {-4000, -4000}, {10, 10}, {2, kInk}, Filling::Empty);
  EXPECT_EQ(kInk, image.pixel(9, 0));
  EXPECT_EQ(kInk, image.pixel(8, 0));
  EXPECT_EQ(kGround, image.pixel(10, 0));
  DrawForm(image, Form::Ellipse, {-4681, -4681}, {4681, 4681}, {4, kInk}, Filling::Solid);
  EXPECT_EQ(kInk, image.pixel(23, 15));
  // An edge outside whose wide pen reaches in.
  image = Paper();
  DrawForm(image, Form::Rectangle, {-10, -10}, {0, 20}, {4, kInk}, Filling::Empty);
  EXPECT_EQ(kInk, image.pixel(0, 5));
  EXPECT_EQ(kGround, image.pixel(1, 5));
}

TEST(Raster, InvertingALineTwiceChangesNothing) {
  QImage image = Paper();
  SetPixel(image, {4, 4}, kInk);
  const QImage before = image;
  InvertLine(image, {1, 1}, {30, 12});
  EXPECT_NE(before, image);
  EXPECT_EQ(kGround ^ 0xFFFFFF, image.pixel(1, 1));
  InvertLine(image, {1, 1}, {30, 12});
  EXPECT_EQ(before, image);
  InvertLine(image, {2, 2}, {8, 2});
  EXPECT_EQ(kGround ^ 0xFFFFFF, image.pixel(2, 2));
  EXPECT_EQ(kGround ^ 0xFFFFFF, image.pixel(8, 2));
  InvertLine(image, {2, 2}, {2, 2});
  EXPECT_EQ(kGround, image.pixel(2, 2));
}

}  // namespace
