// The command-line host: its commands, JSON output, refusals and output sets.

#include "testsupport.h"

#include <ipserdes/generator.h>

#include <QDir>
#include <QEventLoop>
#include <QFileSystemWatcher>
#include <QImage>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace TestSupport;

namespace {

const QString Example = CPRI_SOURCE_DIR "/examples/cpri_9g8304_q0lane1.json";

// The example record with some values changed; a null value removes the key.
QByteArray changed(const QByteArray &changes)
{
    QJsonObject record = readJson(Example);
    const QJsonObject object = QJsonDocument::fromJson(changes).object();
    for (auto it = object.begin(); it != object.end(); ++it)
        it.value().isNull() ? void(record.remove(it.key()))
                            : void(record.insert(it.key(), it.value()));
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

QString writeRecord(const QString &path, const QByteArray &changes)
{
    return write(path, changed(changes)) ? path : QString();
}

QStringList entries(const QString &dir)
{
    return QDir(dir).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
}

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    void helpInfoAndDevices();
    void generateWritesTheCoreFiles();
    void generateTakesSeveralRecords();
    void resourcesOfARecord();
    void templateNamesWiresAfterAPrefix();
    void sharedBiasReachesTheSettings();
    void refusal_data();
    void refusal();
    void failuresNameTheirCause();
    void settingLinesAsTheGeneratorJudgesThem();
    void dialogEditAndAcceptKeepsTheRecord();
    void dialogSaysWhyItRefused();
    void dialogScreenshots();
    void killedAndRacingRunsLeaveOneCompleteSet();
};

void TestCli::helpInfoAndDevices()
{
    const Run help = runHost({"--help"});
    const QString readme = QString::fromUtf8(read(CPRI_SOURCE_DIR "/README.md"));
    QVERIFY(help.exitCode == 0
            && help.out.contains("\n  generate RECORD.json... [--workdir DIR] [--synthesize]\n"));
    QCOMPARE(QString::fromUtf8(help.out).section('\n', 1).trimmed(), // as the README shows it
             readme.section("<!-- cpri-host-help -->\n```text\n", 1).section("\n```", 0, 0));
    const QJsonObject info = runHost({"info"}).json().object(),
                      descriptor = info.value("descriptor").toObject();
    QVERIFY(info.value("name") == "CPRI" && descriptor.value("ipcore.name") == "CPRI");
    for (const QString key : {"id", "version", "category", "doc.summary"}) // each the descriptor's
        QVERIFY2(info.value(key.section('.', -1)) == descriptor.value("ipcore." + key),
                 qPrintable(key));
    QCOMPARE(info.value("packageDir").toString(), QFileInfo(CPRI_PLUGIN_PATH).absolutePath());
    const QByteArray devices = runHost({"devices"}).out;
    for (const char *fact : {"\"part\": \"DVA-1\"", "\"part\": \"DVB-1\"", "\"grade\": \"C2/I1\"",
                             "\"grade\": \"I2\"", "\"lanes\": ["})
        QVERIFY2(devices.contains(fact), fact);
    const auto listed = [&](const char *list, const QString &part) {
        return descriptor[QString("ipcore.device.") + list].toArray().contains(part);
    };
    for (const QJsonValue &device : QJsonDocument::fromJson(devices).array()) {
        const QString part = device["part"].toString(); // supported as the descriptor says
        QVERIFY2(device["id"].toString().startsWith(part + "-")
                     && device["supported"].toBool()
                            == (listed("supported", part) && !listed("unsupported", part)),
                 qPrintable(part));
    }
}

void TestCli::generateWritesTheCoreFiles()
{
    QTemporaryDir work;
    const Run r = runHost({"generate", Example, "--workdir", work.path(), "--synthesize"});
    QVERIFY2(r.exitCode == 0, r.err.constData());
    const QJsonObject result = r.json().object();
    QVERIFY(result.value("ok").toBool()
            && result.value("synthesisMessage").toString().contains("with Yosys:\n"));
    const QStringList settings = result.value("serdesSettings").toVariant().toStringList();
    QVERIFY(settings.first() == "q0_ln1_pll_sel qpll0"
            && settings.contains("q0_refclk0_freq 122.88")
            && result.value("synthesisOptions").toArray().size() == 15);
    const QString dir = work.path() + "/cpri_0/temp/cpri";
    QCOMPARE(result.value("files").toVariant().toStringList(),
             QStringList({dir + "/top_define.vh", dir + "/cpri_defines.vh", dir + "/cpri.ini",
                          dir + "/cpri_top.v", dir + "/cpri.csr"}));
    QCOMPARE(QString::fromUtf8(read(dir + "/cpri.ini")), settings.join('\n') + '\n');
    // The core's own top level: the package's with the define files in place of their includes.
    const QByteArray own =
        "// The top level of the core cpri_top: the package's cpri_top.v\n// with the lines of top_define.vh "
        "and cpri_defines.vh in place of their includes.\n"
        + read(CPRI_PACKAGE_DIR "/data/cpri_top.v")
              .replace("`include \"top_define.vh\"\n", read(dir + "/top_define.vh"))
              .replace("`include \"cpri_defines.vh\"\n", read(dir + "/cpri_defines.vh"));
    QCOMPARE(read(dir + "/cpri_top.v"), own);
    QCOMPARE(entries(work.path() + "/cpri_0/temp"), QStringList{"cpri"}); // nothing left beside
    // A register file and a top level of another run give way to the ones of this run's lines.
    QVERIFY(write(dir + "/cpri.csr", "stale\n")
            && write(dir + "/old_top.v", read(dir + "/cpri_top.v"))
            && write(dir + "/mine.v", "module mine;\nendmodule\n"));
    const QString record = writeRecord(work.filePath("6g.json"),
                                       R"({"9.8304G_and_Under": false, "6.144G_and_Under": true,
        "9.8304Gbps": false, "6.144Gbps": true, "Line_Rate": "6.14400Gbps", "highest_SpeedIndex": 5, "speedEnables_Record": "000000100000"})");
    QCOMPARE(runHost({"generate", record, "--workdir", work.path()}).exitCode, 0);
    const QByteArray ini = read(dir + "/cpri.ini"), csr = read(dir + "/cpri.csr");
    QVERIFY2(ini.contains("q0_ln1_tx_rate 6.14400\n") && csr.startsWith(ini)
                 && csr.contains("q0_ln1_vco_ghz 12.288000\n"),
             csr.constData());
    QCOMPARE(entries(dir), QStringList({"cpri.csr", "cpri.ini", "cpri_defines.vh", "cpri_top.v",
                                        "mine.v", "top_define.vh"}));
}

