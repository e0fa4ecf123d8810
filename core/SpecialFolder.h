#pragma once

#include <QString>

struct Platform;

// Path of a folder that the system keeps for the user: 0 is the desktop, whether or not it is there; "" for any other
// number and when the system has none.
QString GetSpecialFolder(const Platform& platform, int FolderId);
