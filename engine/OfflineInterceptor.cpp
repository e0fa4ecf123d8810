#include "OfflineInterceptor.h"

void OfflineInterceptor::interceptRequest(QWebEngineUrlRequestInfo& info) {
  if (!offline) return;
  const QString scheme = info.requestUrl().scheme();
  for (const char* allowed : {"file", "about", "data", "blob", "qrc", "chrome-error"})
    if (scheme == QLatin1String(allowed)) return;
  info.block(true);
}
