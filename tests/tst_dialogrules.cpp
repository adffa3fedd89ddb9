// The dialog's rules that do not need widgets: speed state, field limits
// and the port figure.

#include <config/speedrules.h>
#include <dialog/fieldrules.h>
#include <dialog/portfigure.h>

#include <QTest>

using namespace IPCPRI;

Q_DECLARE_METATYPE(IPCPRI::FigureChoices)

namespace {

QStringList names(const QList<Utils::PinFigure> &pins)
{
    QStringList list;
    for (const Utils::PinFigure &pin : pins)
        list << pin.name;
    return list;
}

} // namespace

class TestDialogRules : public QObject
{
    Q_OBJECT

private slots:
    void speedState_data();
    void speedState();
    void fieldLimits_data();
    void fieldLimits();
    void hexConversionFailureIsReported();
    void pinDirectionFollowsTheName_data();
    void pinDirectionFollowsTheName();
    void portGroups_data();
    void portGroups();
    void newDialogFigure();
};

void TestDialogRules::speedState_data()
{
    QTest::addColumn<QVector<int>>("onRows");
    QTest::addColumn<QString>("mask");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("highest");
    QTest::newRow("nothing") << QVector<int>{} << "000000000000" << -1 << 0.0;
    QTest::newRow("12.16512") << QVector<int>{10} << "010000000000" << 10 << 12.16512;
    QTest::newRow("8.11008") << QVector<int>{8} << "000100000000" << 8 << 8.11008;
    QTest::newRow("9.8304 above 8.11008") << QVector<int>{6, 8} << "000101000000" << 6 << 9.8304;
    QTest::newRow("every rate") << QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}
                                << "011101111111" << 10 << 12.16512;
}

void TestDialogRules::speedState()
{
    QFETCH(QVector<int>, onRows);
    QFETCH(QString, mask);
    QFETCH(int, index);
    QFETCH(double, highest);
    QVector<bool> on(12, false);
    for (int row : onRows)
        on[row] = true;
    const Config::SpeedState state = Config::speedState(on);
    QCOMPARE(state.mask, mask);
    QCOMPARE(state.highestIndex, index);
    QCOMPARE(state.highest, highest);
    QCOMPARE(state.rates.size(), 11);
    QCOMPARE(state.rates.at(7), 0.0);
}

void TestDialogRules::fieldLimits_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("kept");
    QTest::newRow("clock 0") << "clock" << "0" << "50";
    QTest::newRow("clock 151") << "clock" << "151" << "50";
    QTest::newRow("clock 150") << "clock" << "150" << "150";
    QTest::newRow("clock 1") << "clock" << "1" << "1";
    QTest::newRow("clock empty") << "clock" << "" << "50";
    QTest::newRow("ref 50") << "ref" << "50" << "50";
    QTest::newRow("ref 500") << "ref" << "500" << "500";
    QTest::newRow("ref 49.99") << "ref" << "49.99" << "122.880";
    QTest::newRow("ref 500.5") << "ref" << "500.5" << "122.880";
    QTest::newRow("ref empty") << "ref" << "" << "122.880";
    QTest::newRow("pointer 13") << "pointer" << "13" << "14";
    QTest::newRow("pointer 3F") << "pointer" << "3F" << "3F";
    QTest::newRow("pointer 40") << "pointer" << "40" << "14";
    QTest::newRow("seed too big") << "seed" << "80000000" << "00000000";
    QTest::newRow("seed largest") << "seed" << "7FFFFFFF" << "7FFFFFFF";
    QTest::newRow("hdlc 7") << "hdlc" << "7" << "7";
    QTest::newRow("hdlc 8") << "hdlc" << "8" << "2";
    QTest::newRow("hdlc not hex") << "hdlc" << "G" << "2";
}

void TestDialogRules::fieldLimits()
{
    QFETCH(QString, field);
    QFETCH(QString, entry);
    QFETCH(QString, kept);
    bool converted = false;
    QString result;
    if (field == QLatin1String("clock"))
        result = FieldRules::configClock(entry);
    else if (field == QLatin1String("ref"))
        result = FieldRules::referenceFrequency(entry);
    else if (field == QLatin1String("pointer"))
        result = FieldRules::ethernetPointer(entry, &converted);
    else if (field == QLatin1String("seed"))
        result = FieldRules::scramblerSeed(entry, &converted);
    else
        result = FieldRules::hdlcRate(entry);
    QCOMPARE(result, kept);
}

