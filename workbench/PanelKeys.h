#pragma once

#include <QObject>

class QDockWidget;

/// The keys of a panel, which are those of its action in the menu: they lead to the panel from anywhere, and
/// put it away when it has the focus already. The tick in the menu shows and hides as ever. The panel owns
/// it.
class PanelKeys : public QObject
{
    Q_OBJECT

public:
    explicit PanelKeys(QDockWidget* panel);

    /// Shows the panel in front of others and gives it the focus.
    void lead();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QDockWidget* _panel;
};
