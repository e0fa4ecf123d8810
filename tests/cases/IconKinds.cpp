#include "IconKinds.h"

#include <QJsonArray>
#include <QPushButton>
#include <algorithm>

#include "IconColors.h"
#include "IconFile.h"
#include "KindTable.h"
#include "ModIcons2.h"
#include "Swatch.h"
#include "TestPlatform.h"
#include "fIconMaker.h"

namespace {

// A row is runs of one colour: "3*FF0000 29*E1E1E1".
QImage PlaneOf(const QJsonArray& rows) {
  QImage image(kIconSide, kIconSide, QImage::Format_RGB32);
  for (int y = 0; y < kIconSide; ++y) {
    int x = 0;
    for (const QString& run : rows.at(y).toString().split(u' ')) {
      const QRgb color = QRgb(0xFF000000) | run.section(u'*', 1).toUInt(nullptr, 16);
      for (int left = run.section(u'*', 0, 0).toInt(); left > 0; --left, ++x) image.setPixel(x, y, color);
    }
  }
  return image;
}

QJsonArray RowsOf(const QImage& image) {
  QJsonArray rows;
  for (int y = 0; y < image.height(); ++y) {
    QStringList runs;
    for (int x = 0; x < image.width();) {
      const QRgb color = image.pixel(x, y);
      int length = 0;
      for (; x < image.width() && image.pixel(x, y) == color; ++x) ++length;
      runs << QStringLiteral("%1*%2").arg(length).arg(color & 0xFFFFFF, 6, 16, QLatin1Char('0')).toUpper();
    }
    rows.append(runs.join(u' '));
  }
  return rows;
}

// A row of a mask is "1" for white and "0" for black.
QImage MaskOf(const QJsonArray& rows) {
  QImage image(kIconSide, kIconSide, QImage::Format_RGB32);
  for (int y = 0; y < kIconSide; ++y)
    for (int x = 0; x < kIconSide; ++x)
      image.setPixel(x, y, rows.at(y).toString().at(x) == u'1' ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
  return image;
}

QJsonArray MaskRowsOf(const QImage& image) {
  QJsonArray rows;
  for (int y = 0; y < image.height(); ++y) {
    QString row;
    for (int x = 0; x < image.width(); ++x) {
      const QRgb color = image.pixel(x, y) & 0xFFFFFF;
      row += color == 0 ? u'0' : color == 0xFFFFFF ? u'1' : u'?';
    }
    rows.append(row);
  }
  return rows;
}

class Editor {
 public:
  Program& program() { return test_.program; }
  QString Path(const QString& name) const { return test_.Path(name); }

  void ComparePlanes(const QJsonObject& one, CaseCheck& check) {
    check.Equal("pic1", one["pic1"], RowsOf(window.Surfaces.Pic1->Image()));
    check.Equal("black", one["black"], RowsOf(window.Surfaces.Pic1Black->Image()));
    check.Equal("mask", one["mask"], MaskRowsOf(window.Surfaces.Pic2->Image()));
  }

 private:
  TestProgram test_;

 public:
  fIconMaker window{test_.program};
};

CaseOutcome PlayCells(const QJsonObject& one) {
  CaseCheck check;
  Editor editor;
  DrawingEngine& drawing = editor.window.Drawing;
  for (const bool isEnd : {false, true}) {
    drawing.PointToCell(isEnd, one["x"].toDouble(), one["y"].toDouble());
    check.Equal("cell_x", one["cell_x"], isEnd ? drawing.CellX1 : drawing.CellX0);
    check.Equal("cell_y", one["cell_y"], isEnd ? drawing.CellY1 : drawing.CellY0);
  }
  return check.Outcome();
}

QPoint PointOf(const QJsonValue& pair) {
  return {pair.toArray().at(0).toInt(), pair.toArray().at(1).toInt()};
}

// By the window's own controls.
void Carry(const QJsonObject& step, fIconMaker& window) {
  const QString what = step["do"].toString();
  if (what == u"draw") {
    window.bOps[std::size_t(step["tool"].toInt())]->click();
    step["color"].isString() ? window.bTrans->click()
                             : emit window.PCols[std::size_t(step["color"].toInt())]->pressed();
    emit window.Surfaces.PicBig->MouseDown(Qt::LeftButton, PointOf(step["press"]));
    emit window.Surfaces.PicBig->MouseUp(Qt::LeftButton, PointOf(step["release"]));
  } else if (what == u"move") {
    window.bMoveIm[std::size_t(step["dir"].toInt())]->click();
  } else if (what == u"undo") {
    window.bUndo->click();
  } else {
    window.bclear->click();
  }
}

CaseOutcome PlayDraw(const QJsonObject& one) {
  CaseCheck check;
  Editor editor;
  for (const QJsonValue& step : one["steps"].toArray()) Carry(step.toObject(), editor.window);
  editor.ComparePlanes(one, check);
  check.Equal("undo", one["undo"], editor.window.bUndo->isEnabled());
  return check.Outcome();
}

CaseOutcome PlayIconFile(const QJsonObject& one) {
  CaseCheck check;
  Editor editor;
  const QString path = editor.Path("case.ico");
  IconSurfaces& surfaces = editor.window.Surfaces;
  if (one["do"].toString() == u"write") {
    surfaces.Pic1->SetPicture(PlaneOf(one["pic1"].toArray()));
    surfaces.Pic1Black->SetPicture(PlaneOf(one["black"].toArray()));
    surfaces.Pic2->SetPicture(MaskOf(one["mask"].toArray()));
    WriteIconFile(surfaces, path);
    check.Equal("file", one["file"], QString::fromLatin1(FileBytes(path).toHex()));
    return check.Outcome();
  }
  if (!PutFile(path, QByteArray::fromHex(one["file"].toString().toLatin1()))) return {{}, "the icon can't be written"};
  editor.window.ClearImage();
  check.Equal("mask read", true, OpenImage(surfaces, path));
  editor.ComparePlanes(one, check);
  return check.Outcome();
}

CaseOutcome PlayReduce16(const QJsonObject& one) {
  CaseCheck check;
  const QJsonArray colors = one["colors"].toArray();
  QImage image(kIconSide, kIconSide, QImage::Format_RGB32);
  image.fill(Qt::black);
  for (int i = 0; i < colors.size(); ++i)
    image.setPixel(i % kIconSide, i / kIconSide, QRgb(0xFF000000) | colors.at(i).toString().toUInt(nullptr, 16));
  Surface surface("Reduced");
  surface.resize(kIconSide, kIconSide);
  surface.SetPicture(image);
  ReduceTo16(surface);
  const QImage reduced = surface.Image();
  QJsonArray indices;
  for (int i = 0; i < colors.size(); ++i) {
    const auto& table = IconColors();
    const auto found = std::find(table.begin(), table.end(), reduced.pixel(i % kIconSide, i / kIconSide));
    indices.append(found == table.end() ? -1 : int(found - table.begin()));
  }
  check.Equal("indices", one["indices"], indices);
  return check.Outcome();
}

}  // namespace

void RegisterIconKinds(KindTable& table) {
  table.Add("cells", PlayCells);
  table.Add("draw", PlayDraw);
  table.Add("iconfile", PlayIconFile);
  table.Add("reduce16", PlayReduce16);
}
