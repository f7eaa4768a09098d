#include "DocumentFile.h"

#include "AddressCommand.h"
#include "Autosave.h"
#include "CodeDock.h"
#include "LoadingDialog.h"
#include "RecentFiles.h"
#include "SceneMemory.h"
#include "SceneSaving.h"
#include "Steps.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/Scene.h>
#include <Orvane/SceneMove.h>
#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QorFieldEditor.h>
#include <QorFileDialog.h>
#include <QorTools.h>
#include <QorViewManager.h>
#include <SAI/SAIBrowserRef.h>
#include <climits>

using Orvane::Qt4::QorFieldEditor;
using Orvane::Qt4::QorFileDialog;
using Orvane::Qt4::QorViewManager;

namespace {

/// The pointer says that nothing can be done meanwhile.
class Waiting
{
public:
    Waiting() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Waiting() { QApplication::restoreOverrideCursor(); }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
};

void warn(const QString& text)
{
    FWARNING(("%s\n", Orvane::Qt4::toRuntime(text).c_str()));
}

/// Has values that are still being typed in the cells of a panel taken over, as Return does.
void takeTypedValues(const QWidget& window)
{
    const auto editors = window.findChildren<QorFieldEditor*>();
    for (QorFieldEditor* const editor : editors) {
        const auto* const line = editor->findChild<QLineEdit*>();
        if (!editor->isVisible() || !line || !line->isModified())
            continue;
        editor->signalCommitData();
        emit editor->closeEditor(editor);
    }
}

} // namespace

DocumentFile::DocumentFile(QorViewManager* manager, Steps* steps, Selection* selection, QMainWindow* window)
    : QObject(window)
    , _manager(manager)
    , _steps(steps)
    , _selection(selection)
    , _window(window)
    , _recent(new RecentFiles(window))
    , _autosave(new Autosave(steps, this))
{
    makeAction(tr("&New"), QKeySequence::New, &DocumentFile::makeNew);
    _open = makeAction(tr("&Open..."), QKeySequence::Open, &DocumentFile::askForFile);
    _actions.push_back(_recent->menu()->menuAction());
    makeAction(tr("Re&load"), Qt::Key_F5, &DocumentFile::reload);
    makeAction(QString(), {}, nullptr);
    _save = makeAction(tr("&Save"), QKeySequence::Save, nullptr);
    connect(_save, &QAction::triggered, this, &DocumentFile::save);
    QAction* const as = makeAction(tr("Save &as..."), Qt::CTRL | Qt::SHIFT | Qt::Key_S, nullptr);
    connect(as, &QAction::triggered, this, &DocumentFile::saveAs);
    makeAction(tr("&Export..."), Qt::CTRL | Qt::Key_E, &DocumentFile::exportScene);
    connect(_recent, &RecentFiles::chosen, this, &DocumentFile::openByUser);
    connect(_autosave, &Autosave::due, this, &DocumentFile::saveCopy);
    connect(_steps, &QUndoStack::cleanChanged, this, &DocumentFile::showModified);
    setFile(QString());
}

DocumentFile::~DocumentFile() = default;

void DocumentFile::setCode(CodeDock* code)
{
    _code = code;
    connect(code, &CodeDock::unappliedChanged, this, &DocumentFile::showModified);
}

bool DocumentFile::isModified() const
{
    return !_steps->isClean() || (_code && !_code->unapplied().isEmpty());
}

void DocumentFile::showModified()
{
    _window->setWindowModified(isModified());
}

QAction* DocumentFile::makeAction(const QString& text, const QKeySequence& keys,
                                  void (DocumentFile::*command)())
{
    auto* const action = new QAction(text, this);
    action->setSeparator(text.isEmpty());
    action->setShortcut(keys);
    if (command)
        connect(action, &QAction::triggered, this, command);
    _actions.push_back(action);
    return action;
}

void DocumentFile::addTo(QMenu* menu)
{
    for (QAction* const action : _actions)
        menu->addAction(action);
}

