// Decodes pictures and videos of strangers for the component, which starts it and talks to it over a stream. Whatever a
// file does to it, the component goes on.

#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include <sys/socket.h>
#include <unistd.h>

#include "Lockdown.h"
#include "PictureReading.h"
#include "VideoReading.h"
#include "decoding/Protocol.h"
#include "pictures/RegularFile.h"

namespace orivex::gtk {
namespace {

// The component waits for ten seconds and then ends this process, unless it has ended itself.
constexpr unsigned longestDecoding = 12;

struct Answer {
  DecodingReply facts;
  std::string bytes;
};

Answer pixelsAnswer(GdkPixbuf* picture, double duration) {
  const auto width = static_cast<std::uint32_t>(gdk_pixbuf_get_width(picture));
  const auto height = static_cast<std::uint32_t>(gdk_pixbuf_get_height(picture));
  const auto channels = static_cast<std::uint32_t>(gdk_pixbuf_get_n_channels(picture));
  const auto* row = reinterpret_cast<const char*>(gdk_pixbuf_read_pixels(picture));
  Answer answer{{.width = width, .height = height, .channels = channels, .duration = duration}, {}};
  answer.bytes.reserve(std::size_t{width} * height * channels);
  for (std::uint32_t y = 0; y < height; ++y, row += gdk_pixbuf_get_rowstride(picture)) {
    answer.bytes.append(row, std::size_t{width} * channels);
  }
  return answer;
}

struct MakeAnswer {
  Answer operator()(const Failure& failure) const { return {{.isFailure = 1}, failure.description}; }
  Answer operator()(JpegImage&& image) const { return (*this)(VideoFacts{0, image.size, std::move(image.bytes)}); }
  Answer operator()(VideoFacts&& facts) const {
    return {{.width = static_cast<std::uint32_t>(facts.size.width),
             .height = static_cast<std::uint32_t>(facts.size.height),
             .duration = facts.duration},
            std::move(facts.firstFrameJpeg)};
  }
  Answer operator()(const GRef<GdkPixbuf>& picture) const { return pixelsAnswer(picture.get(), 0); }
  Answer operator()(const ScaledFrame& frame) const { return pixelsAnswer(frame.picture.get(), frame.duration); }
};

Answer answerTo(const DecodingRequest& request, std::FILE* file) {
  const auto answer = [](auto result) { return std::visit(MakeAnswer(), std::move(result)); };
  const PixelSize most{static_cast<int>(request.width), static_cast<int>(request.height)};
  switch (request.kind) {
    case Decoding::recode:
      return answer(recodePicture(file, request.quality));
    case Decoding::picture:
      return answer(readPicture(file, most));
    case Decoding::frame:
      return answer(readFrame(fileno(file), most));
    case Decoding::video:
      return answer(measureVideo(fileno(file), request.quality));
  }
  return MakeAnswer()(Failure{"is not asked for"});
}

FilePtr receiveRequest(DecodingRequest& request) {
  iovec part{&request, sizeof request};
  int descriptor = -1;
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof descriptor)] = {};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  if (recvmsg(decoderSocket, &message, MSG_WAITALL | MSG_CMSG_CLOEXEC) != static_cast<ssize_t>(sizeof request)) {
    return nullptr;
  }
  const auto* const header = CMSG_FIRSTHDR(&message);
  if (!header) return nullptr;
  std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
  return FilePtr(fdopen(descriptor, "rb"));
}

bool send(const void* data, std::size_t length) {
  const auto* next = static_cast<const char*>(data);
  while (length > 0) {
    const auto sent = ::send(decoderSocket, next, length, MSG_NOSIGNAL);
    if (sent <= 0) return false;
    next += sent;
    length -= static_cast<std::size_t>(sent);
  }
  return true;
}

// False when nobody asks any more.
bool serve() {
  DecodingRequest request{};
  const auto file = receiveRequest(request);
  if (!file) return false;
  alarm(longestDecoding);
  Answer answer;
  try {
    answer = answerTo(request, file.get());
  } catch (const std::exception& error) {
    answer = MakeAnswer()(Failure{error.what()});
  }
  alarm(0);
  answer.facts.bytes = answer.bytes.size();
  return send(&answer.facts, sizeof answer.facts) && send(answer.bytes.data(), answer.bytes.size());
}

}  // namespace
}  // namespace orivex::gtk

int main(int argc, char** argv) {
  using namespace orivex::gtk;
  // Whatever the host does with its signals, the alarm ends this process.
  sigset_t signals;
  sigfillset(&signals);
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  std::signal(SIGALRM, SIG_DFL);
  if (argc > 1 && std::string_view(argv[1]) == videoDecoder) prepareVideos();
  lockDown();
  if (!send("r", 1)) {
    std::fputs("This program serves OrivexSDK and does nothing by itself.\n", stderr);
    return 1;
  }
  while (serve()) {
  }
  return 0;
}
