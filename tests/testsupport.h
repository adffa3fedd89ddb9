#pragma once

// What the tests share: files read and written whole, and programs run to their end.

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

namespace TestSupport {

inline QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QJsonObject readJson(const QString &path)
{
    return QJsonDocument::fromJson(read(path)).object();
}

// A finished program: its exit code (-1 when it did not start or crashed) and what it printed.
struct Run
{
    int exitCode = -1;
    QByteArray out, err;

    QJsonDocument json() const { return QJsonDocument::fromJson(out); }
    QString text() const { return QString::fromUtf8(out + err); }
    // Empty when it succeeded and printed nothing, as a tool says that all is well; else the
    // exit code and what it printed.
    QString trouble() const
    {
        return exitCode == 0 && out.isEmpty() && err.isEmpty()
                   ? QString()
                   : QString("exit %1: %2").arg(exitCode).arg(text());
    }
};

// Runs a program to its end, in this process's environment changed as given: "NAME=value"
// sets a variable, "NAME" removes it.
inline Run run(const QString &program, const QStringList &arguments,
               const QStringList &environment = {})
{
    QProcess process;
    QProcessEnvironment changed = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : environment)
        variable.contains('=')
            ? changed.insert(variable.section('=', 0, 0), variable.section('=', 1))
            : changed.remove(variable);
    process.setProcessEnvironment(changed);
    process.start(program, arguments);
    const bool ran = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit;
    return {ran ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError() + (ran ? "" : process.errorString().toUtf8())};
}

// cpri-host run to its end.
inline Run runHost(const QStringList &arguments, const QStringList &environment = {})
{
    return run(CPRI_HOST_PATH, arguments, environment);
}

} // namespace TestSupport
