#pragma once

#include <optional>
#include <queue>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "MediaItem.h"

namespace orivex::gtk {

/// Receives what a scan finds, on the thread that scans.
class ScanVisitor {
 public:
  ScanVisitor() = default;
  ScanVisitor(const ScanVisitor&) = delete;
  ScanVisitor& operator=(const ScanVisitor&) = delete;
  virtual ~ScanVisitor() = default;

  /// `modified`: when an entry last came or went, in nanoseconds since 1970, before the folder is read. False leaves
  /// the folder and those below it out.
  virtual bool foundFolder(const std::string& path, std::int64_t modified) = 0;
  virtual void foundItem(MediaItem item) = 0;
  /// Asked at each entry; true ends the scan.
  virtual bool isStopped() const = 0;
};

/// Looks through folders and those below them, on a thread that may block. Hidden folders are left out, and so is what
/// cannot be read. The folder in which something has come or gone last is visited first. Links to folders are followed,
/// except to a folder around them; each folder is visited once, by its own path where it has one below a root.
class FolderScan {
 public:
  FolderScan(const MediaFilter& filter, ScanVisitor& visitor) : filter_(filter), visitor_(visitor) {}

  /// Visits all folders, unless the visitor stops it.
  void run(const std::vector<std::string>& roots);

  /// The same in steps: what is to be visited, and the visit of one more folder; false when none is left.
  void add(std::string folder);
  bool visitNext();

  /// What the file at `path` is for the library; nothing when it is no regular file of a wanted kind.
  static std::optional<MediaItem> itemAt(const std::string& path, const MediaFilter& filter);

 private:
  void visit(const std::string& folder);
  void entry(int folderDescriptor, const std::string& folder, const char* name, unsigned char kind);

  const MediaFilter filter_;
  ScanVisitor& visitor_;
  std::priority_queue<std::pair<std::int64_t, std::string>> folders_;  // still to visit, with when they were modified
  std::vector<std::string> links_;                                     // to folders, for when no folder is left
  std::set<std::pair<dev_t, ino_t>> visited_;
};

}  // namespace orivex::gtk
