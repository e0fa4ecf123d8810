#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>

// What came of one case: passed when nothing is told, failed with each difference, or skipped with a reason.
struct CaseOutcome {
  QStringList differences;
  QString skipReason;
  QStringList remarks = {};  // what isn't judged, counted over all cases
};

// Collects the differences between what a case wants and what the program gave.
class CaseCheck {
 public:
  // `expected` is the case's own value; both are compared as JSON values, exactly.
  void Equal(const QString& field, const QJsonValue& expected, const QJsonValue& got);

  CaseOutcome Outcome() const { return {differences_, QString(), {}}; }

 private:
  QStringList differences_;
};

// The kinds of cases that the runner knows, each with the routine that plays one case.
class KindTable {
 public:
  using Player = std::function<CaseOutcome(const QJsonObject&)>;

  void Add(const QString& kind, Player player) { players_[kind] = std::move(player); }
  // Null for an unknown kind.
  const Player* Find(const QString& kind) const;
  QStringList Kinds() const { return players_.keys(); }

 private:
  QMap<QString, Player> players_;
};

// Byte text: one character stands for one byte.
QByteArray BytesOf(const QJsonValue& byteText);
QJsonValue ByteText(const QByteArray& bytes);
