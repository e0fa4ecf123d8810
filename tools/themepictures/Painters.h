// The painters of the theme pictures: each returns one tile that repeats without a seam, or the banner.
#pragma once

#include <QImage>

QImage PaintRainbow();
QImage PaintHearts();
QImage PaintMetal();
QImage PaintForest();
QImage PaintRuby();
QImage PaintDeepBlue();
QImage PaintStars();

QImage PaintParchment();
QImage PaintMarble();
QImage PaintLinenBrocade();
QImage PaintLilacBrocade();
QImage PaintPeachBrocade();
QImage PaintPaper();
QImage PaintPinstripe();

// 400 by 80 pixels on a see-through ground.
QImage PaintHeartBanner();
