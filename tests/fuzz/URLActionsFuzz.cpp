// Parses any bytes as a URL. If the URL names an action, the action is one of `NameableByURL`. If the URL opens a
// scene, the URL that KOVA makes for that scene opens the same scene.
#include "commands/Intents.h"
#include "commands/URLActions.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace kova;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace

using NameableByURL = std::variant<WindowCommand, action::Focus, action::Move, action::CycleStack,
                                   action::ToggleFocusZoom, action::Arrange, action::Undo>;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string url(reinterpret_cast<const char*>(data), size);
    const auto parsed = parseURLAction(url);
    if (!parsed) return 0;
    require(size <= kLongestURL);
    // A fragment does not change the action, unless it makes the URL too long.
    if (size < kLongestURL) require(parseURLAction(url + "#")->index() == parsed->index());
    if (const auto* scene = std::get_if<OpenSceneNamed>(&*parsed)) {
        require(!scene->name.empty() && scene->name.find('\0') == std::string::npos);
        const std::string ours = intentURL(kOpenSceneIntent, scene->name);
        if (ours.size() > kLongestURL) return 0;
        const auto again = parseURLAction(ours);
        require(again && std::get<OpenSceneNamed>(*again).name == scene->name);
    } else if (const auto* known = std::get_if<WorkspaceAction>(&*parsed)) {
        const auto isOneOf = [&]<class... Kinds>(std::variant<Kinds...>*) {
            return (std::holds_alternative<Kinds>(*known) || ...);
        };
        require(isOneOf(static_cast<NameableByURL*>(nullptr)));
    }
    return 0;
}
