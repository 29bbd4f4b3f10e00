// Replaces private texts in a record (titles, names of scenes, messages) by random words, the same text by the same
// word. The words are not derived from the texts, so that no text can be guessed from its word, and each report has
// other words.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <random>
#include <string>
#include <string_view>

namespace kova::cli {

class Redactor {
  public:
    /// The record with every text replaced, except under keys with texts that are known to be harmless: ids,
    /// applications, kinds. So a new key leaks nothing.
    nlohmann::json applied(const nlohmann::json& record);
    /// "text-9f3a21bc"; an empty text stays empty.
    std::string wordFor(const std::string& text);

  private:
    nlohmann::json applied(const nlohmann::json& value, std::string_view key);

    std::map<std::string, std::string> words_;
    std::random_device random_;
};

} // namespace kova::cli
