// Keeps the page off the network while the component is offline: only local files and what the page itself holds pass.
// Keeps its scripts from reading files at all times.
#pragma once

#include <QWebEngineUrlRequestInterceptor>

class OfflineInterceptor : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override;
  bool offline = false;
};
