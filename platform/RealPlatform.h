#pragma once

#include "HostDialogs.h"
#include "HostFileAttributes.h"
#include "HostSettingsStore.h"
#include "HostShell.h"
#include "HostSockets.h"
#include "Platform.h"

// Owns the services of the system that the program runs on.
class RealPlatform {
 public:
  RealPlatform() = default;
  RealPlatform(const RealPlatform&) = delete;
  RealPlatform& operator=(const RealPlatform&) = delete;

  Platform& Services() { return platform_; }

 private:
  HostFileAttributes fileAttributes_;
  HostFileAccess fileAccess_;
  HostSettingsStore settings_;
  HostDialogs dialogs_;
  HostShell shell_;
  HostSingleInstance singleInstance_;
  HostStandardFolders folders_;
  HostSockets sockets_;
  HostNetworkState network_;
  HostMailAccount mailAccount_;
  HostStamps stamps_;
  Platform platform_{fileAttributes_, fileAccess_, settings_, dialogs_,     shell_, singleInstance_,
                     folders_,        sockets_,    network_,  mailAccount_, stamps_};
};
