#include "decoding/Decoder.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <utility>
#include <vector>

#include "pictures/RegularFile.h"

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
    const Turn turn(*this);
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
    std::vector<Idle> ended;
    const std::lock_guard lock(mutex_);
    const auto now = DecoderProcess::Clock::now();
    const auto first = std::partition(idle_.begin(), idle_.end(), [&](const Idle& idle) {
      return now - idle.since < std::chrono::duration<double>(longestIdleness);
    });
    ended.insert(ended.end(), std::make_move_iterator(first), std::make_move_iterator(idle_.end()));
    idle_.erase(first, idle_.end());
  }

 private:
  struct Idle {
    std::unique_ptr<DecoderProcess> process;
    bool isForVideos;
    DecoderProcess::Clock::time_point since;
  };

  /// One of the few places at work.
  class Turn {
   public:
    explicit Turn(Pool& pool) : pool_(pool) {
      std::unique_lock lock(pool_.mutex_);
      pool_.free_.wait(lock, [this] { return pool_.working_ < mostAtOnce; });
      ++pool_.working_;
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() {
      const std::lock_guard lock(pool_.mutex_);
      --pool_.working_;
      pool_.free_.notify_one();
    }

   private:
    Pool& pool_;
  };

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
