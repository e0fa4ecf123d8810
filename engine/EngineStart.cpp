#include "EngineStart.h"

#include <QQuickWindow>
#include <QWebEngineProfile>
#include <utility>

#include "GraphicsCard.h"

void ChooseEngineGraphics() {
  if (!HasGraphicsCard()) QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

void LeaveOutSpareProcess() {
  const QByteArray told = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
  qputenv("QTWEBENGINE_CHROMIUM_FLAGS", told + (told.isEmpty() ? "" : " ") + "--no-unsandboxed-zygote");
}

EngineStart::~EngineStart() {
  delete profile_;
}

void EngineStart::Begin() {
  profile_ = new QWebEngineProfile;
}

QWebEngineProfile* EngineStart::Take() {
  return std::exchange(profile_, nullptr);
}
