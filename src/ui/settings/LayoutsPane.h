// The layouts of each display as pictures, with marks for the layout in force and for layouts that are too small for
// the windows on the display.
#pragma once

#include "ui/settings/SettingControls.h"
#include "ui/windows/EmptyListText.h"
#include "ui/windows/Pane.h"

#include <QComboBox>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>

#include <string>

namespace kova::ui {

class LayoutsPane final : public Pane {
    Q_OBJECT

  public:
    explicit LayoutsPane(WindowServices& services);

  protected:
    /// Draws the pictures again when the palette has changed.
    void changeEvent(QEvent* event) override;

  private:
    void showState();
    void showDisplays(const nlohmann::json& layouts);
    void showLayouts(const nlohmann::json& display, bool isAutomatic);
    void addLayout(const nlohmann::json& layout, const nlohmann::json& area);
    QPixmap pictureOf(const nlohmann::json& layout, const nlohmann::json& area) const;
    /// The id of the chosen display; empty if there is no display.
    std::string chosenDisplay() const;
    void select(const QListWidgetItem* item);

    WindowServices& services_;
    QComboBox* displays_;
    QListWidget* layouts_;
    EmptyListText* noLayout_ = nullptr;
    QLabel* fit_;
    QPushButton* reset_;
    FieldError* error_;
};

} // namespace kova::ui
