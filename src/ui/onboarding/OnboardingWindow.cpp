#include "ui/onboarding/OnboardingWindow.h"

#include "ui/windows/JsonText.h"

#include <QScreen>
#include <QVBoxLayout>

#include <initializer_list>
#include <memory>

namespace kova::ui {

namespace {

using nlohmann::json;

const WindowRegistration onboardingRegistration({"onboarding",
                                                 [](WindowServices& services) -> std::unique_ptr<HostedWindow> {
                                                     return std::make_unique<OnboardingWindow>(services);
                                                 }});

enum Page { introduction, permission, setUp, arrange, pageCount };
constexpr int kWidthInLines = 50, kHeightInLines = 25; // size of the window, in heights of a line of text

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setBold(true);
    label->setFont(font);
    label->setWordWrap(true);
    return label;
}

QLabel* paragraph(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    return label;
}

QWidget* pageOf(std::initializer_list<QWidget*> rows) {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    for (QWidget* row : rows) column->addWidget(row);
    column->addStretch();
    return page;
}

QWidget* rowOf(std::initializer_list<QWidget*> widgets) {
    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : widgets) line->addWidget(widget);
    line->addStretch();
    return row;
}

QPushButton* pageButton(const QString& text, const char* objectName, const QString& description) {
    auto* made = new QPushButton(text);
    made->setObjectName(QLatin1String(objectName));
    made->setAccessibleDescription(description);
    return made;
}

} // namespace

