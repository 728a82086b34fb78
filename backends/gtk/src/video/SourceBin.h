#pragma once

#include <string>

#include "PipelineError.h"

namespace orivex::gtk {

/// A source that is described as gst-launch takes it, several elements if need be, as one element called `name` (null:
/// any). Worker.
ElementOrError makeSourceBin(const std::string& description, const char* name);

}  // namespace orivex::gtk