Orvane::Context* DocumentFile::context() const
{
    const std::unique_ptr<__SAI_SAIBrowserRef> browser(_manager->getSAI());
    return browser ? browser->getExecutionContext() : nullptr;
}

void DocumentFile::setFile(const QString& file)
{
    _file = file;
    _stamp = QFileInfo(file).lastModified();
    const QString name = file.isEmpty() ? tr("New scene") : QFileInfo(file).fileName();
    _window->setWindowTitle(tr("%1[*] - Orvane workbench").arg(name));
    showModified();
}

// ---- Opening

bool DocumentFile::load(const QString& source)
{
    Orvane::Context* const scene = context();
    _error.clear();
    if (_isLoading || !scene)
        return false;
    const Waiting waiting;
    bool ok = false;
    {
        const QScopedValueRollback<bool> loading(_isLoading, true);
        const LoadingDialog watcher(*scene, _window->isVisible() ? _patience : INT_MAX, _window);
        ok = _manager->loadContextByURL(source);
        _isCancelled = watcher.isCancelled();
    }
    if (!ok) {
        for (const Orvane::LoadMessage& message : scene->loadReport().messages) {
            if (message.severity == Orvane::LoadMessage::ERROR_LM)
                _error += (_error.isEmpty() ? QString() : QStringLiteral("\n")) +
                          QString::fromUtf8(message.toString().c_str());
        }
    }
    if (_isCancelled)
        _error.clear();
    else if (!ok && _error.isEmpty())
        _error = tr("%1: the scene cannot be loaded").arg(source);
    return ok;
}

bool DocumentFile::open(const QString& file)
{
    // An address is told by its scheme; anything else is a file name, and one with odd characters too.
    const QString path = QFileInfo(file).absoluteFilePath();
    if (!load(path))
        return false;
    _steps->clear();
    setFile(path);
    emit opened();
    return true;
}

bool DocumentFile::openByUser(const QString& file)
{
    if (_isLoading || !mayClose())
        return false;
    const QString path = QFileInfo(file).absoluteFilePath();
    const QString copy = Autosave::newerCopyOf(path);
    const bool brings =
        !copy.isEmpty() &&
        QMessageBox::question(
            _window, tr("Changes that were not saved"),
            tr("There are changes to %1 of %2 that were not saved. Bring them back?")
                .arg(QFileInfo(path).fileName(),
                     QLocale().toString(QFileInfo(copy).lastModified(), QLocale::ShortFormat)),
            QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
    if (brings)
        return openCopy(copy, path);
    emit told(tr("Opening %1...").arg(path));
    if (!open(path)) {
        tellFailure(path);
        return false;
    }
    _autosave->drop(path);
    _recent->add(path);
    emit told(QString());
    return true;
}

/// Opens a copy as changes of a file, which is empty for a new scene.
bool DocumentFile::openCopy(const QString& copy, const QString& file)
{
    if (!open(copy)) {
        tellFailure(copy);
        return false;
    }
    setFile(file);
    _steps->resetClean();
    if (!file.isEmpty())
        _recent->add(file);
    const QByteArray code = Autosave::codeOf(file);
    Orvane::Node* const root = context()->findRoot(Orvane::Scene::_type);
    if (code.isEmpty() || !_code || !root)
        emit told(tr("The changes are back. Save them to keep them."));
    else if (_code->bringBack(*root, code))
        emit told(tr("The changes are back, and code that was not applied waits in its panel."));
    else
        emit told(tr("The changes are back, but code that was not applied has lost its node: see the log."));
    return true;
}

void DocumentFile::recover()
{
    const QStringList left = Autosave::leftCopies();
    for (const QString& file : left) {
        const QString copy = Autosave::newerCopyOf(file);
        if (copy.isEmpty()) {
            _autosave->drop(file);
            continue;
        }
        const QString name = file.isEmpty() ? tr("a new scene") : file;
        const auto answer = QMessageBox::question(
            _window, tr("Changes that were not saved"),
            tr("The workbench ended before the changes of %1 to %2 were saved. Bring them back?")
                .arg(QLocale().toString(QFileInfo(copy).lastModified(), QLocale::ShortFormat), name),
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Discard, QMessageBox::Yes);
        if (answer == QMessageBox::Discard)
            _autosave->drop(file);
        if (answer != QMessageBox::Yes)
            continue;
        openCopy(copy, file);
        return;
    }
}

void DocumentFile::tellFailure(const QString& file)
{
    if (_isCancelled) {
        emit told(tr("The load of %1 was cancelled.").arg(QFileInfo(file).fileName()));
        return;
    }
    if (!QFileInfo::exists(file))
        _recent->remove(file);
    showFailure(tr("Scene not opened"), tr("%1 could not be opened.").arg(QFileInfo(file).fileName()),
                _error);
}

/// Shows what has failed and why; the lines of the reason stand in the log as well.
void DocumentFile::showFailure(const QString& title, const QString& text, const QString& reason)
{
    const QString line = reason.section(QLatin1Char('\n'), 0, 0);
    emit told(line);
    constexpr int shownLines = 3;
    auto* const box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok, _window);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(reason.section(QLatin1Char('\n'), 0, shownLines - 1));
    if (reason.count(QLatin1Char('\n')) >= shownLines)
        box->setDetailedText(reason);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QAbstractButton* const log = box->addButton(tr("Show in &log"), QMessageBox::HelpRole);
    connect(log, &QAbstractButton::clicked, this, [this, line] { emit logWanted(line); });
    box->open();
}

