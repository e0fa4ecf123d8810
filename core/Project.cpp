#include "Project.h"

#include "ModFileOps.h"
#include "PathRules.h"

QString Project::CardPath() const {
  return PathRules::Join(appPath_, QStringLiteral("card"));
}

QString Project::SavedFolder() const {
  return PathRules::Join(appPath_, QStringLiteral("saved"));
}

QString Project::UnsavedName() {
  return QStringLiteral("Project1");
}

bool Project::IsUnsaved() const {
  return name_ == UnsavedName();
}

QString Project::PageName(int number) {
  return number == 1 ? QStringLiteral("wgcard.html") : QStringLiteral("Page%1.html").arg(number);
}

QString Project::PageFile(int number) const {
  return PathRules::Join(workPath_, PageName(number));
}

void Project::EnterWorkspace() {
  workPath_ = CardPath();
}

void Project::RemoveWorkspace() {
  const QString card = CardPath();
  if (!files_.FolderExists(card)) return;
  files_.Attributes().Clear(card);
  files_.RemoveTree(card);
}

void Project::MakeWorkspace() {
  const QString card = CardPath();
  files_.EnsureFolder(card);
  files_.Attributes().Set(card, AttributeHidden);
}

void Project::WipeWorkspace() {
  RemoveWorkspace();
  MakeWorkspace();
}

void Project::StartNew() {
  if (workPath_ == CardPath()) RemoveWorkspace();
  EnterWorkspace();
  MakeWorkspace();
  name_ = UnsavedName();
  TurnTo(1);
}

void Project::OpenSaved(const QString& name, const QString& folder) {
  WipeWorkspace();
  SavedAs(name, folder);
}

void Project::SavedAs(const QString& name, const QString& folder) {
  name_ = name;
  workPath_ = folder;
}

void Project::TurnTo(int number) {
  pageNumber_ = number;
  pageFile_ = PageFile(number);
}
