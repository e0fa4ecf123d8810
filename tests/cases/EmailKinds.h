#pragma once

class KindTable;

// wrap, htmlbody, base64, unbase64, message, smtp, address, password, recents.
void RegisterEmailKinds(KindTable& table);