void TestCli::generateTakesSeveralRecords()
{
    QTemporaryDir work;
    const QString a = writeRecord(work.filePath("a.json"), R"({"file": "a"})");
    const QString b = writeRecord(work.filePath("b.json"), R"({"file": "b", "module": "m_b"})");
    const QString bad = writeRecord(work.filePath("bad.json"), R"({"file": "c", "FFEMODE": "x"})");
    const QString out = work.filePath("out");
    const Run several = runHost({"generate", b, a, "--workdir", out});
    QVERIFY2(several.exitCode == 0, several.err.constData());
    const QJsonArray results = several.json().array();
    QVERIFY(results.size() == 2 && results[0]["record"] == b
            && results[1]["files"][0] == out + "/a/temp/cpri/top_define.vh");
    QCOMPARE(read(out + "/b/temp/cpri/top_define.vh"), QByteArray("`define module_name m_b\n"));
    // One bad record, two on one core or on two devices, and no record is written.
    const QString other =
        writeRecord(work.filePath("c.json"),
                    R"({"file": "c", "target_device": "DVC-1-C2I1", "64B_66B_Mode": "SerDes"})");
    const QString fresh = work.filePath("fresh");
    for (const QStringList &records :
         {QStringList{a, bad}, QStringList{a, b, a}, QStringList{a, other}}) {
        const Run r = runHost(QStringList{"generate"} + records + QStringList{"--workdir", fresh});
        QVERIFY(r.exitCode == 2 && r.out.isEmpty() && !QFileInfo::exists(fresh));
    }
    QVERIFY(
        runHost({"generate", other, a, "--workdir", fresh}).err.contains("name different devices"));
}

void TestCli::resourcesOfARecord()
{
    const QJsonObject m = runHost({"resources", Example}).json().object();
    QCOMPARE(m.value("instanceName").toString(), "cpri_0:cpri_top");
    QCOMPARE(m.value("laneList").toVariant().toStringList()
                 + m.value("pllList").toVariant().toStringList()
                 + m.value("lineRates").toVariant().toStringList(),
             QStringList({"Q0_LANE1", "Q0_QPLL0", "9.83040"}));
    QCOMPARE(QStringList({m["coreName"].toString(), m["fileValue"].toString(),
                          m["moduleValue"].toString(), m["refClockList"][0].toString(),
                          m["refFreqList"][0].toString(), m["auxList1"][0].toString(),
                          m["auxList2"][0].toString()}),
             QStringList({"CPRI", "cpri_0", "cpri_top", "Q0_REFCLK0", "122.880", "0", "0"}));
}

