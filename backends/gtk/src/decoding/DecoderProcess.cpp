#include "decoding/DecoderProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

constexpr std::chrono::seconds longestDecoding{10};

// The first look at a device's video plug-ins takes seconds; what it finds is kept for all later starts.
constexpr std::chrono::seconds longestStart{10};
constexpr std::chrono::seconds longestVideoStart{60};

// Of a JPEG or a message; more than any picture that is decoded fills.
constexpr std::uint64_t mostBytes = std::uint64_t{256} << 20U;

Failure systemFailure(const char* what, int code) {
  return Failure{std::string(what) + ": " + std::generic_category().message(code)};
}

/// What a decoder begins with: one end of the stream, and nothing else of this process.
class Surroundings {
 public:
  explicit Surroundings(int socket) {
    posix_spawn_file_actions_init(&files_);
    posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files_, socket, decoderSocket);
    posix_spawn_file_actions_addclosefrom_np(&files_, decoderSocket + 1);
    posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;
  ~Surroundings() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }

  const posix_spawn_file_actions_t* files() const { return &files_; }
  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

// Whether the answer can be one to the request: the decoder has read foreign bytes and is not believed.
bool fits(const DecodingReply& reply, const DecodingRequest& request) {
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
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return systemFailure("no socket", errno);
  std::string name = program;
  std::string role = forVideos ? videoDecoder : "";
  std::array<char*, 3> arguments{name.data(), role.data(), nullptr};
  pid_t process = 0;
  const Surroundings surroundings(ends[1]);
  const int code = posix_spawn(&process, program.c_str(), surroundings.files(), surroundings.attributes(),
                               arguments.data(), environ);
  close(ends[1]);
  if (code != 0) {
    close(ends[0]);
    return systemFailure("no decoder", code);
  }
  std::unique_ptr<DecoderProcess> started(new DecoderProcess(process, ends[0]));
  char ready = 0;
  if (!started->receive(&ready, 1, Clock::now() + (forVideos ? longestVideoStart : longestStart))) {
    return Failure{"the decoder does not start"};
  }
  return started;
}

DecoderProcess::~DecoderProcess() {
  close(socket_);
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

std::variant<Decoded, Failure> DecoderProcess::decode(const DecodingRequest& request, int file) {
  isUsable_ = false;
  const auto deadline = Clock::now() + longestDecoding;
  if (!send(request, file)) return Failure{"the decoder has ended"};
  auto result = answer(request, deadline);
  if (isLate_) return Failure{"takes too long to be decoded"};
  return result;
}

std::variant<Decoded, Failure> DecoderProcess::answer(const DecodingRequest& request, Clock::time_point deadline) {
  Decoded decoded;
  if (!receive(reinterpret_cast<char*>(&decoded.facts), sizeof decoded.facts, deadline)) {
    return Failure{"needs too much memory, or harms its decoder"};
  }
  if (!fits(decoded.facts, request)) return Failure{"makes its decoder talk nonsense"};
  decoded.bytes.resize(decoded.facts.bytes);
  if (!receive(decoded.bytes.data(), decoded.bytes.size(), deadline)) return Failure{"has ended its decoder"};
  isUsable_ = true;
  if (decoded.facts.isFailure) return Failure{std::move(decoded.bytes)};
  return decoded;
}

bool DecoderProcess::send(const DecodingRequest& request, int file) {
  DecodingRequest copy = request;
  iovec part{&copy, sizeof copy};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof file)> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  auto* const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof file);
  std::memcpy(CMSG_DATA(header), &file, sizeof file);
  return sendmsg(socket_, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof copy);
}

bool DecoderProcess::receive(char* data, std::size_t length, Clock::time_point deadline) {
  while (length > 0) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd waiting{socket_, POLLIN, 0};
    const int ready = left > 0 ? poll(&waiting, 1, static_cast<int>(left)) : 0;
    if (ready < 0 && errno == EINTR) continue;
    isLate_ = ready == 0;
    if (ready <= 0) return false;
    const auto got = recv(socket_, data, length, MSG_DONTWAIT);
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (got <= 0) return false;
    data += got;
    length -= static_cast<std::size_t>(got);
  }
  return true;
}

}  // namespace orivex::gtk
