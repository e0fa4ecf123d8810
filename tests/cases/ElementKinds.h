#pragma once

class KindTable;

// elements.
void RegisterElementKinds(KindTable& table);
