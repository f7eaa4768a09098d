#include "DialogRobot.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTextEdit>
#include <QTimer>
#include <QWindow>
#include <QtTest>

namespace {

constexpr int mostAnswers = 12;   ///< before a dialog is put away
constexpr int longestWait = 3000; ///< ms

void press(QWidget* widget, Qt::Key key)
{
    QTest::keyClick(widget, key);
}

} // namespace

DialogRobot::DialogRobot(QRandomGenerator& random, std::function<QString()> fileToOpen,
                         std::function<QString()> fileToSave)
    : _random(random)
    , _fileToOpen(std::move(fileToOpen))
    , _fileToSave(std::move(fileToSave))
{
    wait();
}

void DialogRobot::type(QWidget* widget, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &press);
}

void DialogRobot::wait()
{
    QTimer::singleShot(2, this, [this] {
        // An answer may open another dialog, in which this timer has to run too.
        wait();
        if (!act() && _doing.isValid() && _doing.hasExpired(longestWait) && QGuiApplication::focusWindow())
            QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Escape);
    });
}

void DialogRobot::watch(bool isDoing)
{
    if (isDoing)
        _doing.start();
    else
        _doing.invalidate();
}

bool DialogRobot::once(int in)
{
    return _random.bounded(in) == 0;
}

bool DialogRobot::act()
{
    if (QWidget* const popup = QApplication::activePopupWidget()) {
        ++menus;
        if (auto* const menu = qobject_cast<QMenu*>(popup))
            answerMenu(menu);
        else
            answerPopup(popup, !once(3));
        return true;
    }
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* const window : windows) {
            if (window->isVisible() && !dialog)
                dialog = qobject_cast<QDialog*>(window);
        }
    }
    if (!dialog)
        return false;
    answerDialog(dialog);
    return true;
}

void DialogRobot::finish()
{
    for (int i = 0; i < 200 && act(); ++i)
        QCoreApplication::processEvents();
}

void DialogRobot::answerMenu(QMenu* menu)
{
    QList<QAction*> choices = menu->actions();
    choices.erase(std::remove_if(choices.begin(), choices.end(),
                                 [](const QAction* action) {
                                     return action->isSeparator() || !action->isEnabled() ||
                                            !action->isVisible();
                                 }),
                  choices.end());
    const QPointer<QMenu> living(menu);
    if (choices.isEmpty() || once(4)) {
        menu->close();
        return;
    }
    menu->setActiveAction(choices.at(static_cast<int>(_random.bounded(choices.size()))));
    if (living)
        press(menu, Qt::Key_Return);
    if (living && living->isVisible() && once(4))
        living->close();
}

void DialogRobot::answerPopup(QWidget* popup, bool accepts)
{
    const QPointer<QWidget> living(popup);
    auto* const list = popup->findChild<QAbstractItemView*>();
    QWidget* const target = list ? list : popup;
    if (accepts) {
        press(target, Qt::Key_Down);
        if (living)
            press(target, Qt::Key_Return);
    }
    if (living && living->isVisible())
        press(target, Qt::Key_Escape);
    if (living && living->isVisible())
        living->close();
}

void DialogRobot::answerFiles(QFileDialog* dialog)
{
    const bool isSave = dialog->acceptMode() == QFileDialog::AcceptSave;
    if (once(6)) {
        dialog->reject();
        return;
    }
    const auto boxes = dialog->findChildren<QCheckBox*>();
    for (QCheckBox* const box : boxes) {
        if (once(4))
            box->click();
    }
    dialog->selectFile(isSave ? _fileToSave() : _fileToOpen());
    auto* const buttons = dialog->findChild<QDialogButtonBox*>();
    QPushButton* const button =
        buttons ? buttons->button(isSave ? QDialogButtonBox::Save : QDialogButtonBox::Open) : nullptr;
    if (button && button->isEnabled())
        button->click();
    else
        dialog->reject();
}

void DialogRobot::answerDialog(QDialog* dialog)
{
    if (dialog != _lastDialog) {
        ++dialogs;
        _answers = 0;
    }
    _lastDialog = dialog;
    if (++_answers > mostAnswers) {
        dialog->reject();
        dialog->close();
        return;
    }
    if (auto* const files = qobject_cast<QFileDialog*>(dialog)) {
        answerFiles(files);
        return;
    }
    const QPointer<QDialog> living(dialog);
    if (!qobject_cast<QMessageBox*>(dialog))
        fillIn(dialog);
    if (!living)
        return;
    QList<QPushButton*> buttons = dialog->findChildren<QPushButton*>();
    buttons.erase(std::remove_if(buttons.begin(), buttons.end(),
                                 [](const QPushButton* button) {
                                     // The screen is not ours to pick colours from.
                                     return !button->isEnabled() || !button->isVisible() ||
                                            button->text().contains(QLatin1String("Screen"));
                                 }),
                  buttons.end());
    if (buttons.isEmpty())
        press(dialog, once(2) ? Qt::Key_Return : Qt::Key_Escape);
    else
        buttons.at(static_cast<int>(_random.bounded(buttons.size())))->click();
}

QString DialogRobot::anyText()
{
    static const char* const texts[] = {
        "1",      "0 0 1",       "-5",    "1e9",  "nan",   "TRUE",     "false",   "\"abc\"", "",
        "Name7",  "[1 2, 3",     "1 0 0", "USE",  "{}",    "Box",      "#ff0000", "NULL",    "2147483648",
        "a b\"c", "0.5 0.5 0.5", "0",     "1e39", "T <&>", "set_name", "children"};
    constexpr int count = sizeof(texts) / sizeof(texts[0]);
    const int choice = static_cast<int>(_random.bounded(count + 3));
    if (choice < count)
        return QLatin1String(texts[choice]);
    if (choice == count)
        return QString(3000, QLatin1Char('7'));
    const QChar letters[] = {QChar(0xe4), QChar(0x3bb), QChar(0x4e2d), QChar(0x0a)};
    return QString(letters, choice - count + 1);
}

void DialogRobot::fillIn(QWidget* widget)
{
    QList<QPointer<QWidget>> living{QPointer<QWidget>(widget)};
    const auto all = widget->findChildren<QWidget*>();
    for (QWidget* const child : all)
        living << QPointer<QWidget>(child);
    for (const QPointer<QWidget>& part : qAsConst(living)) {
        if (!part || !part->isEnabled() || !part->isVisible() || once(3))
            continue;
        if (auto* const line = qobject_cast<QLineEdit*>(part)) {
            line->selectAll();
            type(line, anyText());
        } else if (auto* const spin = qobject_cast<QAbstractSpinBox*>(part)) {
            spin->stepBy(static_cast<int>(_random.bounded(7)) - 3);
        } else if (auto* const combo = qobject_cast<QComboBox*>(part)) {
            if (combo->count() > 0)
                combo->setCurrentIndex(static_cast<int>(_random.bounded(combo->count())));
        } else if (auto* const box = qobject_cast<QCheckBox*>(part)) {
            box->click();
        } else if (auto* const text = qobject_cast<QTextEdit*>(part)) {
            if (!text->isReadOnly())
                text->insertPlainText(anyText());
        } else if (auto* const plain = qobject_cast<QPlainTextEdit*>(part)) {
            if (!plain->isReadOnly())
                plain->insertPlainText(anyText());
        } else if (auto* const list = qobject_cast<QAbstractItemView*>(part)) {
            if (const int rows = list->model() ? list->model()->rowCount() : 0)
                list->setCurrentIndex(list->model()->index(static_cast<int>(_random.bounded(rows)), 0));
        }
    }
}
