#pragma once

#include "TemporaryFolder.h"
#include "photos/PhotoSheet.h"

namespace orivex::bench {

/// Folders of small photos of different ages, with a fresh thumbnail of each in a cache of its own.
class Library {
 public:
  explicit Library(int photos);

  gtk::PhotoSources sources() const;

 private:
  gtk::TemporaryFolder folder_;
};

}  // namespace orivex::bench
