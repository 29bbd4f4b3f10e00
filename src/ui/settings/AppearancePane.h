// The appearance of the overlay: theme, accent color and the parts that are drawn. Every choice is applied at once.
#pragma once

#include "ui/settings/SettingControls.h"
#include "ui/windows/Pane.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QGroupBox>
#include <QIcon>

#include <string>
#include <vector>

namespace kova::ui {

/// A list of options with pictures, of which one is active.
class PictureChoice final : public QGroupBox {
    Q_OBJECT

  public:
    struct Option {
        std::string id;
        QString name;
        QIcon picture;
        bool isActive = false;
    };
    struct OptionLayout {
        QBoxLayout::Direction direction = QBoxLayout::TopToBottom; // in which the options follow each other
        QSize pictureSize;
    };
    /// `request` builds the request to send when the option with the id is chosen.
    PictureChoice(AgentSession& agent, const QString& title, const QString& text, OptionLayout optionLayout,
                  std::function<AgentRequest(const std::string& id)> request, QWidget* parent = nullptr);
    void showOptions(const std::vector<Option>& options);

  private:
    void choose(int index);
    void showActive();

    AgentSession& agent_;
    const QString text_;
    const OptionLayout optionLayout_;
    std::function<AgentRequest(const std::string& id)> request_;
    std::vector<Option> options_;
    QButtonGroup* buttons_;
    QWidget* row_;
    FieldError* error_;
};

class AppearancePane final : public Pane {
    Q_OBJECT

  public:
    explicit AppearancePane(WindowServices& services);

  private:
    void showState(const nlohmann::json& state);

    WindowServices& services_;
    PictureChoice* themes_;
    PictureChoice* accents_;
    SettingSwitch* background_;
    SettingSwitch* tileBackgrounds_;
    SettingSwitch* brain_;
};

} // namespace kova::ui