// The prefix given, if any -> the template's first wire and first connection.
void TestCli::templateNamesWiresAfterAPrefix()
{
    const QVector<QPair<QStringList, QString>> rows = {
        // clang-format off
        {{}, "wire cpri_0_tx_arst_i;|cpri_top cpri_0 (|    .tx_arst_i(cpri_0_tx_arst_i),"},
        {{"--prefix", "u1_"}, "wire u1_tx_arst_i;|cpri_top cpri_0 (|    .tx_arst_i(u1_tx_arst_i),"},
        {{"--prefix=-"}, "wire \\-tx_arst_i ;|cpri_top cpri_0 (|    .tx_arst_i(\\-tx_arst_i ),"},
        {{"--prefix="}, "wire tx_arst_i;|cpri_top cpri_0 (|    .tx_arst_i(tx_arst_i),"},
        // clang-format on
    };
    for (const auto &row : rows) {
        const QStringList text =
            QString::fromUtf8(runHost(QStringList{"template", Example} + row.first).out)
                .split('\n');
        QCOMPARE(
            QStringList({text.value(0), text.filter(" (").value(0), text.filter("    .").value(0)})
                .join('|'),
            row.second);
    }
}

// The shared values given -> the bias line of a core that claims its quad's bias.
void TestCli::sharedBiasReachesTheSettings()
{
    QTemporaryDir work;
    const QString record = writeRecord(work.filePath("r.json"), R"({"ifChangedAllOfBias": true})");
    const QVector<QPair<QStringList, QString>> rows = {
        // clang-format off
        {{"--shared", "Q0_BIAS=12"}, "q0_rx_eq_bias 12"},
        {{"--shared", "Q1_BIAS=3", "--shared", "Q0_BIAS=0"}, "q0_rx_eq_bias 0"},
        {{"--shared=Q0_BIAS=15"}, "q0_rx_eq_bias 15"},
        // clang-format on
    };
    for (const auto &row : rows) {
        const Run r =
            runHost(QStringList{"generate", record, "--workdir", work.path()} + row.first);
        QVERIFY2(r.exitCode == 0, r.err.constData());
        QCOMPARE(r.json()["serdesSettings"].toVariant().toStringList().filter("_bias"),
                 QStringList{row.second});
    }
}

