// The result of reading a stored record: the record, or what is wrong with it and where. Code that only passes records
// on needs no other header.
#pragma once

#include <stdexcept>
#include <string>
#include <variant>

namespace kova {

class DecodingError : public std::runtime_error {
  public:
    /// `path` is empty at the top of the document.
    DecodingError(std::string path, const std::string& reason);
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

/// What a decode function gives: the record, or what is wrong and where.
template <class T>
using Decoded = std::variant<T, DecodingError>;

} // namespace kova
