// The pane of general settings, for the program and for all tiles.
#pragma once

#include "ui/settings/SettingControls.h"
#include "ui/style/LayoutPicture.h"
#include "ui/windows/Pane.h"

#include <QSpinBox>

#include <optional>

namespace kova::ui {

class GeneralPane final : public Pane {
    Q_OBJECT

  public:
    explicit GeneralPane(WindowServices& services);

  private:
    QWidget* startGroup();
    QWidget* tilesGroup();
    QWidget* interfaceGroup();
    QWidget* insetRow();
    void showState(const nlohmann::json& state);
    void showSystemSetting(SettingSwitch& control, const nlohmann::json& setting);
    void insetChanged(int insetPoints);
    void sendInset();
    void showInset(int insetPoints);

    WindowServices& services_;
    SettingSwitch* startAtLogin_ = nullptr;
    SettingSwitch* hideDock_ = nullptr;
    SettingSwitch* arrangeAfterLaunch_ = nullptr;
    SettingSwitch* bringForward_ = nullptr;
    SettingSwitch* userInterface_ = nullptr;
    QSpinBox* inset_ = nullptr;
    LayoutPicture* preview_ = nullptr;
    FieldError* insetError_ = nullptr;
    std::optional<int> nextInset_; // points; to be sent after the pending request
    bool isInsetPending_ = false;  // a request to set the inset is pending
};

} // namespace kova::ui
