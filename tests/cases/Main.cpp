#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QTextStream>

#include "CoreKinds.h"
#include "ElementKinds.h"
#include "EmailKinds.h"
#include "FormattingKinds.h"
#include "IconKinds.h"
#include "KindTable.h"
#include "PackKinds.h"
#include "PageViewKinds.h"
#include "RoundtripKinds.h"
#include "SettingsKinds.h"
#include "TreeKinds.h"

namespace {

constexpr int kSomeFailed = 1;
constexpr int kNotRun = 2;

struct Counts {
  int passed = 0;
  int failed = 0;
  int skipped = 0;
  QMap<QString, int> remarks;
};

void PlayAll(const KindTable::Player& play, const QJsonArray& cases, QTextStream& out, Counts& counts) {
  for (qsizetype index = 0; index < cases.size(); ++index) {
    const QJsonObject one = cases.at(index).toObject();
    const CaseOutcome outcome = play(one);
    for (const QString& remark : outcome.remarks) ++counts.remarks[remark];
    const QString note = one.value(QLatin1String("note")).toString();
    if (!outcome.skipReason.isEmpty()) {
      ++counts.skipped;
      out << "skipped " << index << ": " << outcome.skipReason << '\n';
    } else if (outcome.differences.isEmpty()) {
      ++counts.passed;
    } else {
      ++counts.failed;
      out << "failed " << index << (note.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(note)) << '\n';
      for (const QString& difference : outcome.differences) out << "  " << difference << '\n';
    }
    out.flush();
  }
}

int Run(const KindTable& table, const QStringList& arguments) {
  QTextStream out(stdout);
  QTextStream err(stderr);
  if (arguments.size() != 3) {
    err << "usage: cases KIND FILE\nkinds: " << table.Kinds().join(u' ') << '\n';
    return kNotRun;
  }
  const KindTable::Player* play = table.Find(arguments.at(1));
  QFile file(arguments.at(2));
  if (!play || !file.open(QIODevice::ReadOnly)) {
    err << (play ? "no such file: " + arguments.at(2) : "no such kind: " + arguments.at(1)) << '\n';
    return kNotRun;
  }
  QJsonParseError error;
  const QJsonArray cases = QJsonDocument::fromJson(file.readAll(), &error).array();
  if (error.error != QJsonParseError::NoError || cases.isEmpty()) {
    err << "no cases in " << arguments.at(2) << ": " << error.errorString() << '\n';
    return kNotRun;
  }
  Counts counts;
  PlayAll(*play, cases, out, counts);
  for (auto remark = counts.remarks.cbegin(); remark != counts.remarks.cend(); ++remark)
    out << remark.key() << ": " << remark.value() << '\n';
  out << counts.passed << " passed, " << counts.failed << " failed";
  if (counts.skipped > 0) out << ", " << counts.skipped << " skipped";
  out << '\n';
  return counts.failed > 0 ? kSomeFailed : 0;
}

}  // namespace

// Plays the cases of one kind: cases KIND FILE. The file is a JSON array with an object for each case.
int main(int argc, char** argv) {
  const bool isHosted = argc > 1 && qstrcmp(argv[1], "roundtrip") == 0;
  if (isHosted) {
    PrepareEngineForCases();
  } else if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication application(argc, argv);
  KindTable table;
  RegisterCoreKinds(table);
  RegisterPackKinds(table);
  RegisterPageViewKinds(table);
  RegisterTreeKinds(table);
  RegisterElementKinds(table);
  RegisterFormattingKinds(table);
  RegisterSettingsKinds(table);
  RegisterIconKinds(table);
  RegisterEmailKinds(table);
  RegisterRoundtripKinds(table);
  return Run(table, QApplication::arguments());
}