// clang-format off
void TestCli::refusal_data()
{
    QTest::addColumn<QByteArray>("record"); // empty: no file at all
    QTest::addColumn<QString>("arguments"); // RECORD stands for the record's path
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QByteArray &record, const char *message,
                        const char *arguments = "generate RECORD --workdir WORK") {
        QTest::newRow(name) << record << QString::fromUtf8(arguments) << QString::fromUtf8(message);
    };
    row("missing file", "", "cannot read");
    row("malformed JSON", R"({"MII": tru)", "malformed JSON");
    row("not an object", "[1]", "JSON object");
    row("text for a flag", R"({"MII": "true"})", "\"MII\" must be a boolean");
    row("fraction for an integer", R"({"ATT": 7.5})", "\"ATT\" must be an integer");
    row("list value", R"({"extra": [1]})", "\"extra\" must be a text");
    row("number for a text", R"({"module": 5})", "\"module\" must be a text");
    row("resources of no record", "[1]", "a record must be a JSON object", "resources RECORD");
    row("template of no record", "[1]", "a record must be a JSON object", "template RECORD");
    row("other core unreadable", changed("{}"), "cannot read WORK", "generate RECORD --occupy WORK --workdir WORK");
    row("empty record", "{}", "the record is empty");
    row("unknown device", changed(R"({"target_device": "XYZ"})"), "unknown device");
    // The command line: the first thing missing, and options a command does not take.
    row("no record", "{}", "generate needs at least one RECORD.json", "generate --workdir WORK");
    row("unknown command", "{}", "unknown command", "frobnicate");
    row("no command", "{}", "no command given (try --help)", "--workdir WORK");
    row("resources without record", "{}", "resources needs one RECORD.json", "resources");
    row("two records", "{}", "ports takes one RECORD.json, not 2", "ports RECORD RECORD");
    row("argument to info", "{}", "info takes no arguments, not \"x\"", "info x");
    row("argument to dialog", "{}", "dialog takes no arguments, not \"x\"", "dialog x --workdir WORK");
    row("two projects", "{}", "project takes one PROJECT.json, not 2", "project RECORD RECORD --workdir WORK");
    row("two templates", "{}", "template takes one RECORD.json, not 2", "template RECORD RECORD");
    row("template in a workdir", "{}", "template does not take --workdir (see --help)", "template RECORD --workdir WORK");
    row("project on a device", "{}", "project does not take --device", "project RECORD --device DVA-1-C2I1");
    row("unknown option", "{}", "Unknown option 'frob'", "generate RECORD --frob");
    row("dialog on an unknown device", "{}", "unknown device", "dialog --device nope --screenshot WORK");
    row("core without project", "{}", "--core needs --project PROJECT.json", "dialog --core 1 --accept --workdir WORK");
    row("project without core", "{}", "dialog --project needs --core N", "dialog --project RECORD --accept --workdir WORK");
    const QByteArray project = R"({"device": "DVC-1-C2I1", "cores": [")" CPRI_SOURCE_DIR R"(/examples/project/cpri_a.json"]})";
    row("project missing", "", "cannot read", "project RECORD");
    row("project no object", "[1]", "a project must be a JSON object", "project RECORD");
    row("dialog on no project", "[1]", "a project must be a JSON object", "dialog --project RECORD --core 1 --workdir WORK");
    row("core out of range", project, ", 1 to 1, not \"2\"", "dialog --project RECORD --core 2 --workdir WORK");
    row("core no number", project, ", 1 to 1, not \"x\"", "dialog --project RECORD --core x --workdir WORK");
    row("dialog with a bias too high", "{}", "--shared Q0_BIAS=99: Q0_BIAS takes 0 to 15, not 99", "dialog --shared Q0_BIAS=99 --accept --workdir WORK");
    row("project and record", "{}", "--edit does not go with --project", "dialog --project RECORD --core 1 --edit RECORD --workdir WORK");
    row("prefix with a blank", changed("{}"), "--prefix \"a b\" must be printable", "template RECORD --prefix a%20b");
    // Shared values are what the dialog's bias box offers.
    row("bias too high", changed("{}"), "--shared Q0_BIAS=16: Q0_BIAS takes 0 to 15, not 16", "generate RECORD --shared Q0_BIAS=16 --workdir WORK");
    row("bias not a number", changed("{}"), "--shared Q0_BIAS=x: it takes KEY=INTEGER", "generate RECORD --shared Q0_BIAS=x --workdir WORK");
    row("no bias", changed("{}"), "--shared Q2_BIAS=1: \"Q2_BIAS\" is no quad bias", "generate RECORD --shared Q2_BIAS=1 --workdir WORK");
    // Texts reach define files and setting lines as they are.
    row("module with a line", changed(R"({"module": "a\n`include \"/etc/passwd\""})"), "\"module\" holds the control character U+000A");
    row("rate with a line", changed(R"({"Line_Rate": "9.83040Gbps\nq0_ln2_enable true"})"), "\"Line_Rate\" holds the control character U+000A");
    row("file with NUL", changed(R"({"file": "a\u0000b"})"), "\"file\" holds the control character U+0000");
    row("seed with a directive", changed(R"({"Initial_Scrambler_Seed": "0 `include"})"), "the dialog keeps 0 to 7FFFFFFF and puts \"00000000\" in its place");
    // Names as the dialog frame takes them.
    row("empty file name", changed(R"({"file": ""})"), "The file name is empty.");
    row("file name leaves the work dir", changed(R"({"file": "../x"})"), "must be a plain name");
    row("file name too long", changed("{\"file\": \"" + QByteArray(256, 'x') + "\"}"), "256 bytes long; a folder name holds at most 255");
    row("no module", changed(R"({"module": null})"), "\"module\" is missing; the dialog writes \"cpri_top\"; cpri-host dialog --edit RECORD --accept --out FIXED writes the dialog's own record");
    row("module a keyword", changed(R"({"module": "always"})"), "is a reserved Verilog keyword");
    // Values the dialog would write otherwise, choices it does not offer.
    row("rate not as written", changed(R"({"Line_Rate": "9.8304Gbps"})"), "\"Line_Rate\" is \"9.8304Gbps\"; for the class 9.8304G_and_Under at 9.83040Gbps the dialog writes \"9.83040Gbps\"");
    row("lane not on the device", changed(R"({"Channel_Selection": "Q1 Lane0"})"), "(it offers Q0 Lane0, Q0 Lane1, Q0 Lane2, Q0 Lane3)");
    row("lane of another core", changed("{}"), "\"Channel_Selection\" is \"Q0 Lane1\"", "generate RECORD --occupy RECORD --workdir WORK");
    row("source not on the device", changed(R"({"Reference_CLK_Source": "MCLK"})"), "\"Reference_CLK_Source\" is \"MCLK\"");
    row("PLL in lower case", changed(R"({"PLL_Selection": "qpll0"})"), "\"PLL_Selection\" is \"qpll0\"");
    row("no loopback mode", changed(R"({"Loopback_Mode": null})"), "\"Loopback_Mode\" is missing; the dialog writes \"OFF\"");
    row("placement", changed(R"({"64B_66B_Mode": "serdes"})"), "\"64B_66B_Mode\" is \"serdes\"");
    row("FFE mode", changed(R"({"FFEMODE": "auto"})"), "\"FFEMODE\" is \"auto\"");
    row("equalization mode", changed(R"({"Equalization_Mode": ""})"), "\"Equalization_Mode\" is \"\", which the dialog does not offer (it offers Auto, Manual)");
    row("threshold", changed(R"({"SD_THRESHOLD": "101mV"})"), "\"SD_THRESHOLD\" is \"101mV\"");
    // Fields the dialog keeps in range.
    row("clock not a number", changed(R"({"Config_Clk_Period": "nan"})"), "\"Config_Clk_Period\" is \"nan\"; the dialog keeps 1 to 150 and puts \"50\" in its place");
    row("clock too fast", changed(R"({"Config_Clk_Period": "151"})"), "\"Config_Clk_Period\" is \"151\"");
    row("seed too high", changed(R"({"Initial_Scrambler_Seed": "80000000"})"), "\"Initial_Scrambler_Seed\" is \"80000000\"");
    row("seed too short", changed(R"({"Initial_Scrambler_Seed": "1F"})"), "\"Initial_Scrambler_Seed\" is \"1F\"; the dialog writes \"1F000000\" (its field holds 8 hexadecimal digits)");
    row("HDLC rate", changed(R"({"Initial_HDLC_Rate": "8"})"), "keeps 0 to 7 and puts \"2\"");
    row("HDLC mask", changed(R"({"Initial_HDLC_Mask": "0x00"})"), "\"Initial_HDLC_Mask\" is \"0x00\"");
    row("Ethernet pointer", changed(R"({"Initial_Ethernet_Pointer": "13"})"), "keeps 14 to 3F and puts \"14\"");
    row("speed mask", changed(R"({"speedEnables_Record": "00000100000x"})"), "\"speedEnables_Record\"");
    row("no frequency", changed(R"({"Reference_CLK_Frequency": "0"})"), "keeps 50 to 500 and puts \"122.880\"");
    row("frequency not a number", changed(R"({"Reference_CLK_Frequency": "inf"})"), "\"Reference_CLK_Frequency\" is \"inf\"; the dialog keeps 50 to 500");
    // Records edited by hand that the dialog would never have written.
    row("stale rate index", changed(R"({"9.8304G_and_Under": false, "6.144G_and_Under": true, "9.8304Gbps": false, "6.144Gbps": true, "Line_Rate": "6.14400Gbps"})"),
        "\"highest_SpeedIndex\" is 6; for the class 6.144G_and_Under at 6.14400Gbps the dialog writes 5");
    row("stale speed mask", changed(R"({"9.8304G_and_Under": false, "6.144G_and_Under": true, "9.8304Gbps": false, "6.144Gbps": true, "Line_Rate": "6.14400Gbps", "highest_SpeedIndex": 5})"),
        "\"speedEnables_Record\" is \"000001000000\"; for the class 6.144G_and_Under at 6.14400Gbps the dialog writes \"000000100000\"");
    row("MII and GMII", changed(R"({"GMII": true})"), "\"MII\" is true; the dialog writes false (MII and GMII exclude each other)");
    row("no PLL reaches the rate", changed(R"({"Reference_CLK_Frequency": "100"})"), "\"Reference_CLK_Frequency\" is \"100\": QPLL0 cannot generate 9.8304 Gbps from a 100 MHz reference clock; ");
    row("attenuation out of range", changed(R"({"Equalization_Mode": "Manual", "ATT": 13})"), "\"ATT\" is 13; the dialog writes 10 (it takes 0 to 10)");
    row("taps past C0", changed(R"({"FFEMODE": "Manual", "FFE_CM": 19, "FFE_C1": 19, "FFE_C0": "2"})"), "\"FFE_CM\" is 19 and \"FFE_C1\" is 19: C0 must be greater than 20.");
    row("C0 not as derived", changed(R"({"FFEMODE": "Manual", "FFE_CM": 5, "FFE_C1": 3})"), "\"FFE_C0\" is \"40\"; the dialog writes \"32\"");
    row("Master", changed(R"({"Master": true})"), "\"Master\" is true; the dialog writes false (its Master and Slave buttons are disabled)");
    row("both protocol versions", changed(R"({"Initial_Protocol_Version2": true})"), "\"Initial_Protocol_Version1\" is true; the dialog writes false");
    row("another version", changed(R"({"version": "2.0"})"), "\"version\" is \"2.0\": This version of specified IP Config file is incompatible with current IP Core Generator.");
    row("another core's type", changed(R"({"type": "com.other.core"})"), "\"type\" is \"com.other.core\"; the dialog writes \"com.ipgen.serdes.cpri\"");
    row("unsupported device", changed(R"({"target_device": "DVC-2-I2"})"), "the CPRI core does not support the part \"DVC-2\"");
    row("rate the grade lacks", changed(R"({"target_device": "DVB-4-C1", "9.8304G_and_Under": false, "12.16512G_and_Under": true, "9.8304Gbps": false,
        "12.16512Gbps": true, "Line_Rate": "12.16512Gbps", "highest_SpeedIndex": 10, "speedEnables_Record": "010000000000", "64B_66B_Mode": "SerDes"})"),
        "\"12.16512Gbps\" is true: Please Enable Speed (a device of grade \"C1\" does not offer 12.16512Gbps)");
    row("misspelt key", changed(R"({"DRP_ports": true})"), "\"DRP_ports\" is no key of the record; did you mean \"DRP_Ports\"?");
    row("ports of a changed record", changed(R"({"GMII": true})"), "\"MII\" is true", "ports RECORD");
    row("resources of a changed record", changed(R"({"GMII": true})"), "\"MII\" is true", "resources RECORD");
    row("core on a held lane", changed("{}"), "record.json: lane Q0_LANE1 is held by cpri_0:cpri_top", "generate RECORD --occupy RECORD --occupy RECORD --workdir WORK");
}
// clang-format on

