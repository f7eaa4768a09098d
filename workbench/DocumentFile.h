#pragma once

#include <Orvane/SaveOptions.h>
#include <QDateTime>
#include <QObject>
#include <vector>

class Autosave;
class CodeDock;
class QAction;
class QMainWindow;
class QMenu;
class RecentFiles;
class Selection;
class Steps;
struct SavedScene;
struct SaveTarget;

namespace Orvane {
class Context;
namespace Qt4 {
class QorViewManager;
}
} // namespace Orvane

/// The file of the scene in a window: opens, reloads, saves and exports it, asks before changes get lost, and
/// tells why a file cannot be read. Whether there are changes the stack of steps knows. Its parent, the
/// window, owns it and bears the name of the file in its title.
class DocumentFile : public QObject
{
    Q_OBJECT

public:
    /// All are borrowed.
    DocumentFile(Orvane::Qt4::QorViewManager* manager, Steps* steps, Selection* selection,
                 QMainWindow* window);
    ~DocumentFile() override;

    /// Code that is written in a panel and not applied yet is a change like the others; it is applied before
    /// the scene is saved. The panel is borrowed.
    void setCode(CodeDock* code);
    /// Loads that take longer than so many milliseconds are shown, and can be cancelled.
    void setPatience(int milliseconds) { _patience = milliseconds; }

    /// Adds the commands to a menu.
    void addTo(QMenu* menu);
    QAction* openAction() const { return _open; }
    QAction* saveAction() const { return _save; }

    /// Offers the user what an earlier run of the program has left unsaved.
    void recover();

    /// Opens a scene without a question or a message. False when it cannot be loaded: the present scene
    /// stays, and `error()` says why.
    bool open(const QString& file);
    /// Lines of the log that say why the last file could not be loaded.
    const QString& error() const { return _error; }
    /// Opens a scene for the user: asks about changes of the present one and about a copy that was saved by
    /// itself, and shows why a file fails.
    bool openByUser(const QString& file);
    /// Asks whether changes are to be saved, when there are some. False when the user wants to go on.
    bool mayClose();

    /// The file of the scene; empty for a new one.
    const QString& file() const { return _file; }

public slots:
    bool save();
    bool saveAs();

signals:
    /// There is another scene, or the same one read anew.
    void opened();
    /// Something for the user to read.
    void told(const QString& text);
    /// The user wants to see the line of the log that has this text.
    void logWanted(const QString& text);

private:
    QAction* makeAction(const QString& text, const QKeySequence& keys, void (DocumentFile::*command)());
    void makeNew();
    void askForFile();
    void reload();
    void exportScene();
    void saveCopy();
    bool load(const QString& source);
    bool openCopy(const QString& copy, const QString& file);
    bool isModified() const;
    void showModified();
    bool applyCode();
    bool mayOverwrite();
    bool mayExport();
    bool write(const SaveTarget& target);
    void setFile(const QString& file);
    void tellFailure(const QString& file);
    void showFailure(const QString& title, const QString& text, const QString& reason);
    bool tellSaved(const SavedScene& saved);
    Orvane::Context* context() const;

    Orvane::Qt4::QorViewManager* _manager;
    Steps* _steps;
    Selection* _selection;
    CodeDock* _code = nullptr;
    QMainWindow* _window;
    RecentFiles* _recent;
    Autosave* _autosave;
    QStringList _copyFaults; ///< told since the last copy against loss
    int _patience = 400;
    bool _isLoading = false;
    bool _isCancelled = false; ///< the last load, by the user
    QString _file;
    QDateTime _stamp; ///< of the file as the scene has it
    QString _error;
    Orvane::SaveOptions _options;       ///< of the last save
    Orvane::SaveOptions _exportOptions; ///< of the last export
    QAction* _open;
    QAction* _save = nullptr;
    std::vector<QAction*> _actions;
};
