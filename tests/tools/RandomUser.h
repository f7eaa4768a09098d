#pragma once

#include "DialogRobot.h"
#include <QEvent>
#include <QModelIndex>
#include <QPointer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <memory>
#include <vector>

class QAbstractItemView;
class QTreeView;
class WorkbenchWindow;

/// Somebody who uses all of the workbench without sense: commands, keys and the mouse everywhere, edits of
/// every kind, files that are opened and saved. One seed leads it all, so that a run can be done again; the
/// scene's clock goes on with the steps. It works on copies of the scenes in a folder of its own.
class RandomUser
{
public:
    /// \a scenes are files, each copied with its folder. With \a isLive the window runs its own frames, by
    /// the clock of the machine.
    RandomUser(quint32 seed, const QStringList& scenes, bool isLive);
    ~RandomUser();
    RandomUser(const RandomUser&) = delete;
    RandomUser& operator=(const RandomUser&) = delete;

    /// Does one thing. The name of what it did.
    const char* step();

    /// The file of the scene that is open.
    QString scene() const;
    QString folder() const { return _folder.path(); }

    int opened = 0;  ///< scenes
    int saved = 0;   ///< files
    int windows = 0; ///< main windows one after the other
    int changes = 0; ///< states of the stack of steps that followed another
    int dialogs() const { return _robot.dialogs; }
    int menus() const { return _robot.menus; }

private:
    struct Habit
    {
        int weight;
        const char* name;
        void (RandomUser::*act)();
    };
    static const std::vector<Habit>& habits();

    void makeWindow();
    void settle();
    void openAnother();
    void saveAs();
    void triggerAction();
    void undoOrRedo();
    void typeKeys();
    void clickButton();
    void openContextMenu();
    void useMouseAnywhere();
    void useView();
    void selectNode();
    void editField();
    void dropNode();
    void drawRoute();
    void useCanvas();
    void deleteRoutes();
    void editCode();
    void paintTable();
    void changeWindow();
    void fillInAnything();
    void runFrames();

    int below(int limit) { return static_cast<int>(_random.bounded(limit)); }
    bool once(int in) { return below(in) == 0; }
    QString copyOf(const QString& scene);
    QString fileToSave();
    QPoint placeIn(const QWidget* widget);
    QModelIndex anyRow(QAbstractItemView* view);
    QWidget* anyWidget();
    void sendMouse(QWidget* widget, QEvent::Type type, QPoint place, Qt::MouseButton button,
                   Qt::MouseButtons buttons);
    void drag(QWidget* widget, Qt::MouseButton button);
    void turnWheel(QWidget* widget);
    template <class T>
    T* any(const QList<T*>& objects)
    {
        return objects.isEmpty() ? nullptr : objects.at(below(objects.size()));
    }

    QTemporaryDir _folder;
    QRandomGenerator _random;
    QRandomGenerator _answers;
    bool _isLive;
    QStringList _scenes;
    DialogRobot _robot;
    std::unique_ptr<WorkbenchWindow> _window;
    Qt::KeyboardModifiers _modifiers;
    double _time = 1000.0;
    int _files = 0;
};
