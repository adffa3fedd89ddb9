// The reference host's IP-core functions: descriptors, generated files and output sets.

#include <ipcore/ipcorefunctions.h>
#include <ipcore/outputset.h>
#include <ipcore/outputset_p.h>

#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <csignal>
#include <sys/resource.h>

using namespace IPCore;

class TestIpCore : public QObject
{
    Q_OBJECT

    static QByteArray read(const QString &path)
    {
        QFile f(path);
        return f.open(QFile::ReadOnly) ? f.readAll() : "(none)";
    }
    static bool write(const QString &path, const QStringList &lines)
    {
        return generateFile(path, lines, nullptr, {});
    }
    static QStringList entries(const QString &dir)
    {
        return QDir(dir).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                                   QDir::Name);
    }

private slots:
    void descriptorFormat()
    {
        QTemporaryDir dir;
        QTextCodec::setCodecForLocale(
            QTextCodec::codecForName("ISO-8859-1")); // descriptors are UTF-8 anyway
        QVERIFY(write(dir.filePath("a"), {"# c", "", " ipcore.id = a \u00b5 ", "ipcore.l += x",
                                          "ipcore.l +=y", "e="}));
        const QMap<QString, QVariant> info = processIPInfoSpec(dir.filePath("a"));
        QVERIFY(info.value("ipcore.id") == "a \u00b5"
                && info.value("ipcore.l") == QStringList({"x", "y"}));
        QVERIFY(info.contains("e") && !checkCommonInfo(info) && processIPInfoSpec("").isEmpty());
        for (const char *bad : {"no value", " = x", " += x"}) // syntax errors
            QVERIFY(write(dir.filePath("b"), {"ipcore.id = a", bad})
                    && processIPInfoSpec(dir.filePath("b")).isEmpty());
        const DEV::DeviceArg d("D-1-x", "D-1", "C1");
        QVERIFY(isSupported(d, {}, {"*"}) && isSupported(d, {}, {"D-1-x"})
                && !isSupported(d, {"*"}, {}) && !isSupported({}, {}, {}));
    }

    void generateFileIsAtomic()
    {
        QTemporaryDir dir;
        clearWrittenFiles();
        QVERIFY(QDir::setCurrent(dir.path()) && generateFile("o", {"a", "\u00b5"}, nullptr, "h\ni")
                && read("o") == "// h\n// i\na\n\xc2\xb5\n");
        QVERIFY(writtenFiles() == QStringList{"o"} && QDir().mkpath("b") && !write("b", {"x"})
                && entries(".").size() == 2);
        QVERIFY(lastError() == "cannot write b: " + qt_error_string(EISDIR) && !makeDirs("", "c")
                && lastError() == "c: no output directory given");
        QVERIFY(!write("none/o", {"x"})
                && lastError() == "cannot write none/o: " + qt_error_string(ENOENT)
                && writtenFiles().size() == 1);
        rlimit limit{}, full{}; // a disk that is full after 4 bytes
        QVERIFY(getrlimit(RLIMIT_FSIZE, &limit) == 0 && signal(SIGXFSZ, SIG_IGN) != SIG_ERR);
        full = {4, limit.rlim_max};
        QVERIFY(setrlimit(RLIMIT_FSIZE, &full) == 0);
        const bool written = write("o", {"longer"});
        QVERIFY(setrlimit(RLIMIT_FSIZE, &limit) == 0);
        QCOMPARE(written, false);
        QCOMPARE(lastError(), "cannot write o: " + qt_error_string(EFBIG));
        QCOMPARE(read("o") + entries(".").join(' ').toUtf8(), "// h\n// i\na\n\xc2\xb5\nb o");
    }

    void outputSetClearsWhatKilledRunsLeftAndReplacesAtCommit()
    {
        QTemporaryDir tmp;
        const QString temp = tmp.path() + "/core/temp", dir = temp + "/cpri",
                      old = temp + "/.cpri.old-1";
        for (const char *name : {"/a", "/c", "/s/b", "/a.part-1"})
            QVERIFY(QDir().mkpath(old + "/s") && QDir().mkpath(temp + "/.cpri.new-2/x")
                    && write(old + name, {name}));
        QVERIFY(write(temp + "/.cpri.new-3", {"a file"}));
        OutputSet set;
        QVERIFY(makeDirs(dir, "c") && makeDirs(dir, "c") && write(dir + "/a", {"new"}));
        QVERIFY(write(tmp.path() + "/e", {"now"})
                && read(dir + "/a") + read(tmp.path() + "/e") == "/a\nnow\n");
        QVERIFY(set.files() == QStringList{dir + "/a"} && set.folder() == dir
                && entries(temp)[0] == ".cpri.lock" && set.commit());
        QCOMPARE(entries(dir) + entries(temp)
                     << read(dir + "/a") + read(dir + "/c") + read(dir + "/s/b"),
                 QStringList({"a", "c", "s", "cpri", "new\n/c\n/s/b\n"}));
    }

    void abortedSetLeavesNothing()
    {
        QTemporaryDir tmp;
        const QString dir = tmp.path() + "/w/core/temp/cpri";
        for (bool commit : {false, true}) { // a commit fails when the staging folder went away
            OutputSet set;
            QVERIFY(OutputSet().commit() && makeDirs(dir, "c") && makeDirs(dir, "c")
                    && write(dir + "/a.vh", {"x"}));
            QDir staging(QString("%1/.cpri.new-%2")
                             .arg(QFileInfo(dir).path())
                             .arg(QCoreApplication::applicationPid()));
            QVERIFY(commit ? staging.removeRecursively() && !set.commit() && set.files().isEmpty()
                                 && lastError().endsWith(QString(" to ") + dir + ": "
                                                         + qt_error_string(ENOENT))
                           : (set.abort(), true));
            QCOMPARE(entries(tmp.path()), QStringList());
        }
        OutputSet set; // a folder that cannot be made
        QVERIFY(write(tmp.path() + "/w", {"x"}) && !makeDirs(dir, "c") && !set.commit()
                && lastError() == "c: cannot create directory " + QFileInfo(dir).path());
    }

    void folderReplacementInOneOrTwoSteps()
    {
        for (bool exchange : {true, false}) {
            QTemporaryDir tmp;
            QVERIFY(QDir::setCurrent(tmp.path()) && QDir().mkpath("s/x") && write("s/f", {"new"})
                    && QDir().mkpath("t"));
            QVERIFY(!Internal::replaceFolder("s", "none", "o", exchange)
                    && lastError() == "cannot move none aside: " + qt_error_string(ENOENT));
            QVERIFY(!Internal::replaceFolder("none", "t", "o", exchange)
                    && lastError() == "cannot move none to t: " + qt_error_string(ENOENT));
            QVERIFY(Internal::replaceFolder("s", "t", "o", exchange)
                    && entries(".") == QStringList{"t"});
            QCOMPARE(entries("t") << read("t/f"), QStringList({"f", "x", "new\n"}));
        }
    }
};

QTEST_GUILESS_MAIN(TestIpCore)
#include "tst_ipcore.moc"
