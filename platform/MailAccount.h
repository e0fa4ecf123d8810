#pragma once

#include <QString>
#include <optional>

// The mail account that the user has set up in the system.
class MailAccount {
 public:
  virtual ~MailAccount() = default;

  // A value of a key below the current user; nothing when there is no such value or it is empty.
  virtual std::optional<QString> ReadRegString(const QString& key, const QString& value) const = 0;
};

// Reads the registry on Windows; elsewhere there is nothing to read.
class HostMailAccount : public MailAccount {
 public:
  std::optional<QString> ReadRegString(const QString& key, const QString& value) const override;
};
