#include "Decoder.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <utility>
#include <vector>

#include "../pictures/RegularFile.h"

namespace orivex::gtk {
namespace {

// A decoded picture takes memory, and more processes than cores gain nothing.
constexpr int mostAtOnce = 2;

// Long enough to serve the next of a visitor's steps, short enough to leave nothing behind in an idle host.
constexpr double longestIdleness = 5;  // seconds

}  // namespace

/// The running decoders.
class Decoder::Pool {
 public:
  explicit Pool(std::string program) : program_(std::move(program)) {}

  std::variant<Decoded, Failure> decode(const DecodingRequest& request, int file) {
    const bool isVideo = request.kind == Decoding::video || request.kind == Decoding::frame;
    const auto turn = enter();
    auto process = takeIdle(isVideo);
    if (!process) {
      auto started = DecoderProcess::start(program_, isVideo);
      if (auto* const failure = std::get_if<Failure>(&started)) return std::move(*failure);
      process = std::move(std::get<std::unique_ptr<DecoderProcess>>(started));
    }
    auto result = process->decode(request, file);
    if (process->isUsable()) keep(std::move(process), isVideo);
    return result;
  }

  void endIdle() {
    const std::lock_guard lock(mutex_);
    const auto now = DecoderProcess::Clock::now();
    std::erase_if(idle_,
                  [&](const Idle& idle) { return now - idle.since >= std::chrono::duration<double>(longestIdleness); });
  }

 private:
  struct Idle {
    std::unique_ptr<DecoderProcess> process;
    bool isForVideos;
    DecoderProcess::Clock::time_point since;
  };

  struct Leave {
    void operator()(Pool* pool) const {
      const std::lock_guard lock(pool->mutex_);
      --pool->working_;
      pool->free_.notify_one();
    }
  };

  // Waits until fewer than `mostAtOnce` decode; the caller decodes as long as it keeps what it gets.
  std::unique_ptr<Pool, Leave> enter() {
    std::unique_lock lock(mutex_);
    free_.wait(lock, [this] { return working_ < mostAtOnce; });
    ++working_;
    return std::unique_ptr<Pool, Leave>(this);
  }

  std::unique_ptr<DecoderProcess> takeIdle(bool isVideo) {
    const std::lock_guard lock(mutex_);
    const auto found =
        std::find_if(idle_.begin(), idle_.end(), [&](const Idle& idle) { return idle.isForVideos == isVideo; });
    if (found == idle_.end()) return nullptr;
    auto process = std::move(found->process);
    idle_.erase(found);
    return process;
  }

  void keep(std::unique_ptr<DecoderProcess> process, bool isVideo) {
    const std::lock_guard lock(mutex_);
    idle_.push_back({std::move(process), isVideo, DecoderProcess::Clock::now()});
  }

  const std::string program_;
  std::mutex mutex_;
  std::condition_variable free_;
  std::vector<Idle> idle_;
  int working_ = 0;
};

Decoder::Decoder(MainQueue& queue, std::string program)
    : queue_(queue), pool_(std::make_shared<Pool>(std::move(program))) {}

Decoder::~Decoder() = default;

std::variant<Decoded, Failure> Decoder::decode(const DecodingRequest& request, const std::string& path) const {
  auto opened = openRegularFile(path);
  if (auto* const failure = std::get_if<Failure>(&opened)) return std::move(*failure);
  auto result = pool_->decode(request, fileno(std::get<FilePtr>(opened).get()));
  queue_.asyncAfter(longestIdleness, [&queue = queue_, weak = std::weak_ptr<Pool>(pool_)] {
    // Waiting for the end of a process is nothing for the main thread.
    if (auto pool = weak.lock()) queue.global([pool = std::move(pool)] { pool->endIdle(); });
  });
  return result;
}

}  // namespace orivex::gtk
