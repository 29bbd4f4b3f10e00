#include "ui/dialogs/DocumentFile.h"

#include "control/client/ControlCodes.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

#include <string>
#include <utility>

namespace kova::ui {

namespace {

constexpr qint64 kLargestDocument = 64 * 1024 * 1024; // bytes; the limit of the agent

struct DocumentFile {
    Q_DECLARE_TR_FUNCTIONS(kova::ui::DocumentFile)
};

/// The size of the largest piece in bytes. JSON needs up to six bytes (“\u0000”) for one byte of the text, and the
/// message has further members.
constexpr qsizetype kLargestPiece = kLongestControlLine / 8;

/// The number of bytes of the first piece of the text. The piece does not end within a character.
qsizetype lengthOfPiece(const QByteArray& text) {
    if (text.size() <= kLargestPiece) return text.size();
    qsizetype end = kLargestPiece;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return end;
}

} // namespace

std::optional<QString> writeDocument(const QString& path, const std::string& text) {
    QSaveFile file(path);
    const auto size = static_cast<qint64>(text.size());
    if (file.open(QIODevice::WriteOnly) && file.write(text.data(), size) == size && file.commit()) return std::nullopt;
    return DocumentFile::tr("Export failed: %1").arg(file.errorString());
}

std::variant<QByteArray, QString> readDocument(const QString& path) {
    const auto failed = [](const QString& reason) { return DocumentFile::tr("Import failed: %1").arg(reason); };
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return failed(file.errorString());
    QByteArray text = file.read(kLargestDocument + 1);
    if (text.size() > kLargestDocument)
        return failed(DocumentFile::tr("larger than %1 MiB").arg(kLargestDocument >> 20));
    QStringDecoder decoder(QStringDecoder::Utf8);
    (void)QString(decoder(text));
    if (decoder.hasError()) return failed(DocumentFile::tr("“%1” is not UTF-8 text").arg(QFileInfo(path).fileName()));
    return text;
}

void sendDocument(AgentSession& agent, const QObject* context, QByteArray text, Importing importing,
                  std::function<void(const Response&)> done) {
    const QByteArray piece = text.left(lengthOfPiece(text));
    text.remove(0, piece.size());
    const bool hasMore = !text.isEmpty();
    const nlohmann::json parameters{
        {"text", piece.toStdString()}, {"more", hasMore}, {"dryRun", importing == Importing::dryRun}};
    agent.call(context, "import", parameters,
               [&agent, context, text = std::move(text), importing, hasMore,
                done = std::move(done)](const Response& response) {
                   if (!hasMore || !response.error.empty()) return done(response);
                   sendDocument(agent, context, text, importing, done);
               });
}

} // namespace kova::ui
