#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orivex/models/MessageModel.h"

namespace orivex::bench {

/// A kind of chat message.
enum class Kind { asciiText, chineseText, media, card, image };

std::string_view nameOf(Kind kind);

/// Messages as they come from the chat page, and as records.
struct Corpus {
  std::vector<std::string> texts;
  std::vector<MessageModel> records;
};

/// 1,000 messages of all kinds: short texts, half of them Chinese, media, cards of 10 items, and one image of 200 kB.
const Corpus& mixedCorpus();

/// Messages of one kind.
const Corpus& corpusOf(Kind kind);

}  // namespace orivex::bench
