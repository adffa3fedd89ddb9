// The setting lines of one lane, as generation builds them from a record.

#include <config/configkeys.h>
#include <serdes/lanesettings.h>

#include <QTest>

using IPCPRI::ConfigMap;
namespace Key = IPCPRI::Config::Key;
namespace Serdes = IPCPRI::Serdes;

namespace {

QStringList linesFor(const ConfigMap &record, const QString &part,
                     const QString &lane = QStringLiteral("q0_ln1"),
                     const QString &quad = QStringLiteral("q0"))
{
    QStringList lines;
    Serdes::appendLaneSettings(lines, lane, quad, Serdes::laneInputFromRecord(record, part));
    return lines;
}

ConfigMap rateRecord(int index, const QString &placement = QString())
{
    ConfigMap r;
    r.insert(Key::PllSelection, QStringLiteral("QPLL0"));
    r.insert(Key::LoopbackMode, QStringLiteral("OFF"));
    r.insert(Key::HighestSpeedIndex, index);
    r.insert(Key::LineRate, QStringLiteral("9.83040Gbps"));
    if (!placement.isEmpty())
        r.insert(Key::Mode64b66b, placement);
    return r;
}

} // namespace

class TestLaneSettings : public QObject
{
    Q_OBJECT

private slots:
    void listedDeviceExample();
    void encodingByFamilyAndRate_data();
    void encodingByFamilyAndRate();
    void gearboxByRate_data();
    void gearboxByRate();
    void emptyRecordUsesDefaults();
    void valuesAreConvertedAsStored();
    void appendsWithoutClearing();
};

void TestLaneSettings::listedDeviceExample()
{
    ConfigMap r = rateRecord(6);
    const QStringList expected = {
        QStringLiteral("q0_ln1_pll_sel qpll0"),
        QStringLiteral("q0_ln1_loopback_mode off"),
        QStringLiteral("q0_ln1_enable true"),
        QStringLiteral("q0_enable true"),
        QStringLiteral("q0_ln1_tx_encode 8b10b"),
        QStringLiteral("q0_ln1_rx_decode 8b10b"),
        QStringLiteral("q0_ln1_word_align enable"),
        QStringLiteral("q0_ln1_pma_tx_width_mode 20"),
        QStringLiteral("q0_ln1_pma_rx_width_mode 20"),
        QStringLiteral("q0_ln1_tx_gearbox 4"),
        QStringLiteral("q0_ln1_rx_gearbox 4"),
        QStringLiteral("q0_ln1_word_align_pattern k28.5"),
        QStringLiteral("q0_ln1_word_align_pattern_mask 1111111111"),
        QStringLiteral("q0_ln1_tx_rate 9.83040"),
        QStringLiteral("q0_ln1_rx_rate 9.83040"),
        QStringLiteral("q0_ln1_tx_differential_swing 900mV"),
        QStringLiteral("q0_ln1_tx_ffe_mode auto"),
        QStringLiteral("q0_ln1_tx_ffe_cm 0"),
        QStringLiteral("q0_ln1_tx_ffe_c1 0"),
        QStringLiteral("q0_ln1_tx_ffe_c0 40"),
        QStringLiteral("q0_ln1_rx_sd_thsel 100mV"),
        QStringLiteral("q0_ln1_rx_eq_mode auto"),
        QStringLiteral("q0_ln1_rx_att 7"),
        QStringLiteral("q0_ln1_rx_boost 9"),
    };
    QCOMPARE(linesFor(r, QStringLiteral("DVA-1")), expected);
}

void TestLaneSettings::encodingByFamilyAndRate_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("placement");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("encoding"); // the lines after the two enable lines
    const QString lane = QStringLiteral("q1_ln2_");
    const auto e = [&](std::initializer_list<const char *> tails) {
        QStringList lines;
        for (const char *tail : tails)
            lines << lane + QString::fromLatin1(tail);
        return lines;
    };
    const QStringList listed8b10b = e({"tx_encode 8b10b", "rx_decode 8b10b", "word_align enable",
                                       "pma_tx_width_mode 20", "pma_rx_width_mode 20"});
    const QStringList listed64b66b =
        e({"tx_encode 64b66b", "rx_decode 64b66b", "rx_64b66b_decode_10gbaser enable",
           "word_align disable", "pma_tx_width_mode 16", "pma_rx_width_mode 16"});
    const QStringList listedFabric = e({"tx_encode off", "rx_decode off", "word_align disable",
                                        "pma_tx_width_mode 16", "pma_rx_width_mode 16"});
    const QStringList other8b10b =
        e({"8b10b_encode enable", "8b10b_decode enable", "word_align enable", "pma_width_mode 20"});
    const QStringList otherOff = e({"8b10b_encode disable", "8b10b_decode disable",
                                    "word_align disable", "pma_width_mode 16"});
    QTest::newRow("first family, 9.8304") << "DVA-1" << 6 << "SerDes" << 24 << listed8b10b;
    QTest::newRow("second family, 8.11008") << "DVB-5" << 8 << "SerDes" << 25 << listed64b66b;
    QTest::newRow("listed, no placement") << "DVB-1" << 9 << "" << 25 << listed64b66b;
    QTest::newRow("listed, fabric 12G") << "DVA-2" << 10 << "Fabric" << 24 << listedFabric;
    QTest::newRow("listed, fabric lower case") << "DVA-2" << 10 << "fabric" << 25 << listed64b66b;
    QTest::newRow("listed, fabric at 6.144") << "DVA-2" << 5 << "Fabric" << 24 << listed8b10b;
    QTest::newRow("other, 10.1376 fabric") << "DVC-1" << 9 << "Fabric" << 23 << otherOff;
    QTest::newRow("other, 3.072") << "DVC-1" << 3 << "SerDes" << 23 << other8b10b;
    QTest::newRow("null device, no rate") << "" << -1 << "" << 23 << other8b10b;
}

