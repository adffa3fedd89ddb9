// The define files, synthesis options and the settings lines that
// generation adds, built from records.

#include "testrecords.h"

#include <config/configkeys.h>
#include <generate/definefiles.h>
#include <generate/synthesisoptions.h>

#include <ipserdes/serdes.h>

#include <QTest>

using IPCPRI::ConfigMap;
namespace Key = IPCPRI::Config::Key;
namespace Gen = IPCPRI::Generate;

using TestRecords::with;

namespace {
IPCPRI::ConfigMap typicalRecord()
{
    return TestRecords::with(TestRecords::typical(), Key::File, QStringLiteral("cpri_0"));
}
} // namespace

class TestGeneration : public QObject
{
    Q_OBJECT

private slots:
    void topDefineNamesTheModule();
    void typicalCoreDefines();
    void defineRows_data();
    void defineRows();
    void emptyRecordKeepsTheUnconditionalDefines();
    void optionLines_data();
    void optionLines();
    void typicalOptionLines();
    void biasLinesComeFromTheRegistry_data();
    void biasLinesComeFromTheRegistry();
};

void TestGeneration::topDefineNamesTheModule()
{
    QCOMPARE(Gen::topDefines(typicalRecord()),
             QStringList{QStringLiteral("`define module_name cpri_top")});
    QCOMPARE(Gen::topDefines(ConfigMap()), QStringList{QStringLiteral("`define module_name ")});
}

void TestGeneration::typicalCoreDefines()
{
    const QStringList expected = {
        QStringLiteral("`define LANE_NUM 1"),
        QStringLiteral("`define LINE_RATE_9GBPS_AND_UNDER_64B"),
        QStringLiteral("`define LINE_RATE_MASK 12'b000001000000"),
        QStringLiteral("`define LINE_RATE_INIT 6"),
        QStringLiteral("`define CFG_CLK_PERIOD 20.00"),
        QStringLiteral("`define ETH_MII"),
        QStringLiteral("`define PROTOCOL_VER 8'h1"),
        QStringLiteral("`define SCRAMBLER_SEED 31'h00000000"),
        QStringLiteral("`define HDLC_RATE 8'h2"),
        QStringLiteral("`define ETH_POINTER 6'h14"),
        QStringLiteral("`define HDLC_USER_BYTE 4'h0"),
        QStringLiteral("`define HDLC_USER_MASK 16'h0000"),
        QStringLiteral("`define QPLL0_SEL"),
    };
    QCOMPARE(Gen::coreDefines(typicalRecord()), expected);
}

