// Selecting an entry of a list by its place.
#pragma once

class QComboBox;

// Does nothing when there is no such entry; the list then stays where it is.
void SetIndex(QComboBox* box, int index);
