#include "SceneSaving.h"

#include <Orvane/Context.h>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QorFileDialog.h>
#include <QorTools.h>

using Orvane::Qt4::QorFileDialog;

namespace {

QString told(const char* text, const QString& file)
{
    return QCoreApplication::translate("SceneSaving", text).arg(file);
}

Orvane::SaveOptions optionsOf(const QorFileDialog& dialog)
{
    Orvane::SaveOptions options;
    options.skipRoot = dialog.isSkippingRoot();
    options.useTabs = dialog.isUsingTab();
    options.resolveProtos = dialog.isResolvingProto();
    options.writeProcInfo = dialog.isWritingProcInfo();
    options.writeAbstractNodes = dialog.isWritingAbstract();
    options.writeDefaultValues = dialog.isWritingDefaultValue();
    return options;
}

} // namespace

QString saveSceneByDialog(Orvane::Context& scene, const QString& file, QWidget* parent)
{
    QorFileDialog dialog(parent);
    dialog.setWindowTitle(QCoreApplication::translate("SceneSaving", "Save scene"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(QorFileDialog::buildFileFilters());
    dialog.setDefaultSuffix(QStringLiteral("x3d"));
    if (!file.isEmpty()) {
        dialog.setDirectory(QFileInfo(file).path());
        dialog.selectFile(QFileInfo(file).fileName());
    }
    if (dialog.exec() != QDialog::Accepted)
        return {};

    const QString target = dialog.selectedFiles().constFirst();
    std::string error;
    if (!scene.save(QFile::encodeName(target).toStdString(), optionsOf(dialog), error))
        return told(QT_TRANSLATE_NOOP("SceneSaving", "%1 cannot be written: "), target) +
               Orvane::Qt4::fromRuntime(error);
    const bool isWhole = scene.saveNotes().empty();
    return told(
        isWhole ? QT_TRANSLATE_NOOP("SceneSaving", "Saved %1")
                : QT_TRANSLATE_NOOP("SceneSaving", "Saved %1; the log tells what its encoding cannot say"),
        target);
}
