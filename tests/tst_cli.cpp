// The command-line host: its commands, JSON output and error paths.

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString Example =
    QStringLiteral(CPRI_SOURCE_DIR "/examples/cpri_9g8304_q0lane1.json");

struct Result
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    QJsonDocument json() const { return QJsonDocument::fromJson(out); }
};

Result runHost(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(CPRI_HOST_PATH), arguments);
    process.waitForFinished(60000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QStringList strings(const QJsonValue &value)
{
    QStringList list;
    for (const QJsonValue &item : value.toArray())
        list << item.toString();
    return list;
}

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    void helpListsTheCommands();
    void infoPrintsTheDescriptor();
    void devicesListTheLibrary();
    void generateWritesTheCoreFiles();
    void generateRunsSynthesis();
    void resourcesOfARecord();
    void badInput_data();
    void badInput();
    void refusedGenerationExitsNonZero();
    void dialogEditAndAcceptKeepsTheRecord();
    void dialogScreenshots();
};

void TestCli::helpListsTheCommands()
{
    const Result r = runHost({QStringLiteral("--help")});
    QCOMPARE(r.exitCode, 0);
    for (const char *command : {"info", "devices", "generate", "resources", "dialog"})
        QVERIFY(r.out.contains(command));
}

void TestCli::infoPrintsTheDescriptor()
{
    const Result r = runHost({QStringLiteral("info")});
    QCOMPARE(r.exitCode, 0);
    const QJsonObject info = r.json().object();
    QCOMPARE(info.value(QStringLiteral("name")).toString(), QStringLiteral("CPRI"));
    QVERIFY(!info.value(QStringLiteral("version")).toString().isEmpty());
    QCOMPARE(info.value(QStringLiteral("descriptor")).toObject().value(QStringLiteral("ipcore.name")),
             QJsonValue(QStringLiteral("CPRI")));
}

void TestCli::devicesListTheLibrary()
{
    const Result r = runHost({QStringLiteral("devices")});
    QCOMPARE(r.exitCode, 0);
    const QJsonArray devices = r.json().array();
    QStringList parts, grades;
    for (const QJsonValue &value : devices) {
        const QJsonObject device = value.toObject();
        QVERIFY(!device.value(QStringLiteral("id")).toString().isEmpty());
        QVERIFY(!device.value(QStringLiteral("lanes")).toArray().isEmpty());
        parts << device.value(QStringLiteral("part")).toString();
        grades << device.value(QStringLiteral("grade")).toString();
    }
    QVERIFY(parts.contains(QStringLiteral("DVA-1")));
    QVERIFY(parts.contains(QStringLiteral("DVB-1")));
    QVERIFY(grades.contains(QStringLiteral("C2/I1")));
    QVERIFY(grades.size() > grades.count(QStringLiteral("C2/I1")));
}

