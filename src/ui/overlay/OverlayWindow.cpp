#include "ui/overlay/OverlayWindow.h"

#include <QEasingCurve>
#include <QSurfaceFormat>

#include <utility>

namespace kova::ui {

namespace {
constexpr int kAppearingMilliseconds = 120;
} // namespace

void OverlayPlatform::conceal(OverlayWindow& window) {
    window.setVisible(false);
}

void OverlayPlatform::reveal(OverlayWindow& window) {
    stack(window);
    window.setVisible(true);
}

OverlayWindow::OverlayWindow(OverlayPlatform& platform, Layer layer, std::string_view title) :
    platform_(platform), layer_(layer) {
    setFlags(platform.windowType() | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
             Qt::WindowDoesNotAcceptFocus);
    setTitle(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
    if (platform.isComposited()) {
        QSurfaceFormat format;
        format.setAlphaBufferSize(8);
        setFormat(format);
    }
    appearing_.setDuration(kAppearingMilliseconds);
    appearing_.setEasingCurve(QEasingCurve::OutCubic);
    appearing_.setStartValue(0.0);
    appearing_.setEndValue(1.0);
    QObject::connect(&appearing_, &QVariantAnimation::valueChanged, this, [this](const QVariant& opacity) {
        setOpacity(opacity.toDouble());
        platform_.flush();
    });
}

OverlayWindow::~OverlayWindow() {
    if (isPresented_) platform_.release(*this);
}

void OverlayWindow::present(const QRect& area, const QRegion& visible, const QRegion& clickable) {
    const bool wasRetired = std::exchange(isRetired_, false);
    if (isPresented_ && !wasRetired && area == geometry() && visible == visible_ && clickable == clickable_) return;
    const bool hasMoved = area.topLeft() != position();
    const bool mustBeDrawn = !isPresented_ || wasRetired || area.size() != size();
    setGeometry(area);
    if (!isPresented_) {
        create();
        platform_.adopt(*this);
    }
    if (!isPresented_ || hasMoved || visible != visible_ || clickable != clickable_)
        platform_.shape(*this, visible, clickable);
    visible_ = visible;
    clickable_ = clickable;
    const bool wasPresented = std::exchange(isPresented_, true);
    if (mustBeDrawn) redraw();
    if (wasPresented && !wasRetired) return;
    if (!wasRetired) platform_.stack(*this);
    if (appearsGradually_ && platform_.isComposited()) {
        setOpacity(0);
        appearing_.start();
    }
    if (wasRetired) {
        platform_.reveal(*this);
    } else {
        setVisible(true);
    }
}

void OverlayWindow::retire() {
    if (!isPresented_ || std::exchange(isRetired_, true)) return;
    appearing_.stop();
    forget();
    platform_.conceal(*this);
}

void OverlayWindow::redraw() {
    redraw(QRect(QPoint(0, 0), size()));
}

void OverlayWindow::redraw(const QRegion& dirty) {
    if (isPresented_ && !isRetired_) platform_.draw(*this, dirty);
}

void OverlayWindow::exposeEvent(QExposeEvent*) {
    if (isPresented_ && !isRetired_ && isExposed()) platform_.exposed(*this);
}

} // namespace kova::ui
