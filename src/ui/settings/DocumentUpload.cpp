#include "ui/settings/DocumentUpload.h"

#include "control/client/ControlCodes.h"

#include <string>
#include <utility>

namespace kova::ui {

namespace {

/// In JSON a byte takes up to six (“\u0000”), and a message has other members.
constexpr qsizetype kLargestPiece = kLongestControlLine / 8;

/// The number of bytes of the first piece; no character is cut.
qsizetype lengthOfPiece(const QByteArray& text) {
    if (text.size() <= kLargestPiece) return text.size();
    qsizetype end = kLargestPiece;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return end;
}

} // namespace

void sendDocument(AgentSession& agent, const QObject* context, QByteArray text, Importing importing,
                  std::function<void(const Answer&)> done) {
    const QByteArray piece = text.left(lengthOfPiece(text));
    text.remove(0, piece.size());
    const bool hasMore = !text.isEmpty();
    const nlohmann::json parameters{
        {"text", piece.toStdString()}, {"more", hasMore}, {"dryRun", importing == Importing::dryRun}};
    agent.call(
        context, "import", parameters,
        [&agent, context, text = std::move(text), importing, hasMore, done = std::move(done)](const Answer& answer) {
            if (!hasMore || !answer.error.empty()) return done(answer);
            sendDocument(agent, context, text, importing, done);
        });
}

} // namespace kova::ui