void TestCli::generateWritesTheCoreFiles()
{
    QTemporaryDir work;
    const Result r = runHost({QStringLiteral("generate"), Example, QStringLiteral("--workdir"),
                              work.path()});
    QVERIFY2(r.exitCode == 0, r.err.constData());
    const QJsonObject result = r.json().object();
    QCOMPARE(result.value(QStringLiteral("ok")).toBool(), true);
    const QStringList settings = strings(result.value(QStringLiteral("serdesSettings")));
    QCOMPARE(settings.first(), QStringLiteral("q0_ln1_pll_sel qpll0"));
    QVERIFY(settings.contains(QStringLiteral("q0_refclk0_freq 122.88")));
    QCOMPARE(strings(result.value(QStringLiteral("synthesisOptions"))).size(), 15);
    const QString dir = QDir(work.path()).absoluteFilePath(QStringLiteral("cpri_0/temp/cpri"));
    QCOMPARE(strings(result.value(QStringLiteral("files"))),
             QStringList({dir + QStringLiteral("/top_define.vh"),
                          dir + QStringLiteral("/cpri_defines.vh"),
                          dir + QStringLiteral("/cpri.ini")}));
    QFile ini(dir + QStringLiteral("/cpri.ini"));
    QVERIFY(ini.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(ini.readAll()), settings.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

void TestCli::generateRunsSynthesis()
{
    QTemporaryDir work;
    const Result r = runHost({QStringLiteral("generate"), Example, QStringLiteral("--workdir"),
                              work.path(), QStringLiteral("--synthesize")});
    QCOMPARE(r.exitCode, 0);
    QVERIFY(r.json().object().value(QStringLiteral("synthesisMessage")).toString()
                .contains(QStringLiteral("cpri_top.v")));
}

void TestCli::resourcesOfARecord()
{
    const Result r = runHost({QStringLiteral("resources"), Example});
    QCOMPARE(r.exitCode, 0);
    const QJsonObject m = r.json().object();
    QCOMPARE(m.value(QStringLiteral("instanceName")).toString(), QStringLiteral("cpri_0:cpri_top"));
    QCOMPARE(strings(m.value(QStringLiteral("laneList"))), QStringList{QStringLiteral("Q0_LANE1")});
    QCOMPARE(strings(m.value(QStringLiteral("pllList"))), QStringList{QStringLiteral("Q0_QPLL0")});
    QCOMPARE(strings(m.value(QStringLiteral("lineRates"))), QStringList{QStringLiteral("9.83040")});
    for (const char *field : {"coreName", "fileValue", "moduleValue", "refClockList",
                              "refFreqList", "auxList1", "auxList2"})
        QVERIFY2(m.contains(QLatin1String(field)), field);
}

void TestCli::badInput_data()
{
    QTest::addColumn<QByteArray>("record"); // empty: no file at all
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    const QStringList generate{QStringLiteral("generate"), QStringLiteral("RECORD")};
    QTest::newRow("missing file") << QByteArray() << generate << "cannot read";
    QTest::newRow("malformed JSON") << QByteArray("{\"MII\": tru") << generate << "malformed JSON";
    QTest::newRow("not an object") << QByteArray("[1]") << generate << "JSON object";
    QTest::newRow("text for a flag") << QByteArray("{\"MII\": \"true\"}") << generate << "\"MII\"";
    QTest::newRow("number for a text") << QByteArray("{\"Line_Rate\": 9.8304}") << generate
                                       << "\"Line_Rate\"";
    QTest::newRow("fraction for an integer") << QByteArray("{\"ATT\": 7.5}") << generate << "\"ATT\"";
    QTest::newRow("list value") << QByteArray("{\"extra\": [1]}") << generate << "\"extra\"";
    QTest::newRow("file name leaves the work dir") << QByteArray("{\"file\": \"../x\"}") << generate
                                                   << "plain name";
    QTest::newRow("unknown device") << QByteArray("{\"target_device\": \"XYZ\"}") << generate
                                    << "unknown device";
    QTest::newRow("no workdir") << QByteArray("{}")
                                << QStringList{QStringLiteral("generate"), QStringLiteral("RECORD"),
                                               QStringLiteral("--no-workdir")}
                                << "--workdir";
    QTest::newRow("unknown command") << QByteArray("{}")
                                     << QStringList{QStringLiteral("frobnicate")} << "unknown command";
    QTest::newRow("resources without record") << QByteArray("{}")
                                              << QStringList{QStringLiteral("resources")}
                                              << "RECORD.json";
}

void TestCli::badInput()
{
    QFETCH(QByteArray, record);
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString recordPath = dir.path() + QStringLiteral("/record.json");
    if (!record.isEmpty()) {
        QFile file(recordPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(record);
    }
    const QString work = dir.path() + QStringLiteral("/work");
    QStringList args;
    for (const QString &a : arguments) {
        if (a == QLatin1String("RECORD"))
            args << recordPath;
        else if (a != QLatin1String("--no-workdir"))
            args << a;
    }
    if (!arguments.contains(QStringLiteral("--no-workdir")) && args.first() == QLatin1String("generate"))
        args << QStringLiteral("--workdir") << work;
    const Result r = runHost(args);
    QVERIFY(r.exitCode != 0);
    QVERIFY(r.out.isEmpty());
    const QString err = QString::fromUtf8(r.err).trimmed();
    QCOMPARE(err.count(QLatin1Char('\n')), 0);
    QVERIFY2(err.contains(message), qPrintable(err));
    QVERIFY(!QFileInfo::exists(work));
}

void TestCli::refusedGenerationExitsNonZero()
{
    QTemporaryDir dir;
    QFile file(dir.path() + QStringLiteral("/empty.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    const Result r = runHost({QStringLiteral("generate"), file.fileName(),
                              QStringLiteral("--workdir"), dir.path() + QStringLiteral("/w")});
    QCOMPARE(r.exitCode, 1);
    QCOMPARE(r.json().object().value(QStringLiteral("ok")).toBool(true), false);
    QVERIFY(r.err.contains("empty"));
    QVERIFY(!QFileInfo::exists(dir.path() + QStringLiteral("/w")));
}

void TestCli::dialogEditAndAcceptKeepsTheRecord()
{
    QTemporaryDir dir;
    const QString out = dir.path() + QStringLiteral("/accepted.json");
    const Result r = runHost({QStringLiteral("dialog"), QStringLiteral("--edit"), Example,
                              QStringLiteral("--accept"), QStringLiteral("--out"), out,
                              QStringLiteral("--workdir"), dir.path()});
    QVERIFY2(r.exitCode == 0, r.err.constData());
    QFile example(Example);
    QVERIFY(example.open(QIODevice::ReadOnly));
    const QJsonObject original = QJsonDocument::fromJson(example.readAll()).object();
    QCOMPARE(r.json().object(), original);
    QFile written(out);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(QJsonDocument::fromJson(written.readAll()).object(), original);
}

void TestCli::dialogScreenshots()
{
    QTemporaryDir dir;
    const Result r = runHost({QStringLiteral("dialog"), QStringLiteral("--device"),
                              QStringLiteral("DVB-1-C2I1"), QStringLiteral("--screenshot"), dir.path()});
    QCOMPARE(r.exitCode, 0);
    const QStringList shots = strings(r.json().object().value(QStringLiteral("screenshots")));
    QCOMPARE(shots.size(), 5);
    for (const QString &shot : shots)
        QVERIFY2(QImage(shot).width() > 600, qPrintable(shot));
    const Result bad = runHost({QStringLiteral("dialog"), QStringLiteral("--device"),
                                QStringLiteral("nope"), QStringLiteral("--screenshot"), dir.path()});
    QCOMPARE(bad.exitCode, 2);
    QVERIFY(bad.err.contains("unknown device"));
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
