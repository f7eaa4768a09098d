#pragma once

#include "QorExport.h"
#include <QtCore/QMap>
#include <QtWidgets/QFrame>

class QAbstractButton;
class QButtonGroup;
class QHBoxLayout;
class QPushButton;

namespace Orvane {
class WindowProc;
}

namespace Orvane::Qt4 {

/// The strip of small buttons at the top right of a render view that send navigator messages to its window:
/// one button for each message of the runtime that has an icon here, and one that folds the strip. Owned by
/// its view.
class QOR_EXPORT QorWindowToolbar : public QFrame
{
    Q_OBJECT

public:
    /// \a windowProc is borrowed; it receives the messages.
    QorWindowToolbar(QWidget* parent, Orvane::WindowProc* windowProc);

    /// Whether the message buttons show; false when there are none.
    bool buttonsVisible() const;

    /// Lets go of the runtime's window, which is about to end.
    void forgetWindowProc() { _windowProc = nullptr; }

public slots:
    /// Shows or hides the message buttons. The strip stays at the right edge of its parent.
    void setButtonsVisible(bool visible);

protected:
    /// Makes the message buttons in the runtime's order, and the toggle button behind them.
    void createButtons();

protected slots:
    /// Sends the message that bears the button's object name.
    void onBtnClicked(QAbstractButton* button);

private:
    /// Message name to icon; filled by the first tool bar of the process.
    static QMap<QString, const char**> messageIconMap;

    Orvane::WindowProc* _windowProc;
    QHBoxLayout* _layout = nullptr;
    QButtonGroup* _buttonGroup = nullptr;
    QPushButton* _toggleButton = nullptr;
};

} // namespace Orvane::Qt4
