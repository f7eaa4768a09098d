#pragma once

#include <QObject>

class QAction;

namespace Orvane::Qt4 {
class QorRenderView;
class QorViewManager;
} // namespace Orvane::Qt4

/// Looks after the render views of a manager, also those to come: shows their buttons, tells the scene when
/// the pointer has left them, and shows what the sensor under the pointer says of itself as a tool tip. Its
/// parent owns it.
class ViewAttendant : public QObject
{
    Q_OBJECT

public:
    explicit ViewAttendant(Orvane::Qt4::QorViewManager* manager, QObject* parent = nullptr);

    /// Shows or hides the buttons in all views; checked at first.
    QAction* buttonsAction() const { return _buttonsAction; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(Orvane::Qt4::QorRenderView* view);
    void showButtons(bool visible);

    Orvane::Qt4::QorViewManager* _manager;
    QAction* _buttonsAction;
};
