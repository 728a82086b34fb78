#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "FileBytes.h"
#include "PersonalTraces.h"

namespace orivex {
namespace {

// More boxes than this are no camera's.
constexpr int mostBoxes = 65536;

struct Box {
  std::int64_t at = 0;
  std::int64_t content = 0;
  std::int64_t end = 0;
  std::string type;
};

class Walk {
 public:
  explicit Walk(FileBytes& file) : file_(file) {}

  std::vector<Overwrite> traces() {
    each(0, file_.size(), [this](const Box& box) { topLevel(box); });
    return std::move(traces_);
  }

 private:
  using Visit = std::function<void(const Box&)>;

  void each(std::int64_t from, std::int64_t to, const Visit& visit) {
    for (auto at = from; at + 8 <= to && ++boxes_ < mostBoxes;) {
      auto length = static_cast<std::int64_t>(file_.number(at, 4));
      std::int64_t head = 8;
      if (length == 1) {
        length = static_cast<std::int64_t>(file_.number(at + 8, 8));
        head = 16;
      } else if (length == 0) {
        length = to - at;  // up to the end
      }
      if (length < head || length > to - at) return;
      visit({at, at + head, at + length, file_.read(at + 4, 4)});
      at += length;
    }
  }

  void topLevel(const Box& box) {
    if (box.type == "moov") {
      film(box);
    } else if (box.type == "uuid" || box.type == "udta") {
      drop(box);
    } else if (box.type == "meta") {
      picture(box);
    }
  }

  // Who keeps a place in a film keeps it in the user data or in the metadata, of all or of one track.
  void film(const Box& parent) {
    each(parent.content, parent.end, [this](const Box& box) {
      if (box.type == "trak") film(box);
      if (box.type == "udta" || box.type == "meta" || box.type == "uuid") drop(box);
    });
  }

  void drop(const Box& box) {
    traces_.push_back({box.at + 4, 4, "free"});
    traces_.push_back({box.content, box.end - box.content, {}});
  }

  // Items of a picture that hold Exif or XMP.
  void picture(const Box& meta) {
    std::set<std::uint64_t> items;
    std::uint64_t inside = 0;  // data that lie in the box itself
    const auto children = meta.content + 4;
    each(children, meta.end, [&](const Box& box) {
      if (box.type == "iinf") collect(box, items);
      if (box.type == "idat") inside = static_cast<std::uint64_t>(box.content);
    });
    each(children, meta.end, [&](const Box& box) {
      if (box.type == "iloc") locate(box, items, inside);
    });
  }

  void collect(const Box& list, std::set<std::uint64_t>& items) {
    const auto isLong = file_.number(list.content, 1) > 0;
    each(list.content + (isLong ? 8 : 6), list.end, [&](const Box& entry) {
      const int numberBytes = file_.number(entry.content, 1) > 2 ? 4 : 2;
      const auto type = file_.read(entry.content + 4 + numberBytes + 2, 4);
      if (type == "Exif" || type == "mime") items.insert(file_.number(entry.content + 4, numberBytes));
    });
  }

  void locate(const Box& list, const std::set<std::uint64_t>& items, std::uint64_t inside) {
    auto at = list.content;
    const auto next = [&](int bytes) {
      const auto value = file_.number(at, bytes);
      at += bytes;
      return value;
    };
    const auto version = next(1);
    at += 3;
    const auto sizes = next(2);
    const auto sizeAt = [&](unsigned shift) { return static_cast<int>(sizes >> shift & 0xFU); };
    const int numberBytes = version < 2 ? 2 : 4;
    const auto count = next(numberBytes);
    for (std::uint64_t item = 0; item < count && at < list.end && ++boxes_ < mostBoxes; ++item) {
      const bool isTrace = items.contains(next(numberBytes));
      const auto method = version > 0 ? next(2) & 0xFU : 0;
      at += 2;
      const auto base = next(sizeAt(4));
      const auto extents = next(2);
      for (std::uint64_t extent = 0; extent < extents && at < list.end && ++boxes_ < mostBoxes; ++extent) {
        if (version > 0) at += sizeAt(0);
        // Unsigned: the sum of what a damaged file says may be too large.
        const auto place = base + next(sizeAt(12)) + (method == 1 ? inside : 0);
        const auto length = static_cast<std::int64_t>(next(sizeAt(8)));
        if (isTrace && method < 2) overwrite(static_cast<std::int64_t>(place), length);
      }
    }
  }

  void overwrite(std::int64_t at, std::int64_t length) {
    if (at >= 0 && length > 0 && at < file_.size() && length <= file_.size() - at) traces_.push_back({at, length, {}});
  }

  FileBytes& file_;
  std::vector<Overwrite> traces_;
  int boxes_ = 0;
};

}  // namespace

std::vector<Overwrite> boxTraces(FileBytes& file) {
  return Walk(file).traces();
}

}  // namespace orivex
