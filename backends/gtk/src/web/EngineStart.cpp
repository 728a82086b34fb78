#include "EngineStart.h"

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

#include "../Contained.h"
#include "../glib/GMemory.h"

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

bool isCancelled(const GErrorPtr& error) {
  return error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED);
}

}  // namespace

EngineStart::~EngineStart() {
  if (asking_) g_cancellable_cancel(asking_.get());
}

void EngineStart::look(Completion completion) {
  waiting_.push_back(std::move(completion));
  if (waiting_.size() > 1) return;
  if (auto failure = lackOfRoom(g_get_user_runtime_dir())) {
    mainQueue_.async(alive_.guard([this, failure = std::move(failure)] { end(failure); }));
  } else {
    askBus();
  }
}

// The question that WebKit is going to put, and to wait for without a limit of its own: the same service is awake then.
void EngineStart::askBus() {
  asking_ = GRef<GCancellable>::adopt(g_cancellable_new());
  mainQueue_.asyncAfter(busPatience, alive_.guard([this, asking = asking_] {
    if (asking_.get() != asking.get()) return;
    g_cancellable_cancel(asking.get());
    end("the session bus does not answer");
  }));
  g_bus_get(G_BUS_TYPE_SESSION, asking_.get(), connected, this);
}

// An error is an answer too; a cancelled question is not, and this object may be gone.
void EngineStart::connected(GObject* /*source*/, GAsyncResult* result, gpointer data) noexcept {
  GError* raised = nullptr;
  const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &raised));
  const GErrorPtr error(raised);
  if (isCancelled(error)) return;
  auto& self = *static_cast<EngineStart*>(data);
  if (!bus) return contained([&] { self.end(std::nullopt); });
  g_dbus_connection_call(bus.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr, nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, self.asking_.get(), answered, &self);
}

void EngineStart::answered(GObject* source, GAsyncResult* result, gpointer data) noexcept {
  GError* raised = nullptr;
  GVariant* const address = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &raised);
  const GErrorPtr error(raised);
  if (address) g_variant_unref(address);
  if (isCancelled(error)) return;
  contained([&] { static_cast<EngineStart*>(data)->end(std::nullopt); });
}

void EngineStart::end(const std::optional<std::string>& failure) {
  asking_ = nullptr;
  possible_ = !failure;
  for (auto& completion : std::exchange(waiting_, {})) std::move(completion)(failure);
}

}  // namespace orivex::gtk
