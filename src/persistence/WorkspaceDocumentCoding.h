// The workspace document as JSON, in its two encodings: for the preferences and for exported files. Unknown keys are
// ignored; an error names the place: `scenes[2].displays[0].layoutID: expected a string`.
// While reading, at most one entry of a list is in memory as JSON. So the memory used is at most a small multiple of
// the text's size, for any text.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "support/Decoded.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

/// The largest exported document, in bytes; reading and writing refuse a larger one.
inline constexpr std::size_t kMaximumImportBytes = std::size_t{64} << 20;
/// The largest number of JSON values in one record, which is a display or placement of a scene, or a rule. Members and
/// elements at any depth count. Reading and writing refuse more.
inline constexpr std::size_t kMaximumValuesPerRecord = 4096;

/// The reason why the written document could not be read again; absent if it could be read. `storedBytes` is the size
/// of `encodeStoredDocument(document)`: for a small document no exported text is made.
std::optional<DecodingError> whyUnreadable(const WorkspaceProductDocument& document, std::size_t storedBytes);

/// The encoding for the preferences: compact, with dates as seconds since 2001.
std::string encodeStoredDocument(const WorkspaceProductDocument& document);
Decoded<WorkspaceProductDocument> decodeStoredDocument(std::string_view json);

/// The encoding for exported files: indented, with sorted keys, and dates as ISO 8601 texts. Neither reading nor
/// writing accepts more than `kMaximumImportBytes`.
Decoded<std::string> encodeExportedDocument(const WorkspaceProductDocument& document);
Decoded<WorkspaceProductDocument> decodeExportedDocument(std::string_view json);

} // namespace kova
