#include "outputset.h"

#include "outputset_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace IPCore {

namespace {

// Each new attempt to lock a folder follows a run that finished with it
// (and removed the lock file, or the folder) meanwhile.
constexpr int LockAttempts = 100;

const QString LockSuffix = QStringLiteral(".lock");
const QString StagingTag = QStringLiteral("new-");
const QString OldTag = QStringLiteral("old-");

QString cleanAbsolute(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QByteArray encoded(const QString &path)
{
    return QFile::encodeName(path);
}

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool renamePath(const QString &from, const QString &to)
{
    return ::rename(encoded(from).constData(), encoded(to).constData()) == 0;
}

void removePath(const QString &path)
{
    if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

// The highest of path and its parents that does not exist yet; empty when path exists.
QString firstMissing(const QString &path)
{
    QString missing;
    for (QString dir = path; !QFileInfo::exists(dir); dir = QFileInfo(dir).path())
        missing = dir;
    return missing;
}

// Makes to a folder with the entries of from (none when from does not exist),
// files shared through hard links where the file system has them. Files some
// writer never finished are left out.
bool mirror(const QString &from, const QString &to)
{
    if (!QDir().mkdir(to))
        return false;
    const QFileInfoList entries = QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot
                                                           | QDir::Hidden | QDir::System);
    for (const QFileInfo &entry : entries) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (entry.fileName().contains(Internal::PartialTag))
            continue;
        const bool copied =
            entry.isDir() && !entry.isSymLink()
                ? mirror(entry.filePath(), target)
                : ::link(encoded(entry.filePath()).constData(), encoded(target).constData()) == 0
                      || QFile::copy(entry.filePath(), target);
        if (!copied)
            return false;
    }
    return true;
}

} // namespace

class OutputSet::Private
{
public:
    QString folder; // named by makeDirs
    QString staging;
    QString createdTop; // the highest folder that naming the set created
    QStringList files;
    QFile lock; // the lock file, locked while it is open

    // What a set keeps beside its folder: ".NAME" followed by what.
    QString beside(const QString &what) const
    {
        const QFileInfo info(folder);
        return info.path() + QStringLiteral("/.") + info.fileName() + what;
    }
    QString ownTag(const QString &tag) const
    {
        return QLatin1Char('.') + tag + QString::number(QCoreApplication::applicationPid());
    }

    bool name(const QString &dir, const QString &coreName);
    bool takeLock(const QString &coreName);
    void tidy();
    void close();
    void discard();
};

namespace {

QList<OutputSet::Private *> &openSets()
{
    static QList<OutputSet::Private *> sets;
    return sets;
}

} // namespace

// The lock is an exclusive flock on the lock file, which the system releases
// however the process ends. Its holder removes the file before it lets go,
// so a run that got the lock of a removed file tries again.
bool OutputSet::Private::takeLock(const QString &coreName)
{
    const QString parent = QFileInfo(folder).path();
    lock.setFileName(beside(LockSuffix));
    for (int attempt = 0; attempt < LockAttempts; ++attempt) {
        if (createdTop.isEmpty())
            createdTop = firstMissing(parent);
        if (!QDir().mkpath(parent))
            return Internal::fail(
                QStringLiteral("%1: cannot create directory %2").arg(coreName, parent));
        // Still the file of that name once locked: no run removed it meanwhile.
        struct stat held, named;
        if (lock.open(QIODevice::ReadWrite) && ::flock(lock.handle(), LOCK_EX) == 0
            && ::fstat(lock.handle(), &held) == 0
            && ::stat(encoded(lock.fileName()).constData(), &named) == 0
            && held.st_ino == named.st_ino)
            return true;
        lock.close();
    }
    return Internal::fail(QStringLiteral("%1: cannot lock %2: %3")
                              .arg(coreName, lock.fileName(), lock.errorString()));
}

// Clears what interrupted sets of the folder left beside it. A run killed in
// the middle of a two-step commit left the folder's old files under the old
// name: they go back into place.
void OutputSet::Private::tidy()
{
    const QDir parent(QFileInfo(folder).path());
    const QString prefix = QLatin1Char('.') + QFileInfo(folder).fileName() + QLatin1Char('.');
    const QStringList entries =
        parent.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    for (const QString &entry : entries) {
        const QString path = parent.filePath(entry);
        if (entry.startsWith(prefix + OldTag) && !QFileInfo::exists(folder))
            renamePath(path, folder);
        else if (entry.startsWith(prefix + StagingTag) || entry.startsWith(prefix + OldTag))
            removePath(path);
    }
}

