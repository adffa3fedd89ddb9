// cpri-host project: the shipped four-core example fits its eight-lane
// device; a fifth core is refused for each kind of conflict, naming the
// earlier core, and only the cores that fit are written.

#include "testsupport.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using TestSupport::read;
using TestSupport::readJson;
using TestSupport::write;

namespace {

const QString Example = QStringLiteral(CPRI_SOURCE_DIR "/examples/project/");

struct Run
{
    int code;
    QJsonObject report;
    QStringList errors;
};

Run runHost(const QStringList &arguments, const QStringList &environment = {})
{
    const TestSupport::Run run = TestSupport::runHost(arguments, environment);
    return {run.exitCode, run.json().object(),
            QString::fromUtf8(run.err).split('\n', Qt::SkipEmptyParts)};
}

void writeJson(const QString &path, const QJsonObject &object)
{
    QVERIFY(write(path, QJsonDocument(object).toJson()));
}

// The example project in a scratch folder, its record files where they are
// (or copied beside it, for a run that writes them), with one more core and
// changes of its own; its path.
QString writeProject(const QTemporaryDir &dir, const QJsonValue &extra,
                     const QJsonObject &changes = {}, bool copyRecords = false)
{
    QJsonObject project = readJson(Example + "project.json");
    QJsonArray cores = project.value("cores").toArray();
    for (QJsonValueRef core : cores) {
        QJsonObject entry = core.isObject() ? core.toObject() : QJsonObject{{"record", core}};
        const QString record = entry.value("record").toString();
        entry["record"] = copyRecords && QFile::copy(Example + record, dir.filePath(record))
                              ? record
                              : Example + record;
        core = entry;
    }
    if (!extra.isNull())
        cores.append(extra);
    project["cores"] = cores;
    project["workdir"] = ".";
    for (auto it = changes.begin(); it != changes.end(); ++it)
        project[it.key()] = it.value();
    writeJson(dir.filePath("project.json"), project);
    return dir.filePath("project.json");
}

Run runProject(const QTemporaryDir &dir, const QJsonValue &extra, const QJsonObject &changes = {})
{
    return runHost({"project", writeProject(dir, extra, changes)});
}

QStringList lines(const QString &path)
{
    return QString::fromUtf8(read(path)).split('\n', Qt::SkipEmptyParts);
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
        QStringList tops{
            QFileInfo(CPRI_PACKAGE_DIR "/data/cpri_core_encryption.v").absoluteFilePath()};
        for (const char *core : {"cpri_a", "cpri_b", "cpri_c", "cpri_d"})
            tops << dir.filePath(QString(core) + "/temp/cpri/" + core + "_top.v");
        QCOMPARE(lines(run.report.value("sources").toString()),
                 tops); // the engine once, then each core
        QCOMPARE(run.report.value("workdir").toString() + '|'
                     + run.report.value("templates").toString(),
                 dir.path() + '|' + dir.filePath("cores_template.v"));
        const QJsonObject d = cores.at(3).toObject();
        QCOMPARE(
            QStringList({d["core"].toString(), d["source"].toString(), d["instance"].toString(),
                         d["lane"].toString(), d["pll"].toString(), d["refClock"].toString(),
                         d["files"][3].toString()}),
            QStringList({"core 4", Example + "cpri_d.json", "cpri_d:cpri_d_top", "Q1_LANE0",
                         "Q1_QPLL1", "Q1_REFCLK0", dir.filePath("cpri_d/temp/cpri/cpri_d_top.v")}));
        const QStringList templates = lines(dir.filePath("cores_template.v"));
        QCOMPARE(templates.first(), "// core 1 (" + Example + "cpri_a.json)");
        QCOMPARE(templates.filter(QRegularExpression("^\\w+ \\w+ \\($")).join('|'),
                 "cpri_a_top cpri_a (|cpri_b_top cpri_b (|cpri_c_top cpri_c (|cpri_d_top cpri_d (");
    }

