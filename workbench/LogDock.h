#pragma once

#include <QDockWidget>

/// The panel of the process log. What the log says goes to the terminal too, as it does without the panel.
class LogDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit LogDock(QWidget* parent);
};
