// Page font sizes: the digits "1" to "6" of the FONT tag against the size words of CSS.
#pragma once

#include <QString>

// A digit gives its word and a word its digit. Anything else, "" included, gives "2"; the comparison is exact.
QString FontSizeMap(const QString& value);
