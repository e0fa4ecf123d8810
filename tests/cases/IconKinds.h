#pragma once

class KindTable;

// cells, draw, iconfile, reduce16.
void RegisterIconKinds(KindTable& table);
