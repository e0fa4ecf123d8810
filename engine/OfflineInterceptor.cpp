#include "OfflineInterceptor.h"

void OfflineInterceptor::interceptRequest(QWebEngineUrlRequestInfo& info) {
  const QString scheme = info.requestUrl().scheme();
  const bool isByScript = info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeXhr ||
                          info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeWorker ||
                          info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeSharedWorker;
  if (isByScript && scheme == u"file") return info.block(true);
  if (!offline) return;
  for (const char* allowed : {"file", "about", "data", "blob", "qrc", "chrome-error"})
    if (scheme == QLatin1String(allowed)) return;
  info.block(true);
}