void TestGeneration::defineRows_data()
{
    QTest::addColumn<ConfigMap>("record");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QStringList>("absent");
    const ConfigMap base = typicalRecord();
    const auto row = [](const char *name, const ConfigMap &r, const QStringList &present,
                        const QStringList &absent = {}) {
        QTest::newRow(name) << r << present << absent;
    };
    row("Q1 Lane3 is lane 7", with(base, Key::ChannelSelection, QStringLiteral("Q1 Lane3")),
        {QStringLiteral("`define LANE_NUM 7")});
    row("unknown lane has no number", with(base, Key::ChannelSelection, QStringLiteral("Q1 Lane4")),
        {}, {QStringLiteral("`define LANE_NUM")});
    row("SerDes placement", with(base, Key::Mode64b66b, QStringLiteral("SerDes")),
        {QStringLiteral("`define SerDes_64b66b")});
    row("placement case differs", with(base, Key::Mode64b66b, QStringLiteral("serdes")), {},
        {QStringLiteral("`define SerDes_64b66b")});
    row("DRP alone also enables the port group", with(base, Key::DrpPorts, true),
        {QStringLiteral("`define DRP_PORT_EN"), QStringLiteral("`define EXT_PORT_EN")});
    row("loopback", with(base, Key::LoopbackPorts, true),
        {QStringLiteral("`define LOOPBACK_PORT_EN"), QStringLiteral("`define EXT_PORT_EN")});
    row("bias ports", with(base, Key::BiasPorts, true),
        {QStringLiteral("`define RX_BIAS_PORT_EN"), QStringLiteral("`define EXT_PORT_EN")});
    row("no optional port", base, {}, {QStringLiteral("`define EXT_PORT_EN")});
    row("MII wins over GMII", with(base, Key::Gmii, true), {QStringLiteral("`define ETH_MII")},
        {QStringLiteral("`define ETH_GMII")});
    row("GMII", with(with(base, Key::Mii, false), Key::Gmii, true),
        {QStringLiteral("`define ETH_GMII")}, {QStringLiteral("`define ETH_MII")});
    row("protocol version 2",
        with(with(base, Key::ProtocolVersion1, false), Key::ProtocolVersion2, true),
        {QStringLiteral("`define PROTOCOL_VER 8'h2")});
    row("master wins over slave", with(with(base, Key::Master, true), Key::Slave, true),
        {QStringLiteral("`define MASTER_ENABLE 1")}, {QStringLiteral("`define MASTER_ENABLE 0")});
    row("slave", with(base, Key::Slave, true), {QStringLiteral("`define MASTER_ENABLE 0")});
    row("collected role: no line", base, {}, {QStringLiteral("`define MASTER_ENABLE")});
    row("clock 100 MHz", with(base, Key::ConfigClkPeriod, QStringLiteral("100")),
        {QStringLiteral("`define CFG_CLK_PERIOD 10.00")});
    row("clock 150 MHz", with(base, Key::ConfigClkPeriod, QStringLiteral("150")),
        {QStringLiteral("`define CFG_CLK_PERIOD 6.67")});
    row("clock 122.88 MHz", with(base, Key::ConfigClkPeriod, QStringLiteral("122.88")),
        {QStringLiteral("`define CFG_CLK_PERIOD 8.14")});
    row("clock 0 MHz falls back to 50", with(base, Key::ConfigClkPeriod, QStringLiteral("0")),
        {QStringLiteral("`define CFG_CLK_PERIOD 20.00")});
    row("hex texts stay as stored", with(base, Key::HdlcMask, QStringLiteral("00aF")),
        {QStringLiteral("`define HDLC_USER_MASK 16'h00aF")});
    row("fixed config", with(base, Key::FixedConfigEnable, true),
        {QStringLiteral("`define FIXED_CFG_FOR_TIMING")});
    row("real-time vendor", with(base, Key::RealTimeVendor, true),
        {QStringLiteral("`define REAL_TIME_VENDOR_UP10G")});
    row("QPLL1", with(base, Key::PllSelection, QStringLiteral("QPLL1")),
        {QStringLiteral("`define QPLL1_SEL")});
    row("CPLL", with(base, Key::PllSelection, QStringLiteral("CPLL")),
        {QStringLiteral("`define CPLL_SEL")});
    row("unknown PLL has no line", with(base, Key::PllSelection, QStringLiteral("qpll0")), {},
        {QStringLiteral("`define QPLL0_SEL")});
    row("12G class", with(with(base, Key::SpeedSel98304, false), Key::SpeedSel1216512, true),
        {QStringLiteral("`define LINE_RATE_12GBPS_AND_UNDER")},
        {QStringLiteral("`define LINE_RATE_9GBPS_AND_UNDER_64B")});
}

void TestGeneration::defineRows()
{
    QFETCH(ConfigMap, record);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    const QStringList lines = Gen::coreDefines(record);
    for (const QString &line : present)
        QVERIFY2(lines.contains(line), qPrintable(line));
    for (const QString &prefix : absent) {
        for (const QString &line : lines)
            QVERIFY2(!line.startsWith(prefix), qPrintable(line));
    }
}

void TestGeneration::emptyRecordKeepsTheUnconditionalDefines()
{
    ConfigMap r;
    r.insert(Key::ChannelSelection, QStringLiteral("nowhere"));
    r.insert(Key::ConfigClkPeriod, QStringLiteral("50"));
    const QStringList expected = {
        QStringLiteral("`define LINE_RATE_MASK 12'b"), QStringLiteral("`define LINE_RATE_INIT 0"),
        QStringLiteral("`define CFG_CLK_PERIOD 20.00"), QStringLiteral("`define SCRAMBLER_SEED 31'h"),
        QStringLiteral("`define HDLC_RATE 8'h"),       QStringLiteral("`define ETH_POINTER 6'h"),
        QStringLiteral("`define HDLC_USER_BYTE 4'h"),  QStringLiteral("`define HDLC_USER_MASK 16'h"),
    };
    QCOMPARE(Gen::coreDefines(r), expected);
}

