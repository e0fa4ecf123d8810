#pragma once

class KindTable;

// formatting.
void RegisterFormattingKinds(KindTable& table);