    // Every core is synthesised, and a host without Yosys fails each, writing none.
    void synthesisOfEveryCore()
    {
        for (const QString &path : {QString(qgetenv("PATH")), QString("/nonexistent")}) {
            QTemporaryDir dir;
            const QString out = dir.filePath("out");
            const Run run = runHost(
                {"project", writeProject(dir, QJsonValue()), "--synthesize", "--workdir", out},
                {"PATH=" + path});
            const bool yosys = path != "/nonexistent";
            QCOMPARE(run.code, yosys ? 0 : 1);
            for (const QJsonValue &core : run.report.value("cores").toArray()) {
                const QString message =
                    core["synthesisMessage"].toString() + core["refused"]["message"].toString();
                QVERIFY2(message.startsWith(
                             yosys ? "Synthesis of cpri ("
                                         + core["instance"].toString().section(':', 1)
                                         + ") for DVC-1-C2I1 with Yosys:\n"
                                   : "Synthesis of cpri failed: Yosys is not on the PATH"),
                         qPrintable(message));
            }
            QCOMPARE(run.errors.size(), yosys ? 0 : 4);
            QVERIFY(yosys
                    || run.errors.first().startsWith("cpri-host: core 1 (" + Example
                                                     + "cpri_a.json) not generated: Synthesis"));
            QCOMPARE(QDir(out).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(),
                     yosys ? 6 : 0); // and the design files
            QCOMPARE(QFileInfo::exists(out), yosys);
        }
    }

