#pragma once

#include <functional>
#include <string>
#include <variant>

#include <gst/gst.h>

#include "glib/GRef.h"
#include "video/GstPointers.h"

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

/// A pipeline that is described as gst-launch takes it.
ElementOrError parsePipeline(const std::string& description);

/// The same as one element with the pads that are left open.
ElementOrError parseBin(const std::string& description);

/// A source of one or several elements, whose description may end with the format of its data.
ElementOrError makeSourceBin(const std::string& description);

/// The element called `name` inside `bin`; null without one.
GRef<GstElement> elementIn(GstElement& bin, const char* name);

/// Hands every sample of an appsink to `handler`, on a streaming thread. The handler lives as long as the appsink.
void handleSamples(GstElement& appsink, std::function<void(SharedSample)> handler);

}  // namespace orivex::gtk
