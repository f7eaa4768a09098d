#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <functional>

class QDialog;
class QFileDialog;
class QMenu;
class QRandomGenerator;
class QWidget;

/// Answers every dialog and menu that opens, also those that wait in event loops of their own, at random. It
/// opens and saves only what it is given names for.
class DialogRobot : public QObject
{
    Q_OBJECT

public:
    /// \a random is borrowed. The functions name a file to open, and one to save as.
    DialogRobot(QRandomGenerator& random, std::function<QString()> fileToOpen,
                std::function<QString()> fileToSave);

    /// Answers what is open now. False when nothing is.
    bool act();
    /// Answers until nothing is open.
    void finish();
    /// From now on something is done, or not: what waits too long for a real mouse, as drags do, is given up.
    void watch(bool isDoing);

    /// Types, chooses and ticks at random in a widget and those below it.
    void fillIn(QWidget* widget);
    /// A text that somebody might type, of any sense or none.
    QString anyText();
    /// Types a text of any characters.
    static void type(QWidget* widget, const QString& text);

    int dialogs = 0; ///< that were answered
    int menus = 0;

private:
    void wait();
    void answerMenu(QMenu* menu);
    static void answerPopup(QWidget* popup, bool accepts);
    void answerFiles(QFileDialog* dialog);
    void answerDialog(QDialog* dialog);
    bool once(int in);

    QRandomGenerator& _random;
    std::function<QString()> _fileToOpen;
    std::function<QString()> _fileToSave;
    QWidget* _lastDialog = nullptr; ///< compared only
    int _answers = 0;               ///< to the last dialog
    QElapsedTimer _doing;
};
