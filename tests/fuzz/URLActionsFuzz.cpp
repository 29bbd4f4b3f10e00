// Any bytes as a URL: the parsed action is one of the known ones, and its own URL is parsed to the same action
// again.
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
    const auto asked = parseURLAction(url);
    if (!asked) return 0;
    require(size <= kLongestURL);
    // A fragment does not count, as long as there is room for one.
    if (size < kLongestURL) require(parseURLAction(url + "#")->index() == asked->index());
    if (const auto* scene = std::get_if<OpenSceneNamed>(&*asked)) {
        require(!scene->name.empty() && scene->name.find('\0') == std::string::npos);
        const std::string ours = intentURL(kOpenSceneIntent, scene->name);
        if (ours.size() > kLongestURL) return 0;
        const auto again = parseURLAction(ours);
        require(again && std::get<OpenSceneNamed>(*again).name == scene->name);
    } else if (const auto* known = std::get_if<WorkspaceAction>(&*asked)) {
        const auto isOneOf = [&]<class... Kinds>(std::variant<Kinds...>*) {
            return (std::holds_alternative<Kinds>(*known) || ...);
        };
        require(isOneOf(static_cast<NameableByURL*>(nullptr)));
    }
    return 0;
}
