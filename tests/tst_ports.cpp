// The core's port contract: the top level the define files configure, the
// port list and the instantiation template agree, as real Verilog tools
// read them, and the dialog's symbol shows the same ports.

#include "dialogfixture.h"
#include "testsupport.h"

#include <dialog/coreports.h>

using namespace TestSupport;

namespace {

// The ports `cpri-host ports` lists for a record, as "direction name width" lines.
QStringList listedPorts(const QString &record)
{
    QStringList ports;
    for (const QJsonValue &p : runHost({"ports", record}).json().array())
        ports << QString("%1 %2 %3")
                     .arg(p["direction"].toString(), p["name"].toString())
                     .arg(p["width"].toInt());
    return ports;
}

// The module's ports in declaration order, from the JSON text Yosys writes.
QStringList yosysPorts(const QString &json, const QString &module)
{
    const QString ports = json.section("\"" + module + "\": {", 1).section("\"cells\":", 0, 0);
    static const QRegularExpression port(
        "\"(\\w+)\": \\{\\s*\"direction\": \"(\\w+)\",\\s*\"bits\": \\[([^\\]]*)\\]");
    QStringList found;
    for (auto m = port.globalMatch(ports); m.hasNext();) {
        const QRegularExpressionMatch p = m.next();
        found << QString("%1 %2 %3")
                     .arg(p.captured(2), p.captured(1))
                     .arg(p.captured(3).count(',') + 1);
    }
    return found;
}

} // namespace

