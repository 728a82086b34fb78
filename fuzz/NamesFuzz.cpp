#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "Expect.h"
#include "files/XdgFileManager.h"
#include "support/TemporaryFolder.h"
#include "web/PageDownloads.h"

#include "orivex/platform/base/Text.h"

namespace orivex::gtk {
namespace {

using fuzz::expect;

// A file that is named as a page likes is made, found by its address, and removed.
void nameFile(std::string_view suggested) {
  static const TemporaryFolder folder;
  const auto name = safeFileName(suggested);
  expect(name.starts_with(safeFileName(name)), "in a safe name nothing has to be replaced");
  expect(isValidUtf8(name) && !name.empty() && name.size() <= 200, "a safe name can be read");
  const auto file = folder.write(name, "");
  expect(file.parent_path() == folder.path() && file.filename() == name, "a name is that of a file in its folder");
  const auto address = Url::fromFilePath(file.string());
  expect(Url::parse(address.absoluteString()) == address, "every file has an address");
  expect(!XdgFileManager("fuzz").removeItem(address), "a file can be removed by its address");
  expect(std::filesystem::is_empty(folder.path()), "a file is removed by its address");
}

}  // namespace
}  // namespace orivex::gtk

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orivex::gtk::nameFile({reinterpret_cast<const char*>(data), size});
  return 0;
}
