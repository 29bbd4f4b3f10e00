// Reading and writing the three standard streams; all verbs use these functions.
#pragma once

#include "cli/Agent.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace kova::cli {

/// Writes the result to standard output. If that fails, reports the error and returns its exit code.
ExitCode print(std::string_view text);
/// Writes to standard error; a failure cannot be reported anywhere.
void printToStandardError(std::string_view text);
/// Reports that standard output cannot be written, with the reason in `errno`, and returns the exit code.
ExitCode failUnwritten();
/// From now on `fail` writes errors as JSON documents.
void reportErrorsAsJson();
/// Reports the error on standard error and returns its exit code.
ExitCode fail(const CommandError& error);
/// The value as JSON text; on one line if the indentation is negative.
std::string asText(const nlohmann::json& value, int indentation);
/// The text with “?” for everything that could control the terminal, such as control sequences in the titles of
/// windows. Newlines are kept.
std::string printableLines(std::string_view text);

/// True if the user can be asked a question: standard input and standard error are terminals.
bool canAsk();
/// The line that the user typed; absent at the end of input.
std::optional<std::string> readLine();

} // namespace kova::cli
