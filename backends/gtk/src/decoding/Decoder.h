#pragma once

#include <memory>
#include <string>
#include <variant>

#include "DecoderProcess.h"

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Where foreign pictures and videos are decoded: in processes of ours that hold little memory and reach no network, so
/// that a harmful file costs nothing but itself. Two work at a time; they are started when there is work, end when
/// there has been none for a while, and are started anew after one has died. Any thread.
class Decoder {
 public:
  /// `program`: path of the decoder.
  Decoder(MainQueue& queue, std::string program);
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder();

  /// Has the file at `path` decoded. Blocks: at most 10 s once it is its turn and the decoder runs.
  std::variant<Decoded, Failure> decode(const DecodingRequest& request, const std::string& path) const;

 private:
  class Pool;

  MainQueue& queue_;
  const std::shared_ptr<Pool> pool_;
};

}  // namespace orivex::gtk
