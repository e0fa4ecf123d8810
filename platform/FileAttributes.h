#pragma once

#include <QString>
#include <optional>

// Attribute bits of a file or folder, with the numbers that the program's own routines use.
enum FileAttributeBit : int {
  AttributeNormal = 0,
  AttributeReadOnly = 1,
  AttributeHidden = 2,
  AttributeDirectory = 16,
};

// Reads and sets the attributes of files and folders. A path that isn't there has none, and nothing throws.
class FileAttributes {
 public:
  virtual ~FileAttributes() = default;

  // Sum of FileAttributeBit values; nothing when the attributes can't be read.
  virtual std::optional<int> Get(const QString& path) const = 0;

  // Gives the path the read-only and hidden bits of `attributes` and takes them away where they aren't in it; the
  // directory bit is passed over. False when the path isn't there or the system refuses.
  virtual bool Set(const QString& path, int attributes) = 0;

  // Takes every attribute away: the file can be written and shows, a folder can also be listed and entered.
  bool Clear(const QString& path) { return Set(path, AttributeNormal); }
};
