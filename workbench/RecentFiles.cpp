#include "RecentFiles.h"

#include <QFileInfo>
#include <QMenu>
#include <QSettings>

namespace {

const QString key = QStringLiteral("recentFiles");

} // namespace

RecentFiles::RecentFiles(QWidget* parent)
    : QObject(parent)
    , _menu(new QMenu(tr("Open &recent"), parent))
{
    // Another window may have opened files meanwhile.
    connect(_menu, &QMenu::aboutToShow, this, &RecentFiles::fillMenu);
    _menu->setProperty("isListOfFiles", true);
    fillMenu();
}

QStringList RecentFiles::files()
{
    return QSettings().value(key).toStringList();
}

void RecentFiles::add(const QString& file)
{
    QStringList all = files();
    all.removeAll(file);
    all.prepend(file);
    keep(all.mid(0, most));
}

void RecentFiles::remove(const QString& file)
{
    QStringList all = files();
    all.removeAll(file);
    keep(all);
}

void RecentFiles::keep(const QStringList& files)
{
    QSettings().setValue(key, files);
    fillMenu();
}

void RecentFiles::fillMenu()
{
    _menu->clear();
    int number = 0;
    const QStringList all = files();
    for (const QString& file : all) {
        // Names may hold what stands for a key in a menu.
        QString name = QFileInfo(file).fileName();
        name.replace(QLatin1Char('&'), QStringLiteral("&&"));
        const QString folder = QFileInfo(file).path().replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction* const action =
            _menu->addAction(QStringLiteral("&%1  %2  (%3)").arg(++number).arg(name, folder));
        action->setToolTip(file);
        connect(action, &QAction::triggered, this, [this, file] { emit chosen(file); });
    }
    if (all.isEmpty())
        _menu->addAction(tr("No scenes yet"))->setEnabled(false);
    else
        _menu->addSeparator();
    if (!all.isEmpty())
        _menu->addAction(tr("&Forget them"), this, [this] { keep({}); });
}
