// Reads a workspace document from the events of a JSON parser. A scene, display, placement or rule is decoded as soon
// as its closing brace is read. Unknown members are skipped. The first error ends the reading.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "support/JsonDecoding.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace kova {

enum class DateCoding { secondsSince2001, iso8601 };

/// The error for a record at the path that exceeds `kMaximumValuesPerRecord`.
DecodingError tooManyValues(const std::string& path);

/// Receives the events of the JSON library's parser, which prescribes the names of the event functions. The event
/// functions throw `DecodingError`.
class WorkspaceDocumentReader {
  public:
    using json = nlohmann::json;

    explicit WorkspaceDocumentReader(DateCoding dates) : dates_(dates) {}
    /// The document; call after the parser has ended.
    WorkspaceProductDocument take() { return std::move(document_); }

    bool null() { return scalar(nullptr); }
    bool boolean(bool value) { return scalar(value); }
    bool number_integer(json::number_integer_t value) { return scalar(value); }
    bool number_unsigned(json::number_unsigned_t value) { return scalar(value); }
    bool number_float(json::number_float_t value, const std::string&) { return scalar(value); }
    bool string(std::string& value);
    bool binary(json::binary_t&) { return false; } // does not occur in JSON
    bool start_object(std::size_t) { return open(json::object()); }
    bool start_array(std::size_t) { return open(json::array()); }
    bool key(std::string& name);
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool parse_error(std::size_t, const std::string&, const json::exception& error) { throw notJson(error); }

  private:
    enum class Kind { document, scene, display, placement, rule };
    /// A record whose closing brace has not been read yet.
    struct Record {
        Record(Kind recordKind, std::string recordPath) : kind(recordKind), path(std::move(recordPath)) {}

        Kind kind;
        std::string path;
        json members = json::object(); // members read so far, without lists
        std::string key;               // of the next member
        std::vector<json*> containers; // open arrays and objects inside that member, the innermost last
        std::size_t values = 0;        // number of JSON values read so far
        std::string list;              // key of the list that is being read; empty outside lists
        std::size_t entries = 0;       // number of entries read from that list so far
    };

    static Kind entryKind(const std::string& list);
    static bool isList(Kind kind, const std::string& key);
    static bool isKnown(Kind kind, const std::string& key);

    bool scalar(json value);
    bool open(json container);
    bool close();
    void openList(Record& record);
    json* insert(Record& record, json value);
    std::string placeIn(const Record& record) const;
    void finish(Record& record);

    Date date(const JsonCursor& at) const;
    WorkspaceScene scene(const JsonCursor& at);
    static WorkspaceSceneDisplay display(const JsonCursor& at);
    static WorkspaceScenePlacement placement(const JsonCursor& at);
    static WorkspaceRule rule(const JsonCursor& at);

    DateCoding dates_;
    WorkspaceProductDocument document_;
    std::vector<WorkspaceSceneDisplay> displays_; // of the scene that is being read
    std::vector<WorkspaceScenePlacement> placements_;
    std::vector<Record> records_; // the innermost last
    int depth_ = 0;
    int skipped_ = 0; // number of open arrays and objects inside an unknown member
};

} // namespace kova
