// The panel with the page's source.
#include <QFontDatabase>
#include <QPushButton>
#include <QVBoxLayout>

#include "FTools.h"
#include "FWeb.h"
#include "PageText.h"
#include "Program.h"
#include "SourceText.h"
#include "ToolPanel.h"

namespace {

constexpr ButtonRow kButtons[] = {{"OK", "Close text window."}, {"Save Changes", "Save changes to current page."}};

}  // namespace

void FTools::BuildSourcePanel() {
  T1 = new SourceText;
  SetName(T1, "T1");
  T1->setAccessibleName(QStringLiteral("Page source"));
  // Where there is no Verdana, letters of one width are the next best for source.
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setFamilies(QStringList{QStringLiteral("Verdana")} + font.families());
  font.setStyleHint(QFont::Monospace);
  T1->setFont(font);
  connect(T1, &QPlainTextEdit::textChanged, this, [this] {
    if (isVisible()) bCloseText[1]->setEnabled(true);
  });
  for (std::size_t index = 0; index < bCloseText.size(); ++index) {
    bCloseText[index] = NewButton("bCloseText", int(index), kButtons[index]);
    connect(bCloseText[index], &QPushButton::clicked, this, [this, index] { OnCloseText(int(index)); });
  }
  bCloseText[1]->setEnabled(false);
  FrTool[1]->Column()->addWidget(T1, 1);
  FrTool[1]->Column()->addLayout(RowAtRight({bCloseText[0], bCloseText[1]}));
}

void FTools::ShowSource() {
  T1->SetText(SourceToEdit(web_.jWB->Source()));
  ShowTool(ToolTask::PageSource, QString());
}

// OK drops unsaved text without a question. Save Changes reads the page again from the written text, with the page's
// own font settings, and leaves the panel open.
void FTools::OnCloseText(int Index) {
  if (Index == 0) {
    bCloseText[1]->setEnabled(false);
    HideFromTop();
    return;
  }
  const QString page = program_.project.CurPageFile();
  if (!program_.Files.FileExists(page)) return;
  program_.Files.DeleteFileIfAny(page);
  web_.TellPageWritten(program_.Files.WriteTextFile(page, web_.jWB->FileOfSource(T1->Text())));
  web_.jWB->Navo(page, false);
}
