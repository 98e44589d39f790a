#include "app/characters/munshi/MunshiExport.h"

#include "core/base/WholeFile.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFileDialog>
#include <QGuiApplication>
#include <QPointer>
#include <QStandardPaths>

namespace DeskSprites::MunshiExport {

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Munshi", source);
}

/// Writes on the saver's thread, and reports on the main loop while there is someone to report to.
void write(QWidget& parent, DesktopServices& services, const QString& path, const std::string& markdown,
           const Report& report) {
    const std::string file = path.toStdString();
    const QString done = words("Saved as %1.").arg(QFileInfo(path).fileName());
    auto tell = [to = QPointer<QWidget>(&parent), report](const QString& sentence) {
        QMetaObject::invokeMethod(
            qApp,
            [to, report, sentence] {
                if (to) {
                    report(sentence);
                }
            },
            Qt::QueuedConnection);
    };
    services.saver.save(
        file, "Munshi could not save a day", [&files = services.files, file, markdown, tell, done] {
            try {
                FellowCore::writeWholeFile(files, file, markdown + "\n");
                tell(done);
            } catch (const FellowCore::FileError& error) {
                tell(words("The day was not saved. (%1)").arg(QString::fromUtf8(error.what())));
            }
        });
}

} // namespace

void copy(const std::string& markdown, const Report& report) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(markdown));
    report(words("The day is on the clipboard, as Markdown."));
}

void save(QWidget& parent, DesktopServices& services, const std::string& key, const std::string& markdown,
          const Report& report) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    auto* dialog = new QFileDialog(&parent, words("Save the day as Markdown"), folder,
                                   words("Markdown (*.md);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("md"));
    dialog->selectFile(QString::fromStdString(key) + QStringLiteral(".md"));
    QObject::connect(dialog, &QFileDialog::fileSelected, &parent,
                     [&parent, &services, markdown, report](const QString& path) {
                         write(parent, services, path, markdown, report);
                     });
    dialog->open();
}

} // namespace DeskSprites::MunshiExport
