#pragma once

#include <string>
#include <vector>

namespace orivex::demo {

struct OrderLine {
  std::string picture;  ///< path of its resource, an SVG file
  std::string name;
  std::string description;
  std::string amount;  ///< without the currency's symbol
  int quantity = 1;
};

struct Order {
  std::string number;
  std::string status;
  std::string arrival;
  std::string currency;  ///< its symbol
  std::string total;     ///< without the currency's symbol
  std::vector<OrderLine> lines;
};

/// What the shop's customer bought last, in the language of this process.
Order latestOrder();

}  // namespace orivex::demo
