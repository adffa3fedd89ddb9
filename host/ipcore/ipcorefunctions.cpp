#include "ipcorefunctions.h"

#include "outputset_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace IPCore {

namespace {

QString &lastErrorText()
{
    static QString text;
    return text;
}

} // namespace

namespace Internal {

bool fail(const QString &reason)
{
    lastErrorText() = reason;
    return false;
}

} // namespace Internal

using Internal::fail;

namespace {

const QString idKey = QStringLiteral("ipcore.id");
const QString nameKey = QStringLiteral("ipcore.name");
const QString versionKey = QStringLiteral("ipcore.version");

QStringList &writtenPaths()
{
    static QStringList paths;
    return paths;
}

QStringList &createdPaths()
{
    static QStringList paths;
    return paths;
}

// One descriptor line into the map; false on a syntax error.
bool readSpecLine(const QString &raw, QMap<QString, QVariant> &info)
{
    const QString line = raw.trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
        return true;
    const int eq = line.indexOf(QLatin1Char('='));
    if (eq <= 0)
        return false;
    const bool append = line.at(eq - 1) == QLatin1Char('+');
    const QString key = line.left(append ? eq - 1 : eq).trimmed();
    const QString value = line.mid(eq + 1).trimmed();
    if (key.isEmpty())
        return false;
    if (append)
        info.insert(key, info.value(key).toStringList() << value);
    else
        info.insert(key, value);
    return true;
}

// Writes bytes to a new file at path; false with reason set when it cannot.
bool writeBytes(const QString &path, const QByteArray &bytes, QString &reason)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        reason = file.errorString();
        return false;
    }
    errno = 0;
    if (file.write(bytes) == bytes.size() && file.flush())
        return true;
    // A write that stops part way (a full disk) leaves Qt without a reason; errno has it.
    reason = errno != 0 ? qt_error_string(errno) : file.errorString();
    return false;
}

// Puts the file from in the place of to in one step; false with reason set when it cannot.
bool replaceFile(const QString &from, const QString &to, QString &reason)
{
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    reason = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool names(const QStringList &entries, const DEV::DeviceArg &device)
{
    return entries.contains(QStringLiteral("*")) || entries.contains(device.device())
           || entries.contains(device.id());
}

} // namespace

QMap<QString, QVariant> processIPInfoSpec(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream in(&file);
    in.setCodec("UTF-8");
    QMap<QString, QVariant> info;
    while (!in.atEnd()) {
        if (!readSpecLine(in.readLine(), info))
            return {};
    }
    return info;
}

bool checkCommonInfo(const QMap<QString, QVariant> &info)
{
    for (const QString &key : {idKey, nameKey, versionKey}) {
        if (info.value(key).toString().isEmpty())
            return false;
    }
    return true;
}

bool isSupported(const DEV::DeviceArg &device, const QStringList &unsupported,
                 const QStringList &supported)
{
    if (device.isNull() || names(unsupported, device))
        return false;
    return supported.isEmpty() || names(supported, device);
}

bool makeDirs(const QString &dir, const QString &coreName)
{
    if (dir.isEmpty())
        return fail(QStringLiteral("%1: no output directory given").arg(coreName));
    bool prepared = false;
    if (Internal::prepareSetFolder(dir, coreName, &prepared))
        return prepared;
    QString created;
    for (QString missing = QDir::cleanPath(QDir().absoluteFilePath(dir));
         !QFileInfo::exists(missing); missing = QFileInfo(missing).path())
        created = missing;
    if (!QDir().mkpath(dir))
        return fail(QStringLiteral("%1: cannot create directory %2").arg(coreName, dir));
    if (!created.isEmpty())
        createdPaths() << created;
    return true;
}

bool generateFile(const QString &path, const QStringList &lines, QWidget *parent,
                  const QString &header)
{
    Q_UNUSED(parent)
    QByteArray bytes;
    if (!header.isEmpty()) {
        for (const QString &line : header.split(QLatin1Char('\n')))
            bytes += "// " + line.toUtf8() + '\n';
    }
    for (const QString &line : lines)
        bytes += line.toUtf8() + '\n';

    // The lines go to a file beside the target, which then replaces the
    // target in one step: a failure leaves the target as it was.
    const QString target = Internal::stagedPath(path);
    const QString partial =
        target + Internal::PartialTag + QString::number(QCoreApplication::applicationPid());
    QString reason;
    if (!writeBytes(partial, bytes, reason) || !replaceFile(partial, target, reason)) {
        QFile::remove(partial);
        return fail(QStringLiteral("cannot write %1: %2").arg(path, reason));
    }
    writtenPaths() << path;
    return true;
}

QString lastError()
{
    return lastErrorText();
}

QStringList createdFolders()
{
    return createdPaths();
}

QStringList writtenFiles()
{
    return writtenPaths();
}

void clearWrittenFiles()
{
    writtenPaths().clear();
}

} // namespace IPCore
