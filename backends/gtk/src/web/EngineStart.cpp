#include "EngineStart.h"

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Seconds. A service that is started for the first time may take some.
constexpr double busPatience = 10;

// Bytes, of which WebKit's sandbox writes fewer.
constexpr std::size_t room = 16384;

// A reason when the folder takes no file of some size.
std::optional<std::string> lackOfRoom(const std::string& folder) {
  std::string path = folder + "/orivex-room-XXXXXX";
  const int file = g_mkstemp(path.data());
  if (file < 0) return folder + ": " + g_strerror(errno);
  const std::array<char, room> bytes{};
  const bool written = write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  const int error = errno;
  close(file);
  unlink(path.c_str());
  return written ? std::nullopt : std::optional(folder + ": " + g_strerror(error));
}

}  // namespace

EngineStart::~EngineStart() {
  if (asking_) g_cancellable_cancel(asking_.get());
}

void EngineStart::check(Completion completion) {
  waiting_.push_back(std::move(completion));
  if (waiting_.size() > 1) return;
  if (auto failure = lackOfRoom(g_get_user_runtime_dir())) {
    mainQueue_.async(alive_.guard([this, failure = std::move(failure)] { end(failure); }));
  } else {
    askBus();
  }
}

// WebKit is going to ask this service for its address, and to wait for it without a limit of its own: what answers here
// is awake then. An error is an answer too.
void EngineStart::askBus() {
  asking_ = GRef<GCancellable>::adopt(g_cancellable_new());
  mainQueue_.asyncAfter(busPatience, alive_.guard([this, asking = asking_] {
    if (asking_.get() != asking.get()) return;
    g_cancellable_cancel(asking.get());
    end("the session bus does not answer");
  }));
  const auto answered = asyncCallback([this](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    const auto service = GRef<GDBusProxy>::adopt(g_dbus_proxy_new_for_bus_finish(result, &raised));
    const GErrorPtr error(raised);
    if (!g_error_matches(raised, G_IO_ERROR, G_IO_ERROR_CANCELLED)) end(std::nullopt);  // otherwise this may be gone
  });
  g_dbus_proxy_new_for_bus(G_BUS_TYPE_SESSION, G_DBUS_PROXY_FLAGS_NONE, nullptr, "org.a11y.Bus", "/org/a11y/bus",
                           "org.a11y.Bus", asking_.get(), answered.function, answered.data);
}

void EngineStart::end(const std::optional<std::string>& failure) {
  asking_ = nullptr;
  possible_ = !failure;
  if (failure) log::warning("No page can be shown: " + *failure);
  for (auto& completion : std::exchange(waiting_, {})) std::move(completion)(failure);
}

}  // namespace orivex::gtk
