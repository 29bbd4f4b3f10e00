// The workspace document as JSON, in its two encodings. Unknown keys are ignored; an error names the place:
// `scenes[2].displays[0].layoutID: expected a string`.
// Reading holds no more of the document as JSON than one entry of a list, so that memory stays within a small multiple
// of the text, whatever the text is.
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
/// The most JSON values (members, elements, nested ones too) in one display or placement of a scene or in one rule;
/// reading and writing refuse more.
inline constexpr std::size_t kMaximumValuesPerRecord = 4096;

/// Why the document, once written, could not be read again; absent if it can be read. `storedBytes` is the size of
/// `encodeStoredDocument(document)`, which makes the check cheap for most documents.
std::optional<DecodingError> whyUnreadable(const WorkspaceProductDocument& document, std::size_t storedBytes);

/// For the preferences: compact, dates as seconds since 2001.
std::string encodeStoredDocument(const WorkspaceProductDocument& document);
Decoded<WorkspaceProductDocument> decodeStoredDocument(std::string_view json);

/// For a file: indented, sorted keys, dates as ISO 8601 texts. Neither reading nor writing accepts more than
/// `kMaximumImportBytes`.
Decoded<std::string> encodeExportedDocument(const WorkspaceProductDocument& document);
Decoded<WorkspaceProductDocument> decodeExportedDocument(std::string_view json);

} // namespace kova