/// Tells what became of a scene that was to be written; nothing when the user has cancelled. False when it is
/// not written.
bool DocumentFile::tellSaved(const SavedScene& saved)
{
    if (saved.isWritten) {
        // At a level that is shown as the workbench starts: they tell of what the file has lost.
        for (const std::string& note : context()->saveNotes())
            FWARNING(("%s: %s\n", Orvane::Qt4::toRuntime(saved.file).c_str(), note.c_str()));
        emit told(saved.told);
    } else if (!saved.file.isEmpty()) {
        warn(saved.told);
        showFailure(tr("Scene not saved"), tr("%1 could not be saved.").arg(QFileInfo(saved.file).fileName()),
                    saved.told);
    }
    return saved.isWritten;
}

void DocumentFile::askForFile()
{
    const QString last = _file.isEmpty() ? RecentFiles::files().value(0) : _file;
    const QStringList filters = QorFileDialog::buildFileFilters();
    QString scenes = filters.value(1); // behind the one for all files
    const QString file = QFileDialog::getOpenFileName(_window, tr("Open scene"), QFileInfo(last).path(),
                                                      filters.join(QStringLiteral(";;")), &scenes);
    if (!file.isEmpty())
        openByUser(file);
}

void DocumentFile::reload()
{
    if (_file.isEmpty()) {
        emit told(tr("A new scene has no file to be read again."));
        return;
    }
    const SceneMemory memory(*_manager, *_selection);
    if (openByUser(_file))
        memory.recall(*_manager, *_selection);
}

void DocumentFile::makeNew()
{
    if (_isLoading || !mayClose())
        return;
    // An empty text would leave the manager as it is while it has no scene.
    _manager->loadContextByString(QString(), QStringLiteral("<X3D version='4.0'><Scene/></X3D>"));
    _steps->clear();
    setFile(QString());
    emit opened();
}

// ---- Saving

bool DocumentFile::applyCode()
{
    return !_isLoading && (!_code || _code->applyAll());
}

