#include "ui/launcher/PaletteAnswers.h"

#include "ui/windows/JsonText.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <set>

namespace kova::ui {

namespace {

using nlohmann::json;

struct PaletteAnswers {
    Q_DECLARE_TR_FUNCTIONS(kova::ui::PaletteAnswers)
};

/// The source of the possible answers for a subject. The answers are the elements of the array `list` in the method's
/// result. The members `value` and `title` of an element contain the parameter's value and the text to show.
struct Source {
    Subject subject;
    const char* method;
    const char* list;
    const char* value;
    const char* title;
};

constexpr Source kSources[]{
    {Subject::scene, "scene.list", "scenes", "id", "name"},
    {Subject::rule, "rule.list", "rules", "id", "label"},
    {Subject::window, "query.windows", "windows", "id", "title"},
    {Subject::application, "query.windows", "windows", "bundleIdentifier", "application"},
    {Subject::tile, "query.tiles", "tiles", "id", "name"},
    {Subject::slot, "query.tiles", "tiles", "slot", "name"},
    {Subject::display, "query.displays", "displays", "id", "name"},
    {Subject::divider, "divider.list", "dividers", "split", "split"},
    {Subject::theme, "theme.list", "themes", "id", "displayName"},
    {Subject::accentColor, "accent.list", "accentColors", "id", "displayName"},
    {Subject::shortcutAction, "shortcut.list", "shortcuts", "action", "title"},
    {Subject::learnedApplication, "app.learned", "applications", "key", "name"},
};

const Source* sourceOf(Subject subject) {
    for (const Source& each : kSources) {
        if (each.subject == subject) return &each;
    }
    return nullptr;
}

QString listed(const json& names) {
    QStringList list;
    for (const json& name : names) list << QString::fromStdString(name.get<std::string>());
    return list.join(QStringLiteral(", "));
}

LauncherEntry answerOf(const json& element, const Source& source, const Question& question) {
    LauncherEntry answer{.title = memberText(element, source.title)};
    const QString application = memberText(element, "application"), value = memberText(element, source.value);
    answer.parameters[question.key] = (value.isEmpty() ? answer.title : value).toStdString();
    if (question.subject == Subject::window || question.subject == Subject::application) {
        answer.application = {memberText(element, "bundleIdentifier").toStdString(), application.toStdString()};
        answer.words = application;
    }
    if (question.subject == Subject::window) {
        answer.title =
            answer.title.isEmpty() ? application : PaletteAnswers::tr("%1 — %2").arg(answer.title, application);
    }
    if (question.subject == Subject::shortcutAction) answer.kind = memberText(element, "label");
    if (question.subject == Subject::divider) {
        const int boundary = element.value("boundary", 0);
        answer.title = PaletteAnswers::tr("Between %1 and %2")
                           .arg(listed(element.value("before", json())), listed(element.value("after", json())));
        answer.kind = memberText(element, "axis") == QStringLiteral("horizontal")
                          ? PaletteAnswers::tr("side by side")
                          : PaletteAnswers::tr("one above the other");
        answer.parameters = {
            {"split", element.value("split", "")}, {"boundary", boundary}, {"display", element.value("display", "")}};
    }
    return answer;
}

} // namespace

std::string methodOf(Subject subject) {
    const Source* source = sourceOf(subject);
    return source ? source->method : "";
}

std::vector<LauncherEntry> answersIn(const json& result, const Question& question) {
    const Source* source = sourceOf(question.subject);
    if (!source || !result.is_object()) return {};
    std::vector<LauncherEntry> answers;
    std::set<json> known; // several windows of an application give only one answer
    for (const json& element : result.value(source->list, json::array())) {
        if (!element.is_object()) continue;
        LauncherEntry answer = answerOf(element, *source, question);
        if (!answer.title.isEmpty() && known.insert(answer.parameters).second) answers.push_back(std::move(answer));
    }
    return answers;
}

LauncherEntry typedAnswer(const Question& question, const QString& typed) {
    LauncherEntry answer{.title = PaletteAnswers::tr("%1: “%2”").arg(question.prompt, typed)};
    if (question.subject == Subject::text) {
        answer.parameters[question.key] = typed.toStdString();
        return answer;
    }
    bool isNumber = false;
    double number = typed.toDouble(&isNumber);
    if (!isNumber) number = QLocale().toDouble(typed, &isNumber);
    const auto whole = static_cast<std::int64_t>(isNumber ? number : 0);
    answer.parameters[question.key] = !isNumber                              ? json(typed.toStdString())
                                      : static_cast<double>(whole) == number ? json(whole)
                                                                             : json(number);
    return answer;
}

} // namespace kova::ui
