#include "platform/linux/ExecLine.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

/// The words of the line, each in brackets, or the error.
std::string parsed(std::string_view line, const ExecLineContext& context = {"Mail — It's “here”", "mail-icon",
                                                                            "/usr/share/applications/mail.desktop"}) {
    const auto words = wordsOfExecLine(line, context);
    if (const auto* problem = std::get_if<std::string>(&words)) return *problem;
    std::string text;
    for (const auto& word : std::get<std::vector<std::string>>(words)) text += "[" + word + "]";
    return text;
}

TEST(ExecLine, IsParsedWithoutAShell) {
    using namespace std::string_view_literals;
    struct Case {
        std::string_view line, words;
    };
    const Case cases[] = {
        {"mail", "[mail]"},
        {"  /usr/bin/mail\t-a   --b=c ", "[/usr/bin/mail][-a][--b=c]"},
        {"mail \"two words\" \"\" x\"y z\"w", "[mail][two words][][xy zw]"},
        {R"(mail "a \"b\" \\ \$HOME \`ls\`" "\n")", R"([mail][a "b" \ $HOME `ls`][\n])"},
        {R"("/opt/a b/mail" 'it is "so"' a\ b \")", R"([/opt/a b/mail][it is "so"][a b]["])"},
        // Characters with a meaning in a shell are ordinary characters.
        {"mail $HOME ~ * ; rm -rf / && x | y > /tmp/z $(ls) `ls` # no",
         "[mail][$HOME][~][*][;][rm][-rf][/][&&][x][|][y]"
         "[>][/tmp/z][$(ls)][`ls`][#][no]"},
        // Field codes
        {"mail %u %U %f %F %d %D %n %N %v %m", "[mail]"},
        {"mail --open=%u -- %F x", "[mail][--open=][--][x]"},
        {"mail %i --title %c --from %k 100%%", "[mail][--icon][mail-icon][--title][Mail — It's “here”][--from]"
                                               "[/usr/share/applications/mail.desktop][100%]"},
        {"mail \"%c\" x%i", "[mail][Mail — It's “here”][x]"},
        // Lines without a valid command
        {"", "has an Exec line without a program"},
        {"   ", "has an Exec line without a program"},
        {"%f", "has an Exec line without a program"},
        {"\"\" x", "has an Exec line without a program"},
        {"mail \"open", "has an Exec line with a quote that does not end"},
        {"mail 'open", "has an Exec line with a quote that does not end"},
        {"mail \"open\\\"", "has an Exec line with a quote that does not end"},
        {"mail \\", "has an Exec line that ends in a backslash"},
        {"mail %", "has an Exec line that ends in a percent sign"},
        {"mail %z", "has an Exec line with an unknown field code, %z"},
        {"mail \"%\"", "has an Exec line with an unknown field code, %\""},
        {"LANG=C mail", "has an Exec line that begins with “LANG=C”, which names no program"},
        {"./mail", "has an Exec line that begins with “./mail”, which names no program"},
        {"../../bin/sh -c x", "has an Exec line that begins with “../../bin/sh”, which names no program"},
        {"mail a\0b"sv, "has an Exec line with a zero byte"},
    };
    for (const auto& c : cases) EXPECT_EQ(parsed(c.line), c.words) << c.line;
    EXPECT_EQ(parsed("mail %i x", {}), "[mail][x]");
    // The value of a field code is not expanded again.
    EXPECT_EQ(parsed("mail %c", {"\"%k\" $(x) \\", "", ""}), "[mail][\"%k\" $(x) \\]");
    EXPECT_EQ(parsed("mail " + std::string(200'000, 'x')), "[mail][" + std::string(200'000, 'x') + "]");
}

} // namespace
} // namespace kova
