// A small picture of a scene: its displays side by side, with their tiles and the applications in them. Main thread
// only.
#pragma once

#include "ui/windows/HostedWindow.h"

#include <QStyledItemDelegate>

#include <nlohmann/json.hpp>

#include <map>

namespace kova::ui {

/// Draws the result of `scene.show` into the area.
void drawScene(QPainter& painter, const QRectF& area, const nlohmann::json& scene, const WindowServices& services);

/// The column of pictures in a list of scenes.
class ScenePictures : public QStyledItemDelegate {
    Q_OBJECT

  public:
    /// The role of the scene's id in the items of the column.
    static constexpr int kIDRole = Qt::UserRole;

    ScenePictures(const WindowServices& services, QObject* parent) : QStyledItemDelegate(parent), services_(services) {}

    void setScene(const QString& id, nlohmann::json shown) { scenes_[id] = std::move(shown); }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    const WindowServices& services_;
    std::map<QString, nlohmann::json> scenes_; // by id
};

} // namespace kova::ui
