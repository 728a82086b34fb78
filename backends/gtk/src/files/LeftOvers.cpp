#include "LeftOvers.h"

#include <chrono>
#include <string>
#include <system_error>

namespace orivex::gtk {

void removeLeftOvers(const std::filesystem::path& folder, std::string_view ending) {
  std::error_code error;
  const auto oldest = std::filesystem::file_time_type::clock::now() - std::chrono::hours(24);
  std::filesystem::directory_iterator entry(folder, error);
  while (!error && entry != std::filesystem::directory_iterator()) {
    std::error_code gone;
    const bool isOld = entry->is_regular_file(gone) && !gone && entry->last_write_time(gone) < oldest && !gone;
    if (isOld && entry->path().string().ends_with(ending)) std::filesystem::remove(entry->path(), gone);
    entry.increment(error);
  }
}

}  // namespace orivex::gtk
