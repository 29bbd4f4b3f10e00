#include "ui/dialogs/DocumentWindow.h"

#include "ui/dialogs/DocumentFile.h"
#include "ui/dialogs/FilePanel.h"

#include <QDir>
#include <QLineEdit>
#include <QVBoxLayout>

#include <memory>

namespace kova::ui {

namespace {

using nlohmann::json;

template <Exchange exchange>
std::unique_ptr<HostedWindow> make(WindowServices& services) {
    return std::make_unique<DocumentWindow>(services, exchange);
}

const WindowRegistration exporting({"exportDocument", make<Exchange::exportDocument>});
const WindowRegistration importing({"importDocument", make<Exchange::importDocument>});

/// A file panel that stays open when a file is chosen: the window closes once the file has been written or read.
class Panel final : public QFileDialog {
  public:
    explicit Panel(QWidget* parent) : QFileDialog(parent) {
        setWindowFlags(Qt::Widget); // a part of this window, not a dialog
        setOption(DontUseNativeDialog);
        setSizeGripEnabled(false);
        setDirectory(QDir::homePath());
    }
    void done(int result) override {
        if (result == Rejected) window()->close();
    }
};

} // namespace

DocumentWindow::DocumentWindow(WindowServices& services, Exchange exchange) :
    services_(services), exchange_(exchange), panel_(new Panel(this)), error_(new FieldError) {
    setWindowFlags(Qt::Dialog);
    setWindowTitle(exchange == Exchange::exportDocument ? tr("Export Scenes and Rules")
                                                        : tr("Import Scenes and Rules"));
    error_->setObjectName(QStringLiteral("error"));
    panel_->setNameFilter(tr("JSON files (*.json)"));
    panel_->setDefaultSuffix(QStringLiteral("json"));
    if (exchange == Exchange::exportDocument) {
        panel_->setAcceptMode(QFileDialog::AcceptSave);
        panel_->selectFile(kDocumentName);
    } else {
        panel_->setFileMode(QFileDialog::ExistingFile);
    }
    describeFilePanel(*panel_);
    connect(panel_, &QFileDialog::fileSelected, this,
            [this](const QString& path) { exchange_ == Exchange::exportDocument ? exportTo(path) : importFrom(path); });
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(panel_, 1);
    column->addWidget(error_);
    if (auto* name = panel_->findChild<QLineEdit*>()) setFocusProxy(name);
}

void DocumentWindow::exportTo(const QString& path) {
    callFor(*error_, services_.agent, "export", json::object(), {.done = [this, path](const json& result) {
        const auto problem = writeDocument(path, result.value("text", ""));
        if (problem) {
            error_->showReason(*problem);
        } else {
            close();
        }
    }});
}

void DocumentWindow::importFrom(const QString& path) {
    const auto read = readDocument(path);
    if (const auto* problem = std::get_if<QString>(&read)) return error_->showReason(*problem);
    sendDocument(services_.agent, this, std::get<QByteArray>(read), Importing::forReal,
                 [this](const Response& response) {
                     error_->showReason(QString::fromStdString(response.error));
                     if (response.error.empty()) close();
                 });
}

} // namespace kova::ui
