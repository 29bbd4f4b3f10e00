// How well what is typed fits a name: "ffx" finds "Firefox", "res libre" finds "LibreOffice Réseau". Case and accents
// do not matter. Pure arithmetic on texts.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kova::ui {

/// In lower case and without accents, one character for each of the text's where possible.
QString folded(const QString& text);

/// A query, taken apart once for many names.
class FuzzyQuery {
  public:
    explicit FuzzyQuery(const QString& query);

    bool isEmpty() const { return words_.isEmpty(); }
    /// Greater is better; absent when a word of the query does not fit. Each word fits where its characters come in
    /// their order, the first one at the beginning of a word of the name. `name` is folded.
    std::optional<int> score(const QString& name) const;

  private:
    QStringList words_;
};

} // namespace kova::ui
