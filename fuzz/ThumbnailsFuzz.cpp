#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "Expect.h"
#include "InputFile.h"
#include "photos/library/ThumbnailCache.h"
#include "support/TemporaryFolder.h"

// What any program of the desktop has put into the thumbnails that all share.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orivex::gtk;
  static const orivex::TemporaryFolder folder;
  const ThumbnailCache cache(folder.path());
  const MediaItem item{.path = "/a.jpg", .modified = 7'000'000'000};
  const orivex::fuzz::InputFile file(data, size);
  for (const auto& path : {cache.pathOf(item, ThumbnailSize::large), cache.failurePathOf(item)}) {
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::remove(path);
    std::filesystem::create_symlink(file.path(), path);
  }
  const auto thumbnail = cache.read(item, ThumbnailSize::large);
  orivex::fuzz::expect(thumbnail.has_value() == cache.hasFailed(item), "a thumbnail counts wherever it lies");
  return 0;
}
