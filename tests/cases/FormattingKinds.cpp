#include "FormattingKinds.h"

#include <QJsonArray>

#include "HTMLDocument.h"
#include "HTMLTxtRange.h"
#include "KindTable.h"
#include "MarkedPage.h"
#include "Serializer.h"
#include "TextMeaning.h"

namespace {

// The program's name of a command; "" for one that it doesn't have.
QString CommandOf(const QString& name) {
  static const QMap<QString, QString> commands = {{"bold", "Bold"},
                                                  {"fontname", "FontName"},
                                                  {"forecolor", "ForeColor"},
                                                  {"fontsize", "FontSize"},
                                                  {"createlink", "CreateLink"}};
  return commands.value(name);
}

// Passed when the page means what one of the accepted results means. The selection afterwards isn't compared.
CaseOutcome PlayFormatting(const QJsonObject& one) {
  const QString command = CommandOf(one["command"].toString());
  if (command.isEmpty()) return {{"unknown command " + one["command"].toString()}, {}};
  HTMLDocument page;
  LiveRange marked;
  if (!MakeMarkedPage(one["html"].toString(), page, marked)) return {{"no two marks: " + one["html"].toString()}, {}};
  std::make_shared<HTMLTxtRange>(page, marked)->execCommand(command, false, one["value"].toString());

  QStringList told;
  for (const QJsonValue accepted : one["expected"].toArray()) {
    HTMLDocument wanted;
    LiveRange ignored;
    MakeMarkedPage(accepted.toString(), wanted, ignored);
    const QStringList differences = MeaningDifferences(page, wanted);
    if (differences.isEmpty()) return {};
    told.append("accepted: " + accepted.toString());
    told.append(differences);
  }
  told.prepend("got: " + InnerHtml(page.tree().bodyNode(), false));
  told.prepend(command + ' ' + one["value"].toString() + " on " + one["html"].toString());
  return {told, {}};
}

}  // namespace

void RegisterFormattingKinds(KindTable& table) {
  table.Add("formatting", PlayFormatting);
}
