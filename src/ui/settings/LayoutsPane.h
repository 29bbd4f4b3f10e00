// The layouts of each display as pictures: which one is in force, and which are too small for the windows there.
#pragma once

#include "ui/settings/SettingControls.h"
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
    /// The pictures are drawn in the palette.
    void changeEvent(QEvent* event) override;

  private:
    void showState();
    void showDisplays(const nlohmann::json& layouts);
    void showLayouts(const nlohmann::json& display, bool isAutomatic);
    void addLayout(const nlohmann::json& layout, const nlohmann::json& area);
    QPixmap pictureOf(const nlohmann::json& layout, const nlohmann::json& area) const;
    /// Empty while there is none.
    std::string chosenDisplay() const;
    void select(const QListWidgetItem* item);

    WindowServices& services_;
    QComboBox* displays_;
    QListWidget* layouts_;
    QLabel* fit_;
    QPushButton* reset_;
    FieldError* error_;
};

} // namespace kova::ui
