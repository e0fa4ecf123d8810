// The icon editor from a command line, for tests with other people's tools:
//   icon_tool draw FOLDER COUNT SEED   draws that many icons and saves them as FOLDER/0.ico, FOLDER/1.ico, ...
//   icon_tool open FILE...             opens pictures and icons
//   icon_tool offer FILE               puts a picture on the clipboard and ends when the clipboard has been taken away
// For each icon the first two print a line "PIC1 BLACK MASK MESSAGES": the first two as RRGGBB for each pixel, the mask
// as 1 for see-through and 0 for opaque, and the number of messages shown.
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <cstdio>
#include <random>

#include "IconFile.h"
#include "Swatch.h"
#include "TestPlatform.h"
#include "fIconMaker.h"

namespace {

QByteArray Colors(const Surface* surface) {
  const QImage image = surface->Image();
  QByteArray text;
  for (int y = 0; y < kIconSide; ++y)
    for (int x = 0; x < kIconSide; ++x)
      text += QByteArray::number(image.pixel(x, y) & 0xFFFFFF, 16).rightJustified(6, '0');
  return text;
}

void Print(const fIconMaker& editor, qsizetype messages) {
  QByteArray mask;
  const QImage image = editor.Surfaces.Pic2->Image();
  for (int y = 0; y < kIconSide; ++y)
    for (int x = 0; x < kIconSide; ++x) mask += (image.pixel(x, y) & 0xFFFFFF) == 0 ? '0' : '1';
  std::printf("%s %s %s %d\n", Colors(editor.Surfaces.Pic1).constData(), Colors(editor.Surfaces.Pic1Black).constData(),
              mask.constData(), int(messages));
}

// Shapes in all colours, with some see-through holes.
void DrawSomething(fIconMaker& editor, std::mt19937& random) {
  const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
  for (int step = 0; step < 12; ++step) {
    editor.bOps[std::size_t(below(5))]->click();
    editor.OpW[std::size_t(below(4))]->click();
    if (below(6)) {
      emit editor.PCols[std::size_t(below(16))]->pressed();
    } else {
      editor.bTrans->click();
    }
    const int x = below(224), y = below(224);
    emit editor.Surfaces.PicBig->MouseDown(Qt::LeftButton, {x, y});
    const int endX = below(224), endY = below(224);
    emit editor.Surfaces.PicBig->MouseUp(Qt::LeftButton, {endX, endY});
  }
}

int Offer(const QString& file) {
  QClipboard* const clipboard = QGuiApplication::clipboard();
  clipboard->setImage(QImage(file));
  QObject::connect(clipboard, &QClipboard::dataChanged, clipboard, [clipboard] {
    if (clipboard->mimeData()->formats().isEmpty()) QCoreApplication::quit();
  });
  std::puts("offered");
  std::fflush(stdout);
  return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  // What is offered is offered to the display's other programs.
  const bool isOffer = argc > 1 && QByteArray(argv[1]) == "offer";
  if (!isOffer && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (isOffer && arguments.size() == 3) return Offer(arguments[2]);
  TestProgram test;
  fIconMaker editor(test.program);
  ScriptedDialogs& dialogs = test.platform.dialogs;
  if (arguments.size() == 5 && arguments[1] == u"draw") {
    std::mt19937 random(arguments[4].toUInt());
    for (int number = 0; number < arguments[3].toInt(); ++number) {
      editor.ResetEditor();
      DrawSomething(editor, random);
      dialogs.Texts = {QStringLiteral("%1/%2.ico").arg(arguments[2]).arg(number)};
      editor.mSaveIco();
      Print(editor, dialogs.Boxes.size());
    }
    return 0;
  }
  if (arguments.size() < 3 || arguments[1] != u"open") return 2;
  for (const QString& file : arguments.mid(2)) {
    dialogs.Boxes.clear();
    dialogs.Texts = {file};
    editor.mOpen();
    Print(editor, dialogs.Boxes.size());
  }
  return 0;
}
