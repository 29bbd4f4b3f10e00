// The introduction for new users: what KOVA does, the permission that it needs, settings, and a first arrangement.
#pragma once

#include "ui/onboarding/OnboardingPicture.h"
#include "ui/settings/SettingControls.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/HostedWindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include <nlohmann/json.hpp>

namespace kova::ui {

class OnboardingWindow : public HostedWindow {
    Q_OBJECT

  public:
    explicit OnboardingWindow(WindowServices& services);

  private:
    QWidget* introductionPage();
    QWidget* permissionPage();
    QWidget* setUpPage();
    QWidget* arrangePage();
    void addPicture(QHBoxLayout& row, OnboardingPicture::Subject subject, const QString& text);

    void showState(const nlohmann::json& state);
    void showPermission(const nlohmann::json& permission);
    void showSettings(const nlohmann::json& state);
    /// Shows the next (1) or previous (-1) applicable page; after the last page, closes the window.
    void step(int direction);
    bool isApplicable(int page) const;
    void pageChanged();

    WindowServices& services_;
    QStackedWidget* pages_ = nullptr;
    QPushButton* back_ = nullptr;
    QPushButton* next_ = nullptr;
    QLabel* permissionState_ = nullptr;
    QPushButton* ask_ = nullptr;
    FieldError* permissionError_ = nullptr;
    SettingSwitch* login_ = nullptr;
    SettingSwitch* dock_ = nullptr;
    QLabel* nothingToSetUp_ = nullptr;
    QPushButton* arrange_ = nullptr;
    QPushButton* undo_ = nullptr;
    QLabel* arrangementResult_ = nullptr;
    FieldError* arrangeError_ = nullptr;
    /// True if the permission was lacking at any time since the window was opened. The page about the permission then
    /// stays available after the user has granted the permission.
    bool hasLackedPermission_ = false;
};

} // namespace kova::ui
