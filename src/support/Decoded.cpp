#include "support/Decoded.h"

#include <utility>

namespace kova {

namespace {

std::string describe(const std::string& path, const std::string& reason) {
    return path.empty() ? reason : path + ": " + reason;
}

} // namespace

DecodingError::DecodingError(std::string path, const std::string& reason) :
    std::runtime_error(describe(path, reason)), path_(std::move(path)) {}

} // namespace kova