class TestPorts : public QObject
{
    Q_OBJECT

private slots:
    // Changes to the example record (9.8304G class, MII, Q0 Lane1) -> the number of ports.
    // clang-format off
    void toolsReadThePortList_data()
    {
        QTest::addColumn<QString>("changes");
        QTest::addColumn<int>("count");
        QTest::newRow("3G GMII loopback") << R"("9.8304G_and_Under": false, "3.072G_and_Under": true, "MII": false,
            "GMII": true, "Loopback_Ports": true)" << 91;
        QTest::newRow("6G DRP") << R"("9.8304G_and_Under": false, "6.144G_and_Under": true, "DRP_Ports": true)" << 98;
        QTest::newRow("9G FFE EQ") << R"("FFE_Ports": true, "Equalization_Ports": true)" << 95;
        QTest::newRow("10G RTV GMII BIAS") << R"("9.8304G_and_Under": false, "10.1376G_and_Under": true,
            "9.8304Gbps": false, "10.1376Gbps": true, "Line_Rate": "10.13760Gbps", "highest_SpeedIndex": 9,
            "speedEnables_Record": "001000000000", "64B_66B_Mode": "SerDes",
            "Real_Time_Vendor": true, "MII": false, "GMII": true, "BIAS_Ports": true)" << 96;
        QTest::newRow("12G swing PRBS") << R"("9.8304G_and_Under": false, "12.16512G_and_Under": true, "file": "2nd.core",
            "Differential_Swing_Ports": true, "PRBS_Pattern_Generator_Ports": true, "PRBS_Pattern_Checker_Ports": true)" << 98;
        QTest::newRow("everything") << R"("9.8304G_and_Under": false, "12.16512G_and_Under": true, "9.8304Gbps": false,
            "12.16512Gbps": true, "Line_Rate": "12.16512Gbps", "highest_SpeedIndex": 10, "speedEnables_Record": "010000000000",
            "64B_66B_Mode": "SerDes", "MII": false, "GMII": true, "Real_Time_Vendor": true, "Loopback_Ports": true,
            "DRP_Ports": true, "FFE_Ports": true, "Equalization_Ports": true, "BIAS_Ports": true, "module": "cpri_x",
            "Differential_Swing_Ports": true, "PRBS_Pattern_Generator_Ports": true, "PRBS_Pattern_Checker_Ports": true, "file": "module")" << 122;
    }
    // clang-format on
    void toolsReadThePortList()
    {
        QFETCH(QString, changes);
        QFETCH(int, count);
        for (const char *tool : {IVERILOG_PATH, VERILATOR_PATH, YOSYS_PATH})
            QVERIFY2(QFileInfo(tool).isExecutable(),
                     "iverilog, verilator and yosys are needed: install them");
        QTemporaryDir work;
        QJsonObject record = readJson(CPRI_SOURCE_DIR "/examples/cpri_9g8304_q0lane1.json");
        for (auto [key, value] : QJsonDocument::fromJson("{" + changes.toUtf8() + "}")
                                     .object()
                                     .toVariantMap()
                                     .toStdMap())
            record.insert(key, QJsonValue::fromVariant(value));
        const QString path = work.filePath("record.json"), instance = work.filePath("instance.v");
        QVERIFY(write(path, QJsonDocument(record).toJson()));
        QCOMPARE(runHost({"generate", path, "--workdir", work.path()}).exitCode, 0);
        const QStringList expected = listedPorts(path);
        QCOMPARE(expected.size(), count);
        QCOMPARE(runHost({"template", path, "--out", instance}).trouble(), QString());
        QCOMPARE(runHost({"template", path}).out, read(instance));
        QCOMPARE(runHost({"ports", instance}).exitCode, 2);

        const QString module = record["module"].toString(),
                      dir = work.path() + "/" + record["file"].toString() + "/temp/cpri";
        const QStringList sources = {CPRI_PACKAGE_DIR "/data/cpri_top.v",
                                     CPRI_PACKAGE_DIR "/data/cpri_core_encryption.v"};
        const auto lint = QStringList{"--lint-only", "-Wall", "-I" + dir, "--top-module", module};
        QCOMPARE(run(VERILATOR_PATH, lint + sources).trouble(), QString());
        // The template pasted into a module: every port bound, at its width.
        QVERIFY(
            write(work.filePath("wrapper.v"),
                  "`timescale 1ns / 1ps\nmodule wrapper;\n`include \"instance.v\"\nendmodule\n"));
        const auto icarus =
            QStringList{"-Wall",     "-g2005", "-I",      dir,  "-I",
                        work.path(), "-s",     "wrapper", "-o", work.filePath("sim")};
        QCOMPARE(run(IVERILOG_PATH, icarus + sources + QStringList{work.filePath("wrapper.v")})
                     .trouble(),
                 QString());
        const QString json = work.filePath("top.json");
        QCOMPARE(run(YOSYS_PATH, {"-q", "-p",
                                  QString("read_verilog -I%1 %2; hierarchy -top %3; write_json %4")
                                      .arg(dir, sources.join(' '), module, json)})
                     .trouble(),
                 QString());
        QCOMPARE(yosysPorts(read(json), module), expected);
    }

    // The example project's cores, of three speed classes, in one design: cores.f
    // compiled in its order and backwards, cores_template.v pasted into one module.
    // No tool warns (no resizing, no redeclaration), and each core's module has the
    // ports `cpri-host ports` gives for its record.
    void projectCompilesAsOneDesign()
    {
        QTemporaryDir work;
        const QString example = CPRI_SOURCE_DIR "/examples/project/", out = work.filePath("out");
        for (const QString &name : QDir(example).entryList({"*.json"}))
            QVERIFY(QFile::copy(example + name, work.filePath(name)));
        QCOMPARE(runHost({"project", work.filePath("project.json")}).exitCode, 0);
        const QStringList sources =
            QString::fromUtf8(read(out + "/cores.f")).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(sources.size(), 5);
        QStringList backwards(sources.crbegin(), sources.crend());
        QVERIFY(write(out + "/backwards.f", (backwards.join('\n') + '\n').toUtf8()));
        QVERIFY(
            write(out + "/board.v",
                  "`timescale 1ns / 1ps\nmodule board;\n/* verilator lint_off UNUSED */\n"
                  "/* verilator lint_off UNDRIVEN */\n`include \"cores_template.v\"\nendmodule\n"));
        for (const char *list : {"/cores.f", "/backwards.f"})
            QCOMPARE(run(IVERILOG_PATH, {"-Wall", "-g2005", "-I", out, "-f", out + list, "-s",
                                         "board", "-o", out + "/sim", out + "/board.v"})
                         .trouble(),
                     QString());
        QCOMPARE(run(VERILATOR_PATH, {"--lint-only", "-Wall", "-I" + out, "-f", out + "/cores.f",
                                      out + "/board.v", "--top-module", "board"})
                     .trouble(),
                 QString());
        const QString json = out + "/board.json";
        QCOMPARE(
            run(YOSYS_PATH,
                {"-q", "-p",
                 QString(
                     "read_verilog -I%2 %1 %2/board.v; hierarchy -check -top board; write_json %3")
                     .arg(sources.join(' '), out, json)})
                .trouble(),
            QString());
        for (const QString core : {"cpri_a", "cpri_b", "cpri_c", "cpri_d"})
            QCOMPARE(yosysPorts(read(json), core + "_top"), listedPorts(example + core + ".json"));
    }

    // What the user clicks (and a saved record holds) -> an accepted record whose
    // port list is the symbol the dialog shows, of so many ports.
    // clang-format off
    void dialogShowsTheRecordsPorts_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<int>("count");
        const QString hidden = "version=1.0;FFE_Ports=true;Equalization_Ports=true;BIAS_Ports=true;"
                               "Differential_Swing_Ports=true;PRBS_Pattern_Generator_Ports=true;PRBS_Pattern_Checker_Ports=true";
        QTest::newRow("3G") << "speedSel3072;speedEnable3072" << "" << 88;
        QTest::newRow("6G GMII loopback") << "speedSel6144;speedEnable6144;GMII;checkBoxLoopBackPorts" << "" << 91;
        QTest::newRow("9G DRP") << "speedSel98304;speedEnable98304;checkBoxDRPPort" << "" << 98;
        QTest::newRow("10G RTV") << "speedSel101376;speedEnable101376;RealTimeVendor" << "" << 93;
        QTest::newRow("12G GMII RTV DRP") << "speedSel1216512;speedEnable1216512;GMII;RealTimeVendor;checkBoxDRPPort" << "" << 103;
        QTest::newRow("9G saved boxes") << "speedSel98304;speedEnable98304" << hidden << 106;
        QTest::newRow("10G saved boxes GMII") << "speedSel101376;speedEnable101376;GMII;checkBoxLoopBackPorts" << hidden << 108;
    }
    // clang-format on
    void dialogShowsTheRecordsPorts()
    {
        QFETCH(QString, steps);
        QFETCH(QString, saved);
        QFETCH(int, count);
        Session s(Case().saved(saved));
        s.act(steps + ";okButton");
        QCOMPARE(s.see("accepted"), QString("accepted yes"));
        QStringList shown, listed;
        for (const Utils::PinFigure &pin : s.d->figurePins())
            shown << pin.name + (pin.direction == 1 ? " out" : " in");
        for (const IPCPRI::CorePort &port : IPCPRI::corePorts(s.record))
            listed << port.name + (port.width > 1 ? QString("[%1:0]").arg(port.width - 1) : "")
                          + (port.direction == IPCPRI::CorePort::Output ? " out" : " in");
        QCOMPARE(listed, shown);
        QCOMPARE(shown.size(), count);
    }
};

QTEST_MAIN(TestPorts)
#include "tst_ports.moc"
