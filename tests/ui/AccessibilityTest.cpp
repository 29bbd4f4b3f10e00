// Tests what the accessibility interface reports about every window and every pane of the settings.
#include "tests/ui/WindowStage.h"
#include "ui/windows/Pane.h"
#include "ui/windows/Translations.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QLabel>
#include <QRadioButton>
#include <QTranslator>

#include <algorithm>
#include <map>
#include <string>

namespace kova::ui::testing {

namespace {

bool holdsItems(QAccessible::Role role) {
    switch (role) {
    case QAccessible::List:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::ComboBox:
        return true;
    default:
        return false;
    }
}

/// Controls that lack a name or a description, one per line. Items of lists are not checked.
std::string controlsWithoutTexts(QAccessibleInterface* at) {
    if (!at || at->state().invisible) return {};
    std::string found;
    if (at->state().focusable && !at->state().disabled && at->role() != QAccessible::Window) {
        const QString name = at->text(QAccessible::Name), description = at->text(QAccessible::Description);
        if (name.isEmpty() || description.isEmpty()) {
            const QObject* object = at->object();
            found += std::string("  ") + (object ? object->metaObject()->className() : "?") + " “" +
                     (object ? object->objectName().toStdString() : "") + "” has " +
                     (name.isEmpty() ? "no name" : "no description") + "\n";
        }
    }
    for (int i = 0; !holdsItems(at->role()) && i < at->childCount(); ++i) found += controlsWithoutTexts(at->child(i));
    return found;
}

/// Controls that Tab reaches after a control that is entirely below them, one per line.
std::string controlsAgainstReadingOrder(QWidget* window) {
    std::string found;
    int topOfLast = -1;
    for (QWidget* each = window->nextInFocusChain(); each != window; each = each->nextInFocusChain()) {
        const bool isReached = each->isVisible() && each->isEnabled() && (each->focusPolicy() & Qt::TabFocus) != 0;
        const bool isInPane = std::ranges::any_of(window->findChildren<Pane*>(),
                                                  [&](const Pane* pane) { return pane->isAncestorOf(each); });
        if (!isReached || !isInPane) continue;
        const int top = each->mapTo(window, QPoint()).y(), bottom = top + each->height();
        if (topOfLast >= 0 && bottom <= topOfLast) found += "  " + each->objectName().toStdString() + "\n";
        topOfLast = top;
    }
    return found;
}

/// Key combinations with Alt that several visible buttons and labels share, one per line.
std::string repeatedMnemonics(QWidget* window) {
    std::map<QString, int> uses;
    for (auto* each : window->findChildren<QAbstractButton*>()) {
        if (each->isVisible() && !each->shortcut().isEmpty()) ++uses[each->shortcut().toString()];
    }
    for (auto* each : window->findChildren<QLabel*>()) {
        const QKeySequence keys = each->buddy() ? QKeySequence::mnemonic(each->text()) : QKeySequence();
        if (each->isVisible() && !keys.isEmpty()) ++uses[keys.toString()];
    }
    std::string found;
    for (const auto& [keys, count] : uses) {
        if (count > 1) found += "  " + keys.toStdString() + "\n";
    }
    return found;
}

void expectAccessible(QWidget* window, const std::string& what) {
    ASSERT_TRUE(window) << what;
    EXPECT_FALSE(window->windowTitle().isEmpty()) << what;
    EXPECT_EQ(controlsWithoutTexts(QAccessible::queryAccessibleInterface(window)), "") << what;
    EXPECT_LE(window->width(), 1280) << what;
    EXPECT_LE(window->height(), 720) << what;
}

} // namespace

class AccessibilityIn : public WindowStage, public ::testing::WithParamInterface<QLocale::Language> {
  protected:
    AccessibilityIn() { installTranslations(QLocale(GetParam())); }
    ~AccessibilityIn() override {
        for (QTranslator* each : qApp->findChildren<QTranslator*>()) delete each;
    }
};

TEST_P(AccessibilityIn, ControlsHaveNamesAndDescriptionsAndWindowsFitOnASmallDisplay) {
    QAccessible::setActive(true);
    desk.arrange();
    for (const WindowKind& kind : Registry<WindowKind>::entries()) expectAccessible(open(kind.name), kind.name);
    for (const PaneKind& pane : Registry<PaneKind>::entries()) {
        QWidget* window = open("settings", {{"pane", pane.name}});
        expectAccessible(window, std::string("settings: ") + pane.name);
        if (std::string(pane.name) == "appearance") { // the options are created when the state arrives
            EXPECT_TRUE(until([&] {
                const auto* option = window->findChild<QRadioButton*>();
                return option && option->isVisible();
            }));
        }
        EXPECT_EQ(controlsAgainstReadingOrder(window), "") << pane.name;
        EXPECT_EQ(repeatedMnemonics(window), "") << pane.name;
        EXPECT_EQ(window->windowTitle() == QStringLiteral("KOVA-Einstellungen"), GetParam() == QLocale::German);
    }
}
INSTANTIATE_TEST_SUITE_P(Languages, AccessibilityIn, ::testing::Values(QLocale::English, QLocale::German));

} // namespace kova::ui::testing
