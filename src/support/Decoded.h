// The result of decoding a stored record: the record, or an error that names its place in the document.
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

/// The record, or the error.
template <class T>
using Decoded = std::variant<T, DecodingError>;

} // namespace kova
