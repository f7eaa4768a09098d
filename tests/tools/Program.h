#pragma once

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// A program of the build, run to its end.
struct Program
{
    int status = -1; ///< exit status; -1 when it crashed or did not end
    QString output;
    QString errors;

    static Program run(const QString& name, const QStringList& arguments,
                       const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        Program program;
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QDir(qEnvironmentVariable("ORVANE_BIN_DIR")).filePath(name), arguments);
        if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
            program.status = process.exitCode();
        else
            process.kill();
        program.output = QString::fromUtf8(process.readAllStandardOutput());
        program.errors = QString::fromUtf8(process.readAllStandardError());
        return program;
    }
};

inline QString exampleScene(const QString& name)
{
    return QDir(qEnvironmentVariable("ORVANE_SOURCE_DIR"))
        .filePath(QStringLiteral("examples/scenes/") + name);
}
