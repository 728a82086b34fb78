#include "PipelineError.h"

#include <algorithm>
#include <array>
#include <utility>

#include <gst/gst.h>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

struct Meaning {
  int code;
  CameraFailure failure;
};

// A device file that exists and cannot be opened is one that this user may not open: Video4Linux lets several programs
// open a camera, and says that it is busy only when the second one asks for frames.
constexpr std::array meanings{
    Meaning{GST_RESOURCE_ERROR_NOT_FOUND, CameraFailure::noCamera},
    Meaning{GST_RESOURCE_ERROR_BUSY, CameraFailure::busy},
    Meaning{GST_RESOURCE_ERROR_NOT_AUTHORIZED, CameraFailure::accessDenied},
    Meaning{GST_RESOURCE_ERROR_OPEN_READ, CameraFailure::accessDenied},
    Meaning{GST_RESOURCE_ERROR_OPEN_WRITE, CameraFailure::accessDenied},
    Meaning{GST_RESOURCE_ERROR_OPEN_READ_WRITE, CameraFailure::accessDenied},
};

}  // namespace

PipelineError adoptError(GError* error, std::string origin) {
  const GErrorPtr owned(error);
  if (!owned) return pipelineError("unknown");
  return {owned->domain, owned->code, owned->message, std::move(origin)};
}

PipelineError pipelineError(std::string text) {
  return {GST_CORE_ERROR, GST_CORE_ERROR_FAILED, std::move(text), {}};
}

CameraFailure failureOf(const PipelineError& error) {
  if (error.domain != GST_RESOURCE_ERROR) return CameraFailure::failed;
  const auto* const found = std::find_if(meanings.begin(), meanings.end(),
                                         [&](const Meaning& meaning) { return meaning.code == error.code; });
  return found == meanings.end() ? CameraFailure::failed : found->failure;
}

}  // namespace orivex::gtk
