#include "SceneSaving.h"

#include <Orvane/Context.h>
#include <Orvane/GraphLoader.h>
#include <Orvane/Scene.h>
#include <Orvane/SceneMove.h>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QorFileDialog.h>
#include <QorTools.h>
#include <algorithm>
#include <list>

using Orvane::Qt4::QorFileDialog;

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("SceneSaving", text);
}

std::string nameOf(const QString& file)
{
    return QFile::encodeName(file).toStdString();
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

SaveTarget askForTarget(const SaveTarget& present, QWidget* parent, const QString& title)
{
    QorFileDialog dialog(parent);
    dialog.setWindowTitle(title.isEmpty() ? tr("Save scene") : title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(QorFileDialog::buildFileFilters());
    dialog.setDefaultSuffix(QStringLiteral("x3d"));
    showOptions(present.options, dialog);
    if (!present.file.isEmpty()) {
        const QFileInfo info(present.file);
        dialog.setDirectory(info.path());
        dialog.selectFile(canWrite(present.file) ? info.fileName()
                                                 : info.completeBaseName() + QStringLiteral(".x3d"));
    }
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return {dialog.selectedFiles().constFirst(), optionsOf(dialog)};
}

std::unique_ptr<Orvane::SceneMove> moveTo(Orvane::Context& scene, const QString& file)
{
    Orvane::Node* const root = scene.findRoot(Orvane::Scene::_type);
    return root ? std::make_unique<Orvane::SceneMove>(*root, nameOf(file)) : nullptr;
}

bool mayMove(const Orvane::SceneMove& move, const QString& file, QWidget* parent, Addresses& addresses)
{
    addresses = Addresses::Kept;
    if (move.addresses().empty())
        return true;
    constexpr int mostShown = 5;
    QStringList shown;
    for (const std::string& address : move.addresses()) {
        if (shown.size() < mostShown)
            shown << Orvane::Qt4::fromRuntime(address);
    }
    const int others = static_cast<int>(move.addresses().size()) - shown.size();
    if (others > 0)
        shown << tr("and %1 more").arg(others);
    QMessageBox box(QMessageBox::Question, tr("Rewrite addresses?"),
                    tr("From the folder of %1 these addresses of the scene do not lead to their files:")
                        .arg(QFileInfo(file).fileName()),
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(shown.join(QLatin1Char('\n')) + QStringLiteral("\n\n") +
                           tr("Rewritten, they lead to the same files as now. Kept, they lead to files "
                              "beside %1, which may not be there.")
                               .arg(QFileInfo(file).fileName()));
    box.button(QMessageBox::Yes)->setText(tr("&Rewrite"));
    box.button(QMessageBox::No)->setText(tr("&Keep"));
    box.setDefaultButton(QMessageBox::Yes);
    const int answer = box.exec();
    if (answer == QMessageBox::Yes)
        addresses = Addresses::Rewritten;
    return answer == QMessageBox::Yes || answer == QMessageBox::No;
}

SavedScene saveScene(Orvane::Context& scene, const SaveTarget& target)
{
    SavedScene saved;
    saved.file = target.file;
    std::string error;
    saved.isWritten = scene.save(nameOf(target.file), target.options, error);
    if (!saved.isWritten)
        saved.told = tr("%1 cannot be written: ").arg(target.file) + Orvane::Qt4::fromRuntime(error);
    else if (scene.saveNotes().empty())
        saved.told = tr("Saved %1").arg(target.file);
    else
        saved.told = tr("Saved %1; the log tells what is otherwise in it").arg(target.file);
    return saved;
}

SavedScene saveElsewhere(Orvane::Context& scene, const SaveTarget& target, Addresses addresses)
{
    const std::unique_ptr<Orvane::SceneMove> move =
        addresses == Addresses::Rewritten ? moveTo(scene, target.file) : nullptr;
    if (move)
        move->make(true);
    SavedScene saved = saveScene(scene, target);
    if (move)
        move->takeBack();
    return saved;
}
