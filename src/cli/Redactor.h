// Replaces private texts in a report, such as titles, names of scenes and messages, by random words. Within one report
// equal texts get the same word. The words are not derived from the texts, so that no text can be guessed from its
// word.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <random>
#include <string>
#include <string_view>

namespace kova::cli {

class Redactor {
  public:
    /// The record with every text replaced, except the values of keys that are known to be harmless, such as ids,
    /// applications and kinds. So a key that is added later reveals nothing.
    nlohmann::json applied(const nlohmann::json& record);
    /// "text-9f3a21bc"; an empty text stays empty.
    std::string wordFor(const std::string& text);

  private:
    nlohmann::json applied(const nlohmann::json& value, std::string_view key);

    std::map<std::string, std::string> words_;
    std::random_device random_;
};

} // namespace kova::cli
