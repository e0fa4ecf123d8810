#pragma once

class KindTable;

// settings.
void RegisterSettingsKinds(KindTable& table);
