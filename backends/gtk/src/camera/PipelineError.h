#pragma once

#include <string>
#include <variant>

#include <glib.h>

#include "../glib/GRef.h"

#include "orivex/platform/ports/Camera.h"

typedef struct _GstElement GstElement;

namespace orivex::gtk {

/// What GStreamer said when something went wrong.
struct PipelineError {
  GQuark domain = 0;
  int code = 0;
  std::string text;    ///< for the log
  std::string origin;  ///< name of the element that said so; may be empty
};

/// An element, or why there is none.
using ElementOrError = std::variant<GRef<GstElement>, PipelineError>;

/// Takes over `error`, which may be null.
PipelineError adoptError(GError* error, std::string origin = {});

/// An error of our own words.
PipelineError pipelineError(std::string text);

/// What the error means to somebody who wants to use a camera that has not shown anything yet.
CameraFailure failureOf(const PipelineError& error);

}  // namespace orivex::gtk
