#pragma once

class KindTable;

// keys, fontsizemap, stamp, nextpage, commands.
void RegisterPageViewKinds(KindTable& table);
