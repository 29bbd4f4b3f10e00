// The examples of docs/formats.md have the format that the agent writes: each can be decoded, and encoding it again
// gives the same members.
#include "commands/KovaShortcutConfiguration.h"
#include "layout/AutoArrangeLearning.h"
#include "layout/LayoutCoding.h"
#include "layout/WorkspaceProfile.h"
#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "persistence/WorkspaceSession.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <functional>
#include <map>
#include <sstream>

namespace kova {

namespace {

/// The page's blocks of JSON. The key of a block is the word after “json” in its first line.
std::map<std::string, std::string> examples() {
    std::ifstream page(KOVA_DOCS "/formats.md");
    EXPECT_TRUE(page);
    std::map<std::string, std::string> blocks;
    std::string* open = nullptr;
    const std::string fence = "```json ";
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with(fence)) {
            open = &blocks[line.substr(fence.size())];
        } else if (line.starts_with("```")) {
            open = nullptr;
        } else if (open) {
            *open += line + "\n";
        }
    }
    return blocks;
}

template <typename Record>
std::string reencoded(const Decoded<Record>& decoded, std::string (*encode)(const Record&)) {
    if (const auto* error = std::get_if<DecodingError>(&decoded)) return nlohmann::json(error->what()).dump();
    return encode(std::get<Record>(decoded));
}

std::string reencodedExport(std::string_view text) {
    const auto decoded = decodeExportedDocument(text);
    const auto* document = std::get_if<WorkspaceProductDocument>(&decoded);
    return document ? std::get<std::string>(encodeExportedDocument(*document))
                    : std::get<DecodingError>(decoded).what();
}

std::string reencodedLayout(std::string_view text) {
    try {
        const auto document = nlohmann::json::parse(text);
        return encode(decodeLayoutDefinition(JsonCursor(document, ""))).dump();
    } catch (const DecodingError& error) {
        return nlohmann::json(error.what()).dump();
    }
}

} // namespace

TEST(FormatsPage, ShowsTheRecordsThatAreWritten) {
    using Codec = std::function<std::string(std::string_view)>;
    const std::map<std::string_view, Codec> codecs = {
        {preferenceKey::workspaceProfile,
         [](auto text) { return reencoded(decodeWorkspaceProfile(text), encodeWorkspaceProfile); }},
        {preferenceKey::workspaceProduct,
         [](auto text) { return reencoded(decodeStoredDocument(text), encodeStoredDocument); }},
        {preferenceKey::autoArrangeLearning,
         [](auto text) { return reencoded(decodeLearningModel(text), encodeLearningModel); }},
        {preferenceKey::keyboardShortcuts,
         [](auto text) { return reencoded(decodeShortcutConfiguration(text), encodeShortcutConfiguration); }},
        {preferenceKey::workspaceSession,
         [](auto text) { return reencoded(decodeWorkspaceSession(text), encodeWorkspaceSession); }},
        {"layout", reencodedLayout},
    };
    auto blocks = examples();
    for (const auto& [key, codec] : codecs) {
        const std::string example = blocks[std::string(key)];
        EXPECT_EQ(nlohmann::json::parse(codec(example)), nlohmann::json::parse(example)) << key;
    }
    const std::string exported = blocks["export"];
    EXPECT_EQ(reencodedExport(exported), exported);
    EXPECT_EQ(blocks.size(), codecs.size() + 1) << "every block of the page has a codec";
}

} // namespace kova
