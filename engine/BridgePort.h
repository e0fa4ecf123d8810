// The one object that the bridge script sees: takes its messages.
#pragma once

#include <QJsonArray>
#include <QObject>
#include <QWebEngineScript>

// The isolated world in which the bridge script runs.
inline constexpr quint32 bridgeWorld = QWebEngineScript::ApplicationWorld;

class BridgePort : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

 public slots:
  void Receive(const QJsonArray& message) { emit Received(message); }

 signals:
  void Received(const QJsonArray& message);
};
