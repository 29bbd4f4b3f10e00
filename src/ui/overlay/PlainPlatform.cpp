#include "ui/overlay/PlainPlatform.h"

namespace kova::ui {

void PlainPlatform::adopt(OverlayWindow& window) {
    stores_[&window] = std::make_unique<QBackingStore>(&window);
}

void PlainPlatform::release(OverlayWindow& window) {
    stores_.erase(&window);
}

void PlainPlatform::stack(OverlayWindow& window) {
    if (isBelowApplications(window.layer())) {
        window.lower();
    } else {
        window.raise();
    }
}

void PlainPlatform::shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) {
    window.setFlag(Qt::WindowTransparentForInput, clickable.isEmpty());
    window.setMask(visible);
}

void PlainPlatform::draw(OverlayWindow& window, const QRegion& dirty) {
    if (!window.isExposed()) return;
    QBackingStore& store = *stores_.at(&window);
    const bool isNewSize = store.size() != window.size();
    if (isNewSize) store.resize(window.size());
    const QRegion region = isNewSize ? QRegion(QRect(QPoint(0, 0), window.size())) : dirty;
    store.beginPaint(region);
    {
        QPainter painter(store.paintDevice());
        painter.setClipRegion(region);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(region.boundingRect(), Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        window.paint(painter);
    }
    store.endPaint();
    store.flush(region);
}

void PlainPlatform::exposed(OverlayWindow& window) {
    draw(window, QRect(QPoint(0, 0), window.size()));
}

} // namespace kova::ui
