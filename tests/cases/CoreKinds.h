#pragma once

class KindTable;

// strip, colors.
void RegisterCoreKinds(KindTable& table);
