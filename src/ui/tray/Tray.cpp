#include "ui/tray/Tray.h"

#include "ui/tray/MenuBuilder.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QTimer>

#include <chrono>

namespace kova::ui {

namespace {

const QString kWatcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
constexpr std::chrono::milliseconds kHostDelay{1000};

/// Three tiles in a gray that is visible on light and dark panels.
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

Tray::Tray(AgentLink& link, std::function<void()> styleMenus, std::function<void(const std::string&)> choose) :
    link_(link), styleMenus_(std::move(styleMenus)), choose_(std::move(choose)) {
    watchBus();
}

void Tray::watchBus() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // A panel that shows status items is called a host. It registers the watcher service first and itself later. The
    // toolkit looks for a host only once, so the item is created after a delay.
    const auto found = [this] {
        QTimer::singleShot(kHostDelay, this, [this] {
            hasHost_ = true;
            update();
        });
    };
    auto* watcher = new QDBusServiceWatcher(kWatcherService, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, found);
    auto* query =
        new QDBusPendingCallWatcher(bus.interface()->asyncCall(QStringLiteral("NameHasOwner"), kWatcherService), this);
    connect(query, &QDBusPendingCallWatcher::finished, this, [found](QDBusPendingCallWatcher* done) {
        const QDBusPendingReply<bool> reply = *done;
        if (!reply.isError() && reply.value()) found();
        done->deleteLater();
    });
}

void Tray::setAgentConnected(bool isConnected) {
    isAgentConnected_ = isConnected;
    update();
}

void Tray::setHasTrayWindow(bool hasWindow) {
    hasTrayWindow_ = hasWindow;
    update();
}

void Tray::update() {
    if (!isAgentConnected_ || !(hasHost_ || hasTrayWindow_)) {
        if (item_) item_->hide();
        return;
    }
    if (!item_) {
        styleMenus_();
        menu_ = std::make_unique<QMenu>();
        connect(menu_.get(), &QMenu::aboutToShow, this, [this] { refresh(nullptr); });
        item_ = std::make_unique<QSystemTrayIcon>(statusIcon());
        item_->setToolTip(QStringLiteral("KOVA"));
        connect(item_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason why) {
            const bool isForMenu = why == QSystemTrayIcon::Context && !item_->contextMenu();
            if (why == QSystemTrayIcon::Trigger || isForMenu) openMenu(QCursor::pos());
        });
    }
    // A host opens the menu itself and shows the refreshed entries. For an item in a tray window, the toolkit would
    // open the menu with the old entries; therefore `openMenu` opens that menu.
    if (hasHost_ && !item_->contextMenu()) item_->setContextMenu(menu_.get());
    refresh(nullptr);
    item_->show();
}

void Tray::refresh(std::function<void()> done) {
    link_.call("menu", nlohmann::json::object(), [this, done](const Response& response) {
        if (!response.error.empty()) return;
        try {
            const auto items = decodeMenu(JsonCursor(response.result, ""));
            if (menu_ && items != items_) fillMenu(*menu_, items, choose_);
            items_ = items;
            if (done) fillMenu(*popup_, items, choose_);
        } catch (const DecodingError& error) {
            qWarning("kova-ui: the menu that the agent sent cannot be decoded: %s", error.what());
            return;
        }
        if (done) done();
    });
}

void Tray::openMenu(QPoint at) {
    styleMenus_();
    if (!popup_) popup_ = std::make_unique<QMenu>();
    refresh([this, at] { popup_->popup(at); });
}

} // namespace kova::ui
