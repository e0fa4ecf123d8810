// What the desktop knows of the keyboard beyond the events that it sends. Only X11 tells; elsewhere both do nothing.
#pragma once

#include <QList>

namespace HostKeyboard {

// Asks the X server for detectable auto-repeat: a held key then sends presses, and one release when it really comes up.
// Without it each repeat begins with a release, many of which can't be told from a real one.
void AskForRealReleases();

// The places (native scan codes) of the keys that are down now, whichever program they went down in.
QList<quint32> KeysDown();

}  // namespace HostKeyboard
