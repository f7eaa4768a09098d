#pragma once

#include <Orvane/GraphLoader.h>
#include <QDirIterator>
#include <QStringList>
#include <list>
#include <string>

/// All scene files in and below a folder, sorted, in any encoding that the runtime, which must have been
/// started, reads.
inline QStringList sceneFiles(const QString& folder)
{
    std::list<std::string> suffixes;
    Orvane::GraphLoader::getSuffixList(suffixes);
    QStringList patterns;
    for (const std::string& suffix : suffixes)
        patterns << QStringLiteral("*.") + QString::fromStdString(suffix);
    QDirIterator files(folder, patterns, QDir::Files, QDirIterator::Subdirectories);
    QStringList paths;
    while (files.hasNext())
        paths << files.next();
    paths.sort();
    return paths;
}
