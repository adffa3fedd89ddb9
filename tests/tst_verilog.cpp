// The generated define files are real Verilog: Icarus Verilog compiles
// them with the core's top level, and the macros carry the configured values.

#include "testrecords.h"

#include <config/configkeys.h>
#include <plugin/cpri.h>

#include <ipserdes/serdes.h>

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using IPCPRI::ConfigMap;
namespace Key = IPCPRI::Config::Key;

namespace {

// Prints every macro the configuration can set, one "NAME=value" per line.
const char Testbench[] = R"(`timescale 1ns / 1ps
`include "top_define.vh"
`include "cpri_defines.vh"
module tb;
  // The record names the module my_cpri: the top level must carry that name.
  my_cpri dut();
  initial begin
`ifdef LANE_NUM
    $display("LANE_NUM=%0d", `LANE_NUM);
`endif
    $display("LINE_RATE_MASK=%b", `LINE_RATE_MASK);
    $display("LINE_RATE_INIT=%0d", `LINE_RATE_INIT);
    $display("CFG_CLK_PERIOD=%0.2f", `CFG_CLK_PERIOD);
    $display("SCRAMBLER_SEED=%h", `SCRAMBLER_SEED);
    $display("HDLC_RATE=%h", `HDLC_RATE);
    $display("ETH_POINTER=%h", `ETH_POINTER);
    $display("HDLC_USER_MASK=%h", `HDLC_USER_MASK);
`ifdef PROTOCOL_VER
    $display("PROTOCOL_VER=%0d", `PROTOCOL_VER);
`endif
`ifdef ETH_GMII
    $display("ETH=GMII");
`elsif ETH_MII
    $display("ETH=MII");
`endif
`ifdef CPLL_SEL
    $display("PLL=CPLL");
`elsif QPLL1_SEL
    $display("PLL=QPLL1");
`elsif QPLL0_SEL
    $display("PLL=QPLL0");
`endif
`ifdef EXT_PORT_EN
    $display("EXT_PORT_EN");
`endif
`ifdef SerDes_64b66b
    $display("SerDes_64b66b");
`endif
    $display("DATA_WIDTH=%0d", $bits(dut.iq_tx_data_i));
    $finish;
  end
endmodule
)";

ConfigMap baseRecord()
{
    ConfigMap r = TestRecords::initial();
    r.insert(Key::File, QStringLiteral("core"));
    r.insert(Key::Module, QStringLiteral("my_cpri"));
    return r;
}

} // namespace

class TestVerilog : public QObject
{
    Q_OBJECT

private slots:
    void definesCompileWithTheCore_data();
    void definesCompileWithTheCore();
};

void TestVerilog::definesCompileWithTheCore_data()
{
    QTest::addColumn<ConfigMap>("record");
    QTest::addColumn<QStringList>("expected");

    ConfigMap r = baseRecord();
    r.insert(Key::ChannelSelection, QStringLiteral("Q1 Lane2"));
    r.insert(Key::SpeedSel98304, true);
    r.insert(Key::HighestSpeedIndex, 6);
    r.insert(Key::SpeedEnablesRecord, QStringLiteral("000001000000"));
    r.insert(Key::ScramblerSeed, QStringLiteral("1F000000"));
    QTest::newRow("9.8304G on Q1 Lane2")
        << r
        << QStringList{QStringLiteral("LANE_NUM=6"),
                       QStringLiteral("LINE_RATE_MASK=000001000000"),
                       QStringLiteral("LINE_RATE_INIT=6"), QStringLiteral("CFG_CLK_PERIOD=20.00"),
                       QStringLiteral("SCRAMBLER_SEED=1f000000"), QStringLiteral("HDLC_RATE=02"),
                       QStringLiteral("ETH_POINTER=14"), QStringLiteral("HDLC_USER_MASK=0000"),
                       QStringLiteral("PROTOCOL_VER=1"), QStringLiteral("ETH=MII"),
                       QStringLiteral("PLL=QPLL0"), QStringLiteral("DATA_WIDTH=64")};

    r = baseRecord();
    r.insert(Key::ChannelSelection, QStringLiteral("Q0 Lane0"));
    r.insert(Key::SpeedSel3072, true);
    r.insert(Key::HighestSpeedIndex, 3);
    r.insert(Key::SpeedEnablesRecord, QStringLiteral("000000001000"));
    r.insert(Key::Mii, false);
    r.insert(Key::Gmii, true);
    r.insert(Key::ProtocolVersion1, false);
    r.insert(Key::ProtocolVersion2, true);
    r.insert(Key::PllSelection, QStringLiteral("CPLL"));
    r.insert(Key::ConfigClkPeriod, QStringLiteral("150"));
    r.insert(Key::DrpPorts, true);
    r.insert(Key::Mode64b66b, QStringLiteral("SerDes"));
    QTest::newRow("3.072G, GMII, CPLL, DRP")
        << r
        << QStringList{QStringLiteral("LANE_NUM=0"), QStringLiteral("LINE_RATE_MASK=000000001000"),
                       QStringLiteral("LINE_RATE_INIT=3"), QStringLiteral("CFG_CLK_PERIOD=6.67"),
                       QStringLiteral("PROTOCOL_VER=2"), QStringLiteral("ETH=GMII"),
                       QStringLiteral("PLL=CPLL"), QStringLiteral("EXT_PORT_EN"),
                       QStringLiteral("SerDes_64b66b"), QStringLiteral("DATA_WIDTH=16")};
}

void TestVerilog::definesCompileWithTheCore()
{
    QFETCH(ConfigMap, record);
    QFETCH(QStringList, expected);
    QTemporaryDir work;
    IPSERDESIP::serdes::instance()->reset();
    IPSERDESIP::serdes::instance()->setWorkingDir(work.path());
    IPCPRI::cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    QStringList settings, files, options;
    QString message;
    QVERIFY(protocol.generate(record, settings, files, options, message, false));

    const QString out = work.path() + QStringLiteral("/core/temp/cpri");
    QFile tb(out + QStringLiteral("/tb.v"));
    QVERIFY(tb.open(QIODevice::WriteOnly));
    tb.write(Testbench);
    tb.close();
    const QString data = QStringLiteral(CPRI_PACKAGE_DIR "/data");
    QProcess compile;
    compile.setProcessChannelMode(QProcess::MergedChannels);
    compile.start(QStringLiteral(IVERILOG_PATH),
                  {QStringLiteral("-g2005"), QStringLiteral("-Wall"), QStringLiteral("-I"), out,
                   QStringLiteral("-o"), out + QStringLiteral("/sim"), tb.fileName(),
                   data + QStringLiteral("/cpri_top.v"),
                   data + QStringLiteral("/cpri_core_encryption.v")});
    QVERIFY(compile.waitForFinished(60000));
    QVERIFY2(compile.exitCode() == 0, compile.readAll().constData());

    QProcess run;
    run.start(QFileInfo(QStringLiteral(IVERILOG_PATH)).absolutePath() + QStringLiteral("/vvp"),
              {out + QStringLiteral("/sim")});
    QVERIFY(run.waitForFinished(60000));
    const QStringList printed =
        QString::fromUtf8(run.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString &line : expected)
        QVERIFY2(printed.contains(line), qPrintable(line + QStringLiteral(" not in:\n")
                                                    + printed.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TestVerilog)
#include "tst_verilog.moc"