/// Asks when another program has written the file since it was opened or saved.
bool DocumentFile::mayOverwrite()
{
    const QFileInfo info(_file);
    return !info.isFile() || info.lastModified() == _stamp ||
           QMessageBox::question(
               _window, tr("Overwrite file?"),
               tr("Another program has written %1 since it was opened. Overwrite it?").arg(info.fileName()),
               QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Save;
}

/// Writes the scene to the file that is its own from then on.
bool DocumentFile::write(const SaveTarget& target)
{
    Orvane::Context& scene = *context();
    std::unique_ptr<Orvane::SceneMove> move = moveTo(scene, target.file);
    Addresses addresses = Addresses::Kept;
    if (move && !mayMove(*move, target.file, _window, addresses))
        return false;
    const bool rewrites = addresses == Addresses::Rewritten;
    if (rewrites)
        move->make(true);
    SavedScene saved;
    {
        const Waiting waiting;
        saved = saveScene(scene, target);
    }
    if (rewrites && !saved.isWritten)
        move->takeBack();
    if (!tellSaved(saved))
        return false;
    if (rewrites)
        _steps->push(new AddressCommand(*_steps, std::move(move)));
    else if (move)
        move->make(false);
    _steps->setClean();
    _autosave->drop(_file);
    return true;
}

bool DocumentFile::save()
{
    takeTypedValues(*_window);
    // A suffix that names no encoding leaves open how to write.
    if (_file.isEmpty() || !context() || !canWrite(_file))
        return saveAs();
    if (!applyCode() || !mayOverwrite() || !write({_file, _options}))
        return false;
    _stamp = QFileInfo(_file).lastModified();
    return true;
}

bool DocumentFile::saveAs()
{
    takeTypedValues(*_window);
    if (!context() || !applyCode())
        return false;
    const SaveTarget target = askForTarget({_file, _options}, _window);
    if (target.file.isEmpty() || !write(target))
        return false;
    _options = target.options;
    setFile(target.file);
    _recent->add(target.file);
    return true;
}

/// Asks whether code that was not applied is to be in the file that is exported.
bool DocumentFile::mayExport()
{
    const QStringList code = _code ? _code->unapplied() : QStringList();
    if (code.isEmpty())
        return true;
    const auto answer = QMessageBox::question(
        _window, tr("Apply code?"),
        tr("The code of %1 was changed and not applied. Apply it before the scene is exported?")
            .arg(code.join(QStringLiteral(", "))),
        QMessageBox::Apply | QMessageBox::Ignore | QMessageBox::Cancel, QMessageBox::Apply);
    return answer == QMessageBox::Ignore || (answer == QMessageBox::Apply && applyCode());
}

void DocumentFile::exportScene()
{
    takeTypedValues(*_window);
    Orvane::Context* const scene = context();
    if (!scene || _isLoading || !mayExport())
        return;
    const SaveTarget target = askForTarget({_file, _exportOptions}, _window, tr("Export scene"));
    const std::unique_ptr<Orvane::SceneMove> move =
        target.file.isEmpty() ? nullptr : moveTo(*scene, target.file);
    Addresses addresses = Addresses::Kept;
    if (target.file.isEmpty() || (move && !mayMove(*move, target.file, _window, addresses)))
        return;
    if (tellSaved(saveElsewhere(*scene, target, addresses)))
        _exportOptions = target.options;
}

void DocumentFile::saveCopy()
{
    Orvane::Context* const scene = context();
    if (!scene || _isLoading)
        return;
    const QString fault = _autosave->write(*scene, _file, _code ? _code->keptCode() : QByteArray());
    if (fault.isEmpty())
        _copyFaults.clear();
    if (fault.isEmpty() || _copyFaults.contains(fault))
        return;
    _copyFaults << fault;
    const QString text = tr("No copy against loss: %1").arg(fault);
    warn(text);
    emit told(text);
}

bool DocumentFile::mayClose()
{
    takeTypedValues(*_window);
    if (_isLoading)
        return false;
    if (!isModified())
        return true;
    const QString name = _file.isEmpty() ? tr("the new scene") : QFileInfo(_file).fileName();
    const QStringList code = _code ? _code->unapplied() : QStringList();
    QString text = tr("Save the changes to %1?").arg(name);
    if (!code.isEmpty())
        text += QStringLiteral("\n\n") +
                tr("Code that was not applied goes with them: %1.").arg(code.join(QStringLiteral(", ")));
    switch (QMessageBox::question(_window, tr("Save changes?"), text,
                                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                  QMessageBox::Save))
    {
    case QMessageBox::Save:
        return save();
    case QMessageBox::Discard:
        _autosave->drop(_file);
        return true;
    default:
        return false;
    }
}
