#pragma once

#include <filesystem>
#include <string_view>

namespace orivex::gtk {

/// Removes the files of `folder` whose names end like this and that nobody has written to for a day: what a process
/// that was killed has left of its visitor. Any thread; a failure leaves the file.
void removeLeftOvers(const std::filesystem::path& folder, std::string_view ending);

}  // namespace orivex::gtk
