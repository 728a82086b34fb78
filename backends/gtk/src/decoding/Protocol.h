#pragma once

#include <cstdint>

/// The messages between the component and its decoders, over a stream of which both hold an end: a decoder writes one
/// byte when it is ready, then takes one request at a time, with the file's descriptor beside it, and answers it. Both
/// are of one build, so numbers travel as they lie in memory.
namespace orivex::gtk {

/// Descriptor of a decoder's end.
inline constexpr int decoderSocket = 3;

/// Argument of a decoder that looks into videos; pictures need less.
inline constexpr const char* videoDecoder = "video";

enum class Decoding : std::uint32_t {
  recode,   ///< a picture as an upright JPEG of its size and of `quality`
  picture,  ///< the pixels of a picture, upright, no more than `width` by `height` and never enlarged
  frame,    ///< the same of a video's first frame, with the video's duration
  video,    ///< duration and size of a video, and its first frame as a JPEG of `quality`
};

struct DecodingRequest {
  Decoding kind;
  std::uint32_t width = 0;  // pixels
  std::uint32_t height = 0;
  double quality = 0;  // 0 to 1
};

/// Followed by `bytes` bytes: the JPEG, rows of pixels without gaps, or why there is neither.
struct DecodingReply {
  std::uint32_t isFailure = 0;
  std::uint32_t width = 0;  // pixels
  std::uint32_t height = 0;
  std::uint32_t channels = 0;  // 3 or 4 bytes a pixel; 0 where there are no pixels
  double duration = 0;         // seconds
  std::uint64_t bytes = 0;
};

}  // namespace orivex::gtk
