#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {

/// What a screen reader gets of this process over the accessibility bus. Only the phone has one.
class ScreenReader {
 public:
  /// Older ones know nothing of announcements and speak of notifications that come up.
  enum class Age { recent, old };

  explicit ScreenReader(Age age = Age::recent);
  ScreenReader(const ScreenReader&) = delete;
  ScreenReader& operator=(const ScreenReader&) = delete;
  ~ScreenReader();

  struct Control {
    std::uint32_t role = 0;  // as the bus numbers them
    std::string name;
    std::string description;
  };

  /// The controls of this process's windows, and what else takes the focus.
  std::vector<Control> controls() const;

  /// Whether there is a control with this in its name or in its description.
  bool finds(const std::string& part) const;

  /// The controls that a reader could only call by their kind.
  std::string nameless() const;

  /// Waits for this text, and returns all that it was told to say since the last call, with bars in between.
  std::string heardUntil(const std::string& text);

 protected:
  using Place = std::pair<std::string, std::string>;  // a name on the bus and a path

  GDBusConnection* connection() const { return connection_.get(); }
  // From another thread than the one that runs the main loop.
  GVariantPtr call(const Place& place, const char* interface, const char* method, GVariant* arguments) const;
  Place parentOf(const Place& place) const;
  std::vector<Place> applications() const;
  std::vector<Place> childrenOf(const Place& place) const;

 private:
  void listen(const char* event, const char* member, const char* detail);
  void told(const Place& place, GVariant* parameters);
  GVariantPtr propertyOf(const Place& place, const char* name) const;
  std::string textOf(const Place& place, const char* property = "Name") const;
  std::string spokenAt(const Place& place) const;
  bool isOurs(const std::string& name) const;
  void read(const Place& place, const Place& from, std::vector<Control>& controls) const;

  const Age age_;
  GRef<GDBusConnection> connection_;
  guint subscription_ = 0;
  std::vector<Place> shown_;  // notifications whose words were not asked for yet
  std::vector<std::string> heard_;
};

}  // namespace orivex::gtk
