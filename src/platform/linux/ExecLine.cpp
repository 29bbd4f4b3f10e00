#include "platform/linux/ExecLine.h"

#include "support/Quoted.h"

#include <optional>

namespace kova {

namespace {

constexpr std::string_view kBlanks = " \t\n\r";
constexpr std::string_view kEscapedInQuotes = "\"`$\\";
/// Codes for files and URLs, and deprecated codes.
constexpr std::string_view kDroppedCodes = "fFuUdDnNvm";

class ExecLineReader {
  public:
    ExecLineReader(std::string_view line, const ExecLineContext& context) : rest_(line), context_(context) {}

    std::variant<std::vector<std::string>, std::string> read() {
        while (!rest_.empty() && !problem_) readCharacter();
        if (!problem_) endWord();
        if (!problem_) checkProgram();
        if (problem_) return *problem_;
        return std::move(words_);
    }

  private:
    void readCharacter() {
        const char c = take();
        if (kBlanks.find(c) != std::string_view::npos) {
            endWord();
        } else if (c == '"') {
            isStarted_ = true;
            readQuoted();
        } else if (c == '\'') {
            // Single quotes are not part of the format, but many entries use them.
            isStarted_ = true;
            const auto end = rest_.find('\'');
            if (end == std::string_view::npos) return fail("has an Exec line with a quote that does not end");
            word_ += rest_.substr(0, end);
            rest_.remove_prefix(end + 1);
        } else if (c == '\\') {
            if (rest_.empty()) return fail("has an Exec line that ends in a backslash");
            add(take());
        } else if (c == '%') {
            readCode();
        } else {
            add(c);
        }
    }

    void readQuoted() {
        while (!rest_.empty() && !problem_) {
            const char c = take();
            if (c == '"') return;
            const bool isEscape =
                c == '\\' && !rest_.empty() && kEscapedInQuotes.find(rest_[0]) != std::string_view::npos;
            if (isEscape) {
                word_ += take();
            } else if (c == '%') {
                readCode();
            } else {
                word_ += c;
            }
        }
        if (!problem_) fail("has an Exec line with a quote that does not end");
    }

    void readCode() {
        if (rest_.empty()) return fail("has an Exec line that ends in a percent sign");
        const char code = take();
        if (code == '%') return add('%');
        if (code == 'c') return addText(context_.name);
        if (code == 'k') return addText(context_.entryPath);
        if (code == 'i') return addIcon();
        if (kDroppedCodes.find(code) == std::string_view::npos) {
            fail(std::string("has an Exec line with an unknown field code, %") + code);
        }
    }

    /// The icon becomes two words, so the code is expanded only if it is a whole word.
    void addIcon() {
        const bool isAlone = !isStarted_ && (rest_.empty() || kBlanks.find(rest_[0]) != std::string_view::npos);
        if (!isAlone || context_.iconName.empty()) return;
        words_.emplace_back("--icon");
        words_.push_back(context_.iconName);
    }

    void add(char c) {
        isStarted_ = true;
        word_ += c;
    }
    void addText(const std::string& text) {
        isStarted_ = true;
        word_ += text;
    }

    /// Adds the word that was read. A word that consists only of dropped codes is not added.
    void endWord() {
        if (isStarted_) words_.push_back(std::move(word_));
        word_.clear();
        isStarted_ = false;
    }

    void checkProgram() {
        for (const auto& word : words_) {
            if (word.find('\0') != std::string::npos) return fail("has an Exec line with a zero byte");
        }
        if (words_.empty() || words_[0].empty()) return fail("has an Exec line without a program");
        const std::string& program = words_[0];
        const bool isRelative = program[0] != '/' && program.find('/') != std::string::npos;
        if (isRelative || program.find('=') != std::string::npos) {
            fail("has an Exec line that begins with " + quoted(program) + ", which names no program");
        }
    }

    char take() {
        const char c = rest_[0];
        rest_.remove_prefix(1);
        return c;
    }
    void fail(std::string problem) { problem_ = std::move(problem); }

    std::string_view rest_;
    const ExecLineContext& context_;
    std::vector<std::string> words_;
    std::string word_;
    bool isStarted_ = false; // a word has begun, which may be empty
    std::optional<std::string> problem_;
};

} // namespace

std::variant<std::vector<std::string>, std::string> wordsOfExecLine(std::string_view line,
                                                                    const ExecLineContext& context) {
    return ExecLineReader(line, context).read();
}

} // namespace kova