bool OutputSet::Private::name(const QString &dir, const QString &coreName)
{
    folder = dir;
    if (!takeLock(coreName))
        return false;
    tidy();
    staging = beside(ownTag(StagingTag));
    if (!mirror(folder, staging))
        return Internal::fail(
            QStringLiteral("%1: cannot prepare %2: %3").arg(coreName, staging, systemError()));
    return true;
}

void OutputSet::Private::close()
{
    if (lock.isOpen()) {
        QFile::remove(lock.fileName());
        lock.close();
    }
    openSets().removeOne(this);
}

void OutputSet::Private::discard()
{
    if (!staging.isEmpty())
        QDir(staging).removeRecursively();
    close();
    if (createdTop.isEmpty())
        return;
    for (QString dir = QFileInfo(folder).path(); QDir().rmdir(dir) && dir != createdTop;
         dir = QFileInfo(dir).path()) {
    }
}

OutputSet::OutputSet() : d(std::make_unique<Private>())
{
    openSets().append(d.get());
}

OutputSet::~OutputSet()
{
    if (openSets().contains(d.get()))
        abort();
}

bool OutputSet::commit()
{
    if (!d->lock.isOpen()) { // no folder named, or it could not be prepared
        const bool unnamed = d->folder.isEmpty();
        abort();
        return unnamed;
    }
    const bool replaced =
        QFileInfo::exists(d->folder)
            ? Internal::replaceFolder(d->staging, d->folder, d->beside(d->ownTag(OldTag)), true)
            : renamePath(d->staging, d->folder)
                  || Internal::fail(QStringLiteral("cannot move %1 to %2: %3")
                                        .arg(d->staging, d->folder, systemError()));
    if (!replaced) {
        d->files.clear();
        abort();
        return false;
    }
    d->close();
    return true;
}

void OutputSet::abort()
{
    d->discard();
}

QString OutputSet::folder() const
{
    return d->folder;
}

QStringList OutputSet::files() const
{
    return d->files;
}

QString OutputSet::writePath(const QString &path)
{
    if (!d->lock.isOpen() || cleanAbsolute(QFileInfo(path).path()) != d->folder)
        return QString();
    return Internal::stagedPath(path);
}

bool OutputSet::remove(const QString &path)
{
    if (!d->lock.isOpen() || cleanAbsolute(QFileInfo(path).path()) != d->folder)
        return false;
    const QString name = QFileInfo(path).fileName();
    d->files.removeAll(d->folder + QLatin1Char('/') + name);
    const QString staged = d->staging + QLatin1Char('/') + name;
    return !QFileInfo::exists(staged) || QFile::remove(staged);
}

namespace Internal {

bool prepareSetFolder(const QString &dir, const QString &coreName, bool *ok)
{
    const QString folder = cleanAbsolute(dir);
    OutputSet::Private *unnamed = nullptr;
    for (OutputSet::Private *set : openSets()) {
        if (set->folder == folder) {
            *ok = set->lock.isOpen();
            return true;
        }
        if (set->folder.isEmpty())
            unnamed = set;
    }
    if (!unnamed)
        return false;
    *ok = unnamed->name(folder, coreName);
    return true;
}

QString stagedPath(const QString &path)
{
    const QFileInfo info(path);
    const QString folder = cleanAbsolute(info.path());
    for (OutputSet::Private *set : openSets()) {
        if (set->lock.isOpen() && set->folder == folder) {
            const QString final = folder + QLatin1Char('/') + info.fileName();
            if (!set->files.contains(final))
                set->files << final;
            return set->staging + QLatin1Char('/') + info.fileName();
        }
    }
    return path;
}

QString stagedFolder(const QString &folder)
{
    const QString clean = cleanAbsolute(folder);
    for (const OutputSet::Private *set : openSets()) {
        if (set->lock.isOpen() && set->folder == clean)
            return set->staging;
    }
    return folder;
}

bool replaceFolder(const QString &staging, const QString &target, const QString &old, bool exchange)
{
    if (exchange
        && ::renameat2(AT_FDCWD, encoded(staging).constData(), AT_FDCWD,
                       encoded(target).constData(), RENAME_EXCHANGE)
               == 0) {
        removePath(staging);
        return true;
    }
    if (!renamePath(target, old))
        return fail(QStringLiteral("cannot move %1 aside: %2").arg(target, systemError()));
    if (!renamePath(staging, target)) {
        const QString reason = systemError();
        renamePath(old, target);
        return fail(QStringLiteral("cannot move %1 to %2: %3").arg(staging, target, reason));
    }
    removePath(old);
    return true;
}

} // namespace Internal

} // namespace IPCore
