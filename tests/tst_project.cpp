// cpri-host project: the shipped four-core example fits its eight-lane
// device; a fifth core is refused for each kind of conflict, naming the
// earlier core, and only the cores that fit are written.

// Test tables spell their texts as plain literals.
#undef QT_NO_CAST_FROM_ASCII

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString Example = QStringLiteral(CPRI_SOURCE_DIR "/examples/project/");

QJsonObject readJson(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return QJsonDocument::fromJson(file.readAll()).object();
}

struct Run
{
    int code;
    QJsonObject report;
    QStringList errors;
};

// The example project with one more core, run in a scratch folder.
Run runProject(const QTemporaryDir &dir, const QJsonValue &extra)
{
    QJsonObject project = readJson(Example + "project.json");
    QJsonArray cores = project.value("cores").toArray();
    for (QJsonValueRef core : cores) { // the record files stay where they are
        QJsonObject entry = core.isObject() ? core.toObject() : QJsonObject{{"record", core}};
        entry["record"] = Example + entry.value("record").toString();
        core = entry;
    }
    if (!extra.isNull())
        cores.append(extra);
    project["cores"] = cores;
    project["workdir"] = ".";
    QFile file(dir.filePath("project.json"));
    file.open(QIODevice::WriteOnly);
    file.write(QJsonDocument(project).toJson());
    file.close();
    QProcess host;
    host.start(CPRI_HOST_PATH, {"project", file.fileName()});
    host.waitForFinished();
    const QString errors = QString::fromUtf8(host.readAllStandardError()).trimmed();
    return {host.exitCode(), QJsonDocument::fromJson(host.readAllStandardOutput()).object(),
            errors.isEmpty() ? QStringList() : errors.split('\n')};
}

// A fifth core: the second core's record with changes.
QJsonObject fifth(const QJsonObject &changes, int quadBias = -1)
{
    QJsonObject record = readJson(Example + "cpri_b.json");
    record["file"] = "cpri_e";
    record["module"] = "cpri_e_top";
    record["Channel_Selection"] = "Q0 Lane3";
    for (auto it = changes.begin(); it != changes.end(); ++it)
        record[it.key()] = it.value();
    if (quadBias < 0)
        return record;
    return QJsonObject{{"record", record}, {"quadBias", quadBias}};
}

} // namespace

class TestProject : public QObject
{
    Q_OBJECT

private slots:
    void exampleFits()
    {
        QTemporaryDir dir;
        const Run run = runProject(dir, QJsonValue());
        QCOMPARE(run.code, 0);
        QVERIFY(run.errors.isEmpty());
        QCOMPARE(run.report.value("refused").toInt(), 0);
        const QJsonArray cores = run.report.value("cores").toArray();
        QCOMPARE(cores.size(), 4);
        for (const char *core : {"cpri_a", "cpri_b", "cpri_c", "cpri_d"})
            QVERIFY(QFile::exists(dir.filePath(QString(core) + "/temp/cpri/cpri.ini")));
        QCOMPARE(cores.at(3).toObject().value("pll").toString(), "Q1_QPLL1");
    }

    void fifthCoreConflicts_data()
    {
        QTest::addColumn<QJsonValue>("core");
        QTest::addColumn<QString>("refusal"); // kind|resource|heldBy
        const QJsonObject rate3072{{"9.8304G_and_Under", false}, {"3.072G_and_Under", true},
                                   {"9.8304Gbps", false}, {"3.072Gbps", true}, {"Line_Rate", "3.07200Gbps"},
                                   {"highest_SpeedIndex", 3}, {"speedEnables_Record", "000000001000"}};
        QTest::newRow("lane") << QJsonValue(fifth({{"Channel_Selection", "Q0 Lane1"}})) << "lane|Q0_LANE1|core 2";
        QTest::newRow("QPLL rate") << QJsonValue(fifth(rate3072)) << "pll|Q0_QPLL0|core 1";
        QTest::newRow("QPLL reference") << QJsonValue(fifth({{"Reference_CLK_Source", "Q0 REFCLK1"}}))
                                        << "pll|Q0_QPLL0|core 1";
        QTest::newRow("frequency")
            << QJsonValue(fifth({{"PLL_Selection", "CPLL"}, {"Reference_CLK_Frequency", "245.76"}}))
            << "refclock|Q0_REFCLK0|core 1";
        QTest::newRow("bias") << QJsonValue(fifth({{"ifChangedAllOfBias", true}}, 12)) << "bias|Q0_BIAS|core 1";
        QTest::newRow("folder") << QJsonValue(fifth({{"file", "cpri_a"}})) << "file|cpri_a|core 1";
    }

    void fifthCoreConflicts()
    {
        QFETCH(QJsonValue, core);
        QFETCH(QString, refusal);
        QTemporaryDir dir;
        const Run run = runProject(dir, core);
        QCOMPARE(run.code, 1);
        QCOMPARE(run.report.value("refused").toInt(), 1);
        const QJsonObject refused = run.report.value("cores").toArray().at(4).toObject().value("refused").toObject();
        QCOMPARE(QStringList({refused.value("kind").toString(), refused.value("resource").toString(),
                              refused.value("heldBy").toString()}).join('|'),
                 refusal);
        const QString earlier = refused.value("heldBy").toString();
        QCOMPARE(run.errors, QStringList("cpri-host: core 5 (" + dir.filePath("project.json") + ") refused: "
                                         + refused.value("message").toString() + " (" + earlier + ")"));
        QVERIFY(!QDir(dir.filePath("cpri_e")).exists());
        QCOMPARE(QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({"cpri_a", "cpri_b", "cpri_c", "cpri_d"}));
        QFile top(dir.filePath("cpri_a/temp/cpri/top_define.vh"));
        QVERIFY(top.open(QIODevice::ReadOnly));
        QCOMPARE(top.readAll(), QByteArray("`define module_name cpri_a_top\n")); // the first core's
    }

    // A project that cannot be read writes nothing.
    void badProjectWritesNothing()
    {
        QTemporaryDir dir;
        for (const QJsonObject &core : {fifth({{"target_device", "DVA-1-C2I1"}}), fifth({{"module", "a\nb"}})}) {
            const Run run = runProject(dir, core);
            QCOMPARE(run.code, 2);
            QCOMPARE(run.errors.size(), 1);
            QVERIFY(QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestProject)
#include "tst_project.moc"
