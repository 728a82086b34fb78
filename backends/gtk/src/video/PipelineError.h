#pragma once

#include <string>
#include <variant>

#include <gst/gst.h>

#include "glib/GRef.h"

namespace orivex::gtk {

/// What GStreamer said when something went wrong.
struct PipelineError {
  GQuark domain = 0;
  int code = 0;
  std::string text;    ///< for the log
  std::string origin;  ///< path of the element that said so, such as "/GstPipeline:a/GstBin:b/GstX:c"; may be empty
};

/// An element, or why there is none.
using ElementOrError = std::variant<GRef<GstElement>, PipelineError>;

/// Takes over `error`, which may be null.
PipelineError adoptError(GError* error, std::string origin = {});

/// An error of our own words.
PipelineError pipelineError(std::string text);

}  // namespace orivex::gtk
