#include "DecoderProcess.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <gio/gunixfdmessage.h>
#include <sys/socket.h>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr std::chrono::seconds longestDecoding{10};

// The first look at a device's video plug-ins takes seconds; what it finds is kept for all later starts.
constexpr std::chrono::seconds longestStart{10};
constexpr std::chrono::seconds longestVideoStart{60};

// Of a JPEG or a message; more than any picture that is decoded fills.
constexpr std::uint64_t mostBytes = std::uint64_t{256} << 20U;

// Whether the reply can be one to the request: the decoder has read foreign bytes and is not trusted.
bool isPlausible(const DecodingReply& reply, const DecodingRequest& request) {
  if (reply.isFailure || request.kind == Decoding::recode || request.kind == Decoding::video) {
    return reply.bytes <= mostBytes;
  }
  return reply.width > 0 && reply.width <= request.width && reply.height > 0 && reply.height <= request.height &&
         (reply.channels == 3 || reply.channels == 4) &&
         reply.bytes == std::uint64_t{reply.width} * reply.height * reply.channels;
}

}  // namespace

std::variant<std::unique_ptr<DecoderProcess>, Failure> DecoderProcess::start(const std::string& program,
                                                                             bool forVideos) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return Failure{"no socket: " + std::generic_category().message(errno)};
  }
  auto socket = GRef<GSocket>::adopt(g_socket_new_from_fd(ends[0], nullptr));
  // Of this process's descriptors it gets no other.
  const auto launcher = GRef<GSubprocessLauncher>::adopt(g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_NONE));
  g_subprocess_launcher_take_fd(launcher.get(), ends[1], decoderSocket);
  GError* raised = nullptr;
  auto process = GRef<GSubprocess>::adopt(g_subprocess_launcher_spawn(launcher.get(), &raised, program.c_str(),
                                                                      forVideos ? videoDecoder : nullptr, nullptr));
  const GErrorPtr error(raised);
  if (!process) return Failure{std::string("no decoder: ") + error->message};
  g_subprocess_launcher_close(launcher.get());  // this process's copy of the other end
  std::unique_ptr<DecoderProcess> started(new DecoderProcess(std::move(process), std::move(socket)));
  char ready = 0;
  if (!started->receive(&ready, 1, Clock::now() + (forVideos ? longestVideoStart : longestStart))) {
    return Failure{"the decoder does not start"};
  }
  return started;
}

DecoderProcess::~DecoderProcess() {
  g_subprocess_force_exit(process_.get());
  g_subprocess_wait(process_.get(), nullptr, nullptr);
}

std::variant<Decoded, Failure> DecoderProcess::decode(const DecodingRequest& request, int file) {
  isUsable_ = false;
  const auto deadline = Clock::now() + longestDecoding;
  const auto failure = [this](const char* what) { return Failure{isLate_ ? "takes too long to be decoded" : what}; };
  if (!send(request, file)) return failure("the decoder has ended");
  Decoded decoded;
  auto& [facts, bytes] = decoded;
  if (!receive(reinterpret_cast<char*>(&facts), sizeof facts, deadline)) {
    return failure("needs too much memory, or harms its decoder");
  }
  if (!isPlausible(facts, request)) return failure("makes its decoder answer nonsense");
  bytes.resize(facts.bytes);
  if (!receive(bytes.data(), bytes.size(), deadline)) return failure("has ended its decoder");
  isUsable_ = true;
  if (facts.isFailure) return Failure{std::move(bytes)};
  return decoded;
}

bool DecoderProcess::send(const DecodingRequest& request, int file) {
  const auto descriptor = GRef<GSocketControlMessage>::adopt(g_unix_fd_message_new());
  if (!g_unix_fd_message_append_fd(G_UNIX_FD_MESSAGE(descriptor.get()), file, nullptr)) return false;
  auto* beside = descriptor.get();
  GOutputVector part{&request, sizeof request};
  return g_socket_send_message(socket_.get(), nullptr, &part, 1, &beside, 1, G_SOCKET_MSG_NONE, nullptr, nullptr) ==
         static_cast<gssize>(sizeof request);
}

bool DecoderProcess::receive(char* data, std::size_t length, Clock::time_point deadline) {
  while (length > 0) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now()).count();
    isLate_ = left <= 0 || !g_socket_condition_timed_wait(socket_.get(), G_IO_IN, left, nullptr, nullptr);
    const auto count = isLate_ ? 0 : g_socket_receive(socket_.get(), data, length, nullptr, nullptr);
    if (count <= 0) return false;
    data += count;
    length -= static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace orivex::gtk
