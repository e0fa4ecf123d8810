#include "EngineStart.h"

#include <QQuickWindow>

#include "GraphicsCard.h"

namespace {
constexpr const char* engineFlags = "QTWEBENGINE_CHROMIUM_FLAGS";
constexpr const char* graphicsOfX = "QT_XCB_GL_INTEGRATION";
}  // namespace

void ChooseEngineGraphics() {
  if (!HasGraphicsCard()) QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

LeanEngine::LeanEngine() {
  const QByteArray told = qgetenv(engineFlags);
  Set(engineFlags, told + (told.isEmpty() ? "" : " ") + "--no-unsandboxed-zygote");
  if (!HasGraphicsCard() && !qEnvironmentVariableIsSet(graphicsOfX)) Set(graphicsOfX, "none");
}

LeanEngine::~LeanEngine() {
  for (const auto& [name, value] : before_) value ? qputenv(name, *value) : qunsetenv(name);
}

void LeanEngine::Set(const char* name, const QByteArray& value) {
  before_.emplace_back(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
  qputenv(name, value);
}
