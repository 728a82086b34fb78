#include "JpegErrors.h"

#include <jerror.h>

namespace orivex::gtk {

JpegErrors::JpegErrors() {
  jpeg_std_error(&state_.manager);
  state_.manager.error_exit = giveUp;
  state_.manager.emit_message = note;
}

void JpegErrors::giveUp(j_common_ptr info) {
  auto* const state = reinterpret_cast<State*>(info->err);
  info->err->format_message(info, state->message.data());
  std::longjmp(state->jump, 1);
}

// Warnings of damaged data are passed over: what can be decoded is shown, as viewers do. A file that ends before any
// row of its picture has nothing to show.
void JpegErrors::note(j_common_ptr info, int level) {
  if (level >= 0 || !info->is_decompressor || info->err->msg_code != JWRN_JPEG_EOF) return;
  const auto* const source = reinterpret_cast<j_decompress_ptr>(info);
  if (source->input_scan_number <= 1 && source->input_iMCU_row == 0) giveUp(info);
}

}  // namespace orivex::gtk
