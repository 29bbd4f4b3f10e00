// The workspace document as JSON, in its two encodings. Unknown keys are ignored; an error names the place:
// `scenes[2].displays[0].layoutID: expected a string`.
// Reading holds no more of the document as JSON than one entry of a list, so that memory stays within a small multiple
// of the text, whatever the text is.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "support/Decoded.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kova {

/// A file beyond this is not one that was exported.
inline constexpr std::size_t kMaximumImportBytes = std::size_t{64} << 20;

/// For the preferences: compact, dates as seconds since 2001.
std::string encodeStoredDocument(const WorkspaceProductDocument& document);
Decoded<WorkspaceProductDocument> decodeStoredDocument(std::string_view json);

/// For a file: indented, sorted keys, dates as ISO 8601 texts. Reading refuses more than `kMaximumImportBytes`.
std::string encodeExportedDocument(const WorkspaceProductDocument& document);
Decoded<WorkspaceProductDocument> decodeExportedDocument(std::string_view json);

} // namespace kova