void TestCli::refusal()
{
    QFETCH(QByteArray, record);
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString path = dir.filePath("record.json"), work = dir.filePath("work");
    QVERIFY(record.isEmpty() || write(path, record));
    message.replace("WORK", work);
    QStringList words = arguments.replace("RECORD", path).replace("WORK", work).split(' ');
    const Run r = runHost(words.replaceInStrings("%20", " "));
    const QString err = QString::fromUtf8(r.err);
    QVERIFY2(err.startsWith("cpri-host: ") && err.contains(message) && err.count('\n') == 1,
             qPrintable(err));
    QVERIFY(r.exitCode == 2 && r.out.isEmpty() && !QFileInfo::exists(work));
}

// Runs that fail for a reason outside the record: exit 1, one line, nothing written.
void TestCli::failuresNameTheirCause()
{
    QTemporaryDir dir;
    const QString file = dir.filePath("file"), work = dir.filePath("work"),
                  package = dir.filePath("package");
    QVERIFY(write(file, "in the way") && QDir().mkpath(package + "/data")
            && QDir().mkpath(dir.filePath("bare")));
    for (const char *name : {"libcpri.so", "cpri.ipspec", "data/cpri_core_encryption.v"})
        QVERIFY(QFile::copy(CPRI_PACKAGE_DIR "/" + QString::fromUtf8(name),
                            package + "/" + QString::fromUtf8(name)));
    QVERIFY(QFile::copy(CPRI_PLUGIN_PATH,
                        dir.filePath("bare/libcpri.so"))); // a package without its descriptor
    QVERIFY(write(
        package + "/data/cpri_top.v",
        read(CPRI_PACKAGE_DIR "/data/cpri_top.v").replace("`include \"cpri_defines.vh\"", "")));
    const QVector<QPair<QStringList, QString>> rows = {
        // clang-format off
        {{"generate", Example, "--workdir", file}, "CPRI: cannot create directory " + file + "/cpri_0/temp"},
        {{"template", Example, "--out", work + "/t.v"}, "cannot write " + work + "/t.v"},
        {{"generate", Example, "--workdir", work, "--plugin", package + "/libcpri.so"}, package + "/data/cpri_top.v does not include top_define.vh and cpri_defines.vh once each"},
        {{"info", "--plugin", work + "/libcpri.so"}, "cannot load plug-in " + work + "/libcpri.so"},
        {{"dialog", "--edit", Example, "--accept", "--workdir", work, "--out", file + "/r.json"}, "cannot write " + file + "/r.json"},
        {{"info", "--plugin", dir.filePath("bare/libcpri.so")}, "the package in " + dir.filePath("bare") + " offers no protocol (is its descriptor readable?)"},
        // clang-format on
    };
    for (const auto &row : rows) {
        const Run r = runHost(row.first);
        QVERIFY2(r.exitCode == 1 && r.err.startsWith("cpri-host: ")
                     && r.err.contains(row.second.toUtf8()) && r.err.count('\n') == 1,
                 r.err.constData());
        QVERIFY(r.out.isEmpty() && !QFileInfo::exists(work));
    }
}