void TestDialogRules::hexConversionFailureIsReported()
{
    bool converted = true;
    QCOMPARE(FieldRules::scramblerSeed(QStringLiteral("XYZ"), &converted), QStringLiteral("00000000"));
    QVERIFY(!converted);
    QCOMPARE(FieldRules::ethernetPointer(QStringLiteral("20"), &converted), QStringLiteral("20"));
    QVERIFY(converted);
    QCOMPARE(FieldRules::ffeC0(10, 10), 20);
}

void TestDialogRules::pinDirectionFollowsTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("direction");
    QTest::addColumn<bool>("bus");
    QTest::newRow("input") << "tx_clk_i" << 0 << false;
    QTest::newRow("output") << "hfnsync_o" << 1 << false;
    QTest::newRow("input bus") << "iq_tx_data_i[15:0]" << 0 << true;
    QTest::newRow("output bus") << "rx_data_o[63:0]" << 1 << true;
}

void TestDialogRules::pinDirectionFollowsTheName()
{
    QFETCH(QString, name);
    QFETCH(int, direction);
    QFETCH(bool, bus);
    const Utils::PinFigure pin = pinFigure(name);
    QCOMPARE(pin.direction, direction);
    QCOMPARE(pin.isBus, bus);
    QCOMPARE(pin.alignment, direction ? Qt::AlignRight : Qt::AlignLeft);
}

void TestDialogRules::portGroups_data()
{
    using DataPath = FigureChoices::DataPath;
    QTest::addColumn<FigureChoices>("choices");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QStringList>("absent");
    FigureChoices c;
    c.dataPath = DataPath::Narrow98304;
    QTest::newRow("9.8304 keeps 6-bit slots")
        << c << QStringList{QStringLiteral("aux_tx_slot_num_o[5:0]"), QStringLiteral("iq_tx_data_i[63:0]")}
        << QStringList{QStringLiteral("aux_tx_slot_num_o[6:0]")};
    c.dataPath = DataPath::Wide;
    QTest::newRow("wide form")
        << c << QStringList{QStringLiteral("aux_rx_slot_num_o[6:0]"), QStringLiteral("vendor_tx_data_i[127:0]")}
        << QStringList{QStringLiteral("aux_rx_slot_num_o[5:0]")};
    c.dataPath = DataPath::Narrow3072;
    QTest::newRow("3.072 widths")
        << c << QStringList{QStringLiteral("iq_tx_req_o[1:0]"), QStringLiteral("vendor_rx_data_o[39:0]")}
        << QStringList{QStringLiteral("iq_tx_data_i[63:0]")};
    c = FigureChoices();
    c.gmii = true;
    c.realTimeVendor = true;
    QTest::newRow("GMII and real-time vendor")
        << c << QStringList{QStringLiteral("gmii_rx_er_o"), QStringLiteral("up10g_rt_rx_valid_o")}
        << QStringList{QStringLiteral("mii_tx_clk_i")};
}

void TestDialogRules::portGroups()
{
    QFETCH(FigureChoices, choices);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    QStringList pins = names(portFigure(choices));
    for (const QString &name : present)
        QVERIFY2(pins.contains(name), qPrintable(name));
    for (const QString &name : absent)
        QVERIFY2(!pins.contains(name), qPrintable(name));
    QCOMPARE(pins.removeDuplicates(), 0);
}

void TestDialogRules::newDialogFigure()
{
    FigureChoices c;
    c.mii = true;
    const QStringList pins = names(portFigure(c));
    QCOMPARE(pins.size(), 10 + 16 + 13 + 13 + 25);
    QCOMPARE(pins.first(), QStringLiteral("tx_arst_i"));
    QCOMPARE(pins.at(10), QStringLiteral("aux_tx_hf_num_o[7:0]"));
    QCOMPARE(pins.last(), QStringLiteral("serq_tx_fifo_wrusewd_o[4:0]"));

    c.drpPorts = true;
    QStringList drp = names(portFigure(c)).mid(pins.size());
    QCOMPARE(drp.size(), 10);
    QCOMPARE(drp.first(), QStringLiteral("user_drp_clk_o"));
    QCOMPARE(drp.last(), QStringLiteral("user_drp_resp_o"));

    c.drpPorts = false;
    c.biasPorts = true;
    QCOMPARE(names(portFigure(c)).mid(pins.size()),
             QStringList({QStringLiteral("rx_quad_bias_en_i"), QStringLiteral("rx_quad_bias_i[3:0]"),
                          QStringLiteral("user_drp_clk_o")}));
}

QTEST_APPLESS_MAIN(TestDialogRules)
#include "tst_dialogrules.moc"
