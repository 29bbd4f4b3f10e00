#include "ui/tray/Tray.h"

#include "ui/tray/MenuBuilder.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

namespace kova::ui {

namespace {

/// A desktop of three tiles, in a grey that shows on light and dark panels.
QIcon statusIcon() {
    QIcon icon;
    for (const int size : {22, 44}) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 22.0, size / 22.0);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x9a, 0xa4, 0xb0));
        for (const QRectF& tile : {QRectF(2, 4, 10, 14), QRectF(14, 4, 6, 6), QRectF(14, 12, 6, 6)}) {
            painter.drawRoundedRect(tile, 1.5, 1.5);
        }
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

} // namespace

Tray::Tray(AgentLink& link) : link_(link) {
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { refresh(nullptr); });
}

void Tray::show(bool isAgentThere) {
    if (!isAgentThere) {
        if (item_) item_->hide();
        return;
    }
    refresh(nullptr);
    if (!item_) {
        item_ = std::make_unique<QSystemTrayIcon>(statusIcon());
        item_->setToolTip(QStringLiteral("KOVA"));
        item_->setContextMenu(&menu_);
        QObject::connect(item_.get(), &QSystemTrayIcon::activated, &menu_, [this](QSystemTrayIcon::ActivationReason why) {
            if (why == QSystemTrayIcon::Trigger) openMenu(QCursor::pos());
        });
    }
    item_->show();
}

void Tray::refresh(std::function<void()> done) {
    link_.call("menu", nlohmann::json::object(), [this, done](const Answer& answer) {
        if (!answer.error.empty()) return;
        try {
            const auto items = decodeMenu(JsonCursor(answer.result, ""));
            const auto choose = [this](const std::string& id) { link_.call("menu.choose", {{"id", id}}); };
            if (!menu_.isVisible()) fillMenu(menu_, items, choose);
            if (done) fillMenu(popup_, items, choose);
        } catch (const DecodingError& error) {
            qWarning("kova-ui: the menu is not understood: %s", error.what());
            return;
        }
        if (done) done();
    });
}

void Tray::openMenu(QPoint at) {
    refresh([this, at] { popup_.popup(at); });
}

} // namespace kova::ui