// The check cpri-host applies to the setting lines the plug-in made: one bad line each.
void TestCli::settingLinesAsTheGeneratorJudgesThem()
{
    const QStringList good{"q0_ln1_pll_sel qpll0", "q0_ln1_tx_rate 9.83040",
                           "q0_refclk0_freq 122.88"};
    const QVector<QPair<QString, QString>> bad = {
        // clang-format off
        {"q0_ln1_rx_eq_mode ", "Malformed setting line \"q0_ln1_rx_eq_mode \""},
        {"q0_ln2_enable true\nq0_x 1", "Malformed setting line \"q0_ln2_enable true\nq0_x 1\""},
        {"Q0_x 1", "Malformed setting line \"Q0_x 1\""},
        {"q0_ln1_tx_rate nan", "Line rate \"nan\" of q0_ln1_tx_rate is not a number"},
        {"q0_ln1_pll_sel qpll9", "Unknown PLL \"qpll9\" for q0_ln1"},
        {"mclk_freq 0", "No reference clock frequency is set"},
        // clang-format on
    };
    QVERIFY(IPSERDESIP::generator::checkSettings(good).isEmpty());
    QCOMPARE(IPSERDESIP::generator::checkSettings(good.mid(1)),
             QStringList{"No lane selects a PLL"});
    for (const auto &row : bad)
        QCOMPARE(IPSERDESIP::generator::checkSettings(good + QStringList{row.first}),
                 QStringList{row.second});
    // The register file: the lines, then the dividers found (VCO = 122.88 MHz * 80 / 1 = 9.8304 GHz).
    QTemporaryDir dir;
    IPSERDESIP::generator generator;
    QVERIFY(generator.generate(good, dir.filePath("a.csr"), {"q0_enable true"}));
    QCOMPARE(QString::fromUtf8(read(dir.filePath("a.csr"))).split("\n"),
             good
                 + QStringList({"q0_enable true", "q0_ln1_pll_m 1", "q0_ln1_pll_n 80",
                                "q0_ln1_pll_d 1", "q0_ln1_vco_ghz 9.830400", ""}));
    QVERIFY(!generator.generate(good, dir.filePath("no/a.csr"), {}));
    QVERIFY(generator.getErrStringList().value(0).startsWith("Cannot write "
                                                             + dir.filePath("no/a.csr") + ": "));
}