void TestLaneSettings::encodingByFamilyAndRate()
{
    QFETCH(QString, part);
    QFETCH(int, index);
    QFETCH(QString, placement);
    QFETCH(int, count);
    QFETCH(QStringList, encoding);
    const QStringList lines = linesFor(rateRecord(index, placement), part,
                                       QStringLiteral("q1_ln2"), QStringLiteral("q1"));
    QCOMPARE(lines.size(), count);
    QCOMPARE(lines.mid(2, 2), QStringList({QStringLiteral("q1_ln2_enable true"),
                                           QStringLiteral("q1_enable true")}));
    QCOMPARE(lines.mid(4, encoding.size()), encoding);
    QVERIFY(lines.contains(QStringLiteral("q1_ln2_word_align_pattern k28.5")));
    QVERIFY(lines.contains(QStringLiteral("q1_ln2_word_align_pattern_mask 1111111111")));
}

void TestLaneSettings::gearboxByRate_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("ratio");
    QTest::newRow("no rate") << -1 << 1;
    QTest::newRow("0.6144") << 0 << 1;
    QTest::newRow("3.072") << 3 << 1;
    QTest::newRow("4.9152") << 4 << 2;
    QTest::newRow("6.144") << 5 << 2;
    QTest::newRow("9.8304") << 6 << 4;
    QTest::newRow("8.11008") << 8 << 4;
    QTest::newRow("12.16512") << 10 << 4;
}

void TestLaneSettings::gearboxByRate()
{
    QFETCH(int, index);
    QFETCH(int, ratio);
    const QStringList lines = linesFor(rateRecord(index), QStringLiteral("DVC-1"));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_tx_gearbox %1").arg(ratio)));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_rx_gearbox %1").arg(ratio)));
}

void TestLaneSettings::emptyRecordUsesDefaults()
{
    const QStringList lines = linesFor(ConfigMap(), QStringLiteral("DVB-2"));
    QCOMPARE(lines.size(), 24);
    QCOMPARE(lines.at(0), QStringLiteral("q0_ln1_pll_sel "));
    QCOMPARE(lines.at(1), QStringLiteral("q0_ln1_loopback_mode "));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_tx_rate ")));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_tx_differential_swing 900mV")));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_tx_ffe_c0 40")));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_rx_att 7")));
    QVERIFY(lines.contains(QStringLiteral("q0_ln1_rx_boost 9")));
    QCOMPARE(linesFor(ConfigMap(), QStringLiteral("DVC-2")).size(), 23);
}

void TestLaneSettings::valuesAreConvertedAsStored()
{
    ConfigMap r = rateRecord(9);
    r.insert(Key::LineRate, QStringLiteral("10.13760Gbps"));
    r.insert(Key::PllSelection, QStringLiteral("CPLL"));
    r.insert(Key::LoopbackMode, QStringLiteral("LB_NES"));
    r.insert(Key::FfeMode, QStringLiteral("Manual"));
    r.insert(Key::FfeCm, 4);
    r.insert(Key::FfeC1, 3);
    r.insert(Key::FfeC0, QStringLiteral("33"));
    r.insert(Key::EqualizationMode, QStringLiteral("Manual"));
    r.insert(Key::Att, 2);
    r.insert(Key::Boost, 15);
    r.insert(Key::DifferentialSwing, QStringLiteral("228mV"));
    r.insert(Key::SdThreshold, QStringLiteral("25mV"));
    const QStringList lines = linesFor(r, QStringLiteral("DVC-1"));
    for (const char *line :
         {"q0_ln1_pll_sel cpll", "q0_ln1_loopback_mode lb_nes", "q0_ln1_tx_rate 10.13760",
          "q0_ln1_rx_rate 10.13760", "q0_ln1_tx_ffe_mode manual", "q0_ln1_tx_ffe_cm 4",
          "q0_ln1_tx_ffe_c1 3", "q0_ln1_tx_ffe_c0 33", "q0_ln1_rx_eq_mode manual",
          "q0_ln1_rx_att 2", "q0_ln1_rx_boost 15", "q0_ln1_tx_differential_swing 228mV",
          "q0_ln1_rx_sd_thsel 25mV"})
        QVERIFY2(lines.contains(QString::fromLatin1(line)), line);
    r.insert(Key::FfeC0, QStringLiteral("forty"));
    QVERIFY(linesFor(r, QStringLiteral("DVC-1")).contains(QStringLiteral("q0_ln1_tx_ffe_c0 0")));
}

void TestLaneSettings::appendsWithoutClearing()
{
    QStringList lines{QStringLiteral("earlier 1")};
    Serdes::appendLaneSettings(lines, QStringLiteral("q1_ln0"), QStringLiteral("q1"),
                               Serdes::laneInputFromRecord(rateRecord(6), QStringLiteral("DVC-1")));
    QCOMPARE(lines.size(), 24);
    QCOMPARE(lines.first(), QStringLiteral("earlier 1"));
}

QTEST_MAIN(TestLaneSettings)
#include "tst_lanesettings.moc"
