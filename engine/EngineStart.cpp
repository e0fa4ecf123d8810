#include "EngineStart.h"

#include <QQuickWindow>

#include "GraphicsCard.h"

void ChooseEngineGraphics() {
  if (!HasGraphicsCard()) QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

void LeaveOutSpareProcess() {
  const QByteArray told = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
  qputenv("QTWEBENGINE_CHROMIUM_FLAGS", told + (told.isEmpty() ? "" : " ") + "--no-unsandboxed-zygote");
}
