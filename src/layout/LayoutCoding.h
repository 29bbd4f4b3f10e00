// Encodes layout records as JSON and decodes them. A rectangle is a nested array: [[x, y], [width, height]].
#pragma once

#include "layout/LayoutCatalogue.h"
#include "layout/WorkspaceProfile.h"
#include "support/JsonDecoding.h"

#include <nlohmann/json.hpp>

namespace kova {

nlohmann::json encode(CGPoint point);
nlohmann::json encode(CGSize size);
nlohmann::json encode(const CGRect& rect);
nlohmann::json encode(const LayoutWeightOverrides& overrides);
nlohmann::json encode(const DisplayLayoutSelection& selection);
nlohmann::json encode(const TileSlot& slot);
nlohmann::json encode(const LayoutDefinition& definition);
nlohmann::json encode(const WorkspaceProfile& profile);

/// The decoding functions throw `DecodingError`.
CGSize decodeSize(const JsonCursor& at);
CGRect decodeRect(const JsonCursor& at);
LayoutWeightOverrides decodeWeightOverrides(const JsonCursor& at);
DisplayLayoutSelection decodeLayoutSelection(const JsonCursor& at);
TileSlot decodeTileSlot(const JsonCursor& at);
LayoutDefinition decodeLayoutDefinition(const JsonCursor& at);
WorkspaceProfile decodeWorkspaceProfile(const JsonCursor& at);

} // namespace kova
