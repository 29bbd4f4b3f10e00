// The three standard streams, as every verb uses them.
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
/// Reports that standard output cannot be written, by `errno`, and returns the exit code.
ExitCode failUnwritten();
/// Makes `fail` write errors as JSON documents from now on.
void reportErrorsAsJson();
/// Reports the error on standard error and returns its exit code.
ExitCode fail(const CommandError& error);
/// One document; on one line when the indentation is negative.
std::string asText(const nlohmann::json& value, int indentation);
/// Text that may come from other programs, made safe for a terminal line by line.
std::string printableLines(std::string_view text);

/// Whether the user can be asked: standard input and standard error are terminals.
bool canAsk();
/// The line that the user typed; absent at the end of input.
std::optional<std::string> readLine();

} // namespace kova::cli
