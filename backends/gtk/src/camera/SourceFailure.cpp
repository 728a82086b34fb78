#include "SourceFailure.h"

namespace orivex::gtk {

CameraFailure failureOf(const PipelineError& error) {
  if (error.domain != GST_RESOURCE_ERROR) return CameraFailure::failed;
  switch (error.code) {
    case GST_RESOURCE_ERROR_NOT_FOUND:
      return CameraFailure::noCamera;
    case GST_RESOURCE_ERROR_BUSY:
      return CameraFailure::busy;
    // A device file that exists and cannot be opened is one that this user may not open: Video4Linux lets several
    // programs open a camera, and says that it is busy only when the second one asks for frames.
    case GST_RESOURCE_ERROR_NOT_AUTHORIZED:
    case GST_RESOURCE_ERROR_OPEN_READ:
    case GST_RESOURCE_ERROR_OPEN_WRITE:
    case GST_RESOURCE_ERROR_OPEN_READ_WRITE:
      return CameraFailure::accessDenied;
    default:
      return CameraFailure::failed;
  }
}

}  // namespace orivex::gtk
