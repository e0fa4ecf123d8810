#pragma once

// Whether and how the computer is on a network, as far as the system tells.
class NetworkState {
 public:
  virtual ~NetworkState() = default;

  virtual bool IsOnline() const = 0;
  // The system reaches the internet through a proxy.
  virtual bool IsConnectionProxy() const = 0;
};

// Asks the internet settings on Windows. Elsewhere any interface that is up, running, has an address and isn't the
// computer's own loop counts as online, and there is no proxy.
class HostNetworkState : public NetworkState {
 public:
  bool IsOnline() const override;
  bool IsConnectionProxy() const override;
};
