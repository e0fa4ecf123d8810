#pragma once

class KindTable;

// fragments, documents.
void RegisterTreeKinds(KindTable& table);
