#include "SourceBin.h"

namespace orivex::gtk {

ElementOrError makeSourceBin(const std::string& description, const char* name) {
  // A description may end with what the data have to be, which is no element of its own.
  const auto whole = description + " ! identity";
  GError* error = nullptr;
  auto bin = GRef<GstElement>::sink(gst_parse_bin_from_description_full(
      whole.c_str(), TRUE, nullptr,
      static_cast<GstParseFlags>(GST_PARSE_FLAG_FATAL_ERRORS | GST_PARSE_FLAG_PLACE_IN_BIN), &error));
  if (error || !bin) return adoptError(error);
  if (name) gst_object_set_name(GST_OBJECT(bin.get()), name);
  return bin;
}

}  // namespace orivex::gtk
