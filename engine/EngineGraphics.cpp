#include "EngineGraphics.h"

#include <QQuickWindow>

#include "GraphicsCard.h"

void ChooseEngineGraphics() {
  if (!HasGraphicsCard()) QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}
