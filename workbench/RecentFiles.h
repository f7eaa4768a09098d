#pragma once

#include <QObject>

class QMenu;

/// The scenes that were opened last, kept in the settings, as a menu. Its parent owns it.
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    static constexpr int most = 10;

    explicit RecentFiles(QWidget* parent);

    QMenu* menu() const { return _menu; }
    /// The newest first.
    static QStringList files();
    /// Puts a file in front.
    void add(const QString& file);
    /// Drops a file, such as one that is no longer there.
    void remove(const QString& file);

signals:
    void chosen(const QString& file);

private:
    void keep(const QStringList& files);
    void fillMenu();

    QMenu* _menu;
};
