#include "SourceFailure.h"

#include <algorithm>
#include <array>

#include <gst/gst.h>

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

CameraFailure failureOf(const PipelineError& error) {
  if (error.domain != GST_RESOURCE_ERROR) return CameraFailure::failed;
  const auto* const found = std::find_if(meanings.begin(), meanings.end(),
                                         [&](const Meaning& meaning) { return meaning.code == error.code; });
  return found == meanings.end() ? CameraFailure::failed : found->failure;
}

}  // namespace orivex::gtk
