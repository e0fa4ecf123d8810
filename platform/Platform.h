#pragma once

#include "Dialogs.h"
#include "FileAccess.h"
#include "FileAttributes.h"
#include "MailAccount.h"
#include "NetworkState.h"
#include "SettingsStore.h"
#include "Shell.h"
#include "SingleInstance.h"
#include "Sockets.h"
#include "Stamps.h"
#include "StandardFolders.h"

// Everything that the program asks of the system, each behind its own small interface, so that a test can hand in its
// own. The objects outlive whoever holds this.
struct Platform {
  FileAttributes& fileAttributes;
  FileAccess& fileAccess;
  SettingsStore& settings;
  Dialogs& dialogs;
  Shell& shell;
  SingleInstance& singleInstance;
  StandardFolders& folders;
  Sockets& sockets;
  NetworkState& network;
  MailAccount& mailAccount;
  Stamps& stamps;
};
