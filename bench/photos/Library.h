#pragma once

#include "photos/PhotoSheet.h"
#include "support/TemporaryFolder.h"

namespace orivex::bench {

/// Folders of small photos of different ages, with a fresh thumbnail of each in a cache of its own.
class Library {
 public:
  explicit Library(int photos);

  gtk::PhotoSources sources() const;

 private:
  TemporaryFolder folder_;
};

}  // namespace orivex::bench
