// Colours in old HTML attributes: the HTML standard's "rules for parsing a legacy colour value".
#pragma once

#include <QString>

// "#RRGGBB" in upper case, or "" for a value that the rules refuse (empty, "transparent").
QString NormalizeLegacyColor(const QString& value);

// Whether an attribute of this name is read as such a colour: text, link, vlink and bgcolor.
bool IsColorAttribute(const QString& name);
