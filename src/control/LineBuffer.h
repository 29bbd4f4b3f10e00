// Splits a client's input into lines. A line that is too long is reported once and skipped up to its end. So it neither
// fills the memory nor ends the connection.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kova {

class LineBuffer {
  public:
    explicit LineBuffer(std::size_t longestLine) : longestLine_(longestLine) {}

    /// Calls `line` with each complete line, without its line break, and `tooLong` once for each line that is longer
    /// than allowed. `line` must not keep the view that it gets.
    template <class Line, class TooLong>
    void feed(std::string_view bytes, Line line, TooLong tooLong) {
        while (!bytes.empty()) {
            const auto end = bytes.find('\n');
            const auto piece = bytes.substr(0, end);
            if (!isSkipping_ && partial_.size() + piece.size() > longestLine_) {
                isSkipping_ = true;
                partial_ = {};
                tooLong();
            }
            if (end == std::string_view::npos) {
                if (!isSkipping_) partial_.append(piece);
                return;
            }
            if (!isSkipping_) complete(piece, line);
            isSkipping_ = false;
            bytes.remove_prefix(end + 1);
        }
    }

    /// True if the input so far ends within a line.
    bool isInsideLine() const { return isSkipping_ || !partial_.empty(); }

  private:
    template <class Line>
    void complete(std::string_view piece, Line line) {
        if (partial_.empty()) {
            line(piece);
            return;
        }
        const std::string whole = std::move(partial_.append(piece));
        partial_ = {}; // frees the memory, so that an idle client uses none
        line(whole);
    }

    std::size_t longestLine_;
    std::string partial_; // the beginning of a line whose end has not arrived
    bool isSkipping_ = false;
};

} // namespace kova
