#pragma once

class KindTable;

// nextlink, filenames, checkicon.
void RegisterPackKinds(KindTable& table);