OnboardingWindow::OnboardingWindow(WindowServices& services) : services_(services) {
    setWindowTitle(tr("Welcome to KOVA"));
    pages_ = new QStackedWidget;
    for (QWidget* page : {introductionPage(), permissionPage(), setUpPage(), arrangePage()}) pages_->addWidget(page);
    back_ = pageButton(tr("&Back"), "back", tr("Goes to the previous page"));
    next_ = pageButton(tr("&Continue"), "next", tr("Goes to the next page, or closes the window after the last one"));
    next_->setDefault(true);
    auto* row = new QHBoxLayout;
    row->addWidget(back_);
    row->addStretch();
    row->addWidget(next_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(pages_, 1);
    column->addLayout(row);
    connect(back_, &QPushButton::clicked, this, [this] { step(-1); });
    connect(next_, &QPushButton::clicked, this, [this] { step(1); });
    const int line = fontMetrics().height();
    resize(QSize(kWidthInLines * line, kHeightInLines * line).boundedTo(screen()->availableSize()));
    services_.agent.follow("settings");
    followSections(services_.agent, this, {"permission", "login", "dock"},
                   [this](const json& state) { showState(state); });
    pageChanged();
}

QWidget* OnboardingWindow::introductionPage() {
    auto* pictures = new QWidget;
    auto* row = new QHBoxLayout(pictures);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(fontMetrics().height());
    addPicture(*row, OnboardingPicture::Subject::tiles,
               tr("KOVA divides each display into tiles and keeps the windows of your applications in them."));
    addPicture(
        *row, OnboardingPicture::Subject::dividers,
        tr("Drag the gap between two tiles to resize them, or drag a window into another tile. What does not fit "
           "waits behind the window in front."));
    addPicture(
        *row, OnboardingPicture::Subject::scenes,
        tr("Save the workspace as a scene, and bring all of it back later. Every command that rearranges windows can be undone."));
    return pageOf({heading(tr("Welcome to KOVA")), pictures});
}

void OnboardingWindow::addPicture(QHBoxLayout& row, OnboardingPicture::Subject subject, const QString& text) {
    auto* picture = new OnboardingPicture(subject, services_.palette);
    picture->setAccessibleName(text);
    auto* column = new QVBoxLayout;
    column->addWidget(picture);
    column->addWidget(paragraph(text), 1);
    row.addLayout(column, 1);
}

QWidget* OnboardingWindow::permissionPage() {
    permissionState_ = paragraph({});
    permissionState_->setObjectName(QStringLiteral("permissionState"));
    permissionState_->setTextFormat(Qt::PlainText);
    ask_ = pageButton(tr("&Open System Settings…"), "askForPermission",
                      tr("Makes the system ask for the permission, or opens the matching page of the system settings"));
    permissionError_ = new FieldError;
    connect(ask_, &QPushButton::clicked, this,
            [this] { callFor(*permissionError_, services_.agent, "permission.ask"); });
    return pageOf(
        {heading(tr("Permission to Manage Windows")),
         paragraph(tr("To move the windows of other applications KOVA needs the Accessibility permission: allow "
                      "KOVA under System Settings → Privacy & Security → Accessibility. Until then it stays "
                      "idle.")),
         permissionState_, rowOf({ask_}), permissionError_});
}

QWidget* OnboardingWindow::setUpPage() {
    login_ = new SettingSwitch(services_.agent, tr("&Start KOVA at login"), {},
                               [](bool isOn) { return AgentRequest{isOn ? "login.on" : "login.off"}; });
    login_->box().setObjectName(QStringLiteral("login"));
    dock_ = new SettingSwitch(services_.agent, tr("&Hide the Dock Automatically"),
                              tr("Optional. KOVA leaves your current Dock behavior untouched unless you change this "
                                 "option. Changing it briefly restarts the Dock."),
                              [](bool isOn) { return AgentRequest{isOn ? "dock.on" : "dock.off"}; });
    dock_->box().setObjectName(QStringLiteral("dock"));
    nothingToSetUp_ = paragraph(tr("There is nothing to set up on this desktop."));
    return pageOf({heading(tr("Set Up")), paragraph(tr("You can change this at any time in the settings.")), login_,
                   dock_, nothingToSetUp_});
}

QWidget* OnboardingWindow::arrangePage() {
    arrange_ = pageButton(tr("&Arrange Now"), "arrange", tr("Puts the open windows into tiles"));
    undo_ = pageButton(tr("&Undo"), "undo", tr("Puts the windows back to where they were"));
    undo_->setEnabled(false);
    arrangementResult_ = paragraph({});
    arrangementResult_->setObjectName(QStringLiteral("arranged"));
    arrangementResult_->setTextFormat(Qt::PlainText);
    arrangeError_ = new FieldError;
    arrangeError_->setObjectName(QStringLiteral("arrangeError"));
    const auto done = [this](bool canUndo) {
        return Reactions{.done = [this, canUndo](const json& result) {
            arrangementResult_->setText(memberText(result, "message"));
            undo_->setEnabled(canUndo);
        }};
    };
    connect(arrange_, &QPushButton::clicked, this,
            [this, done] { callFor(*arrangeError_, services_.agent, "arrange", json::object(), done(true)); });
    connect(undo_, &QPushButton::clicked, this,
            [this, done] { callFor(*arrangeError_, services_.agent, "undo", json::object(), done(false)); });
    return pageOf({heading(tr("Try It")),
                   paragraph(tr("Put the windows that are open into tiles. One click on Undo puts all of them back.")),
                   rowOf({arrange_, undo_}), arrangementResult_, arrangeError_});
}

void OnboardingWindow::showState(const json& state) {
    showPermission(sectionOf(state, "permission"));
    showSettings(state);
    pageChanged();
}

void OnboardingWindow::showPermission(const json& permission) {
    if (!permission.is_object()) return;
    const QString problem = memberText(permission, "problem");
    hasLackedPermission_ = hasLackedPermission_ || !problem.isEmpty();
    permissionState_->setText(problem.isEmpty() ? tr("KOVA has the permission.") : problem);
    ask_->setEnabled(permission.value("canAsk", false));
    if (problem.isEmpty()) permissionError_->clear();
}

void OnboardingWindow::showSettings(const json& state) {
    const auto show = [&](SettingSwitch* control, const char* section) {
        const json& setting = sectionOf(state, section);
        control->setVisible(setting.is_object());
        if (!setting.is_object()) return;
        control->showState(setting.value("isOn", false));
        control->error().showReason(memberText(setting, "problem"));
    };
    show(login_, "login");
    show(dock_, "dock");
    login_->setText(memberText(sectionOf(state, "login"), "guidance"));
    nothingToSetUp_->setVisible(!sectionOf(state, "login").is_object() && !sectionOf(state, "dock").is_object());
}

bool OnboardingWindow::isApplicable(int page) const {
    return page != permission || hasLackedPermission_;
}

void OnboardingWindow::step(int direction) {
    int page = pages_->currentIndex() + direction;
    while (page >= 0 && page < pageCount && !isApplicable(page)) page += direction;
    if (page == pageCount) {
        close();
    } else if (page >= 0) {
        pages_->setCurrentIndex(page);
        pageChanged();
    }
}

void OnboardingWindow::pageChanged() {
    const int page = pages_->currentIndex();
    back_->setEnabled(page != introduction);
    next_->setText(page == pageCount - 1 ? tr("&Done") : tr("&Continue"));
}

} // namespace kova::ui
