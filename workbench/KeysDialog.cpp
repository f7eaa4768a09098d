#include "KeysDialog.h"

#include <QAction>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

/// The text of a command without the mark of its key.
QString plainText(const QAction& action)
{
    QString text = action.text();
    return text.remove(QLatin1Char('&'));
}

QString keysOf(const QAction& action)
{
    QStringList keys;
    const auto all = action.shortcuts();
    for (const QKeySequence& each : all)
        keys << each.toString(QKeySequence::NativeText);
    return keys.join(QStringLiteral(", "));
}

void addCommands(const QMenu& menu, QTreeWidgetItem* parent)
{
    const auto actions = menu.actions();
    for (const QAction* const action : actions) {
        if (action->isSeparator())
            continue;
        auto* const item = new QTreeWidgetItem(parent, {plainText(*action), keysOf(*action)});
        if (action->menu() && !action->menu()->property("isListOfFiles").toBool())
            addCommands(*action->menu(), item);
    }
}

} // namespace

void showKeys(const QMenuBar& menus, QWidget* window)
{
    QDialog dialog(window);
    dialog.setWindowTitle(QDialog::tr("Commands and keys"));
    auto* const list = new QTreeWidget(&dialog);
    list->setHeaderLabels({QDialog::tr("Command"), QDialog::tr("Keys")});
    list->setAlternatingRowColors(true);
    const auto actions = menus.actions();
    for (const QAction* const action : actions) {
        if (action->menu())
            addCommands(*action->menu(), new QTreeWidgetItem(list, {plainText(*action)}));
    }
    list->expandAll();
    list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* const layout = new QVBoxLayout(&dialog);
    layout->addWidget(list);
    layout->addWidget(buttons);
    const QFontMetrics metrics = dialog.fontMetrics();
    dialog.resize(metrics.averageCharWidth() * 60, metrics.lineSpacing() * 34);
    dialog.exec();
}
