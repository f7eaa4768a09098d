#include "SceneSaving.h"

#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/GraphLoader.h>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QorFileDialog.h>
#include <QorTools.h>
#include <algorithm>
#include <list>

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

void showOptions(const Orvane::SaveOptions& options, QorFileDialog& dialog)
{
    dialog.setSkipRoot(options.skipRoot);
    dialog.setUseTab(options.useTabs);
    dialog.setResolveProto(options.resolveProtos);
    dialog.setWriteProcInfo(options.writeProcInfo);
    dialog.setWriteAbstract(options.writeAbstractNodes);
    dialog.setWriteDefaultValue(options.writeDefaultValues);
}

} // namespace

bool canWrite(const QString& file)
{
    std::list<std::string> suffixes;
    Orvane::GraphLoader::getSuffixList(suffixes);
    const std::string own = QFileInfo(file).suffix().toLower().toStdString();
    return std::find(suffixes.begin(), suffixes.end(), own) != suffixes.end();
}

SavedScene saveScene(Orvane::Context& scene, const QString& file, const Orvane::SaveOptions& options)
{
    SavedScene saved;
    saved.file = file;
    saved.options = options;
    std::string error;
    saved.isWritten = scene.save(QFile::encodeName(file).toStdString(), options, error);
    if (!saved.isWritten) {
        saved.told = told(QT_TRANSLATE_NOOP("SceneSaving", "%1 cannot be written: "), file) +
                     Orvane::Qt4::fromRuntime(error);
        FWARNING(("%s\n", Orvane::Qt4::toRuntime(saved.told).c_str()));
    } else if (scene.saveNotes().empty())
        saved.told = told(QT_TRANSLATE_NOOP("SceneSaving", "Saved %1"), file);
    else
        saved.told =
            told(QT_TRANSLATE_NOOP("SceneSaving", "Saved %1; the log tells what is otherwise in it"), file);
    return saved;
}

SavedScene saveSceneByDialog(Orvane::Context& scene, const QString& file, const Orvane::SaveOptions& options,
                             QWidget* parent, const QString& title)
{
    QorFileDialog dialog(parent);
    dialog.setWindowTitle(title.isEmpty() ? QCoreApplication::translate("SceneSaving", "Save scene") : title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(QorFileDialog::buildFileFilters());
    dialog.setDefaultSuffix(QStringLiteral("x3d"));
    showOptions(options, dialog);
    if (!file.isEmpty()) {
        dialog.setDirectory(QFileInfo(file).path());
        const QFileInfo info(file);
        dialog.selectFile(canWrite(file) ? info.fileName()
                                         : info.completeBaseName() + QStringLiteral(".x3d"));
    }
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return saveScene(scene, dialog.selectedFiles().constFirst(), optionsOf(dialog));
}
