#include "Turn.h"

#include <array>

namespace orivex::gtk {

Turn Turn::ofOrientation(int orientation) {
  constexpr std::array<Turn, 9> turns{{{},
                                       {},
                                       {false, true, false},
                                       {false, true, true},
                                       {false, false, true},
                                       {true, false, false},
                                       {true, false, true},
                                       {true, true, true},
                                       {true, true, false}}};
  const auto index = static_cast<std::size_t>(orientation);
  return index < turns.size() ? turns[index] : Turn{};
}

}  // namespace orivex::gtk
