// The reference host's IP-core functions: descriptors, generated files and output sets.

#include <ipcore/ipcorefunctions.h>
#include <ipcore/outputset.h>
#include <ipcore/outputset_p.h>

#include <QTemporaryDir>
#include <QTest>

static QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}
static bool write(const QString &path, const QStringList &lines)
{
    return IPCore::generateFile(path, lines, nullptr, QString());
}
static QStringList entries(const QString &dir)
{
    return QDir(dir).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
}

class TestIpCore : public QObject
{
    Q_OBJECT

private slots:
    void descriptorFormat()
    {
        QTemporaryDir dir;
        QVERIFY(write(dir.path() + "/a.ipspec", {"# comment", "", " ipcore.id = a b ",
                                                 "ipcore.list += x", "ipcore.list += y", "ipcore.empty ="}));
        const QMap<QString, QVariant> info = IPCore::processIPInfoSpec(dir.path() + "/a.ipspec");
        QVERIFY(info.value("ipcore.id") == "a b" && info.value("ipcore.list") == QStringList({"x", "y"}));
        QVERIFY(info.contains("ipcore.empty") && !IPCore::checkCommonInfo(info)
                && IPCore::processIPInfoSpec(dir.path() + "/missing").isEmpty());
    }

    void generateFileIsAtomic()
    {
        QTemporaryDir dir;
        QVERIFY(write(dir.filePath("o"), {"a", "\u00b5"}) && read(dir.filePath("o")) == "a\n\xc2\xb5\n");
        QVERIFY(QDir().mkpath(dir.path() + "/blocked") && !write(dir.path() + "/blocked", {"x"}));
        QVERIFY(IPCore::lastError().contains("blocked") && entries(dir.path()).size() == 2);
    }

    void outputSetClearsWhatKilledRunsLeftAndReplacesAtCommit()
    {
        QTemporaryDir tmp;
        const QString temp = tmp.path() + "/core/temp", dir = temp + "/cpri";
        for (const char *name : {"/a", "/c", "/s/b", "/a.part-1"})
            QVERIFY(QDir().mkpath(dir + "/s") && write(dir + name, {name}));
        QVERIFY(QDir().rename(dir, temp + "/.cpri.old-1") && QDir().mkpath(temp + "/.cpri.new-2/x"));
        IPCore::OutputSet set;
        QVERIFY(IPCore::makeDirs(dir, "c") && IPCore::makeDirs(dir, "c") && write(dir + "/a", {"new"}));
        QVERIFY(write(tmp.path() + "/e", {"now"}) && read(dir + "/a") + read(tmp.path() + "/e") == "/a\nnow\n");
        QVERIFY(set.files() == QStringList{dir + "/a"} && set.commit());
        QCOMPARE(read(dir + "/a") + read(dir + "/c") + read(dir + "/s/b"), QByteArray("new\n/c\n/s/b\n"));
        QCOMPARE(entries(dir) + entries(temp), QStringList({"a", "c", "s", "cpri"}));
    }

    void abortedSetLeavesNothing()
    {
        QTemporaryDir tmp;
        const QString dir = tmp.path() + "/w/core/temp/cpri";
        IPCore::OutputSet aborted;
        QVERIFY(IPCore::makeDirs(dir, "c") && write(dir + "/a.vh", {"x"}));
        aborted.abort();
        IPCore::OutputSet set;
        QVERIFY(entries(tmp.path()).isEmpty() && write(tmp.path() + "/w", {"x"}) && !IPCore::makeDirs(dir, "c"));
        QVERIFY(IPCore::lastError().contains("cannot create"));
        QVERIFY(!set.commit() && IPCore::OutputSet().commit()); // the second named no folder
    }

    void folderReplacementInOneOrTwoSteps()
    {
        for (bool exchange : {true, false}) {
            QTemporaryDir tmp;
            const QString s = tmp.path() + "/s", t = tmp.path() + "/t", old = tmp.path() + "/o";
            QVERIFY(QDir().mkpath(s) && QDir().mkpath(t) && write(s + "/f", {"new"}) && write(t + "/f", {"old"}));
            QVERIFY(!IPCore::Internal::replaceFolder(tmp.path() + "/none", t, old, exchange)
                    && IPCore::Internal::replaceFolder(s, t, old, exchange));
            QCOMPARE(read(t + "/f") + entries(tmp.path()).join(' ').toUtf8(), QByteArray("new\nt"));
        }
    }
};

QTEST_GUILESS_MAIN(TestIpCore)
#include "tst_ipcore.moc"
