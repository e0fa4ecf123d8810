// Names that every Windows can have, for what goes out to other machines and for folders that may be carried there.
#pragma once

#include <QString>

// The name with "_" in place of each character that Windows can't have, of a dot or blank at its end, and in front of a
// device's name. A name that Windows can have comes back as it is; so does "".
QString WindowsFileName(const QString& name);

// Why no folder can have that name, as a sentence for the user: one that neither Windows nor Linux takes. "" for a name
// that both take, and for "".
QString WhyNoFolderName(const QString& name);

// The name under which a file of that name lies in the folder where case doesn't count: the name itself when there is
// such a file or none at all, else that of the file which differs from it only in case.
QString NameOfTwinIn(const QString& folder, const QString& name);