void TestGeneration::optionLines_data()
{
    QTest::addColumn<ConfigMap>("record");
    QTest::addColumn<QStringList>("present");
    const ConfigMap base = typicalRecord();
    QTest::newRow("speed class 12G")
        << with(with(base, Key::SpeedSel98304, false), Key::SpeedSel1216512, true)
        << QStringList{QStringLiteral("-cpri_topSpeedSelection 12.16512GandUnder")};
    QTest::newRow("both Ethernet flags give both lines")
        << with(base, Key::Gmii, true)
        << QStringList{QStringLiteral("-cpri_topEthernetSelection MII"),
                       QStringLiteral("-cpri_topEthernetSelection GMII")};
    QTest::newRow("any port enables DRP options, not DRP ports")
        << with(base, Key::FfePorts, true)
        << QStringList{QStringLiteral("-cpri_topFFEPorts true"),
                       QStringLiteral("-cpri_topOptionalPortsConfiguration true"),
                       QStringLiteral("-cpri_topEnableDRP true"),
                       QStringLiteral("-cpri_topDRPPorts false")};
    QTest::newRow("missing channel")
        << with(base, Key::ChannelSelection, QVariant())
        << QStringList{QStringLiteral("-cpri_top true")};
    QTest::newRow("white space removed")
        << with(base, Key::ChannelSelection, QStringLiteral(" Q1\tLane\u00a02"))
        << QStringList{QStringLiteral("-cpri_topQ1Lane2 true")};
}

void TestGeneration::optionLines()
{
    QFETCH(ConfigMap, record);
    QFETCH(QStringList, present);
    const QStringList lines = Gen::synthesisOptions(record);
    for (const QString &line : present)
        QVERIFY2(lines.contains(line), qPrintable(lines.join(QLatin1Char('\n'))));
}

void TestGeneration::typicalOptionLines()
{
    const QStringList expected = {
        QStringLiteral("-cpri_topprotocol_module_type cpri"),
        QStringLiteral("-cpri_topQ0Lane1 true"),
        QStringLiteral("-cpri_topSpeedSelection 9.8304GandUnder"),
        QStringLiteral("-cpri_topEthernetSelection MII"),
        QStringLiteral("-cpri_topRealTimeVendor false"),
        QStringLiteral("-cpri_topLoopbackPort false"),
        QStringLiteral("-cpri_topDifferentialSwingPorts false"),
        QStringLiteral("-cpri_topFFEPorts false"),
        QStringLiteral("-cpri_topEqualizationPorts false"),
        QStringLiteral("-cpri_topBiasPorts false"),
        QStringLiteral("-cpri_topPRBSPatternGeneratorPorts false"),
        QStringLiteral("-cpri_topPRBSPatternCheckerPorts false"),
        QStringLiteral("-cpri_topOptionalPortsConfiguration false"),
        QStringLiteral("-cpri_topEnableDRP false"),
        QStringLiteral("-cpri_topDRPPorts false"),
    };
    QCOMPARE(Gen::synthesisOptions(typicalRecord()), expected);
}

void TestGeneration::biasLinesComeFromTheRegistry_data()
{
    QTest::addColumn<QString>("lane");
    QTest::addColumn<QVariant>("changed");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("quad 0") << "Q0 Lane2" << QVariant(true)
                            << QStringList{QStringLiteral("q0_rx_eq_bias 3")};
    QTest::newRow("quad 1") << "Q1 Lane0" << QVariant(true)
                            << QStringList{QStringLiteral("q1_rx_eq_bias 12")};
    QTest::newRow("not changed") << "Q1 Lane0" << QVariant(false) << QStringList();
    QTest::newRow("missing flag") << "Q1 Lane0" << QVariant() << QStringList();
    QTest::newRow("no lane") << "" << QVariant(true) << QStringList();
}

void TestGeneration::biasLinesComeFromTheRegistry()
{
    QFETCH(QString, lane);
    QFETCH(QVariant, changed);
    QFETCH(QStringList, lines);
    IPSERDESIP::serdes::instance()->reset();
    IPSERDESIP::serdes::instance()->setData(QStringLiteral("Q0_BIAS"), 3);
    IPSERDESIP::serdes::instance()->setData(QStringLiteral("Q1_BIAS"), 12);
    ConfigMap r = with(typicalRecord(), Key::ChannelSelection, lane);
    r.remove(Key::ChangedAllOfBias);
    if (changed.isValid())
        r.insert(Key::ChangedAllOfBias, changed);
    QCOMPARE(Gen::quadBiasLines(r), lines);
}

QTEST_MAIN(TestGeneration)
#include "tst_generation.moc"