    // clang-format off
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
        QTest::newRow("module") << QJsonValue(fifth({{"module", "cpri_b_top"}})) << "module|cpri_b_top|core 2";
        // Its wire cpri_a_mii_ + tx_arst_i is core 1's cpri_a_ + mii_tx_arst_i.
        QTest::newRow("template name") << QJsonValue(fifth({{"file", "cpri_a_mii"}})) << "name|cpri_a_mii_tx_arst_i|core 1";
    }
    // clang-format on

    void fifthCoreConflicts()
    {
        QFETCH(QJsonValue, core);
        QFETCH(QString, refusal);
        QTemporaryDir dir;
        const Run run = runProject(dir, core);
        QCOMPARE(run.code, 1);
        QCOMPARE(run.report.value("refused").toInt(), 1);
        const QJsonObject refused =
            run.report.value("cores").toArray().at(4).toObject().value("refused").toObject();
        QCOMPARE(
            QStringList({refused.value("kind").toString(), refused.value("resource").toString(),
                         refused.value("heldBy").toString()})
                .join('|'),
            refusal);
        const QString earlier = refused.value("heldBy").toString();
        QCOMPARE(run.errors,
                 QStringList("cpri-host: core 5 (" + dir.filePath("project.json") + ") refused: "
                             + refused.value("message").toString() + " (" + earlier + ")"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({"cpri_a", "cpri_b", "cpri_c", "cpri_d"}));
        QFile top(dir.filePath("cpri_a/temp/cpri/top_define.vh"));
        QVERIFY(top.open(QIODevice::ReadOnly));
        QCOMPARE(top.readAll(), QByteArray("`define module_name cpri_a_top\n")); // the first core's
        QCOMPARE(lines(dir.filePath("cores.f")).size(), 5); // the refused core is in no design file
    }

    // A core that claims its quad's bias needs a value: its own, or the project's.
    void claimWithoutABias()
    {
        QTemporaryDir dir;
        const Run run =
            runProject(dir, QJsonValue(), {{"cores", QJsonArray{Example + "cpri_d.json"}}});
        const QJsonObject refused = run.report["cores"][0]["refused"].toObject();
        QCOMPARE(run.code, 1);
        QCOMPARE(
            refused,
            QJsonObject(
                {{"kind", "bias"},
                 {"resource", "Q1_BIAS"},
                 {"heldBy", "the project's shared values"},
                 {"message",
                  "Q1_BIAS is not set: give the core's quadBias or the project's shared Q1_BIAS"}}));
        QCOMPARE(run.errors, QStringList("cpri-host: core 1 (" + Example + "cpri_d.json) refused: "
                                         + refused["message"].toString()));
    }

    // A project that cannot be read writes nothing: exit 2 and one line.
    // clang-format off
    void badProjectWritesNothing_data()
    {
        QTest::addColumn<QJsonValue>("core");
        QTest::addColumn<QJsonObject>("changes");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QJsonValue &core, const QJsonObject &changes, const char *message) {
            QTest::newRow(name) << core << changes << QString(message);
        };
        row("device of a core", fifth({{"target_device", "DVA-1-C2I1"}}), {}, "its device \"DVA-1-C2I1\" is not the project's \"DVC-1-C2I1\"");
        row("record", fifth({{"module", "a\nb"}}), {}, "\"module\" holds the control character U+000A");
        row("unclaimed bias", fifth({}, 5), {}, "the quadBias 5 of core 5: its record does not claim its quad's bias (\"ifChangedAllOfBias\" is false)");
        row("bias too high", fifth({{"ifChangedAllOfBias", true}}, 16), {}, "the quadBias 16 of core 5: Q0_BIAS takes 0 to 15, not 16");
        row("bias no number", QJsonObject{{"record", fifth({})}, {"quadBias", "9"}}, {}, "the quadBias of core 5 must be an integer");
        row("shared too high", QJsonValue(), {{"shared", QJsonObject{{"Q1_BIAS", 99}}}}, "the shared value \"Q1_BIAS\": Q1_BIAS takes 0 to 15, not 99");
        row("shared no bias", QJsonValue(), {{"shared", QJsonObject{{"X", 1}}}}, "the shared value \"X\": \"X\" is no quad bias");
        row("shared no number", QJsonValue(), {{"shared", QJsonObject{{"Q0_BIAS", 1.5}}}}, "the shared value \"Q0_BIAS\": it must be an integer");
        row("unknown device", QJsonValue(), {{"device", "nope"}}, "unknown device \"nope\" (see: cpri-host devices)");
        row("no cores", QJsonValue(), {{"cores", QJsonArray()}}, "\"cores\" must list the project's cores");
        row("core of no kind", 7, {}, "core 5 must be a record or the path of one");
    }
    // clang-format on

    void badProjectWritesNothing()
    {
        QFETCH(QJsonValue, core);
        QFETCH(QJsonObject, changes);
        QFETCH(QString, message);
        QTemporaryDir dir;
        const Run run = runProject(dir, core, changes);
        QCOMPARE(run.code, 2);
        QCOMPARE(run.errors.size(), 1);
        QVERIFY2(run.errors.first().contains(message), qPrintable(run.errors.first()));
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList("project.json"));
    }

    // The project is the dialog's memory: a core opens with the project's
    // bias of its quad, and OK writes the record and that bias back. Core 1
    // claims Q0 with 12, core 2 claims it with 5 and the project shares 7:
    // the dialog shows the project's 7, and OK makes it the whole quad's.
    void dialogKeepsTheProjectsBias()
    {
        QTemporaryDir dir;
        // Records as the dialog writes them: core 2's in a file, core 3's in the project itself.
        QJsonObject b = runHost({"dialog", "--edit", Example + "cpri_b.json", "--accept"}).report;
        b["ifChangedAllOfBias"] = true;
        writeJson(dir.filePath("b.json"), b);
        const QJsonObject c =
            runHost({"dialog", "--edit", Example + "cpri_c.json", "--accept"}).report;
        const QString project =
            writeProject(dir, QJsonValue(), {{"shared", QJsonObject{{"Q0_BIAS", 7}}}}, true);
        QJsonObject file = readJson(project);
        QJsonArray cores = file["cores"].toArray();
        cores[0] = QJsonObject{{"record", cores[0].toObject()["record"]}, {"quadBias", 12}};
        cores[1] = QJsonObject{{"record", "b.json"}, {"quadBias", 5}};
        cores[2] = c;
        file["cores"] = cores;
        writeJson(project, file);
        for (int core : {1, 2, 3, 4}) { // the last in a working directory of its own
            const QStringList elsewhere =
                core == 4 ? QStringList{"--workdir", dir.filePath("elsewhere")} : QStringList();
            const Run run = runHost(QStringList{"dialog", "--project", project, "--core",
                                                QString::number(core), "--accept"}
                                    + elsewhere);
            QVERIFY2(run.code == 0 && run.errors.isEmpty(), qPrintable(run.errors.join('\n')));
        }
        QVERIFY(QFileInfo(dir.filePath("elsewhere/cpri_d/temp/cpri/cpri.csr"))
                    .isFile()); // its Calculate's
        file = readJson(project);
        cores = file["cores"].toArray();
        QCOMPARE(file["shared"].toObject(), QJsonObject({{"Q0_BIAS", 7}}));
        QCOMPARE(cores.at(0)["quadBias"].toInt(), 7);
        QCOMPARE(cores[1], QJsonValue(QJsonObject({{"record", "b.json"}, {"quadBias", 7}})));
        QCOMPARE(cores[2], QJsonValue(c));
        QCOMPARE(cores.at(3)["quadBias"].toInt(), 11);
        QCOMPARE(readJson(dir.filePath("b.json")), b);
        QCOMPARE(runHost({"project", project}).code, 0);
        for (const char *core :
             {"cpri_a:q0_rx_eq_bias 7", "cpri_b:q0_rx_eq_bias 7", "cpri_d:q1_rx_eq_bias 11"}) {
            const QStringList ini =
                lines(dir.filePath(QString(core).section(':', 0, 0) + "/temp/cpri/cpri.ini"));
            QCOMPARE(ini.filter("_rx_eq_bias"), QStringList(QString(core).section(':', 1)));
        }
    }
};

QTEST_GUILESS_MAIN(TestProject)
#include "tst_project.moc"