void TestCli::dialogEditAndAcceptKeepsTheRecord()
{
    QTemporaryDir dir;
    const QString out = dir.filePath("accepted.json");
    const Run r =
        runHost({"dialog", "--edit", Example, "--accept", "--out", out, "--workdir", dir.path()});
    const QJsonObject original = readJson(Example);
    QVERIFY2(r.exitCode == 0 && r.json().object() == original, r.err.constData());
    QCOMPARE(readJson(out), original);
    // A new core whose folder is there already: the dialog asks, is answered Yes, and then
    // refuses a core without a rate; the folder it did not make stays.
    const Run created =
        runHost({"dialog", "--device", "DVA-1-C2I1", "--accept", "--workdir", dir.path()});
    QCOMPARE(
        QString::fromUtf8(created.err),
        QString(
            "cpri-host: Question: The folder \"%1/cpri_0\" already exists. Its files may be "
            "overwritten.\nDo you want to use it anyway?\ncpri-host: Error: Please Enable Speed\n"
            "cpri-host: the dialog refused its settings\n")
            .arg(dir.path()));
    QVERIFY(created.exitCode == 1 && QFileInfo(dir.filePath("cpri_0/temp/cpri/cpri.csr")).isFile());
}

// The dialog accepting a changed example record in a working folder: exit code 1, and what it
// says ("*" stands for lines in between); the folders it made go. Without a display it does not
// start.
void TestCli::dialogSaysWhyItRefused()
{
    QTemporaryDir dir;
    QVERIFY(write(dir.filePath("file"), "not a folder"));
    // clang-format off
    const char *const rows[][3] = { // changes, working folder, standard error
        {"{}", "file", "*: the dialog refused its settings: CPRI: cannot create directory DIR/file/cpri_0/temp/cpri\n"},
        {R"({"Reference_CLK_Frequency": "100"})", "new/work", "cpri-host: Failure: QPLL0 cannot generate 9.8304 Gbps from a 100 MHz reference clock\n*\ncpri-host: the dialog refused its settings\n"},
        {R"({"version": "0.9"})", "new", "cpri-host: Error: This version of specified IP Config file is incompatible with current IP Core Generator.\ncpri-host: no record: the dialog was cancelled or refused\n"},
        {R"({"file": "LONG"})", ".", "cpri-host: Error: The file name is 256 bytes long; a folder name holds at most 255.\n*"},
    };
    // clang-format on
    for (const auto &row : rows) {
        const QString record = writeRecord(
            dir.filePath("r.json"), QByteArray(row[0]).replace("LONG", QByteArray(256, 'x')));
        const Run r =
            runHost({"dialog", "--edit", record, "--accept", "--workdir", dir.filePath(row[1])});
        const QStringList said = QString(row[2]).replace("DIR", dir.path()).split('*');
        const QString err = QString::fromUtf8(r.err);
        QVERIFY2(r.exitCode == 1 && err.startsWith(said.first()) && err.endsWith(said.last())
                     && (said.size() > 1 || err == said.first()),
                 r.err.constData());
    }
    QVERIFY(!QFileInfo::exists(dir.filePath("new")));
    const Run nowhere =
        runHost({"dialog", "--edit", Example}, {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"});
    QCOMPARE(nowhere.exitCode, 2);
    QCOMPARE(nowhere.err, "cpri-host: the dialog needs a display (set DISPLAY, or use --accept or "
                          "--screenshot)\n");
}

void TestCli::dialogScreenshots()
{
    QTemporaryDir dir;
    const Run r = runHost({"dialog", "--device", "DVB-1-C2I1", "--screenshot", dir.path()});
    const QStringList shots = r.json().object().value("screenshots").toVariant().toStringList();
    QVERIFY(r.exitCode == 0 && shots.size() == 5);
    // The whole dialog, as large as it asks to be, and each tab a picture of its own.
    QSet<QByteArray> pictures;
    for (const QString &shot : shots) {
        QVERIFY2(QImage(shot).width() > 1000, qPrintable(shot));
        pictures << read(shot);
    }
    QCOMPARE(pictures.size(), 4); // the dialog shows the first tab
}

// Each round writes a set whose files all name the round. Runs are killed
// at changes beside the core's folder, or raced two at a time; the folder
// must always hold one complete set, and a finished run leaves nothing
// beside it.
void TestCli::killedAndRacingRunsLeaveOneCompleteSet()
{
    QTemporaryDir work;
    const QString temp = work.filePath("core/temp"), dir = temp + "/cpri";
    const QStringList frequencies =
        QString("122.88 153.6 245.76 98.304 76.8 196.608 102.4").split(' '); // all make 9.8304 Gbps
    const auto start = [&](QProcess &run, int round) {
        run.start(
            QString(CPRI_HOST_PATH),
            {"generate",
             writeRecord(
                 work.filePath(QString("r%1").arg(round)),
                 QStringLiteral(
                     R"({"file": "core", "module": "m%1", "Config_Clk_Period": "%1", "Reference_CLK_Frequency": "%2"})")
                     .arg(round)
                     .arg(frequencies.at(round % 7))
                     .toUtf8()),
             "--workdir", work.path()});
        return &run;
    };
    const auto heldRound = [&] { // the round whose complete set the folder holds, or -1
        const int round =
            QString::fromUtf8(read(dir + "/top_define.vh")).section("module_name m", 1).toInt();
        const QByteArray period =
            "CFG_CLK_PERIOD " + QByteArray::number(1000.0 / round, 'f', 2) + '\n';
        const QByteArray frequency =
            "q0_refclk0_freq " + frequencies.value(round % 7).toUtf8() + '\n';
        const QString top = QString("/m%1.v").arg(round);
        return entries(dir)
                           == QStringList({"cpri.csr", "cpri.ini", "cpri_defines.vh", top.mid(1),
                                           "top_define.vh"})
                       && read(dir + "/cpri_defines.vh").contains(period)
                       && read(dir + top).contains(period)
                       && read(dir + "/cpri.ini").contains(frequency)
                       && read(dir + "/cpri.csr").contains(frequency)
                   ? round
                   : -1;
    };
    QProcess first;
    QVERIFY(start(first, 1)->waitForFinished(-1) && heldRound() == 1);
    int held = 1,
        counts[4] =
            {}; // killed before the commit, after it, not killed, races won by the later run
    for (int round = 2; round <= 41; round += 2) {
        QProcess run, a, b;
        QEventLoop loop;
        QFileSystemWatcher watcher({temp});
        int changes = 0;
        connect(&watcher, &QFileSystemWatcher::directoryChanged, &loop, [&] {
            if (++changes == round / 2 % 4 + 1 && run.state() == QProcess::Running)
                ::kill(pid_t(run.processId()), SIGKILL);
        });
        connect(start(run, round), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                &loop, &QEventLoop::quit);
        loop.exec();
        const int now = heldRound();
        const bool killed = run.exitStatus() == QProcess::CrashExit;
        QVERIFY2((now == round && (killed || run.exitCode() == 0)) || (killed && now == held),
                 qPrintable(QString("round %1 left %2").arg(round).arg(now)));
        ++counts[!killed ? 2 : now == held ? 0 : 1];
        // Two runs at once on the same core: both finish, and one set wins whole.
        start(a, round + 1);
        start(b, round + 41);
        QVERIFY(a.waitForFinished(-1) && b.waitForFinished(-1) && a.exitCode() == 0
                && b.exitCode() == 0);
        held = heldRound();
        QVERIFY2(held == round + 1 || held == round + 41,
                 qPrintable(QString("race of %1 left %2").arg(round + 1).arg(held)));
        counts[3] += held == round + 41;
        QCOMPARE(entries(temp), QStringList{"cpri"});
    }
    qInfo(
        "killed before the commit %d, after it %d, not killed %d; races won by the later run %d of 20",
        counts[0], counts[1], counts[2], counts[3]);
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
