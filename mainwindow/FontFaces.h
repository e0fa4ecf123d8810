// The faces that text can be given: what the lists of faces offer, in this order.
#pragma once

#include <QStringList>

// With "|" between them, as a table of controls takes it. The first is the face of a text that has none.
inline constexpr const char* kFontFaces =
    "Arial, Helvetica|Verdana, Arial, Helvetica|Times New Roman|Comic Sans MS|Courier New|Tahoma";

const QStringList& FontFaces();

// Place of a face in the list, told whole or by its first name alone; -1 for one that isn't in it.
int FaceIndex(const QString& face);
