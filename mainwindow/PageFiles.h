// The page files of a project: which numbers are in use, and the two gates through which pages go.
#pragma once

#include <QString>
#include <optional>

class WBUC;
struct Program;

// Closes gaps of one in the numbering, gives the bare name that the next new page would get, and returns the number of
// pages in use. Every "*.html" in the folder counts as a page.
int NextPageName(Program& program, QString& Name);

// Shows a page file; makes `blank.html`, the folder and the file first where they are missing.
void LoadPage(Program& program, WBUC& jWB, const QString& PagePath);

// Writes the text of the page in view to the file of page `PageNo`, with paths of pictures cut where `Strip`. Nothing
// happens while the view has no finished document. Tells whether the file was written whole, nothing where there was
// nothing to write.
std::optional<bool> SavePage(Program& program, const WBUC& jWB, int PageNo, bool Strip);
