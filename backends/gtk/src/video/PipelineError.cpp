#include "video/PipelineError.h"

#include <utility>

#include <gst/gst.h>

#include "glib/GMemory.h"

namespace orivex::gtk {

PipelineError adoptError(GError* error, std::string origin) {
  const GErrorPtr owned(error);
  if (!owned) return pipelineError("unknown");
  return {owned->domain, owned->code, owned->message, std::move(origin)};
}

PipelineError pipelineError(std::string text) {
  return {GST_CORE_ERROR, GST_CORE_ERROR_FAILED, std::move(text), {}};
}

}  // namespace orivex::gtk
