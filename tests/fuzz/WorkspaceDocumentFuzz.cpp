// Reads any bytes as a workspace document. A document that is not refused must be the same after it was written and
// read again.
#include "persistence/WorkspaceDocumentCoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace kova;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto imported = decodeExportedDocument(text);
    if (const auto* document = std::get_if<WorkspaceProductDocument>(&imported)) {
        WorkspaceProductDocument written = *document;
        written.version = 1;
        const auto again = decodeExportedDocument(std::get<std::string>(encodeExportedDocument(written)));
        if (!std::holds_alternative<WorkspaceProductDocument>(again)) std::abort();
        if (std::get<WorkspaceProductDocument>(again) != written) std::abort();
    }
    const auto stored = decodeStoredDocument(text);
    if (const auto* document = std::get_if<WorkspaceProductDocument>(&stored)) {
        WorkspaceProductDocument written = *document;
        written.version = 1;
        const auto again = decodeStoredDocument(encodeStoredDocument(written));
        if (!std::holds_alternative<WorkspaceProductDocument>(again)) std::abort();
        if (std::get<WorkspaceProductDocument>(again) != written) std::abort();
    }
    return 0;
}
