// Makes records fit to be shown to others: what people have written (titles, names of scenes, messages) is replaced by
// words made up at random, the same text by the same word. Nobody can tell the text from the word, also not by trying
// texts, and words of two reports have nothing to do with each other.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <random>
#include <string>
#include <string_view>

namespace kova::cli {

class Pseudonyms {
  public:
    /// The record with every text replaced, but for those under keys that are known to hold nothing of the kind:
    /// ids, applications, kinds of things. A key that is not known yet is thus no leak.
    nlohmann::json applied(const nlohmann::json& record);
    /// "text-9f3a21bc"; an empty text stays empty.
    std::string wordFor(const std::string& text);

  private:
    nlohmann::json applied(const nlohmann::json& value, std::string_view key);

    std::map<std::string, std::string> words_;
    std::random_device random_;
};

} // namespace kova::cli
